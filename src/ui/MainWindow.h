#pragma once

#include <QMainWindow>
#include <memory>

#include "platform/Patience.h"
#include "ui/CommandActions.h"
#include "ui/CommandSet.h"
#include "ui/WindowState.h"

namespace ombrelian::ui {

class ListPane;
class ProgressStrip;
class StatusLine;
class WindowDialogs;

/// The window. It makes its parts and connects them. The results belong to the session.
class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  /// Both arguments must outlive the window.
  MainWindow(Session& session, IniStore& settings);
  ~MainWindow() override;

  const Parts& parts() const { return *parts_; }
  ListPane& pane(ListId list);
  CommandSet& commands() { return *main_; }

  /// Runs a command of `list`, or of the main bar if there is no list, like a click on it. False:
  /// the window has no such command, or the command is off.
  bool execute(std::optional<ListId> list, CommandId id);

  /// Sets whether the settings are stored at the end. They are not stored if they are faulty and
  /// the user wants to repair them.
  void setStoresSettings(bool stores) { storesSettings_ = stores; }

  /// Whether the program should start again after the window was closed.
  bool wantsRestart() const { return wantsRestart_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  /// The parts in the order in which they are made.
  struct Owned;

  void makeBars();
  void connectParts();
  void connectLists();
  void setBusy(bool busy);
  void showSides();
  void setCommandsBusy(bool busy);
  void showReadOnly();
  void storeSettings();

  const platform::Patience patience_;
  WindowState state_;
  CommandSet* main_;
  CommandSet* header_;
  ProgressStrip* progress_;
  std::unique_ptr<Owned> owned_;
  std::unique_ptr<Parts> parts_;
  bool wantsRestart_ = false;
  bool storesSettings_ = true;
  bool wasShown_ = false;
};

}  // namespace ombrelian::ui
