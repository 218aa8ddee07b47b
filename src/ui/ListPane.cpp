#include "ui/ListPane.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMimeData>
#include <QVBoxLayout>

#include "format/RtfText.h"
#include "support/Translate.h"
#include "ui/Messages.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

constexpr int kFirstColumnCommand = 700;

}  // namespace

ListPane::ListPane(ListId list, RowSource& rows, Options& options, QWidget* parent)
    : QWidget(parent),
      id_(list),
      rows_(rows),
      model_(new ListModel(rows, this)),
      list_(new ListView(*model_, options, list, this)),
      commands_(new CommandSet(barOf(list), list, options, this)),
      search_(new SearchBox(*list_, *commands_, this)),
      emptyText_(new QLabel(list_->viewport())),
      emptyButton_(new QPushButton(list_->viewport())) {
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(search_);
  layout->addWidget(list_, 1);
  setFocusProxy(list_);
  emptyText_->setAlignment(Qt::AlignCenter);
  emptyText_->setWordWrap(true);
  emptyText_->setForegroundRole(QPalette::PlaceholderText);
  emptyText_->setAttribute(Qt::WA_TransparentForMouseEvents);
  connect(emptyButton_, &QPushButton::clicked, this, &ListPane::emptyButtonPressed);
  list_->viewport()->installEventFilter(this);
  addRowCommands();
  connect(commands_, &CommandSet::triggered, this,
          [this](CommandId id) { Q_EMIT triggered(id_, id); });
  connect(list_, &QWidget::customContextMenuRequested, this, &ListPane::showContextMenu);
  connect(list_, &ListView::columnMenuWanted, this, [this](const QPoint& at) {
    QMenu menu(this);
    fillColumnMenu(menu);
    menu.exec(at);
  });
  connect(list_, &ListView::selectedRowsChanged, this, [this] {
    commands_->update();
    Q_EMIT statusChanged(id_);
  });
  commands_->setGiven([this](CommandNeed need) { return isGiven(need); });
  connectModel();
}

bool ListPane::isGiven(CommandNeed need) const {
  if (need == CommandNeed::Nothing) return true;
  if (need == CommandNeed::Rows) return model_->rowCount() > 0;
  const QItemSelection selection = list_->selectionModel()->selection();
  if (selection.isEmpty()) return false;
  const auto row = std::size_t(selection.constFirst().top());
  if (need == CommandNeed::Path) return !rows_.path(row).empty();
  return need == CommandNeed::Selection || rows_.isNetworkPath(row);
}

/// Adds the row commands that are on no bar, so that their keys work.
void ListPane::addRowCommands() {
  const auto add = [this](CommandId id) {
    if (id != CommandId::None && !commands_->has(id)) commands_->addAction(id);
  };
  for (const CommandId id : {CommandId::Copy, CommandId::CopyPath, CommandId::SelectAll})
    add(id);
  for (const CommandId id : rowCommands(id_))
    add(id);
  commands_->applyLook();
  commands_->update();
}

void ListPane::connectModel() {
  connect(model_, &ListModel::nameTaken, this, [this](const QString& name, bool* answer) {
    *answer = askQuestion(this,
                          toQString(TL(9545, u"'%1' gibt es dort schon. Soll es ersetzt werden?",
                                       {toTextView(name)})),
                          QMessageBox::No);
    list_->setFocus();
  });
  connect(model_, &ListModel::renameFailed, this, [this](const QString& error) {
    showMessage(this, UserInterface::Severity::Warning, error);
    list_->setFocus();  // otherwise another list gets the focus, and the next key acts on it
  });
}

void ListPane::addToolBar(const CommandSet::PlaceWidget& place) {
  // The search box has the buttons for the next and the previous match.
  toolBar_ = commands_->makeToolBar(place);
  for (const CommandId id : {CommandId::SearchBack, CommandId::SearchForward}) {
    if (commands_->has(id)) toolBar_->removeAction(commands_->action(id));
  }
  static_cast<QVBoxLayout*>(layout())->insertWidget(0, toolBar_);
  if (commands_->has(CommandId::ColumnMenu)) {
    QMenu* const menu = commands_->menu(CommandId::ColumnMenu);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] { fillColumnMenu(*menu); });
  }
}

void ListPane::setReadOnly() {
  model_->setReadOnly();
  commands_->setReadOnly();
}

/// Adds an entry for each column before the other commands of the menu.
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
    action->setData(kFirstColumnCommand + (isTopList(id_) ? 100 : 0) + section);
    action->setCheckable(true);
    action->setChecked(list_->isColumnVisible(section));
    action->setEnabled(section != 1);
    connect(action, &QAction::toggled, list_,
            [this, section](bool shown) { list_->setColumnVisible(section, shown); });
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
  // A mouse press made the row under the pointer current; a key does not change the current row.
  for (const CommandId id : rowCommands(id_)) {
    if (id == CommandId::None) {
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
  Q_EMIT statusChanged(id_);
}

void ListPane::rowsReplaced() {
  const Column* const sorted = rows_.sortColumn();
  list_->horizontalHeader()->setSortIndicator(
      sorted == nullptr ? -1 : sorted->id,
      rows_.sortedDescending() ? Qt::DescendingOrder : Qt::AscendingOrder);
  list_->fitColumns();
  showEmptyText();
  commands_->update();
  Q_EMIT statusChanged(id_);
}

void ListPane::setFrozen(bool frozen) {
  model_->setFrozen(frozen);
  list_->setEnabled(!frozen);
  showEmptyText();
  if (!frozen) rowsReplaced();
}

void ListPane::setEmptyText(const QString& text, const QString& button) {
  emptyText_->setText(text);
  emptyButton_->setText(button);
  list_->setAccessibleDescription(text);
  showEmptyText();
}

void ListPane::showEmptyText() {
  const QRect area = list_->viewport()->rect();
  const bool isShown = model_->rowCount() == 0 && list_->isEnabled();
  emptyText_->setGeometry(area.adjusted(24, 16, -24, -16));
  emptyText_->setVisible(isShown);
  emptyButton_->setVisible(isShown && !emptyButton_->text().isEmpty());
  emptyButton_->resize(emptyButton_->sizeHint());
  emptyButton_->move(area.center().x() - emptyButton_->width() / 2,
                     area.center().y() + emptyText_->fontMetrics().height() * 2);
}

void ListPane::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  showEmptyText();
}

std::vector<Text> ListPane::selectedPaths() const {
  std::vector<Text> paths;
  for (const std::size_t row : list_->selectedRowNumbers()) {
    Text path = rows_.path(row);
    if (!path.empty()) paths.push_back(std::move(path));
  }
  return paths;
}

/// Copies plain text, and RTF for programs that prefer it.
void ListPane::copySelection() {
  Text plain;
  Text rich = u"{\\rtf1 ";
  const TextView between = id_ == ListId::Log ? u" " : u"\t";
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

bool ListPane::eventFilter(QObject* object, QEvent* event) {
  if (object == list_->viewport() && event->type() == QEvent::Resize) showEmptyText();
  return QWidget::eventFilter(object, event);
}

}  // namespace ombrelian::ui
