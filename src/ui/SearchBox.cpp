#include "ui/SearchBox.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QToolButton>

#include "lists/ListStatus.h"
#include "support/Translate.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

constexpr int kTypedMs = 200;  // a search begins this long after the last key
constexpr int kCountMs = 60;   // longest time for counting the matches

}  // namespace

SearchBox::SearchBox(ListView& list, CommandSet& commands, QWidget* parent)
    : QWidget(parent),
      list_(list),
      commands_(commands),
      text_(new QLineEdit(this)),
      result_(new QLabel(this)) {
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(6, 3, 6, 4);
  layout->setSpacing(4);
  text_->setClearButtonEnabled(true);
  text_->setPlaceholderText(toQString(TL(9482, u"In dieser Liste suchen")));
  text_->setAccessibleName(toQString(TL(9483, u"Suchtext")));
  text_->installEventFilter(this);
  layout->addWidget(text_, 1);
  for (const CommandId id : {CommandId::SearchBack, CommandId::SearchForward}) {
    if (!commands_.has(id)) continue;
    auto* const button = new QToolButton(this);
    button->setDefaultAction(commands_.action(id));
    button->setAutoRaise(true);
    button->setAccessibleName(commands_.action(id)->text());
    layout->addWidget(button);
  }
  layout->addWidget(result_);
  typed_.setSingleShot(true);
  typed_.setInterval(kTypedMs);
  connect(&typed_, &QTimer::timeout, this, &SearchBox::searchTyped);
  connect(text_, &QLineEdit::textEdited, this, [this] { typed_.start(); });
  connect(text_, &QLineEdit::textChanged, this, [this] { result_->clear(); });
  applySettings();
}

void SearchBox::applySettings() {
  const CommandState state =
      commands_.has(CommandId::Search) ? commands_.state(CommandId::Search) : CommandState();
  setVisible(state.isChecked());
}

void SearchBox::toggled() {
  const CommandState state = commands_.state(CommandId::Search);
  const bool isInUse = isVisible() && (!text_->hasFocus() || !text_->text().isEmpty());
  if (isInUse && !state.isChecked()) *state.flag = state.value;
  commands_.update();
  applySettings();
  if (isVisible()) {
    text_->setFocus();
    text_->selectAll();
  } else {
    list_.setFocus();
  }
}

void SearchBox::searchFor(const QString& text) {
  const CommandState state = commands_.state(CommandId::Search);
  *state.flag = state.value;
  commands_.update();
  applySettings();
  text_->setText(text);
  search(false);
}

void SearchBox::close() {
  *commands_.state(CommandId::Search).flag = 0;
  commands_.update();
  applySettings();
  list_.setFocus();
}

/// Return and the arrows search, Escape closes the box.
bool SearchBox::eventFilter(QObject* object, QEvent* event) {
  if (object != text_ || event->type() != QEvent::KeyPress)
    return QWidget::eventFilter(object, event);
  const auto* const key = static_cast<QKeyEvent*>(event);
  switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      search((key->modifiers() & Qt::ShiftModifier) != 0);
      return true;
    case Qt::Key_Down:
    case Qt::Key_Up:
      search(key->key() == Qt::Key_Up);
      return true;
    case Qt::Key_Escape:
      close();
      return true;
    default:
      return false;
  }
}

void SearchBox::search(bool backward) {
  const QString text = text_->text();
  ListModel& model = list_.list();
  RowSource& rows = model.rows();
  if (text.isEmpty() || rows.count() == 0) return;
  const std::size_t current = list_.currentRow();
  const std::size_t from = current == RowSource::kNoRow ? rows.count() - 1 : current;
  const std::optional<RowSource::Id> found = rows.find(text, from, backward);
  if (!found) {
    result_->setText(toQString(TL(9547, u"Nichts gefunden")));
    return;
  }
  if (rows.rowOf(*found) == RowSource::kNoRow) model.rearrange([&] { rows.rebuild(); });
  const std::size_t row = rows.rowOf(*found);
  if (row != RowSource::kNoRow) list_.goTo(row);
  showMatches(text, backward ? row >= from : row <= from);
}

/// Searches while the user types: a row that still has the text stays the current one.
void SearchBox::searchTyped() {
  const QString text = text_->text();
  const std::size_t current = list_.currentRow();
  if (text.isEmpty()) return;
  if (current != RowSource::kNoRow && list_.list().rows().holds(current, text)) {
    showMatches(text, false);
  } else {
    search(false);
  }
}

void SearchBox::showMatches(const QString& text, bool hasWrapped) {
  const MatchCount matches = list_.list().rows().countMatches(text, kCountMs);
  const Text number = statusCount(std::int64_t(matches.count));
  Text shown =
      matches.isAll ? TL(9769, u"Treffer: %1", {number}) : TL(9770, u"Treffer: über %1", {number});
  if (hasWrapped) shown.append(u" \u00B7 ").append(TL(9548, u"Von vorn gesucht"));
  result_->setText(toQString(shown));
}

}  // namespace ombrelian::ui
