#pragma once

#include "lists/Log.h"
#include "support/Error.h"
#include "support/UserInterface.h"

namespace ombrelian {

/// The user interface of a run without a window: messages are written to standard error, every
/// question is answered with no, and on a terminal one line shows the progress.
class Console : public UserInterface, public LogListener {
 public:
  Console();
  ~Console() override;

  /// Writes one line to standard output; false: not all of it could be written.
  bool print(TextView line);

  /// Writes whole characters in UTF-8 to standard output, to a terminal without control characters;
  /// false: not all of them could be written.
  bool write(std::string_view bytes);

  void scanBegins() override {}
  void scanEnds() override { clearProgress(); }
  void scanProgress(TextView folder, std::int64_t files, std::int64_t folders,
                    std::int64_t bytes) override;
  void saveProgress(std::uint64_t row, std::uint64_t rows) override;
  void cellsWereCut(std::uint64_t cells) override;
  bool mayReplaceProtected(TextView) override { return isForced_; }
  bool saveCancelled() override;
  void yield() override {}
  bool GetInputState() override { return false; }
  void message(TextView text, Severity severity) override;

  /// Reports a fault that ended the program's work, if necessary without any memory.
  void fault(const Error& error) noexcept;
  bool ask(TextView) override { return false; }

  /// Lets reports that are write-protected be replaced.
  void setForce(bool force) { isForced_ = force; }

  /// Whether a report was saved with cut cells.
  bool hasCutCells() const { return hasCutCells_; }

  /// Prints only failures; the other lines of the log are ignored.
  void logged(const LogRow& row) override;

 private:
  void showProgress(const Text& line);
  void clearProgress();
  std::string forErrorOutput(TextView text) const;

  const bool isTerminal_;        // whether standard error is a terminal
  const bool isOutputTerminal_;  // whether standard output is one
  bool progressShown_ = false;
  bool hasCutCells_ = false;
  bool isForced_ = false;
};

}  // namespace ombrelian
