#include "ui/ListView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <algorithm>

#include "ui/CellDelegate.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

constexpr int kNameSection = 1;
constexpr int kLeastColumnWidth = 28;
constexpr int kRowPadding = 7;  // sum of the margins above and below the text

}  // namespace

ListView::ListView(ListModel& model, Options& options, ListId view, QWidget* parent)
    : QTableView(parent), model_(model), options_(options), view_(view) {
  setModel(&model_);
  fit_ = new ColumnFit(*this, model_, options_, view_);
  setItemDelegate(new CellDelegate(options_, view_, this));
  setSelectionBehavior(SelectRows);
  setSelectionMode(ExtendedSelection);
  setEditTriggers(NoEditTriggers);
  setHorizontalScrollMode(ScrollPerPixel);
  setVerticalScrollMode(ScrollPerItem);
  setWordWrap(false);
  setTabKeyNavigation(false);
  setCornerButtonEnabled(false);
  setShowGrid(false);  // the delegate draws the lines between cells
  setContextMenuPolicy(Qt::CustomContextMenu);
  setMouseTracking(true);
  setDragEnabled(true);
  setDragDropMode(DragOnly);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  QHeaderView* const header = horizontalHeader();
  header->setSectionsMovable(true);
  header->setSectionsClickable(true);
  header->setHighlightSections(false);
  header->setMinimumSectionSize(kLeastColumnWidth);
  header->setSortIndicatorShown(true);
  header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  header->setTextElideMode(Qt::ElideRight);
  header->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(header, &QHeaderView::customContextMenuRequested, this,
          [this, header](const QPoint& at) { Q_EMIT columnMenuWanted(header->mapToGlobal(at)); });
  connect(header, &QHeaderView::sectionMoved, this, &ListView::columnMoved);
  connect(header, &QHeaderView::sectionClicked, this, &ListView::sortByColumn);
  applySettings();
}

void ListView::applySettings() {
  setArranging(true);
  const ListSettings settings = listSettings(options_, view_);
  const int sections = model_.columnCount();
  std::vector<int> order(std::size_t(sections - 1));
  for (int section = 1; section < sections; ++section)
    order[std::size_t(section - 1)] = section;
  const auto position = [&](int section) {
    const auto id = std::size_t(section);
    return id < settings.positions.size() ? settings.positions[id] : section;
  };
  std::stable_sort(order.begin(), order.end(),
                   [&](int a, int b) { return position(a) < position(b); });
  for (int place = 0; place < int(order.size()); ++place)
    horizontalHeader()->moveSection(horizontalHeader()->visualIndex(order[std::size_t(place)]),
                                    place + 1);
  for (int section = 0; section < sections; ++section) {
    const auto id = std::size_t(section);
    const bool byDefault = section > 0;
    const bool shown = id < settings.visible.size() ? settings.visible[id] == 1 : byDefault;
    setColumnHidden(section, section != kNameSection && !shown);
  }
  setArranging(false);
  const int height = fontMetrics().height() + kRowPadding;
  verticalHeader()->setMinimumSectionSize(height);
  verticalHeader()->setDefaultSectionSize(height);
  viewport()->update();
}

void ListView::setColumnVisible(int section, bool visible) {
  if (section == kNameSection) return;
  const ListSettings settings = listSettings(options_, view_);
  if (std::size_t(section) < settings.visible.size())
    settings.visible[std::size_t(section)] = visible ? 1 : 0;
  setArranging(true);
  setColumnHidden(section, !visible);
  setArranging(false);
  fitColumns();
  Q_EMIT columnsChanged();
}

void ListView::setArranging(bool isArranging) {
  isArranging_ = isArranging;
  fit_->setArranging(isArranging);
}

void ListView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  fit_->layOut();
}

/// Keeps the row number as the first column, and in the tree the name as the second column.
void ListView::columnMoved(int section, int from, int to) {
  if (isArranging_) return;
  QHeaderView* const header = horizontalHeader();
  const bool isTree = view_ == ListId::Folders;
  const int fixed = isTree ? 2 : 1;
  if (from < fixed || to < fixed) {
    isArranging_ = true;
    header->moveSection(header->visualIndex(section), from);
    isArranging_ = false;
    return;
  }
  storePositions();
}

void ListView::storePositions() {
  const ListSettings settings = listSettings(options_, view_);
  for (std::size_t id = 1; id < settings.positions.size(); ++id)
    settings.positions[id] = horizontalHeader()->visualIndex(int(id));
}

/// A first click sorts numbers in descending and texts in ascending order; in the tree each click
/// reverses the order.
void ListView::sortByColumn(int section) {
  const Column* const column = model_.column(section);
  if (column == nullptr || model_.rowCount() == 0) return;
  const RowSource& rows = model_.rows();
  const bool again = rows.sortColumn() == column;
  const bool byItself = !column->isLeftAligned() || column->kind == CellKind::Timestamp ||
                        column->kind == CellKind::Percent;
  const bool toggles = again || view_ == ListId::Folders;
  const bool descending = toggles ? !rows.sortedDescending() : byItself;
  setCursor(Qt::WaitCursor);
  model_.sortBy(*column, descending);
  unsetCursor();
  horizontalHeader()->setSortIndicator(section,
                                       descending ? Qt::DescendingOrder : Qt::AscendingOrder);
  if (currentIndex().isValid()) scrollTo(currentIndex());
  fitColumns();
}

std::vector<std::size_t> ListView::selectedRowNumbers() const {
  std::vector<std::size_t> rows;
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row)
      rows.push_back(std::size_t(row));
  }
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

std::size_t ListView::currentRow() const {
  const QModelIndex current = currentIndex();
  const bool isMeant = current.isValid() && selectionModel()->isSelected(current);
  return isMeant ? std::size_t(current.row()) : RowSource::kNoRow;
}

void ListView::goTo(std::size_t row) {
  const QModelIndex index = model_.index(int(row), kNameSection);
  setCurrentIndex(index);  // the next selection with Shift begins here
  selectionModel()->setCurrentIndex(
      index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  scrollTo(index);
}

void ListView::selectRows(const std::vector<std::size_t>& rows) {
  clearSelection();
  if (rows.empty()) return;
  goTo(rows.front());
  QItemSelection selection;
  for (const std::size_t row : rows)
    selection.select(model_.index(int(row), 0), model_.index(int(row), model_.columnCount() - 1));
  selectionModel()->select(selection, QItemSelectionModel::Select);
}

void ListView::editName() {
  const QModelIndex index = model_.index(currentIndex().row(), kNameSection);
  if (index.isValid() && (model_.flags(index) & Qt::ItemIsEditable)) edit(index);
}

std::size_t ListView::parentRow(std::size_t row) const {
  const int level = model_.rows().look(row).level;
  while (row > 0 && model_.rows().look(row).level >= level)
    --row;
  return row;
}

/// The left and right arrow keys collapse and expand a folder, and move between levels.
void ListView::keyPressEvent(QKeyEvent* event) {
  const std::size_t row = currentRow();
  const bool isPlain =
      event->modifiers() == Qt::NoModifier || event->modifiers() == Qt::KeypadModifier;
  if (view_ == ListId::Folders && row != RowSource::kNoRow && isPlain) {
    const RowLook look = model_.rows().look(row);
    switch (event->key()) {
      case Qt::Key_Left:
      case Qt::Key_Minus:
        if (look.isExpanded) {
          Q_EMIT expandWanted(row, false);
        } else if (event->key() == Qt::Key_Left && look.level > 0) {
          goTo(parentRow(row));
        }
        return;
      case Qt::Key_Right:
      case Qt::Key_Plus:
        if (look.canExpand && !look.isExpanded) {
          Q_EMIT expandWanted(row, true);
        } else if (event->key() == Qt::Key_Right && look.isExpanded) {
          goTo(row + 1);
        }
        return;
      case Qt::Key_Asterisk:
        Q_EMIT expandSubtreeWanted(row, true);
        return;
      default:
        break;
    }
  }
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (isEnter && isPlain && row != RowSource::kNoRow && state() != EditingState) {
    Q_EMIT rowActivated(row);
    return;
  }
  if (state() != EditingState && takeFirstRow(*event)) return;
  QTableView::keyPressEvent(event);
}

/// Takes the first row with any of the keys that move if no row is selected, or the last with End.
bool ListView::takeFirstRow(const QKeyEvent& event) {
  constexpr int kMoves[] = {Qt::Key_Up,       Qt::Key_Down, Qt::Key_PageUp,
                            Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End};
  const bool moves =
      std::find(std::begin(kMoves), std::end(kMoves), event.key()) != std::end(kMoves);
  if (!moves || model_.rowCount() == 0 || selectionModel()->hasSelection()) return false;
  goTo(event.key() == Qt::Key_End ? std::size_t(model_.rowCount() - 1) : 0);
  return true;
}

/// Home and End move through the rows, and not through the cells of one row.
QModelIndex ListView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
  if (action == MoveHome || action == MoveEnd) modifiers |= Qt::ControlModifier;
  return QTableView::moveCursor(action, modifiers);
}

bool ListView::toggleAt(const QPoint& position) {
  const QModelIndex index = indexAt(position);
  if (view_ != ListId::Folders || index.column() != kNameSection) return false;
  const auto row = std::size_t(index.row());
  const RowLook look = model_.rows().look(row);
  if (!look.canExpand) return false;
  const int left = visualRect(index).left() + look.level * kIndent;
  if (position.x() < left || position.x() >= left + kIndent + 4) return false;
  Q_EMIT expandWanted(row, !look.isExpanded);
  return true;
}

void ListView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && toggleAt(event->pos())) return;
  QTableView::mousePressEvent(event);
}

void ListView::mouseDoubleClickEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->pos());
  if (event->button() != Qt::LeftButton || !index.isValid()) return;
  if (toggleAt(event->pos())) return;
  Q_EMIT rowDoubleClicked(std::size_t(index.row()));
}

void ListView::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) applySettings();
}

void ListView::selectionChanged(const QItemSelection& now, const QItemSelection& before) {
  QTableView::selectionChanged(now, before);
  Q_EMIT selectedRowsChanged();
}

}  // namespace ombrelian::ui
