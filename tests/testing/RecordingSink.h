#pragma once

#include "support/Guard.h"

namespace ombrelian::testing {

/// Records the reports of procedures during its life.
class RecordingSink : public FaultSink {
 public:
  RecordingSink() { setFaultSink(this); }
  ~RecordingSink() override { setFaultSink(nullptr); }
  void Debug(TextView proc, TextView module, const Error& error,
             const std::vector<Text>&) noexcept override {
    faults.push_back(Text(module) + u"." + Text(proc) + u" " + toText(error.number));
    texts.push_back(error.text);
  }
  void errorLine(TextView line) noexcept override { lines.emplace_back(line); }
  void LogDebug(TextView text, const std::vector<Text>&) noexcept override {
    trace.emplace_back(text);
  }

  std::vector<Text> faults;
  std::vector<Text> texts;  // texts of the faults
  std::vector<Text> lines;
  std::vector<Text> trace;
};

}  // namespace ombrelian::testing
