#include "ui/MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

#include "frame/StartUp.h"
#include "fs/PathText.h"
#include "fs/z_Filesystem.h"
#include "settings/Optionen.h"
#include "support/Translate.h"
#include "ui/DeleteCommands.h"
#include "ui/FolderCommands.h"
#include "ui/FormPlace.h"
#include "ui/Help.h"
#include "ui/Icons.h"
#include "ui/LaterStarts.h"
#include "ui/Looks.h"
#include "ui/OpenCommands.h"
#include "ui/OptionsCommand.h"
#include "ui/QtText.h"
#include "ui/Saving.h"
#include "ui/StatusLine.h"
#include "ui/WindowKeys.h"
#include "ui/WindowMenus.h"
#include "ui/WindowTitle.h"

namespace ombrelian::ui {
namespace {

constexpr TextView kForm = u"frmMain";
constexpr QSize kFirstSize(1240, 760);

/// Keeps the window alive while a single question waits for a file system. User input has to wait,
/// because it could begin something else in the middle of a command.
bool keepsWaiting(std::chrono::milliseconds waited) {
  QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  return waited < platform::Patience::kForOneQuestion;
}

}  // namespace

struct MainWindow::Owned {
  Owned(MainWindow& w, WindowState& state, QWidget* middle)
      : dialogs(w, *w.progress_),
        panes(state, middle),
        area(new PaneArea(panes, *w.header_, state.session, middle)),
        sources(new SourceBox(state, &w)),
        scans(state, dialogs, panes, *sources),
        files(state, panes),
        folders(state, panes, *area, files),
        drives(state, panes, scans, dialogs, w),
        saving(state, panes, w),
        deleting(state, dialogs, panes, files, drives, scans),
        opening(state, dialogs, panes, scans),
        looks(state, dialogs, panes, *area, *w.main_, *w.header_, w),
        options(state, dialogs, looks, w),
        help(dialogs, w),
        laterStarts(state, scans, w),
        keys(panes, *area, *sources),
        status(state, panes, *area, *w.statusBar()) {}

  WindowDialogs dialogs;
  Panes panes;
  PaneArea* area;      // child of the window
  SourceBox* sources;  // child of the tool bar
  ScanControl scans;
  FilesOfFolder files;
  FolderCommands folders;
  DriveCommands drives;
  Saving saving;
  DeleteCommands deleting;
  OpenCommands opening;
  Looks looks;
  OptionsCommand options;
  Help help;
  LaterStarts laterStarts;
  WindowKeys keys;
  StatusLine status;
};

MainWindow::MainWindow(Session& session, IniStore& settings)
    : patience_(keepsWaiting),
      state_(session, settings),
      main_(new CommandSet(Bar::Main, std::nullopt, session.options, this)),
      header_(new CommandSet(Bar::Header, std::nullopt, session.options, this)) {
  setWindowTitle(ui::windowTitle(session));
  setWindowIcon(icon("app"));
  setAcceptDrops(true);
  auto* const middle = new QWidget(this);
  progress_ = new ProgressStrip(*statusBar());
  owned_ = std::make_unique<Owned>(*this, state_, middle);
  Owned& o = *owned_;
  parts_ = std::make_unique<Parts>(Parts{*this, o.panes, *o.area, *o.sources, o.scans, o.files,
                                         o.folders, o.drives, o.saving, o.deleting, o.opening,
                                         o.looks, o.options, o.help, o.laterStarts});
  auto* const layout = new QVBoxLayout(middle);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(o.area, 1);
  setCentralWidget(middle);
  makeBars();
  connectParts();
  connectLists();
  if (session.readOnly) showReadOnly();
  o.sources->load();
  resize(kFirstSize.boundedTo(screen()->availableGeometry().size()));
  placeForm(*this, kForm, false, settings);
  o.looks.applyLook();
  setBusy(false);
  showSides();
  o.status.StatusbarSetTextRightAUTO();
}

MainWindow::~MainWindow() {
  owned_->panes.disconnect(this);
  delete owned_->area;  // the views are deleted before the rows that they show
}

ListPane& MainWindow::pane(ListId list) { return owned_->panes.pane(list); }

void MainWindow::makeBars() {
  SourceBox* const sources = owned_->sources;
  QToolBar* const bar = main_->makeToolBar([sources](CommandId id, QToolBar*) -> QWidget* {
    return id == CommandId::Source ? sources : nullptr;
  });
  bar->setWindowTitle(QStringLiteral("Ombrelian"));
  addToolBar(bar);
  auto* const edit = new QAction(this);
  edit->setShortcut(QKeySequence(QString::fromLatin1(commandOf(CommandId::Source).shortcut)));
  connect(edit, &QAction::triggered, sources, &SourceBox::edit);
  addAction(edit);
  makeMenus(*menuBar(), *main_, *header_, owned_->panes, *owned_->area);
}

void MainWindow::connectParts() {
  Owned& o = *owned_;
  const auto show = [&o](const QString& text) { o.status.showProgress(text); };
  connect(&o.dialogs, &WindowDialogs::busyChanged, this, &MainWindow::setBusy);
  connect(o.sources, &SourceBox::startWanted, this, [&o] { o.scans.startOrStop(); });
  connect(&o.files, &FilesOfFolder::progress, this, show);
  connect(&o.files, &FilesOfFolder::readingLong, this, &MainWindow::setCommandsBusy);
  connect(&o.drives, &DriveCommands::progress, this, show);
  connect(&o.saving, &Saving::note, this, [&o](const QString& text) { o.status.showNote(text); });
  const auto restart = [this] {
    wantsRestart_ = true;
    close();
  };
  connect(&o.looks, &Looks::restartWanted, this, restart);
  connect(&o.options, &OptionsCommand::restartWanted, this, restart);
  connect(&o.laterStarts, &LaterStarts::waitingChanged, this,
          [this, &o] { setWindowTitle(ui::windowTitle(state_.session, o.laterStarts.waiting())); });
  connect(&o.scans, &ScanControl::starting, this, [&o] {
    if (!o.area->isLeftVisible()) o.area->showSides(true, true);
  });
  connect(&o.scans, &ScanControl::finished, this, [this, &o](bool single) {
    setWindowTitle(ui::windowTitle(state_.session));
    main_->update();
    if (single) o.files.showFiles(true);
    if (state_.session.tree.firstRoot() != kNoNode) o.area->showResults();
    o.drives.readDrivesOnce();
    o.panes.pane(o.area->rightList()).list().fitColumns();
    o.area->Report_Resize_Width();
    o.status.StatusbarSetTextRightAUTO();
  });
}

void MainWindow::connectLists() {
  Owned& o = *owned_;
  for (CommandSet* const set : {main_, header_}) {
    connect(set, &CommandSet::triggered, this, [this, &o](CommandId id) {
      doCommand(id, std::nullopt, *parts_);
      o.panes.showEmptyNotes();
      o.status.StatusbarSetTextRightAUTO();  // the status line shows the number of active filters
    });
  }
  connect(&o.panes, &Panes::triggered, this,
          [this](ListId list, CommandId id) { doCommand(id, list, *parts_); });
  connect(&o.panes, &Panes::statusChanged, this, [&o](ListId list) {
    if (list == ListId::Folders) o.files.selectedFolderChanged();
    o.status.StatusbarSetTextRightAUTO();
  });
  connect(&o.panes, &Panes::rowActivated, this,
          [&o](ListId list, std::size_t row) { o.opening.activateRow(list, row); });
  connect(&o.panes, &Panes::rowDoubleClicked, this, [&o](ListId list, std::size_t row) {
    if (list == ListId::Extensions) {
      o.folders.showFilesOfExtension(row);
    } else if (list == ListId::Owners) {
      o.folders.showFilesOfOwner(row);
    } else {
      o.opening.doubleClickRow(list, row);
    }
  });
  connect(&o.panes, &Panes::fillWanted, this, [this, &o](ListId list) {
    o.scans.fillList(list);
    main_->update();
  });
  connect(o.area, &PaneArea::shownChanged, this, [this, &o](ListId list) {
    showSides();
    if (isVisible()) o.drives.readDrivesOnce();
    if (list == ListId::Files) {
      o.files.showFiles(false);
    } else {
      o.files.hideFiles();
    }
    o.status.StatusbarSetTextRightAUTO();
  });
}

/// Marks in the menu which sides are visible.
void MainWindow::showSides() {
  const bool left = owned_->area->isLeftVisible();
  const bool right = owned_->area->isRightVisible();
  main_->action(CommandId::ShowBothSides)->setChecked(left && right);
  main_->action(CommandId::ShowLeftSide)->setChecked(left && !right);
  main_->action(CommandId::ShowRightSide)->setChecked(!left);
}

bool MainWindow::execute(std::optional<ListId> list, CommandId id) {
  CommandSet* const set = list ? &pane(*list).commands() : header_->has(id) ? header_ : main_;
  if (!set->has(id)) return false;
  QAction* const action = set->action(id);
  if (!action->isEnabled()) return false;
  action->trigger();
  return true;
}

void MainWindow::setCommandsBusy(bool busy) {
  owned_->panes.setCommandsBusy(busy);
  main_->setBusy(busy);
  header_->setBusy(busy);
}

void MainWindow::setBusy(bool busy) {
  owned_->panes.setBusy(busy);
  setCommandsBusy(busy);
  owned_->sources->setEnabled(!busy);
  progress_->setVisible(busy);
  if (!busy) owned_->area->restoreFocus();
}

/// Disables everything that changes the disk, and shows this in the title and the status line.
void MainWindow::showReadOnly() {
  owned_->panes.setReadOnly();
  owned_->status.showReadOnly();
  setWindowTitle(ui::windowTitle(state_.session));
}

void MainWindow::storeSettings() {
  IniStore& settings = state_.settings;
  storeForm(*this, kForm, settings);
  if (wasShown_) owned_->area->storeWidths(settings);
  owned_->sources->store();
  Optionen_Speichern(state_.session.options, settings);
  state_.drives.Optionen_Speichern_Drives_SaveNetworkFolders(settings);
  settings.flush();
}

/// While a scan runs, closing only stops the scan; the user has to close the window again.
void MainWindow::closeEvent(QCloseEvent* event) {
  if (owned_->scans.isScanning()) {
    owned_->scans.stop();
    event->ignore();
    return;
  }
  owned_->files.stop();
  if (storesSettings_) storeSettings();
  event->accept();
}

void MainWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  if (wasShown_) return;
  wasShown_ = true;
  centralWidget()->layout()->activate();  // the area has its width from now on
  owned_->area->loadWidths(state_.settings);
  for (ListPane* const pane : owned_->panes.all())
    pane->rowsReplaced();
  owned_->sources->setFocus();
  // The window is on the screen before the drives are asked, because they may answer slowly.
  QTimer::singleShot(0, this, [this] { owned_->drives.readDrivesOnce(); });
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls() && !owned_->scans.isScanning()) event->acceptProposedAction();
}

/// Makes dropped folders sources; for a dropped file, its folder becomes a source.
void MainWindow::dropEvent(QDropEvent* event) {
  std::deque<Text> sources;
  for (const QUrl& url : event->mimeData()->urls()) {
    if (!url.isLocalFile()) continue;
    const Text path = fromBytes(
        QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString());
    sources.push_back(xExistFolder_W(path) ? path : Text(xGetPath(path)));
  }
  event->acceptProposedAction();
  QMetaObject::invokeMethod(
      this, [this, sources] { owned_->scans.scan(sources); }, Qt::QueuedConnection);
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    owned_->files.stop();
    if (owned_->scans.isScanning()) owned_->scans.stop();
    return;
  }
  if (event->key() == Qt::Key_F10) {
    menuBar()->setActiveAction(menuBar()->actions().constFirst());
    return;
  }
  if (!owned_->keys.press(*event)) QMainWindow::keyPressEvent(event);
}

}  // namespace ombrelian::ui
