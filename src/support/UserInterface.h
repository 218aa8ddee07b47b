#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "support/Text.h"

namespace ombrelian {

/// Functions of a window that the procedures need. The window implements them; a silent run has
/// simple versions.
class UserInterface {
 public:
  enum class Severity { Information, Warning, Error };

  virtual ~UserInterface() = default;

  /// A run of scans begins and ends; between the two calls the user may only stop it.
  virtual void scanBegins() = 0;
  virtual void scanEnds() = 0;

  /// Progress of a scan: the current folder (ends in a separator), and the counts so far.
  virtual void scanProgress(TextView folder, std::int64_t files, std::int64_t folders,
                            std::int64_t bytes) = 0;

  /// What a scan does after its walk, such as preparing a list.
  virtual void scanPhase(TextView /*text*/) {}

  /// Progress of a save: row `row` of about `rows`.
  virtual void saveProgress(std::uint64_t row, std::uint64_t rows) = 0;

  /// Reports that `cells` cells of a report that was saved were too long for its format and were
  /// cut.
  virtual void cellsWereCut(std::uint64_t /*cells*/) {}

  /// Whether a report that is write-protected may be replaced.
  virtual bool mayReplaceProtected(TextView /*target*/) { return false; }

  /// Whether the user wants the save to end early; the report is then still well-formed.
  virtual bool saveCancelled() = 0;

  /// Handles the waiting user input.
  virtual void yield() = 0;

  /// Does a job that may take long and cannot be interrupted. A window does it in another thread
  /// and stays usable meanwhile, so the job must not use the tree, a list or the settings.
  /// Exceptions of the job come back to the caller.
  virtual void runAside(const std::function<void()>& job) { job(); }

  /// Whether user input is waiting.
  virtual bool GetInputState() = 0;

  virtual void message(TextView text, Severity severity) = 0;

  /// Asks a question with yes and no; a silent run answers no.
  virtual bool ask(TextView question) = 0;

  /// Asks a question whose "yes" loses data; `details` are lines that name these data, and `verb`
  /// is the caption of "yes". "No" is the default for the keyboard, and the answer of a silent run.
  virtual bool confirm(TextView /*question*/, const std::vector<Text>& /*details*/,
                       TextView /*verb*/) {
    return false;
  }

  /// Progress of a deletion: `done` objects of `all` are gone; `all` 0: they are still being
  /// counted.
  virtual void deletionProgress(TextView /*path*/, std::uint64_t /*done*/, std::uint64_t /*all*/) {}
};

}  // namespace ombrelian
