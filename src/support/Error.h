#pragma once

#include <optional>
#include <utility>

#include "support/Text.h"

namespace ombrelian {

/// What went wrong: a number (a Windows error number, or the number that the procedure's
/// declaration names), where, and a text that a person can act on.
struct Error {
  std::int32_t number = 0;
  Text source;
  Text text;
};

/// A value, or the reason why there is none. The program's form of an error that a caller
/// handles; what nobody can handle is thrown and ends in the procedure guard.
template <class T>
class Result {
 public:
  Result(T value) : value_(std::move(value)) {}      // NOLINT: implicit on purpose
  Result(Error error) : error_(std::move(error)) {}  // NOLINT: implicit on purpose

  explicit operator bool() const { return value_.has_value(); }
  const T& operator*() const { return *value_; }
  T& operator*() { return *value_; }
  const T* operator->() const { return &*value_; }
  T* operator->() { return &*value_; }

  /// The reason why there is no value; to be called only then.
  const Error& error() const { return error_; }

 private:
  std::optional<T> value_;
  Error error_;
};

/// The answer of a procedure that only succeeds or fails; empty: it succeeded.
using Failure = std::optional<Error>;

}  // namespace ombrelian
