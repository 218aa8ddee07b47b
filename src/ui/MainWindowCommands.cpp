// What the commands of the window do.

#include <QAbstractButton>
#include <QApplication>
#include <QFontDialog>
#include <QFontInfo>
#include <QMessageBox>

#include "core/frame/StartUp.h"
#include "fs/Links.h"
#include "fs/PathText.h"
#include "support/Translate.h"
#include "ui/Desktop.h"
#include "ui/FolderRows.h"
#include "ui/MainWindow.h"
#include "ui/QtText.h"
#include "ui/Themes.h"

namespace ombrelian::ui {
namespace {

constexpr ViewId kHeaderViews[] = {ViewId::Drives,     ViewId::Files,     ViewId::LargestFiles,
                                   ViewId::Hardlinks,  ViewId::Junctions, ViewId::Owners,
                                   ViewId::Extensions, ViewId::Log};
constexpr double kLeastFontSize = 6;
constexpr double kMostFontSize = 32;

}  // namespace

bool MainWindow::execute(std::optional<ViewId> view, int id) {
  CommandSet* set = commands_;
  if (view) set = &pane(*view).commands();
  if (!view && header_->has(id)) set = header_;
  if (!set->has(id)) {
    const Command* const command = findCommand(id);
    if (command == nullptr || !view) return false;
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
    ViewId view = kHeaderViews[id - 400];
    if (isTopList(view))
      view = ViewId(int(ViewId::LargestFiles) + selectedTopList(session_.options));
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

bool MainWindow::executeList(ViewId view, int id) {
  if (view == ViewId::Folders && executeFolders(id)) return true;
  if (view == ViewId::Drives && executeDrives(id)) return true;
  switch (id) {
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
      Change_ButtonHeaderActive(ViewId(int(ViewId::LargestFiles) + id - 420));
      return true;
    case 459:
      showFilterHelp();
      return true;
    case 508:
      pane(view).model().replace([this] {
        session_.log.clearRows();
        logRows_->clear();
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
    pane(ViewId::Folders).model().rearrange([&] {
      folderRows_->shownFolders().markLevels(std::uint32_t(id - 1009));
      folderRows_->shownFolders().rebuild();
    });
    pane(ViewId::Folders).rowsReplaced();
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
      pane(ViewId::Folders).applySettings();
      return true;
    case 1007:
    case 1008:
      expandSelected(id == 1007);
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
      ListPane& drives = pane(ViewId::Drives);
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

void MainWindow::Change_ButtonHeaderActive(ViewId view) {
  showView(session_.options, view);
  isRightVisible_ = true;
  Change_Info_Visibility();
  if (view == ViewId::Drives && drives_.readAt() == 0) readDrives();
  if (view == ViewId::Files) showFiles(false);
  pane(view).list().fitColumns();
  pane(view).list().setFocus();
}

void MainWindow::Change_Info_Visibility() {
  const ViewId view = rightView();
  if (isRightVisible_) {
    showView(session_.options, view);
  } else {
    viewFlag(session_.options, view) = 0;
  }
  pane(ViewId::Folders).setVisible(isLeftVisible_);
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
    const ViewSettings settings = viewSettings(session_.options, pane->viewId());
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
  const QFont font = QFontDialog::getFont(&isChosen, pane(ViewId::Folders).list().font(), this);
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

void MainWindow::selectedFolderChanged() {
  if (isScanning()) return;
  readLateOwners();
  showFiles(false);
}

/// A walk leaves owners out unless it is told to read them; who shows their column gets that of
/// the row that is chosen.
void MainWindow::readLateOwners() {
  ListPane& folders = pane(ViewId::Folders);
  const std::size_t row = folders.list().currentRow();
  if (row >= folderRows_->count() || !folders.list().isColumnVisible(FolderColumnId::Owner)) return;
  FolderNode& node = session_.tree[NodeIndex(folderRows_->id(row))];
  if (!node.has(FolderNode::IsFolder) || node.has(FolderNode::HasOwner)) return;
  const Text owner = GetFileOwnerW(folderRows_->path(row));
  node.owner = session_.tree.ownerNumber(owner.empty() ? TL(3822, u"-Unbekannt-") : owner);
  node.set(FolderNode::HasOwner);
}

void MainWindow::showFiles(bool force) {
  ListPane& folders = pane(ViewId::Folders);
  const std::size_t row = folders.list().currentRow();
  if (files_.isReading() || row >= folderRows_->count()) return;
  Text folder = folderRows_->path(row);
  if (session_.options.FilelistVisible != 1) return;
  if (!force && files_.folder() == xGetPathWithBackslash(folder)) return;
  ListPane& pane = this->pane(ViewId::Files);
  stopsReading_ = false;
  statusRight_->setText(toQString(TL(3526, u"Dateiliste wird geladen... (Abbruch: ESC-Taste)")));
  pane.model().setFrozen(true);
  files_.List_Files_ScanFolder(folder, force, [this] {
    QApplication::processEvents();
    return !stopsReading_;
  });
  pane.setFrozen(false);
  filePath_->setText(toQString(xRemoveBackslash(files_.folder())));
  filePath_->setToolTip(filePath_->text());
  const Failure& failure = files_.failure();
  pane.setEmptyText(
      toQString(failure ? failure->text : TL(9556, u"In diesem Ordner liegen keine Dateien.")));
}

void MainWindow::clearFolders() {
  ListPane& folders = pane(ViewId::Folders);
  folders.model().replace([this] {
    session_.tree.clear();
    session_.folderReport.forgetNodes();
    folderRows_->treeChanged();
  });
  folders.rowsReplaced();
  ListPane& files = pane(ViewId::Files);
  files.model().replace([this] { files_.clear(); });
  files.rowsReplaced();
  filePath_->clear();
  StatusbarSetTextRightAUTO();
}

void MainWindow::expandAll(bool expand) {
  ListPane& folders = pane(ViewId::Folders);
  if (folderRows_->count() < 2 && !expand) return;
  folders.model().rearrange([&] {
    folderRows_->shownFolders().markSubtree(kNoNode, expand);
    folderRows_->shownFolders().rebuild();
  });
  folders.rowsReplaced();
  Report_Resize_Width();
}

void MainWindow::expandSelected(bool expand) {
  ListPane& folders = pane(ViewId::Folders);
  const std::size_t row = folders.list().currentRow();
  if (row >= folderRows_->count()) return;
  const NodeIndex node = NodeIndex(folderRows_->id(row));
  folders.model().rearrange([&] {
    folderRows_->shownFolders().markSubtree(node, expand);
    folderRows_->shownFolders().rebuild();
  });
  folders.rowsReplaced();
}

/// The folder pane gets the width of its columns, but leaves the other its least.
void MainWindow::Report_Resize_Width() {
  if (session_.options.ChangeFolderReportWidthAutomatically != 1 || !isRightVisible_ ||
      !isLeftVisible_ || folderRows_->count() == 0)
    return;
  const int all = splMain_->width();
  ListPane& folders = pane(ViewId::Folders);
  const int least = std::min(folders.barWidth() + 8, all / 2);
  const int most = std::max(least, all * 2 / 3);
  const int left = std::clamp(folders.list().fullWidth(), least, most);
  splMain_->setSizes({left, std::max(1, all - left - splMain_->handleWidth())});
}

Text MainWindow::statusOf(ViewId view) {
  std::vector<Grid::RowIndex> selected = pane(view).list().selectedRowNumbers();
  switch (view) {
    case ViewId::Drives:
      return drives_.List_Drives_ShowStat();
    case ViewId::Files:
      return files_.List_Files_ShowFileStat(selected);
    case ViewId::Hardlinks:
      return lists_.hardlinks().List_Hardlinks_ShowFileStat(selected);
    case ViewId::Log:
      return session_.log.List_Log_ShowStat();
    default:
      break;
  }
  const auto list = ListId(int(view) - int(ViewId::LargestFiles));
  Text status = lists_.status(list);
  if (isTopList(view) && !selected.empty()) {
    status = lists_.topLists().Toplist_ShowSelectedFilesize(list, selected).append(u" / ") + status;
  }
  return status;
}

void MainWindow::StatusbarSetTextRightAUTO() {
  if (statusRight_ == nullptr || isScanning() || files_.isReading()) return;
  std::int64_t roots = 0;
  for (NodeIndex root = session_.tree.firstRoot(); root != kNoNode;
       root = session_.tree[root].nextSibling)
    ++roots;
  statusLeft_->setText(toQString(TL(9041, u"%1 Quellordner", {ombrelian::toText(roots)})));
  statusRight_->setText(isRightVisible_ ? toQString(statusOf(rightView())) : QString());
}

void MainWindow::activateRow(ViewId view, std::size_t row) {
  if (view == ViewId::Folders) {
    const RowLook look = folderRows_->look(row);
    if (look.canExpand) Q_EMIT pane(view).list().expandWanted(row, !look.isExpanded);
    return;
  }
  if (view == ViewId::Drives) {
    scan({driveRows_->path(row)});
    return;
  }
  openPaths(view);
}

void MainWindow::openPaths(ViewId view) {
  constexpr std::size_t kManyFiles = 10;
  const std::vector<Text> paths = pane(view).selectedPaths();
  if (paths.size() > kManyFiles && !ask(TL(9557, u"Sollen wirklich %1 Dateien geöffnet werden?",
                                           {ombrelian::toText(std::int64_t(paths.size()))})))
    return;
  for (const Text& path : paths) {
    if (!openFile(path))
      message(
          TL(9558, u"'%1' konnte nicht geöffnet werden: Kein Programm nahm die Datei an.", {path}),
          Severity::Warning);
  }
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
