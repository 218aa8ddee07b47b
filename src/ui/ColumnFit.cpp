#include "ui/ColumnFit.h"

#include <QHeaderView>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <algorithm>

#include "ui/CellDelegate.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

constexpr int kNameSection = 1;
constexpr int kMostFittedWidth = 1600;
constexpr int kCellMargin = 16;  // sum of the margins left and right of the text
constexpr int kSortSign = 32;    // room for the sort indicator beside a title
constexpr int kLeastNameWidth = 180;
constexpr int kLeastTextWidth = 130;
constexpr int kLeastPercentWidth = 90;
constexpr int kMeasuredRows = 20'000;  // greatest number of rows that are measured for one column

/// The pairs "section:width" of a stored text. Pairs that are not valid are left out.
std::vector<int> toWidths(TextView text, std::size_t sections) {
  std::vector<int> widths(sections);
  for (const QString& pair : toQString(text).split(u' ', Qt::SkipEmptyParts)) {
    const QStringList parts = pair.split(u':');
    if (parts.size() != 2) continue;
    bool isNumber = false;
    const auto section = std::size_t(parts[0].toUInt(&isNumber));
    if (isNumber && section < sections) widths[section] = std::clamp(parts[1].toInt(), 0, 10'000);
  }
  return widths;
}

}  // namespace

std::vector<int> sharedWidths(std::span<const ColumnNeed> needs, int room) {
  std::vector<int> widths;
  int rest = room;
  for (const ColumnNeed& need : needs) {
    widths.push_back(need.natural);
    rest -= need.natural;
  }
  while (rest < 0) {
    // Each turn makes the widest column as narrow as the next one.
    int widest = -1;
    int next = 0;
    for (int i = 0; i < int(needs.size()); ++i) {
      const auto at = std::size_t(i);
      if (widths[at] <= needs[at].least) continue;
      if (widest < 0 || widths[at] > widths[std::size_t(widest)]) {
        next = widest < 0 ? 0 : widths[std::size_t(widest)];
        widest = i;
      } else {
        next = std::max(next, widths[at]);
      }
    }
    if (widest < 0) break;
    int& width = widths[std::size_t(widest)];
    const int lower = std::max({needs[std::size_t(widest)].least, next - 1, width + rest});
    rest += width - lower;
    width = lower;
  }
  return widths;
}

ColumnFit::ColumnFit(QTableView& view, ListModel& model, Options& options, ListId list)
    : QObject(&view),
      view_(view),
      model_(model),
      options_(options),
      list_(list),
      natural_(std::size_t(model.columnCount())) {
  readChosen();
  QHeaderView* const header = view_.horizontalHeader();
  connect(header, &QHeaderView::sectionResized, this, &ColumnFit::sectionResized);
  connect(header, &QHeaderView::sectionHandleDoubleClicked, this, [this](int section) {
    chosen_[std::size_t(section)] = 0;
    natural_[std::size_t(section)] = measured(section, true);
    storeChosen();
    layOut();
  });
}

void ColumnFit::readChosen() {
  chosen_ = toWidths(*listSettings(options_, list_).widths, natural_.size());
}

void ColumnFit::storeChosen() {
  QStringList pairs;
  for (std::size_t section = 0; section < chosen_.size(); ++section)
    if (chosen_[section] > 0) pairs += QStringLiteral("%1:%2").arg(section).arg(chosen_[section]);
  *listSettings(options_, list_).widths = toText(pairs.join(u' '));
}

/// Keeps the width that a person gave to a column.
void ColumnFit::sectionResized(int section, int before, int now) {
  if (isArranging_ || before == 0 || now == 0) return;
  chosen_[std::size_t(section)] = now;
  storeChosen();
}

void ColumnFit::fit() {
  const std::uint8_t* const optimizeAll = listSettings(options_, list_).optimizeAll;
  const bool all = optimizeAll != nullptr && *optimizeAll == 1;
  for (int section = 0; section < int(natural_.size()); ++section)
    if (!view_.isColumnHidden(section)) natural_[std::size_t(section)] = measured(section, all);
  layOut();
}

void ColumnFit::fitAnew() {
  std::fill(chosen_.begin(), chosen_.end(), 0);
  storeChosen();
  fit();
}

void ColumnFit::fitName() {
  int& natural = natural_[kNameSection];
  natural = std::max(natural, measured(kNameSection, false));
  layOut();
}

/// Measures the rows on the screen, or all rows. If there are very many rows, it measures a sample
/// of them.
int ColumnFit::measured(int section, bool all) const {
  const QFontMetrics metrics = view_.fontMetrics();
  const int rows = model_.rowCount();
  if (section == 0) return metrics.horizontalAdvance(QString::number(rows)) + kCellMargin;
  const int height = std::max(1, view_.verticalHeader()->defaultSectionSize());
  const int first = all ? 0 : std::max(0, view_.rowAt(0));
  const int last = all ? rows : std::min(rows, first + view_.viewport()->height() / height + 1);
  const int step = std::max(1, (last - first) / kMeasuredRows);
  int width = view_.horizontalHeader()->fontMetrics().horizontalAdvance(
                  model_.headerData(section, Qt::Horizontal, Qt::DisplayRole).toString()) +
              kCellMargin + kSortSign;
  for (int row = first; row < last; row += step) {
    const QModelIndex index = model_.index(row, section);
    int cell = metrics.horizontalAdvance(index.data(Qt::DisplayRole).toString()) + kCellMargin;
    if (section == kNameSection) cell += CellDelegate::leading(model_.rows(), std::size_t(row));
    width = std::max(width, cell);
  }
  if (section == kNameSection) width = std::max(width, kLeastNameWidth);
  const Column* const column = model_.column(section);
  if (column != nullptr && column->kind == CellKind::Percent)
    width = std::max(width, kLeastPercentWidth);
  return std::min(width, kMostFittedWidth);
}

/// Columns of names and paths can be cut at their end; numbers and dates cannot.
bool ColumnFit::isElastic(int section) const {
  const Column* const column = model_.column(section);
  return column != nullptr && column->kind == CellKind::PlainText;
}

/// The names of a tree may take more than half of the room, because an indented name that is cut
/// tells nothing.
ColumnNeed ColumnFit::need(int section, int room) const {
  const auto at = std::size_t(section);
  if (chosen_[at] > 0) return {chosen_[at], chosen_[at]};
  const int natural = natural_[at];
  if (!isElastic(section)) return {natural, natural};
  const int least = isTree() && section == kNameSection ? std::max(kLeastNameWidth, room * 6 / 10)
                                                        : kLeastTextWidth;
  return {natural, std::min(natural, least)};
}

void ColumnFit::layOut() {
  const int room = view_.viewport()->width();
  std::vector<int> sections;
  std::vector<ColumnNeed> needs;
  for (int section = 0; section < int(natural_.size()); ++section) {
    if (view_.isColumnHidden(section) || natural_[std::size_t(section)] == 0) continue;
    sections.push_back(section);
    needs.push_back(need(section, room));
  }
  std::vector<int> widths = sharedWidths(needs, room);
  int rest = room;
  for (const int width : widths)
    rest -= width;
  const QScopedValueRollback<bool> arranging(isArranging_, true);
  for (std::size_t i = 0; i < sections.size(); ++i) {
    const bool takesRest =
        isTree() && sections[i] == kNameSection && chosen_[kNameSection] == 0 && rest > 0;
    view_.setColumnWidth(sections[i], widths[i] + (takesRest ? rest : 0));
  }
}

int ColumnFit::fullWidth() const {
  int width = view_.verticalScrollBar()->sizeHint().width() + 2 * view_.frameWidth() + 2;
  for (int section = 0; section < int(natural_.size()); ++section) {
    const auto at = std::size_t(section);
    if (!view_.isColumnHidden(section)) width += chosen_[at] > 0 ? chosen_[at] : natural_[at];
  }
  return width;
}

}  // namespace ombrelian::ui
