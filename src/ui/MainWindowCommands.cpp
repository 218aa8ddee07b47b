// What the commands of the window do.

#include <QAbstractButton>
#include <QApplication>
#include <QFontDialog>
#include <QFontInfo>
#include <QMessageBox>

#include "frame/StartUp.h"
#include "support/Translate.h"
#include "ui/Desktop.h"
#include "ui/FolderRows.h"
#include "ui/MainWindow.h"
#include "ui/QtText.h"
#include "ui/Themes.h"

namespace ombrelian::ui {
namespace {

constexpr ListId kHeaderViews[] = {ListId::Drives,     ListId::Files,     ListId::LargestFiles,
                                   ListId::Hardlinks,  ListId::Junctions, ListId::Owners,
                                   ListId::Extensions, ListId::Log};
constexpr double kLeastFontSize = 6;
constexpr double kMostFontSize = 32;

}  // namespace

bool MainWindow::execute(std::optional<ListId> view, int id) {
  CommandSet* set = commands_;
  if (view) set = &pane(*view).commands();
  if (!view && header_->has(id)) set = header_;
  if (!set->has(id)) {
    const Command* const command = findCommand(id);
    if (command == nullptr || !view || !hasCommand(*view, id)) return false;
    set->addAction(id);
    set->applyLook();
  }
  QAction* const action = set->action(id);
  if (!action->isEnabled()) return false;
  action->trigger();
  return true;
}

bool MainWindow::executeMain(int id) {
  if (id >= 400 && id <= 407) {
    ListId view = kHeaderViews[id - 400];
    if (isTopList(view)) view = topList(std::size_t(selectedTopList(session_.options)));
    Change_ButtonHeaderActive(view);
    return true;
  }
  if ((id >= 301 && id <= 305) || id == 309) {
    changeSizes(id);
    return true;
  }
  if (id >= 1030 && id <= 1039) {
    ChangeTheme();
    return true;
  }
  switch (id) {
    case 461:
      AddNewSearchPath(true, {});
      return true;
    case 462:
      Quelle_Entfernen();
      return true;
    case 463:
      if (isScanning()) {
        session_.context.ScanCancelState = kScanCancelRequested;
      } else {
        StartSearchViaToolbar();
      }
      return true;
    case 464:
      session_.context.ScanCancelState = kScanCancelRequested;
      return true;
    case 390:
    case 391:
    case 392:
      isLeftVisible_ = id != 392;
      isRightVisible_ = id != 391;
      Change_Info_Visibility();
      return true;
    case 368:
    case 369:
    case 374:
    case 375:
    case 376:
    case 377:
      applyLook();
      return true;
    case 370:
      chooseFont();
      return true;
    case 371:
      ChangeFontSize(1);
      return true;
    case 372:
      ChangeFontSize(-1);
      return true;
    case 380:
    case 381:
      ChangeLanguage(id);
      return true;
    case 387:
      showAbout();
      return true;
    case 388:
      close();
      return true;
    case 459:
      showFilterHelp();
      return true;
    default:
      return false;
  }
}

bool MainWindow::executeList(ListId view, int id) {
  if (view == ListId::Folders && executeFolders(id)) return true;
  if (view == ListId::Drives && executeDrives(id)) return true;
  switch (id) {
    case 320:
    case 321:
      deleteFiles(view, id == 320);
      return true;
    case 350:
      save(view);
      return true;
    case 359:
      pane(view).model().rearrange([this] { lists_.hardlinks().List_Hardlinks_ShowDups(); });
      pane(view).rowsReplaced();
      return true;
    case 360:
    case 451:
    case 452:
      showFiles(true);
      return true;
    case 393:
      Show_Log();
      return true;
    case 420:
    case 421:
    case 422:
    case 423:
    case 424:
    case 425:
      Change_ButtonHeaderActive(topList(std::size_t(id - 420)));
      return true;
    case 459:
      showFilterHelp();
      return true;
    case 508:
      pane(view).model().replace([this] {
        session_.log.clearRows();
        logRows_->takeUpNewRows();
      });
      pane(view).rowsReplaced();
      return true;
    case 1001:
      openPaths(view);
      return true;
    case 1002:
      revealInFileManager(pane(view).selectedPaths());
      return true;
    case 1003:
      showProperties(pane(view).selectedPaths());
      return true;
    default:
      return false;
  }
}

bool MainWindow::executeFolders(int id) {
  if (id >= 1010 && id <= 1014) {
    pane(ListId::Folders).model().rearrange([&] {
      folderRows_->shownFolders().markLevels(std::uint32_t(id - 1009));
      folderRows_->shownFolders().rebuild();
    });
    pane(ListId::Folders).rowsReplaced();
    return true;
  }
  switch (id) {
    case 352:
    case 395:
      Report_Resize_Width();
      return true;
    case 394:
      clearFolders();
      return true;
    case 396:
    case 397:
      expandAll(id == 396);
      return true;
    case 469:
    case 470:
      pane(ListId::Folders).applySettings();
      return true;
    case 506:
    case 507:
      DeleteFolders(id == 507);
      return true;
    case 1007:
    case 1008:
      expandSelected(id == 1007);
      return true;
    case 1015:
      Report_Rescan();
      return true;
    case 1016:
      Report_RemoveFolders();
      return true;
    default:
      return false;
  }
}

bool MainWindow::executeDrives(int id) {
  switch (id) {
    case 360:
      readDrives();
      return true;
    case 361:
    case 362:
      Drives_ScanDrives(id == 362);
      return true;
    case 363:
      addNetworkPath();
      return true;
    case 1025: {
      ListPane& drives = pane(ListId::Drives);
      const std::size_t row = drives.list().currentRow();
      if (row == RowSource::kNoRow) return true;
      drives.setFrozen(true);
      drives_.Drives_RemoveDrive(row, settings_);
      drives.setFrozen(false);
      return true;
    }
    default:
      return false;
  }
}

void MainWindow::Change_ButtonHeaderActive(ListId view) {
  showList(session_.options, view);
  isRightVisible_ = true;
  Change_Info_Visibility();
  readDrivesOnce();
  if (view == ListId::Files) showFiles(false);
  pane(view).list().fitColumns();
  pane(view).list().setFocus();
}

void MainWindow::Change_Info_Visibility() {
  const ListId view = rightView();
  showList(session_.options, view, isRightVisible_);
  pane(ListId::Folders).setVisible(isLeftVisible_);
  right_->setVisible(isRightVisible_);
  stack_->setCurrentWidget(&pane(view));
  for (std::size_t i = 0; i < std::size(kHeaderViews); ++i) {
    const bool isShown = isTopList(kHeaderViews[i]) ? isTopList(view) : view == kHeaderViews[i];
    header_->action(400 + int(i))->setChecked(isShown && isRightVisible_);
  }
  for (const int id : {390, 391, 392}) {
    const bool isChosen = id == (isLeftVisible_ && isRightVisible_ ? 390
                                 : isLeftVisible_                  ? 391
                                                                   : 392);
    commands_->action(id)->setChecked(isChosen);
  }
  if (isTopList(view)) {
    CommandSet& commands = pane(view).commands();
    for (std::size_t top = 0; top < std::size_t(kTopLists); ++top)
      commands.action(420 + int(top))->setChecked(top == topIndex(view));
    // The menus of the lists' settings are called as the lists are.
    const Command& list = *findCommand(1041 + int(topIndex(view)));
    commands.action(398)->setText(toQString(commandCaption(list, session_.options)));
  }
  fitHeaderBar();
  StatusbarSetTextRightAUTO();
}

/// One choice for all lists; it is kept by each of them alone.
void MainWindow::changeSizes(int id) {
  const bool isOn = commands_->action(id)->isChecked();
  for (ListPane* const pane : panes_) {
    const ListSettings settings = listSettings(session_.options, pane->viewId());
    if (settings.unit == nullptr) continue;
    if (id <= 304) *settings.unit = std::uint8_t(id - 301);
    if (id == 305) *settings.unitText = isOn ? 1 : 0;
    if (id == 309) *settings.decimals = isOn ? 1 : 0;
    pane->applySettings();
  }
  for (int unit = 301; unit <= 304 && id <= 304; ++unit)
    commands_->action(unit)->setChecked(unit == id);
}

void MainWindow::ChangeTheme() {
  applyTheme(makeTheme(session_.options.ToolbarTheme, scheme_.isDark()));
  commands_->update();
  for (ListPane* const pane : panes_)
    pane->list().viewport()->update();
}

/// A font that this machine lacks gives way to the desktop's own, in the size that was chosen.
void MainWindow::applyFont() {
  QFont font = QApplication::font();
  const QFont wanted(toQString(session_.options.FontName));
  if (QFontInfo(wanted).family().compare(wanted.family(), Qt::CaseInsensitive) == 0)
    font.setFamily(wanted.family());
  font.setPointSizeF(std::clamp(session_.options.FontSize, kLeastFontSize, kMostFontSize));
  for (ListPane* const pane : panes_) {
    pane->list().setFont(font);
    pane->list().applySettings();
  }
}

void MainWindow::applyLook() {
  ChangeTheme();
  applyFont();
  commands_->applyLook();
  header_->applyLook();
  fitHeaderBar();
  for (ListPane* const pane : panes_)
    pane->commands().applyLook();
}

void MainWindow::ChangeFontSize(int step) {
  session_.options.FontSize =
      std::clamp(session_.options.FontSize + step, kLeastFontSize, kMostFontSize);
  applyFont();
  for (ListPane* const pane : panes_)
    pane->list().fitColumns();
}

void MainWindow::chooseFont() {
  bool isChosen = false;
  const QFont font = QFontDialog::getFont(&isChosen, pane(ListId::Folders).list().font(), this);
  if (!isChosen) return;
  session_.options.FontName = toText(font.family());
  session_.options.FontSize = font.pointSizeF() > 0 ? font.pointSizeF() : 9;
  ChangeFontSize(0);
}

void MainWindow::ChangeLanguage(int id) {
  const int language = id == 380 ? 7 : 9;
  StoreSettings(u"Allgemein", u"Lang", ombrelian::toText(language), settings_);
  if (!ask(TL(9280, u"Soll die Anwendung jetzt neu gestartet werden?"))) return;
  wantsRestart_ = true;
  close();
}

void MainWindow::Show_Log() {
  const Text file = session_.log.Show_Log();
  if (!file.empty()) openFile(file);
}

void MainWindow::showAbout() {
  QMessageBox::about(this, QStringLiteral("Ombrelian"),
                     toQString(u"<h3>Ombrelian " + versionText() + u"</h3><p>" +
                               TL(9559, u"Zeigt, wo der Speicherplatz geblieben ist.") + u"</p>"));
}

void MainWindow::showFilterHelp() {
  message(TL(9090, u"Hinweis: Mehrere Filter müssen mit einem Komma getrennt werden.")
              .append(u"\n\n")
              .append(TL(9564,
                         u"* steht für beliebig viele Zeichen, ? für eines, # für eine "
                         u"Ziffer. Groß- und Kleinschreibung zählen nicht. Beispiele: "
                         u"*.jpg, *.tmp, *cache*")),
          Severity::Information);
}

}  // namespace ombrelian::ui
