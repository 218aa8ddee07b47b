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
  /// All must outlive this object.
  ScanControl(WindowState& state, WindowDialogs& dialogs, Panes& panes, SourceBox& sources);

  bool isScanning() const { return state_.session.context.ScanBusy; }

  /// Scans these sources one after the other, as the command line does. Returns when they are done;
  /// does nothing while a scan runs.
  void scan(const std::deque<Text>& sources);

  /// Scans the path in the source box, or stops the scan that runs. A second call within a second
  /// does nothing, since a double click means one start.
  void startOrStop();

  void stop() { state_.session.context.ScanCancelState = kScanCancelRequested; }

  /// Scans what is in the queue of the session.
  void Ordnerliste_Abarbeiten();

 Q_SIGNALS:
  /// A run is about to begin, and the tree is to be visible for it.
  void starting();

  /// A run has ended and its rows are shown; `single`: the run had one source alone.
  void finished(bool single);

 private:
  void StartSearchViaToolbar();

  WindowState& state_;
  WindowDialogs& dialogs_;
  Panes& panes_;
  SourceBox& sources_;
  QElapsedTimer started_;
};

}  // namespace ombrelian::ui
