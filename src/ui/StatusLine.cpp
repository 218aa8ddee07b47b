#include "ui/StatusLine.h"

#include "support/Translate.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

constexpr int kNoteMs = 8000;

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
  std::int64_t roots = 0;
  for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling)
    ++roots;
  Text sources = TL(9041, u"%1 Quellordner", {ombrelian::toText(roots)});
  if (const int filters = filtersOfScan(state_.session.options); filters > 0)
    sources.append(u"  \u00B7  ")
        .append(TL(9700, u"Filter eingeschaltet: %1", {ombrelian::toText(filters)}));
  left_->setText(toQString(sources));
  right_->setText(area_.isRightVisible() ? toQString(panes_.status(area_.rightList())) : QString());
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
