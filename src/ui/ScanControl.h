#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <deque>

#include "ui/Panes.h"
#include "ui/SourceBox.h"
#include "ui/WindowDialogs.h"

namespace ombrelian::ui {

/// Starts and stops scans, and shows what they found.
class ScanControl : public QObject {
  Q_OBJECT

 public:
  /// All arguments must outlive this object.
  ScanControl(WindowState& state, WindowDialogs& dialogs, Panes& panes, SourceBox& sources);

  bool isScanning() const { return state_.session.context.ScanBusy; }

  /// Scans these sources one after the other, for example those of the command line. Returns at the
  /// end of the scans; does nothing while a scan runs.
  void scan(const std::deque<Text>& sources);

  /// Adds sources to the run that scans now; false: none does.
  bool takeMore(const std::deque<Text>& sources);

  /// Scans the path in the source box, or stops the running scan. A second call within a second
  /// does nothing, because a double click means only one start.
  void startOrStop();

  /// Switches a list of scans on. If a scan filled the lists, its source is scanned again.
  void fillList(ListId list);

  /// Adds the current folder of the tree to the filter of folders that are not scanned, and scans
  /// its source again.
  void leaveOut();

  void stop() { state_.session.context.ScanCancelState = kScanCancelRequested; }

  /// Scans the sources in the queue of the session.
  void Ordnerliste_Abarbeiten();

 Q_SIGNALS:
  /// A run is about to begin, and the tree should be visible.
  void starting();

  /// A run has ended and its rows are shown; `single`: the run had only one source.
  void finished(bool single);

 private:
  void StartSearchViaToolbar();
  FilledLists filledBy(const RunResult& run) const;
  void expandNewSources();

  WindowState& state_;
  WindowDialogs& dialogs_;
  Panes& panes_;
  SourceBox& sources_;
  QElapsedTimer started_;
};

}  // namespace ombrelian::ui
