#pragma once

#include <signal.h>

namespace ombrelian::platform {

/// Blocks all signals but those of faults while this object exists. Threads started meanwhile
/// inherit the blocked signals, so signals reach only the main thread.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t held;
    sigfillset(&held);
    // A fault of the thread itself cannot wait; blocked, it would end the process without a trace.
    for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGABRT, SIGSYS})
      sigdelset(&held, fault);
    pthread_sigmask(SIG_SETMASK, &held, &before_);
  }
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_;
};

}  // namespace ombrelian::platform
