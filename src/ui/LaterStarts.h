#pragma once

#include <QTimer>
#include <deque>
#include <string>

#include "ui/ScanControl.h"

namespace ombrelian::ui {

/// Takes over what later starts of the program want: the window comes to the front, and their
/// sources are scanned as soon as nothing else runs and no dialog is open. Sources that arrive
/// during a scan join it.
class LaterStarts : public QObject {
  Q_OBJECT

 public:
  /// All arguments must outlive this object.
  LaterStarts(WindowState& state, ScanControl& scans, QWidget& window);

  /// `activationToken`: permission of the desktop to come to the front; empty: none.
  void add(const std::deque<Text>& sources, const std::string& activationToken);

  /// Number of sources that nobody scans yet.
  std::size_t waiting() const;

 Q_SIGNALS:
  /// The number of waiting sources may have changed.
  void waitingChanged();

 private:
  void comeToFront(const std::string& activationToken);
  bool mayScan() const;
  void tryAgain();

  WindowState& state_;
  ScanControl& scans_;
  QWidget& window_;
  std::deque<Text> sources_;
  QTimer timer_;
};

}  // namespace ombrelian::ui
