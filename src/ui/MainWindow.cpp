#include "ui/MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include "frame/StartUp.h"
#include "fs/PathText.h"
#include "fs/z_Filesystem.h"
#include "support/Translate.h"
#include "ui/FolderRows.h"
#include "ui/Icons.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
MainWindow::MainWindow(Session& session, IniStore& settings)
    : session_(session),
      settings_(settings),
      lists_(session.options, session.filters, types_),
      files_(session.options, types_) {
  setWindowTitle(toQString(u"Ombrelian " + versionText()));
  setWindowIcon(icon("app"));
  setAcceptDrops(true);
  const auto shownFlag = listRow(shownList(session_.options)).isShown;
  isRightVisible_ = session_.options.*shownFlag == 1;
  commands_ = new CommandSet(Bar::Main, std::nullopt, session_.options, this);
  header_ = new CommandSet(Bar::Header, std::nullopt, session_.options, this);
  makePanes();
  QToolBar* const bar =
      commands_->makeToolBar([this](int id, QToolBar* on) { return placeOnMainBar(id, on); });
  bar->setWindowTitle(QStringLiteral("Ombrelian"));
  addToolBar(bar);
  progress_ = new ProgressStrip(this);
  splMain_ = new QSplitter(Qt::Horizontal, this);
  splMain_->addWidget(panes_[std::size_t(ListId::Folders)]);
  splMain_->addWidget(makeRightSide());
  splMain_->setChildrenCollapsible(false);
  splMain_->setStretchFactor(0, 1);
  splMain_->setStretchFactor(1, 1);
  auto* const middle = new QWidget(this);
  auto* const layout = new QVBoxLayout(middle);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(progress_);
  layout->addWidget(splMain_, 1);
  setCentralWidget(middle);
  makeMenuBar();
  makeStatusBar();
  if (session_.readOnly) showReadOnly();
  connectPanes();
  loadSources();
  loadPosition();
  applyLook();
  Change_Info_Visibility();
  setBusy(false);
  session_.log.setListener(this);
  connect(&scheme_, &DesktopScheme::changed, this, &MainWindow::ChangeTheme);
}

/// The views go before the rows that they show.
MainWindow::~MainWindow() {
  session_.log.setListener(nullptr);
  disconnect(qApp, nullptr, this, nullptr);
  qDeleteAll(findChildren<QWidget*>(Qt::FindDirectChildrenOnly));
}

ListPane* MainWindow::addPane(ListId view, RowSource& rows) {
  auto* const pane = new ListPane(view, rows, session_.options, this);
  panes_[std::size_t(view)] = pane;
  return pane;
}

void MainWindow::makePanes() {
  Options& options = session_.options;
  folderRows_ = std::make_unique<FolderRows>(session_.tree, session_.folderReport, options);
  driveRows_ = std::make_unique<DriveRows>(drives_, options);
  fileRows_ = std::make_unique<FileRows>(files_, session_.tree, options);
  logRows_ = std::make_unique<LogRows>(session_.log, options);
  addPane(ListId::Folders, *folderRows_);
  addPane(ListId::Drives, *driveRows_);
  addPane(ListId::Files, *fileRows_);
  for (const ListId view : kDerivedLists) {
    Grid& grid = lists_.grid(view);
    const bool isOfFiles = listRow(view).rows == RowKind::File;
    foundRows_.push_back(isOfFiles ? std::make_unique<FoundFileRows>(grid, options, view)
                                   : gridRows(grid, options, view));
    addPane(view, *foundRows_.back());
  }
  addPane(ListId::Log, *logRows_);
  for (ListPane* const pane : panes_) {
    pane->addToolBar([this, pane](int id, QToolBar* bar) -> QWidget* {
      if (pane->viewId() != ListId::Files || id != 465) return nullptr;
      filePath_ = new QLabel(bar);
      filePath_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
      filePath_->setTextInteractionFlags(Qt::TextSelectableByMouse);
      filePath_->setTextFormat(Qt::PlainText);
      filePath_->setContentsMargins(6, 0, 6, 0);
      return filePath_;
    });
  }
  setNames();
  setEmptyTexts();
  setRowCommands();
}

void MainWindow::setNames() {
  for (const ListId list : kAllLists)
    pane(list).list().setAccessibleName(toQString(listTitle(session_.options, list)));
}

void MainWindow::setEmptyTexts() {
  for (const ListId list : kAllLists) {
    const Word& empty = listRow(list).empty;
    pane(list).setEmptyText(toQString(TL(empty.id, empty.german)));
  }
}

void MainWindow::setRowCommands() {
  const std::vector<int> ofFiles = {1001, 1002, 0, 504, 1005, 1006, 0, 1004, 320, 321, 0, 1003};
  for (const ListId view : {ListId::Files, ListId::LargestFiles, ListId::SmallestFiles,
                            ListId::NewestFiles, ListId::OldestFiles, ListId::Hardlinks})
    pane(view).setRowCommands(ofFiles);
  for (const ListId view : {ListId::LargestFolders, ListId::SmallestFolders, ListId::Junctions})
    pane(view).setRowCommands({1001, 1002, 0, 504, 1005, 1006, 0, 1003});
  for (const ListId view : {ListId::Owners, ListId::Extensions, ListId::Log})
    pane(view).setRowCommands({504, 1006});
  pane(ListId::Folders)
      .setRowCommands(
          {1001, 1002, 0, 1007, 1008, 0, 1015, 1016, 0, 504, 1005, 0, 1004, 507, 506, 0, 1003});
  pane(ListId::Drives).setRowCommands({361, 1001, 0, 504, 1005, 1025, 0, 1003});
}

QWidget* MainWindow::makeRightSide() {
  right_ = new QWidget(this);
  auto* const layout = new QVBoxLayout(right_);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  headerBar_ = header_->makeToolBar({});
  layout->addWidget(headerBar_);
  right_->installEventFilter(this);
  stack_ = new QStackedWidget(right_);
  for (const ListId list : kAllLists) {
    if (list != ListId::Folders) stack_->addWidget(&pane(list));
  }
  layout->addWidget(stack_, 1);
  return right_;
}

/// The buttons that choose the list have picture and word as long as all of them fit, else the
/// word, else the picture, and only the one that is pressed its word.
void MainWindow::fitHeaderBar() {
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
  if (session_.options.SymbolText == 1 &&
      (fits(Qt::ToolButtonTextBesideIcon) || fits(Qt::ToolButtonTextOnly)))
    return;
  for (QToolButton* const button : buttons) {
    const bool hasWord = session_.options.SymbolText == 1 && button->defaultAction()->isChecked();
    button->setToolButtonStyle(hasWord ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
  }
}

bool MainWindow::eventFilter(QObject* object, QEvent* event) {
  if (object == right_ && event->type() == QEvent::Resize) fitHeaderBar();
  const bool isKey = event->type() == QEvent::KeyPress && SourceCombo_ != nullptr;
  if (isKey && object == SourceCombo_->lineEdit() &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_F2) {
    AddNewSearchPath(true, {});
    return true;
  }
  return QMainWindow::eventFilter(object, event);
}

QWidget* MainWindow::placeOnMainBar(int id, QToolBar* bar) {
  if (id != 460) return nullptr;
  SourceCombo_ = new QComboBox(bar);
  SourceCombo_->setEditable(true);
  SourceCombo_->setInsertPolicy(QComboBox::NoInsert);
  SourceCombo_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  SourceCombo_->setMinimumWidth(220);
  SourceCombo_->setMaxVisibleItems(24);
  SourceCombo_->setAccessibleName(toQString(TL(9497, u"Quelle")));
  SourceCombo_->lineEdit()->setAccessibleName(SourceCombo_->accessibleName());
  SourceCombo_->setToolTip(
      toQString(TL(9498, u"Ordner, Laufwerk oder Netzwerkpfad, der eingelesen wird")));
  SourceCombo_->lineEdit()->setPlaceholderText(SourceCombo_->toolTip());
  connect(SourceCombo_->lineEdit(), &QLineEdit::returnPressed, this,
          [this] { StartSearchViaToolbar(); });
  SourceCombo_->lineEdit()->installEventFilter(this);
  auto* const focus = new QAction(this);
  focus->setShortcut(QKeySequence(QStringLiteral("Ctrl+L")));
  connect(focus, &QAction::triggered, this, [this] {
    SourceCombo_->setFocus();
    SourceCombo_->lineEdit()->selectAll();
  });
  addAction(focus);
  return SourceCombo_;
}

/// Everything is in the menus too, where the keyboard reaches it.
void MainWindow::makeMenuBar() {
  QMenu* const source = menuBar()->addMenu(toQString(TL(9560, u"&Quelle")));
  for (const int id : {461, 462, 0, 463, 464, 0, 473, 474, 475, 476, 477, 0, 478, 450, 0, 388}) {
    if (id == 0) {
      source->addSeparator();
    } else {
      source->addAction(commands_->action(id));
    }
  }
  QMenu* const list = menuBar()->addMenu(toQString(TL(9561, u"&Liste")));
  connect(list, &QMenu::aboutToShow, this, [this, list] {
    list->clear();
    pane(focusedView()).commands().fillMenu(*list, 0);
  });
  QMenu* const view = menuBar()->addMenu(toQString(TL(9562, u"&Ansicht")));
  header_->fillMenu(*view, 0);
  view->addSeparator();
  commands_->fillMenu(*view, 389);
  view->addSeparator();
  view->addAction(commands_->action(300));
  commands_->fillMenu(*view, 1023);
  QMenu* const help = menuBar()->addMenu(toQString(TL(9563, u"&Hilfe")));
  commands_->fillMenu(*help, 1022);
  help->addAction(commands_->action(459));
}

void MainWindow::makeStatusBar() {
  statusLeft_ = new QLabel(this);
  statusRight_ = new QLabel(this);
  for (QLabel* const label : {statusLeft_, statusRight_}) {
    label->setTextFormat(Qt::PlainText);
    label->setContentsMargins(8, 1, 8, 1);
  }
  statusRight_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  statusBar()->addWidget(statusLeft_, 1);
  statusBar()->addPermanentWidget(statusRight_);
  statusBar()->setSizeGripEnabled(false);
}

/// What changes the disk is off, and the window says so all the time.
void MainWindow::showReadOnly() {
  for (ListPane* const pane : panes_)
    pane->setReadOnly();
  const QString readOnly = toQString(TL(9640, u"nur Lesen"));
  setWindowTitle(windowTitle() + QStringLiteral(" \u2013 ") + readOnly);
  auto* const label = new QLabel(readOnly, this);
  label->setContentsMargins(8, 1, 8, 1);
  label->setToolTip(
      toQString(TL(9641,
                   u"Mit --read-only gestartet: Löschen und Umbenennen sind ausgeschaltet, "
                   u"Berichte lassen sich speichern.")));
  statusBar()->addPermanentWidget(label);
}

void MainWindow::connectPanes() {
  connect(commands_, &CommandSet::triggered, this, [this](int id) { executeMain(id); });
  connect(header_, &CommandSet::triggered, this, [this](int id) { executeMain(id); });
  for (ListPane* const pane : panes_) {
    connect(pane, &ListPane::triggered, this,
            [this](ListId view, int id) { executeList(view, id); });
    connect(pane, &ListPane::statusChanged, this, [this](ListId view) {
      if (view == ListId::Folders) selectedFolderChanged();
      StatusbarSetTextRightAUTO();
    });
    connect(&pane->list(), &ListView::rowActivated, this,
            [this, pane](std::size_t row) { activateRow(pane->viewId(), row); });
    connect(&pane->list(), &ListView::rowDoubleClicked, this, [this, pane](std::size_t row) {
      if (pane->viewId() == ListId::Drives) {
        openPaths(ListId::Drives);
      } else {
        activateRow(pane->viewId(), row);
      }
    });
  }
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    for (const ListPane* const pane : panes_) {
      if (now != nullptr && pane->isAncestorOf(now)) lastFocused_ = pane->viewId();
    }
  });
}

ListId MainWindow::focusedView() const {
  if (lastFocused_ == ListId::Folders && isLeftVisible_) return lastFocused_;
  return isRightVisible_ ? rightView() : ListId::Folders;
}

/// While a scan runs, closing stops it, and the user closes again afterwards.
void MainWindow::closeEvent(QCloseEvent* event) {
  if (isScanning()) {
    session_.context.ScanCancelState = kScanCancelRequested;
    event->ignore();
    return;
  }
  if (storesSettings_) storeSettings();
  event->accept();
}

void MainWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  if (wasShown_) return;
  wasShown_ = true;
  for (ListPane* const pane : panes_)
    pane->rowsReplaced();
  pane(ListId::Folders).list().setFocus();
  // The window stands before drives are asked, which may take their time.
  QTimer::singleShot(0, this, &MainWindow::readDrivesOnce);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls() && !isScanning()) event->acceptProposedAction();
}

/// Folders become sources; of a file the folder that it lies in.
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
      this, [this, sources] { scan(sources); }, Qt::QueuedConnection);
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    stopsReading_ = true;
    if (isScanning()) session_.context.ScanCancelState = kScanCancelRequested;
    return;
  }
  QMainWindow::keyPressEvent(event);
}

}  // namespace ombrelian::ui
