#include "ui/StatusLine.h"

#include <unordered_set>

#include "format/DatePattern.h"
#include "format/Sizes.h"
#include "lists/ListStatus.h"
#include "support/Translate.h"
#include "tree/TreeEdit.h"
#include "tree/TreeOrder.h"
#include "ui/Messages.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

constexpr int kNoteMs = 8000;

constexpr TextView kBetween = u"  \u00B7  ";

Text incompleteText() { return TL(9705, u"unvollständig"); }

/// The number of sources, and the sums of all of them.
Text describeSources(const FolderTree& tree, const Options& options, std::int64_t milliseconds) {
  std::int64_t roots = 0;
  ScanTotals sum;
  bool isInside = false;
  for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling) {
    const FolderNode& node = tree[root];
    ++roots;
    sum += {node.size, node.files, node.folders, node.errors, node.hardlinks, node.junctions};
    isInside = isInside || !sourcesBelow(tree, node.name()).empty();
  }
  Text text = TL(9041, u"Quellen: %1", {statusCount(roots)});
  const auto add = [&text](const Text& part) { text.append(kBetween).append(part); };
  if (roots > 0) {
    add(TL(
        9613, u"Dateien: %1, Ordner: %2, Größe: %3",
        {statusCount(sum.Files), statusCount(sum.Folders), xFormatFileSizeAuto(sum.Size, true)}));
  }
  if (sum.Errors > 0) add(TL(9706, u"Fehler: %1", {statusCount(sum.Errors)}));
  if (sum.Folders + sum.Files > 0) add(TL(9771, u"Dauer: %1", {formatDuration(milliseconds)}));
  if (isIncomplete(tree)) add(incompleteText());
  if (isInside) add(TL(9707, u"Eine Quelle liegt in einer anderen."));
  if (const int filters = filtersOfScan(options); filters > 0)
    add(TL(9700, u"Filter eingeschaltet: %1", {statusCount(filters)}));
  return text;
}

QLabel* makeLabel(QStatusBar& bar) {
  auto* const label = new QLabel(&bar);
  label->setTextFormat(Qt::PlainText);
  label->setContentsMargins(8, 1, 8, 1);
  return label;
}

}  // namespace

StatusLine::StatusLine(WindowState& state, Panes& panes, PaneArea& area, QStatusBar& bar)
    : state_(state),
      panes_(panes),
      area_(area),
      bar_(bar),
      left_(makeLabel(bar)),
      right_(makeLabel(bar)) {
  left_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  right_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  bar_.addWidget(left_, 1);
  bar_.addPermanentWidget(right_);
  bar_.setSizeGripEnabled(false);
}

void StatusLine::StatusbarSetTextRightAUTO() {
  if (state_.isBusy()) return;
  const FolderTree& tree = state_.session.tree;
  left_->setText(toQString(describeSources(tree, state_.session.options, state_.scanMilliseconds) +
                           selectedFolders()));
  left_->setToolTip(plainToolTip(left_->text()));  // the right text has its room first
  right_->setText(area_.isRightVisible() ? toQString(statusOf(area_.rightList())) : QString());
}

/// Number and size of the selected folders if there are several; folders below a selected folder do
/// not count again.
Text StatusLine::selectedFolders() const {
  const std::vector<RowSource::Id> ids = panes_.selectedIds(ListId::Folders);
  if (ids.size() < 2) return {};
  const FolderTree& tree = state_.session.tree;
  const std::unordered_set<RowSource::Id> selected(ids.begin(), ids.end());
  std::int64_t size = 0;
  for (const RowSource::Id id : ids) {
    NodeIndex above = tree[NodeIndex(id)].parent;
    while (above != kNoNode && !selected.contains(above))
      above = tree[above].parent;
    if (above == kNoNode) size = addSizes(size, tree[NodeIndex(id)].size);
  }
  return Text(kBetween).append(
      TL(9772, u"Ausgewählt: %1, %2",
         {statusCount(std::int64_t(ids.size())), xFormatFileSizeAuto(size, true)}));
}

/// The description of a list. A list of a scan says whether the scan was stopped, and which source
/// it read if the tree has others.
Text StatusLine::statusOf(ListId list) const {
  Text text = panes_.status(list);
  const bool isDerived = std::find(std::begin(kDerivedLists), std::end(kDerivedLists), list) !=
                         std::end(kDerivedLists);
  if (!isDerived || state_.filled.source.empty()) return text;
  const FolderTree& tree = state_.session.tree;
  const NodeIndex first = tree.firstRoot();
  const bool hasOtherSources = first != kNoNode && tree[first].nextSibling != kNoNode;
  if (hasOtherSources) text.append(kBetween).append(state_.filled.source);
  if (state_.filled.isIncomplete) text.append(kBetween).append(incompleteText());
  return text;
}

void StatusLine::showNote(const QString& text) { bar_.showMessage(text, kNoteMs); }

void StatusLine::showReadOnly() {
  QLabel* const label = makeLabel(bar_);
  label->setText(toQString(TL(9640, u"nur Lesen")));
  label->setToolTip(
      toQString(TL(9641,
                   u"Mit --read-only gestartet: Löschen und Umbenennen sind ausgeschaltet, "
                   u"Berichte lassen sich speichern.")));
  bar_.addPermanentWidget(label);
}

}  // namespace ombrelian::ui
