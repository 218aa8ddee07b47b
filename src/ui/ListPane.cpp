#include "ui/ListPane.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMessageBox>
#include <QMimeData>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "format/RtfText.h"
#include "support/Translate.h"
#include "ui/FolderRows.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

constexpr int kFirstColumnCommand = 700;

}  // namespace

ListPane::ListPane(ListId view, RowSource& rows, Options& options, QWidget* parent)
    : QWidget(parent),
      view_(view),
      rows_(rows),
      options_(options),
      model_(new ListModel(rows, this)),
      list_(new ListView(*model_, options, view, this)),
      commands_(new CommandSet(barOf(view), view, options, this)),
      emptyText_(new QLabel(list_->viewport())) {
  searchBox_ = makeSearchBox();
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(searchBox_);
  layout->addWidget(list_, 1);
  setFocusProxy(list_);
  emptyText_->setAlignment(Qt::AlignCenter);
  emptyText_->setWordWrap(true);
  emptyText_->setForegroundRole(QPalette::PlaceholderText);
  emptyText_->setAttribute(Qt::WA_TransparentForMouseEvents);
  list_->viewport()->installEventFilter(this);
  for (const int id : {504, 1005, 1006}) {
    if (!commands_->has(id)) commands_->addAction(id);
  }
  commands_->applyLook();
  connect(commands_, &CommandSet::triggered, this, [this](int id) {
    if (!execute(id)) Q_EMIT triggered(view_, id);
  });
  connect(list_, &QWidget::customContextMenuRequested, this, &ListPane::showContextMenu);
  connect(list_, &ListView::columnMenuWanted, this, [this](const QPoint& at) {
    QMenu menu(this);
    fillColumnMenu(menu);
    menu.exec(at);
  });
  connect(list_, &ListView::selectedRowsChanged, this, [this] { Q_EMIT statusChanged(view_); });
  connect(model_, &ListModel::nameTaken, this, [this](const QString& name, bool* answer) {
    *answer = QMessageBox::question(
                  this, QStringLiteral("Ombrelian"),
                  toQString(TL(9545, u"'%1' gibt es dort schon. Soll es ersetzt werden?",
                               {toTextView(name)})),
                  QMessageBox::Yes | QMessageBox::No, QMessageBox::No) == QMessageBox::Yes;
  });
  connect(model_, &ListModel::renameFailed, this, [this](const QString& error) {
    QMessageBox::warning(this, QStringLiteral("Ombrelian"), error);
  });
  connectTree();
  showSearchBox();
}

void ListPane::connectTree() {
  if (view_ != ListId::Folders) return;
  connect(list_, &ListView::expandWanted, this, &ListPane::expand);
  connect(list_, &ListView::expandSubtreeWanted, this,
          [this](std::size_t, bool expanded) { Q_EMIT triggered(view_, expanded ? 1007 : 1008); });
}

void ListPane::expand(std::size_t row, bool expanded) {
  ShownFolders& shown = static_cast<FolderRows&>(rows_).shownFolders();
  if (expanded) {
    model_->insertRowsAt(row + 1, shown.rowsToShow(row), [&] { shown.expand(row); });
  } else {
    if (list_->currentRow() > row && list_->currentRow() <= row + shown.rowsBelow(row))
      list_->goTo(row);
    model_->removeRowsAt(row + 1, shown.rowsBelow(row), [&] { shown.collapse(row); });
  }
  list_->viewport()->update();
}

void ListPane::addToolBar(const std::function<QWidget*(int id, QToolBar*)>& place) {
  // The fields of the search stand in a box of their own.
  toolBar_ = commands_->makeToolBar(
      [&](int id, QToolBar* bar) -> QWidget* { return place ? place(id, bar) : nullptr; });
  for (const int id : {357, 358}) {
    if (commands_->has(id)) toolBar_->removeAction(commands_->action(id));
  }
  static_cast<QVBoxLayout*>(layout())->insertWidget(0, toolBar_);
  if (commands_->has(366)) {
    QMenu* const menu = commands_->menu(366);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] { fillColumnMenu(*menu); });
  }
}

/// Those that stand on no bar have their keys from here on too.
void ListPane::setRowCommands(std::vector<int> ids) {
  rowCommands_ = std::move(ids);
  for (const int id : rowCommands_) {
    if (id != 0 && !commands_->has(id)) commands_->addAction(id);
  }
  commands_->applyLook();
  commands_->update();
}

void ListPane::setReadOnly() {
  model_->setReadOnly();
  commands_->setReadOnly();
}

/// The columns stand in front of the other commands of the menu.
void ListPane::fillColumnMenu(QMenu& menu) {
  for (QAction* const action : menu.actions()) {
    const int id = action->data().toInt();
    if ((id >= kFirstColumnCommand && id < 900) || id < 0) delete action;
  }
  QAction* const first = menu.actions().isEmpty() ? nullptr : menu.actions().constFirst();
  const auto sections = int(rows_.columns().size());
  for (int section = 0; section <= sections; ++section) {
    auto* const action = new QAction(&menu);
    const Column* const column = model_->column(section);
    action->setText(column == nullptr ? toQString(TL(9546, u"Zeilennummer"))
                                      : toQString(rows_.format().caption(*column)));
    action->setData(kFirstColumnCommand + (isTopList(view_) ? 100 : 0) + section);
    action->setCheckable(true);
    action->setChecked(list_->isColumnVisible(section));
    action->setEnabled(section != 1);
    connect(action, &QAction::toggled, list_, [this, section](bool shown) {
      list_->setColumnVisible(section, shown);
      list_->fitColumns();
    });
    menu.insertAction(first, action);
  }
  if (first == nullptr || first->isSeparator()) return;
  auto* const line = new QAction(&menu);
  line->setSeparator(true);
  line->setData(-1);
  menu.insertAction(first, line);
}

void ListPane::showContextMenu(const QPoint& at) {
  QMenu menu(this);
  const QModelIndex index = list_->indexAt(at);
  if (!index.isValid()) return;
  // What was under the pointer became current by the press, or stays what the keyboard chose.
  for (const int id : rowCommands_) {
    if (id == 0) {
      menu.addSeparator();
    } else {
      menu.addAction(commands_->action(id));
    }
  }
  if (!menu.isEmpty()) menu.exec(list_->viewport()->mapToGlobal(at));
}

void ListPane::applySettings() {
  rows_.applySettings();
  model_->showAnew();
  list_->applySettings();
  list_->fitColumns();
  commands_->update();
  Q_EMIT statusChanged(view_);
}

void ListPane::rowsReplaced() {
  const Column* const sorted = rows_.sortColumn();
  list_->horizontalHeader()->setSortIndicator(
      sorted == nullptr ? -1 : sorted->id,
      rows_.sortedDescending() ? Qt::DescendingOrder : Qt::AscendingOrder);
  list_->fitColumns();
  placeEmptyText();
  Q_EMIT statusChanged(view_);
}

void ListPane::setFrozen(bool frozen) {
  model_->setFrozen(frozen);
  list_->setEnabled(!frozen);
  emptyText_->setVisible(!frozen && model_->rowCount() == 0);
  if (!frozen) rowsReplaced();
}

void ListPane::setEmptyText(const QString& text) {
  emptyText_->setText(text);
  list_->setAccessibleDescription(text);
  placeEmptyText();
}

void ListPane::placeEmptyText() {
  const QRect area = list_->viewport()->rect();
  emptyText_->setGeometry(area.adjusted(24, 16, -24, -16));
  emptyText_->setVisible(model_->rowCount() == 0 && list_->isEnabled());
}

void ListPane::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  placeEmptyText();
}

std::vector<Text> ListPane::selectedPaths() const {
  std::vector<Text> paths;
  for (const std::size_t row : list_->selectedRowNumbers()) {
    Text path = rows_.path(row);
    if (!path.empty()) paths.push_back(std::move(path));
  }
  return paths;
}

/// Plain text, and RTF for programs that prefer it.
void ListPane::copySelection() {
  Text plain;
  Text rich = u"{\\rtf1 ";
  const TextView between = view_ == ListId::Log ? u" " : u"\t";
  for (const std::size_t row : list_->selectedRowNumbers()) {
    Text line;
    QHeaderView* const header = list_->horizontalHeader();
    for (int place = 0; place < header->count(); ++place) {
      const Column* const column = model_->column(header->logicalIndex(place));
      if (column == nullptr || !list_->isColumnVisible(column->id)) continue;
      if (!line.empty()) line += between;
      line += rows_.shown(row, *column);
    }
    plain.append(line).append(u"\r\n");
    rich.append(GetRtfUnicodeEscapedString2(line, false)).append(u"\\par ");
  }
  if (plain.empty()) return;
  auto* const copied = new QMimeData;
  copied->setText(toQString(plain));
  copied->setData(QStringLiteral("text/rtf"), toQString(rich.append(u"}")).toLatin1());
  QGuiApplication::clipboard()->setMimeData(copied);
}

void ListPane::copyPaths() {
  QStringList paths;
  for (const Text& path : selectedPaths())
    paths.append(toQString(path));
  if (!paths.isEmpty()) QGuiApplication::clipboard()->setText(paths.join(u'\n'));
}

void ListPane::selectRow(RowSource::Id id) {
  const std::size_t row = rows_.rowOf(id);
  if (row != RowSource::kNoRow) list_->goTo(row);
}

bool ListPane::execute(int id) {
  switch (id) {
    case 301:
    case 302:
    case 303:
    case 304:
    case 305:
    case 309:
    case 509:
      applySettings();
      return true;
    case 352:
      list_->fitColumns();
      return false;  // the window may want to follow
    case 355:
      showSearchBox();
      if (searchBox_->isVisible()) searchText_->setFocus();
      return true;
    case 357:
    case 358:
      search(id == 357);
      return true;
    case 467:
    case 468:
      list_->viewport()->update();
      return true;
    case 504:
      copySelection();
      return true;
    case 1004:
      list_->editName();
      return true;
    case 1005:
      copyPaths();
      return true;
    case 1006:
      list_->selectAll();
      return true;
    default:
      return false;
  }
}

QWidget* ListPane::makeSearchBox() {
  auto* const box = new QWidget(this);
  auto* const layout = new QHBoxLayout(box);
  layout->setContentsMargins(6, 3, 6, 4);
  layout->setSpacing(4);
  searchText_ = new QLineEdit(box);
  searchText_->setClearButtonEnabled(true);
  searchText_->setPlaceholderText(toQString(TL(9482, u"In dieser Liste suchen")));
  searchText_->setAccessibleName(toQString(TL(9483, u"Suchtext")));
  searchText_->installEventFilter(this);
  layout->addWidget(searchText_, 1);
  for (const int id : {357, 358}) {
    if (!commands_->has(id)) continue;
    auto* const button = new QToolButton(box);
    button->setDefaultAction(commands_->action(id));
    button->setAutoRaise(true);
    button->setAccessibleName(commands_->action(id)->text());
    layout->addWidget(button);
  }
  searchResult_ = new QLabel(box);
  layout->addWidget(searchResult_);
  connect(searchText_, &QLineEdit::textChanged, this, [this] { searchResult_->clear(); });
  return box;
}

/// Return and the arrows search, Escape closes the box.
bool ListPane::eventFilter(QObject* object, QEvent* event) {
  if (object == list_->viewport() && event->type() == QEvent::Resize) placeEmptyText();
  if (object != searchText_ || event->type() != QEvent::KeyPress)
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
      if (QAction* const toggle = commands_->action(355); toggle->isChecked()) toggle->trigger();
      list_->setFocus();
      return true;
    default:
      return false;
  }
}

void ListPane::showSearchBox() {
  const ListSettings settings = listSettings(options_, view_);
  searchBox_->setVisible(settings.searchVisible != nullptr && *settings.searchVisible == 1);
}

/// From the current row on, and round the end.
void ListPane::search(bool backward) {
  const QString text = searchText_->text();
  if (text.isEmpty() || rows_.count() == 0) return;
  const std::size_t current = list_->currentRow();
  const std::size_t from = current == RowSource::kNoRow ? rows_.count() - 1 : current;
  const std::optional<RowSource::Id> found = rows_.find(text, from, backward);
  if (!found) {
    searchResult_->setText(toQString(TL(9547, u"Nichts gefunden")));
    return;
  }
  if (rows_.rowOf(*found) == RowSource::kNoRow) {
    model_->rearrange([this] { static_cast<FolderRows&>(rows_).shownFolders().rebuild(); });
  }
  selectRow(*found);
  const std::size_t row = rows_.rowOf(*found);
  const bool wrapped = backward ? row >= from : row <= from;
  searchResult_->setText(wrapped ? toQString(TL(9548, u"Von vorn gesucht")) : QString());
}

}  // namespace ombrelian::ui
