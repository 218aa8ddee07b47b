#pragma once

#include <QObject>
#include <memory>
#include <vector>

#include "frame/Instance.h"

class QSocketNotifier;

namespace ombrelian::ui {

/// Receives the messages of later starts of the program while the event loop runs.
class InstanceServer : public QObject {
  Q_OBJECT

 public:
  /// Both arguments must outlive this object.
  InstanceServer(platform::InstanceListener& listener, ErrorLog& trace);
  ~InstanceServer() override;

 Q_SIGNALS:
  /// A later start wants the window, and the sources of its command line.
  void received(const InstanceMessage& message);

 private:
  struct Call;

  void acceptAll();
  void read(Call& call);
  void end(Call& call);

  platform::InstanceListener& listener_;
  ErrorLog& trace_;
  std::unique_ptr<QSocketNotifier> notifier_;
  std::vector<std::unique_ptr<Call>> calls_;
};

}  // namespace ombrelian::ui
