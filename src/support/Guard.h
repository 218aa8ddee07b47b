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

/// Hands the exception being handled to the sink; for Guarded alone.
void reportEscaped(TextView module, TextView name, std::initializer_list<TextView> params) noexcept;

/// The outermost scope of a procedure that must not throw: runs `body` and gives its value. What
/// escapes goes to the sink, and the result is the empty value of the body's type.
template <class Body>
std::invoke_result_t<Body> Guarded(TextView module, TextView name, Body&& body,
                                   std::initializer_list<TextView> params = {}) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    reportEscaped(module, name, params);
  }
  if constexpr (!std::is_void_v<std::invoke_result_t<Body>>) return {};
}

}  // namespace ombrelian
