#include <signal.h>
#include <time.h>

#include <atomic>
#include <iterator>

#include "platform/Process.h"

namespace ombrelian::platform {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr itimerspec kGrace = {{0, 0}, {3, 0}};  // time that a stopped run has to end

std::atomic<int> received = 0;  // number of the first signal
static_assert(std::atomic<int>::is_always_lock_free);

timer_t timers[std::size(kSignals)];  // each sends its signal once more
bool hasTimer[std::size(kSignals)] = {};

/// Only notes the signal. A run that waits for a file system that does not answer never looks at
/// the note, so the signal comes again later, and its usual action then ends the process.
void note(int signal) {
  int none = 0;
  received.compare_exchange_strong(none, signal);
  for (std::size_t i = 0; i < std::size(kSignals); ++i) {
    if (kSignals[i] == signal && hasTimer[i]) timer_settime(timers[i], 0, &kGrace, nullptr);
  }
}

}  // namespace

void CatchStopSignals() {
  for (std::size_t i = 0; i < std::size(kSignals); ++i) {
    struct sigaction action = {};
    if (sigaction(kSignals[i], nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
    sigevent event = {};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = kSignals[i];
    hasTimer[i] = timer_create(CLOCK_MONOTONIC, &event, &timers[i]) == 0;
    action = {};
    action.sa_handler = note;
    action.sa_flags = int(SA_RESTART | SA_RESETHAND);  // the second signal ends the process at once
    sigaction(kSignals[i], &action, nullptr);
  }
}

int StopSignal() { return received.load(std::memory_order_relaxed); }

void IgnoreWriteSignals() {
  signal(SIGPIPE, SIG_IGN);
  signal(SIGXFSZ, SIG_IGN);
}

}  // namespace ombrelian::platform
