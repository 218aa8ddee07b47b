#include "ui/LaterStarts.h"

#include <QApplication>

namespace ombrelian::ui {
namespace {

constexpr int kIntervalMs = 200;

}  // namespace

LaterStarts::LaterStarts(WindowState& state, ScanControl& scans, QWidget& window)
    : state_(state), scans_(scans), window_(window) {
  timer_.setInterval(kIntervalMs);
  connect(&timer_, &QTimer::timeout, this, &LaterStarts::tryAgain);
}

void LaterStarts::add(const std::deque<Text>& sources, const std::string& activationToken) {
  comeToFront(activationToken);
  sources_.insert(sources_.end(), sources.begin(), sources.end());
  if (sources_.empty()) return;
  timer_.start();
  // The caller is an event that may have come in the middle of something.
  QMetaObject::invokeMethod(this, &LaterStarts::tryAgain, Qt::QueuedConnection);
}

void LaterStarts::comeToFront(const std::string& activationToken) {
  if (!activationToken.empty()) qputenv("XDG_ACTIVATION_TOKEN", activationToken.c_str());
  if (window_.isMinimized()) window_.setWindowState(window_.windowState() & ~Qt::WindowMinimized);
  window_.raise();
  window_.activateWindow();
}

std::size_t LaterStarts::waiting() const {
  const std::size_t queued = state_.session.SourceQueue.size();
  return sources_.size() + (scans_.isScanning() && queued > 1 ? queued - 1 : 0);
}

/// Whether a scan may begin; a dialog or a menu may be a question about rows that a scan would
/// move.
bool LaterStarts::mayScan() const {
  return !state_.isBusy() && QApplication::activeModalWidget() == nullptr &&
         QApplication::activePopupWidget() == nullptr;
}

void LaterStarts::tryAgain() {
  if (waiting() == 0) timer_.stop();
  if (!sources_.empty()) {
    if (scans_.takeMore(sources_)) {
      sources_.clear();
    } else if (mayScan()) {
      scans_.scan(std::exchange(sources_, {}));
    }
  }
  Q_EMIT waitingChanged();
}

}  // namespace ombrelian::ui
