#include "ui/PaneArea.h"

#include <QApplication>
#include <QEvent>
#include <QToolButton>
#include <QVBoxLayout>

#include "support/Translate.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

constexpr TextView kForm = u"frmMain";
constexpr TextView kFolderPaneWidth = u"FolderPaneWidth";  // width of the left side in pixels

/// The button that shows a list; the six top lists share one.
constexpr std::pair<CommandId, ListId> kHeaderButtons[] = {
    {CommandId::ShowDrives, ListId::Drives},         {CommandId::ShowFiles, ListId::Files},
    {CommandId::ShowTopLists, ListId::LargestFiles}, {CommandId::ShowHardlinks, ListId::Hardlinks},
    {CommandId::ShowJunctions, ListId::Junctions},   {CommandId::ShowOwners, ListId::Owners},
    {CommandId::ShowExtensions, ListId::Extensions}, {CommandId::ShowLog, ListId::Log}};

/// The choice of a top list, and the menu of its settings, whose caption names it.
constexpr std::pair<CommandId, CommandId> kTopCommands[] = {
    {CommandId::ShowLargestFiles, CommandId::LargestFilesMenu},
    {CommandId::ShowSmallestFiles, CommandId::SmallestFilesMenu},
    {CommandId::ShowNewestFiles, CommandId::NewestFilesMenu},
    {CommandId::ShowOldestFiles, CommandId::OldestFilesMenu},
    {CommandId::ShowLargestFolders, CommandId::LargestFoldersMenu},
    {CommandId::ShowSmallestFolders, CommandId::SmallestFoldersMenu}};

}  // namespace

PaneArea::PaneArea(Panes& panes, CommandSet& header, Session& session, QWidget* parent)
    : QSplitter(Qt::Horizontal, parent),
      panes_(panes),
      header_(header),
      session_(session),
      right_(new QWidget(this)),
      stack_(new QStackedWidget(right_)) {
  addWidget(&panes_.pane(ListId::Folders));
  makeRightSide();
  addWidget(right_);
  setChildrenCollapsible(false);
  setStretchFactor(0, 1);
  setStretchFactor(1, 1);
  connect(&panes_.pane(ListId::Folders).list(), &ListView::expandWanted, this,
          &PaneArea::Report_Resize_Width);
  connect(this, &QSplitter::splitterMoved, this, &PaneArea::keepDivider);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    for (const ListPane* const pane : panes_.all()) {
      if (now != nullptr && pane->isAncestorOf(now)) lastFocused_ = pane->listId();
    }
  });
  Change_Info_Visibility();
}

void PaneArea::makeRightSide() {
  auto* const layout = new QVBoxLayout(right_);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  headerBar_ = header_.makeToolBar({});
  layout->addWidget(headerBar_);
  right_->installEventFilter(this);
  for (const ListId list : kAllLists) {
    if (list != ListId::Folders) stack_->addWidget(&panes_.pane(list));
  }
  layout->addWidget(stack_, 1);
}

bool PaneArea::eventFilter(QObject* object, QEvent* event) {
  if (object == right_ && event->type() == QEvent::Resize) fitHeaderBar();
  return QSplitter::eventFilter(object, event);
}

/// Gives all buttons a picture and a word if they fit, else only the word, else only the picture.
/// In the last case the pressed button keeps its word.
void PaneArea::fitHeaderBar() {
  QList<QToolButton*> buttons;
  for (QToolButton* const button : headerBar_->findChildren<QToolButton*>()) {
    if (button->defaultAction() != nullptr) buttons.append(button);
  }
  const auto fits = [&](Qt::ToolButtonStyle style) {
    int width = 8;
    for (QToolButton* const button : buttons) {
      button->setToolButtonStyle(style);
      width += button->sizeHint().width() + 2;
    }
    return width < right_->width();
  };
  const bool hasWords = session_.options.SymbolText == 1;
  if (hasWords && (fits(Qt::ToolButtonTextBesideIcon) || fits(Qt::ToolButtonTextOnly))) return;
  for (QToolButton* const button : buttons) {
    const bool hasWord = hasWords && button->defaultAction()->isChecked();
    button->setToolButtonStyle(hasWord ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
  }
}

ListId PaneArea::focusedList() const {
  if (lastFocused_ == ListId::Folders && isLeftVisible()) return lastFocused_;
  return isRightVisible() ? rightList() : ListId::Folders;
}

void PaneArea::restoreFocus() {
  const QWidget* const focus = QApplication::focusWidget();
  if (focus == nullptr || qobject_cast<const QToolButton*>(focus) != nullptr)
    panes_.pane(focusedList()).list().setFocus();
}

void PaneArea::Change_ButtonHeaderActive(ListId list) {
  showList(session_.options, list);
  if (!isRightVisible()) session_.options.ShownSides = kBothSides;
  Change_Info_Visibility();
  panes_.pane(list).list().fitColumns();
  panes_.pane(list).list().setFocus();
}

void PaneArea::showResults() {
  if (isRightVisible() && rightList() == ListId::Drives) {
    showList(session_.options, lastList_);
    Change_Info_Visibility();
  }
  ListView& list = panes_.pane(rightList()).list();
  if (list.model()->rowCount() > 0 && list.currentRow() == RowSource::kNoRow) list.goTo(0);
}

/// The divider stays where a person put it, so it no longer follows the width of the tree.
void PaneArea::keepDivider() {
  session_.options.ChangeFolderReportWidthAutomatically = 0;
  panes_.pane(ListId::Folders).commands().update();
}

void PaneArea::showTopLists() {
  Change_ButtonHeaderActive(topList(std::size_t(selectedTopList(session_.options))));
}

void PaneArea::showSides(bool left, bool right) {
  session_.options.ShownSides = left && right ? kBothSides : left ? kLeftSide : kRightSide;
  Change_Info_Visibility();
}

void PaneArea::Change_Info_Visibility() {
  const ListId list = rightList();
  if (list != ListId::Drives) lastList_ = list;
  panes_.pane(ListId::Folders).setVisible(isLeftVisible());
  right_->setVisible(isRightVisible());
  stack_->setCurrentWidget(&panes_.pane(list));
  for (const auto& [command, shown] : kHeaderButtons) {
    const bool isShown = isTopList(shown) ? isTopList(list) : list == shown;
    header_.action(command)->setChecked(isShown && isRightVisible());
  }
  if (isTopList(list)) {
    CommandSet& commands = panes_.pane(list).commands();
    for (std::size_t top = 0; top < std::size(kTopCommands); ++top)
      commands.action(kTopCommands[top].first)->setChecked(top == topIndex(list));
    const Command& menu = commandOf(kTopCommands[topIndex(list)].second);
    commands.action(CommandId::TopListMenu)
        ->setText(toQString(commandCaption(menu, session_.options)));
  }
  fitHeaderBar();
  Q_EMIT shownChanged(list);
}

void PaneArea::Report_Resize_Width() {
  ListPane& folders = panes_.pane(ListId::Folders);
  if (session_.options.ChangeFolderReportWidthAutomatically != 1 || !isRightVisible() ||
      !isLeftVisible() || folders.rows().count() == 0)
    return;
  const int all = width();
  const int least = std::min(folders.barWidth() + 8, all / 2);
  const int most = std::max(least, all * 2 / 3);
  const int left = std::clamp(folders.list().columnFit().fullWidth(), least, most);
  setSizes({left, std::max(1, all - left - handleWidth())});
}

void PaneArea::fitColumns(ListId list) {
  panes_.pane(list).list().columnFit().fitAnew();
  if (list == ListId::Folders) Report_Resize_Width();
}

void PaneArea::loadWidths(const IniStore& settings) {
  std::int64_t left = 0;
  const int all = parentWidget()->width();
  if (!parseNumber(settings.INI_ReadString(kForm, kFolderPaneWidth, u""), left) || left <= 0)
    left = all * 11 / 20;
  setSizes({int(left), std::max(1, all - int(left))});
}

void PaneArea::storeWidths(IniStore& settings) const {
  if (!isLeftVisible() || !isRightVisible()) return;
  settings.INI_WriteString(kForm, kFolderPaneWidth, ombrelian::toText(sizes().constFirst()));
}

}  // namespace ombrelian::ui
