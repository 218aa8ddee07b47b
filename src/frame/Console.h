#pragma once

#include "lists/Log.h"
#include "support/UserInterface.h"

namespace ombrelian {

/// Answers for a run without a window: messages go to standard error, questions are answered with
/// no, and on a terminal one line shows how far the run is.
class Console : public UserInterface, public LogListener {
 public:
  Console();
  ~Console() override;

  /// One line to standard output.
  void print(TextView line);

  /// Bytes to standard output, as they are; false if not all of them could be written.
  bool write(std::string_view bytes);

  void scanBegins() override {}
  void scanEnds() override { clearProgress(); }
  void scanProgress(TextView folder, std::int64_t files, std::int64_t folders,
                    std::int64_t bytes) override;
  void saveProgress(std::uint64_t row, std::uint64_t rows) override;
  bool saveCancelled() override { return false; }
  void yield() override {}
  bool GetInputState() override { return false; }
  void message(TextView text, Severity severity) override;
  bool ask(TextView) override { return false; }

  /// Failures alone are told; the rest of the log is not for this place.
  void logged(const LogRow& row) override;

 private:
  void showProgress(const Text& line);
  void clearProgress();
  std::string forErrorOutput(TextView text) const;

  const bool isTerminal_;
  bool progressShown_ = false;
};

}  // namespace ombrelian
