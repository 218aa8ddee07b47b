#pragma once

#include <cstdint>
#include <vector>

#include "support/Text.h"

namespace ombrelian {

/// What the procedures need of a window. The window implements it; a silent run answers plainly.
class UserInterface {
 public:
  enum class Severity { Information, Warning, Error };

  virtual ~UserInterface() = default;

  /// A run of scans begins and ends; between the two nothing but stopping may be offered.
  virtual void scanBegins() = 0;
  virtual void scanEnds() = 0;

  /// A scan moved on: the folder in work (ends in a separator), and what was counted so far.
  virtual void scanProgress(TextView folder, std::int64_t files, std::int64_t folders,
                            std::int64_t bytes) = 0;

  /// A save moved on: row `row` of about `rows`.
  virtual void saveProgress(std::uint64_t row, std::uint64_t rows) = 0;

  /// Whether the user wants the save to end early; what is written so far stays well-formed.
  virtual bool saveCancelled() = 0;

  /// Serves what the user did meanwhile.
  virtual void yield() = 0;

  /// Whether something the user did waits to be served.
  virtual bool GetInputState() = 0;

  virtual void message(TextView text, Severity severity) = 0;

  /// A question with yes and no; a silent run answers no.
  virtual bool ask(TextView question) = 0;

  /// A question on whose "yes" something is lost, with lines that tell what; "no" is what a hasty
  /// key gives, and a silent run.
  virtual bool confirm(TextView /*question*/, const std::vector<Text>& /*details*/) {
    return false;
  }

  /// A deletion moved on: `done` objects of `all` are gone; `all` 0: they are still counted.
  virtual void deletionProgress(TextView /*path*/, std::uint64_t /*done*/, std::uint64_t /*all*/) {}
};

}  // namespace ombrelian
