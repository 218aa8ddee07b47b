#include "ui/InstanceServer.h"

#include <QSocketNotifier>
#include <QTimer>

namespace ombrelian::ui {
namespace {

constexpr std::size_t kMostCalls = 32;  // at the same time; further senders wait
constexpr int kPauseMs = 50;            // until the next look for senders
constexpr int kLongestCallMs = 10'000;  // a sender that needs longer is dropped

}  // namespace

struct InstanceServer::Call {
  explicit Call(std::unique_ptr<platform::InstanceCall> from)
      : call(std::move(from)), notifier(call->handle(), QSocketNotifier::Read) {}

  std::unique_ptr<platform::InstanceCall> call;
  QSocketNotifier notifier;
  QTimer limit;
};

InstanceServer::InstanceServer(platform::InstanceListener& listener, ErrorLog& trace)
    : listener_(listener), trace_(trace) {
  if (!listener.isOpen()) return;
  notifier_ = std::make_unique<QSocketNotifier>(listener.handle(), QSocketNotifier::Read);
  connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { acceptAll(); });
}

InstanceServer::~InstanceServer() = default;

void InstanceServer::acceptAll() {
  while (calls_.size() < kMostCalls) {
    auto accepted = listener_.accept();
    if (accepted == nullptr) break;
    calls_.push_back(std::make_unique<Call>(std::move(accepted)));
    Call& call = *calls_.back();
    connect(&call.notifier, &QSocketNotifier::activated, this, [this, &call] { read(call); });
    connect(&call.limit, &QTimer::timeout, this, [this, &call] { end(call); });
    call.limit.start(kLongestCallMs);
  }
  // The notifier would report those who still wait, also for a lack of descriptors, all the time.
  notifier_->setEnabled(false);
  QTimer::singleShot(kPauseMs, this, [this] { notifier_->setEnabled(true); });
}

void InstanceServer::read(Call& call) {
  const platform::InstanceCall::State state = call.call->read();
  if (state == platform::InstanceCall::State::Open) return;
  const Result<InstanceMessage> message = decodeMessage(call.call->message());
  const bool isGood = state == platform::InstanceCall::State::Complete && bool(message);
  if (isGood) {
    call.call->answer();
  } else {
    trace_.LogDebug(u"Message of another start was dropped: " +
                    (message ? Text(u"it is too long") : message.error().text));
  }
  end(call);
  if (!isGood) return;
  // Whoever receives it may show a dialog, with events of its own.
  QMetaObject::invokeMethod(
      this, [this, got = *message] { Q_EMIT received(got); }, Qt::QueuedConnection);
}

/// Forgets a call, which may be in the middle of one of its own signals.
void InstanceServer::end(Call& call) {
  const auto at = std::find_if(calls_.begin(), calls_.end(),
                               [&](const auto& other) { return other.get() == &call; });
  // Its message and the end of its time may be reported one directly after the other.
  if (at == calls_.end()) return;
  std::shared_ptr<Call> ended = std::move(*at);
  ended->notifier.setEnabled(false);
  ended->limit.stop();
  calls_.erase(at);
  QMetaObject::invokeMethod(
      this, [ended] {}, Qt::QueuedConnection);
}

}  // namespace ombrelian::ui
