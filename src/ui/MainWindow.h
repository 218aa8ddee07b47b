#pragma once

#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QMainWindow>
#include <QProgressBar>
#include <QSplitter>
#include <QStackedWidget>
#include <array>
#include <memory>

#include "export/ReportWriter.h"
#include "frame/Session.h"
#include "scan/Deletion.h"
#include "scan/ListFeeder.h"
#include "ui/DesktopScheme.h"
#include "ui/ListPane.h"
#include "ui/PaneRows.h"
#include "ui/ProgressStrip.h"

namespace ombrelian::ui {

class FolderRows;
class SaveDialog;

/// The window: the folder report on the left, one of the other lists on the right, bars, a line of
/// progress while a scan runs, and a status line. It owns no results; those are the session's.
class MainWindow : public QMainWindow,
                   private UserInterface,
                   private LogListener,
                   private RowsOnShow {
  Q_OBJECT

 public:
  /// Both must outlive the window.
  MainWindow(Session& session, IniStore& settings);
  ~MainWindow() override;

  /// Scans these sources one after the other, as the command line does. Returns when they are done.
  void scan(const std::deque<Text>& sources);

  /// Does a command as a click on it would: of a list, or with none of the main bar. False: it has
  /// no such command, or it waits for later work.
  bool execute(std::optional<ListId> view, int id);

  ListPane& pane(ListId view) { return *panes_[std::size_t(view)]; }
  CommandSet& commands() { return *commands_; }
  ListId rightView() const { return shownList(session_.options); }
  QComboBox& SourceCombo() { return *SourceCombo_; }
  bool isScanning() const { return session_.context.ScanBusy; }

  /// With false nothing is stored at the end: the settings are faulty, and the user wants to mend
  /// them.
  void setStoresSettings(bool stores) { storesSettings_ = stores; }

  /// Whether the program is to start again when the window has closed.
  bool wantsRestart() const { return wantsRestart_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  // UserInterface
  void scanBegins() override;
  void scanEnds() override;
  void scanProgress(TextView folder, std::int64_t files, std::int64_t folders,
                    std::int64_t bytes) override;
  void saveProgress(std::uint64_t row, std::uint64_t rows) override;
  bool saveCancelled() override { return false; }
  void yield() override;
  bool GetInputState() override;
  void message(TextView text, Severity severity) override;
  bool ask(TextView question) override;
  bool confirm(TextView question, const std::vector<Text>& details) override;
  void deletionProgress(TextView path, std::uint64_t done, std::uint64_t all) override;

  // RowsOnShow
  void change(const std::function<void()>& change) override;
  void willReplace(NodeIndex node, NodeIndex twin) override;
  void logged(const LogRow& row) override;

  // Set-up
  void makePanes();
  ListPane* addPane(ListId view, RowSource& rows);
  void setNames();
  void setEmptyTexts();
  void setRowCommands();
  QWidget* makeRightSide();
  void fitHeaderBar();
  QWidget* placeOnMainBar(int id, QToolBar* bar);
  void makeMenuBar();
  void makeStatusBar();
  void showReadOnly();
  void connectPanes();
  void loadSources();
  void loadPosition();
  void savePosition();
  void storeSettings();

  // Looks
  void ChangeTheme();
  void applyFont();
  void applyLook();
  void Change_Info_Visibility();
  void Change_ButtonHeaderActive(ListId view);
  void changeSizes(int id);
  void ChangeFontSize(int step);
  void chooseFont();
  void ChangeLanguage(int id);

  // Sources
  void StartSearchViaToolbar();
  void AddNewSearchPath(bool browse, const Text& path);
  void Quelle_Entfernen();
  void selectSource(const Text& path);
  void Ordnerliste_Abarbeiten();
  void setBusy(bool busy);

  // Deleting, rescanning
  void DeleteFolders(bool recycle);
  void deleteFiles(ListId view, bool recycle);
  void Report_Rescan();
  void Report_RemoveFolders();
  void hideFiles();
  void refreshDrive(const Text& path);
  std::vector<RowSource::Id> selectedIds(ListId view);
  void goNear(ListId view, std::size_t row);

  // Lists
  void selectedFolderChanged();
  void readLateOwners();
  void showFiles(bool force);
  void readDrives();
  void readDrivesOnce();
  void Drives_ScanDrives(bool all);
  void addNetworkPath();
  void clearFolders();
  void expandAll(bool expand);
  void expandSelected(bool expand);
  void Report_Resize_Width();
  void StatusbarSetTextRightAUTO();
  Text statusOf(ListId view);
  void activateRow(ListId view, std::size_t row);
  void openPaths(ListId view);
  void save(ListId view);
  void saveFolders();
  Failure saveList(ListId view, ReportFormat format, const Text& target, UserInterface& ui);
  void run(SaveDialog& dialog);
  FlatList& flatList(ListId list);
  void Show_Log();
  void showAbout();
  void showFilterHelp();
  bool executeMain(int id);
  bool executeList(ListId view, int id);
  bool executeFolders(int id);
  bool executeDrives(int id);
  ListId focusedView() const;

  Session& session_;
  IniStore& settings_;
  DesktopScheme scheme_;
  SystemFileTypes types_;
  ListFeeder lists_;
  FileList files_;
  DriveList drives_;
  std::unique_ptr<LogRows> logRows_;
  std::unique_ptr<FolderRows> folderRows_;
  std::unique_ptr<DriveRows> driveRows_;
  std::unique_ptr<FileRows> fileRows_;
  std::vector<std::unique_ptr<RowSource>> foundRows_;

  CommandSet* commands_ = nullptr;
  CommandSet* header_ = nullptr;
  QComboBox* SourceCombo_ = nullptr;
  QLabel* filePath_ = nullptr;
  ProgressStrip* progress_ = nullptr;
  QSplitter* splMain_ = nullptr;
  QStackedWidget* stack_ = nullptr;
  QWidget* right_ = nullptr;
  QToolBar* headerBar_ = nullptr;
  QLabel* statusLeft_ = nullptr;
  QLabel* statusRight_ = nullptr;
  std::array<ListPane*, kLists> panes_ = {};
  ListId lastFocused_ = ListId::Folders;
  bool isLeftVisible_ = true;
  bool isRightVisible_ = true;
  bool wantsRestart_ = false;
  bool storesSettings_ = true;
  bool wasShown_ = false;
  ListId changing_ = ListId::Folders;  // the list whose rows a deletion takes
  bool stopsReading_ = false;          // Escape while files are read
  std::uint64_t lastYield_ = 0;
};

}  // namespace ombrelian::ui
