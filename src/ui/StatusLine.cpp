#include "ui/StatusLine.h"

#include "format/Sizes.h"
#include "lists/ListStatus.h"
#include "support/Translate.h"
#include "tree/TreeEdit.h"
#include "tree/TreeOrder.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

constexpr int kNoteMs = 8000;

constexpr TextView kBetween = u"  \u00B7  ";

Text incompleteText() { return TL(9705, u"unvollständig"); }

/// The number of sources, and the sums of all of them.
Text describeSources(const FolderTree& tree, const Options& options) {
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
  right_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  bar_.addWidget(left_, 1);
  bar_.addPermanentWidget(right_);
  bar_.setSizeGripEnabled(false);
}

void StatusLine::StatusbarSetTextRightAUTO() {
  if (state_.isBusy()) return;
  const FolderTree& tree = state_.session.tree;
  left_->setText(toQString(describeSources(tree, state_.session.options)));
  right_->setText(area_.isRightVisible() ? toQString(statusOf(area_.rightList())) : QString());
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
