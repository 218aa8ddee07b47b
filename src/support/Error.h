#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include "support/Text.h"

namespace ombrelian {

/// An error: its number (a Windows error number, or a number from the declaration of the
/// procedure), its place, a text for the user, and the line of the source code that reported it
/// (0: not known).
struct Error {
  std::int32_t number = 0;
  Text source;
  Text text;
  std::uint32_t line = 0;
};

/// A value, or the reason why there is none. It is used for errors that a caller handles; errors
/// that no caller can handle are thrown and end in the procedure guard.
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

  /// The reason why there is no value. Call it only if there is no value.
  const Error& error() const { return error_; }

 private:
  std::optional<T> value_;
  Error error_;
};

/// The result of a procedure that only succeeds or fails; empty: it succeeded.
using Failure = std::optional<Error>;

}  // namespace ombrelian
