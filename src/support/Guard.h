#pragma once

#include <cstdint>
#include <exception>
#include <initializer_list>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/Error.h"

namespace ombrelian {

/// Number of a line of the source. As a default argument, __builtin_LINE() is the line of the call;
/// std::source_location is not in every compiler that builds this program.
using CodeLine = int;

/// A fault that is not handled where it happens: it leaves every scope up to the procedure guard.
class Fault : public std::exception {
 public:
  explicit Fault(Error error, CodeLine line = __builtin_LINE()) : error_(std::move(error)) {
    error_.line = line;
  }

  const Error& error() const { return error_; }
  const char* what() const noexcept override { return "Fault"; }

 private:
  Error error_;
};

/// Receives the exceptions that escape a procedure. There is one sink for the process, which is set
/// at start.
class FaultSink {
 public:
  virtual ~FaultSink() = default;

  /// Must not throw. `params` are the values that the procedure wanted recorded.
  virtual void Debug(TextView proc, TextView module, const Error& error,
                     const std::vector<Text>& params) noexcept = 0;

  /// Writes a line to the fault log without a report. Must not throw.
  virtual void errorLine(TextView line) noexcept = 0;

  /// Writes a line to the trace, with ", " before each of `params`. Must not throw.
  virtual void LogDebug(TextView /*text*/, const std::vector<Text>& /*params*/) noexcept {}
};

/// Sets the sink, which is not owned; null: faults are dropped.
void setFaultSink(FaultSink* sink);

/// Passes a line to the sink.
void reportLine(TextView line) noexcept;

/// Passes a line of the trace to the sink.
void reportTrace(TextView text, const std::vector<Text>& params) noexcept;

/// Passes a fault in the procedure `name` to the sink if no exception was thrown.
void reportFault(TextView module, TextView name, const Error& error,
                 const std::vector<Text>& params = {}, CodeLine line = __builtin_LINE()) noexcept;

/// Passes the current exception to the sink and returns its error. Only guards call it. The error
/// has no text if there was no memory for one. `guard` is its line if the exception has none.
Error reportEscaped(TextView module, TextView name, std::initializer_list<TextView> params,
                    CodeLine guard) noexcept;

/// Number of exceptions that guards of this thread have caught so far.
std::uint64_t caughtFaults() noexcept;

/// Throws a Fault if guards of this thread have caught exceptions since caughtFaults() was
/// `before`: a guard further in has then cut off a part of the work, and the rest of it is no
/// result.
void throwIfFaultsSince(std::uint64_t before);

/// The text of an error for procedures that return an error text; never empty.
Text errorTextOf(const Error& error);

/// The Failure for procedures that return a Failure.
Failure failureOf(const Error& error);

/// The outermost scope of a procedure that must not throw: runs `body` and returns its value. An
/// exception is passed to the sink, and the result is then the value of `onFault`. If `onFault`
/// throws too, which only a lack of memory can cause, it is called once more with an error without
/// a text.
template <class Body, class OnFault>
std::invoke_result_t<Body> GuardedOr(TextView module, TextView name, Body&& body, OnFault&& onFault,
                                     std::initializer_list<TextView> params = {},
                                     CodeLine guard = __builtin_LINE()) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    const Error error = reportEscaped(module, name, params, guard);
    try {
      return onFault(error);
    } catch (...) {
      return onFault(Error{error.number, {}, {}, error.line});
    }
  }
}

/// The same for procedures that return nothing or a success flag: after a fault the result is
/// false. Other procedures use GuardedOr to define the result after a fault, because their empty
/// value might mean success.
template <class Body>
std::invoke_result_t<Body> Guarded(TextView module, TextView name, Body&& body,
                                   std::initializer_list<TextView> params = {},
                                   CodeLine guard = __builtin_LINE()) noexcept {
  using Value = std::invoke_result_t<Body>;
  static_assert(std::is_void_v<Value> || std::is_same_v<Value, bool>,
                "say by GuardedOr what a failure of this procedure is");
  return GuardedOr(
      module, name, std::forward<Body>(body),
      [](const Error&) -> Value {
        if constexpr (!std::is_void_v<Value>) return false;
      },
      params, guard);
}

/// A function for onFault if the empty value means that there is nothing.
template <class Value>
Value nothing(const Error&) noexcept {
  return Value();
}

}  // namespace ombrelian
