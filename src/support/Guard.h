#pragma once

#include <exception>
#include <initializer_list>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/Error.h"

namespace ombrelian {

/// A fault that nobody handles where it happens: it leaves every scope up to the procedure guard.
class Fault : public std::exception {
 public:
  explicit Fault(Error error) : error_(std::move(error)) {}

  const Error& error() const { return error_; }
  const char* what() const noexcept override { return "Fault"; }

 private:
  Error error_;
};

/// Takes what escaped a procedure. There is one for the process, set at start.
class FaultSink {
 public:
  virtual ~FaultSink() = default;

  /// Must not throw. `params` are the values that the procedure wanted recorded.
  virtual void Debug(TextView proc, TextView module, const Error& error,
                     const std::vector<Text>& params) noexcept = 0;

  /// A line for the fault log that needs no report. Must not throw.
  virtual void errorLine(TextView line) noexcept = 0;

  /// A line for the trace, each of `params` behind ", ". Must not throw.
  virtual void LogDebug(TextView /*text*/, const std::vector<Text>& /*params*/) noexcept {}
};

/// Not owned; null drops what escapes.
void setFaultSink(FaultSink* sink);

/// Hands a line to the sink.
void reportLine(TextView line) noexcept;

/// Hands a line of the trace to the sink.
void reportTrace(TextView text, const std::vector<Text>& params) noexcept;

/// Hands a fault in the procedure `name` to the sink, where nothing was thrown.
void reportFault(TextView module, TextView name, const Error& error,
                 const std::vector<Text>& params = {}) noexcept;

/// Hands the exception being handled to the sink and returns what it says; for the guards alone. An
/// error without a text: there was no memory for one.
Error reportEscaped(TextView module, TextView name,
                    std::initializer_list<TextView> params) noexcept;

/// The text of an error for a procedure that answers with the text of its error; never empty.
Text errorTextOf(const Error& error);

/// The same for a procedure that answers with a Failure.
Failure failureOf(const Error& error);

/// The outermost scope of a procedure that must not throw: runs `body` and gives its value. What
/// escapes goes to the sink, and the result is what `onFault` makes of it. If that throws too,
/// which only a lack of memory can cause, it is asked once more with an error without a text.
template <class Body, class OnFault>
std::invoke_result_t<Body> GuardedOr(TextView module, TextView name, Body&& body, OnFault&& onFault,
                                     std::initializer_list<TextView> params = {}) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    const Error error = reportEscaped(module, name, params);
    try {
      return onFault(error);
    } catch (...) {
      return onFault(Error{error.number, {}, {}});
    }
  }
}

/// The same for procedures that answer nothing, or whether they did what they were asked: after a
/// fault they did not. For all others the empty value might mean success, so they say by GuardedOr
/// what a failure is.
template <class Body>
std::invoke_result_t<Body> Guarded(TextView module, TextView name, Body&& body,
                                   std::initializer_list<TextView> params = {}) noexcept {
  using Value = std::invoke_result_t<Body>;
  static_assert(std::is_void_v<Value> || std::is_same_v<Value, bool>,
                "say by GuardedOr what a failure of this procedure is");
  return GuardedOr(
      module, name, std::forward<Body>(body),
      [](const Error&) -> Value {
        if constexpr (!std::is_void_v<Value>) return false;
      },
      params);
}

/// For onFault, where the empty value says that there is nothing.
template <class Value>
Value nothing(const Error&) noexcept {
  return Value();
}

}  // namespace ombrelian
