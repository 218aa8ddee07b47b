#pragma once

#include "export/ReportWriter.h"
#include "support/UserInterface.h"

namespace ombrelian {

/// Takes the rows of a report; false: it wants no more.
class ReportSink {
 public:
  virtual ~ReportSink() = default;

  virtual bool beginSource(const ReportSource& source) = 0;
  virtual bool row(const ReportRow& row) = 0;
  virtual void endSource() = 0;
};

/// Walks over what a report is made of.
class ReportFeed {
 public:
  virtual ~ReportFeed() = default;

  /// About how many rows feed() gives, for the progress.
  virtual std::uint64_t rowCount() const = 0;

  /// Gives every source with its rows, the same at each call. A source that was begun is ended,
  /// also when the sink wanted no more of it.
  virtual void feed(ReportSink& sink) const = 0;
};

/// Saves what `feed` gives as `target` (absolute). After a failure nothing new stands under the
/// target's name; when the user ends the save, what was written by then does, well-formed.
Failure saveReport(ReportFormat format, TextView target, const ReportList& list,
                   const SaveSettings& settings, const ReportFeed& feed, UserInterface& ui);

/// What the settings make of a choice of delimiter: 0 comma, 1 semicolon, 2 tab, 3 blank, 4
/// `chars`; tab for every other number.
Text delimiterText(std::int32_t choice, TextView chars);
inline constexpr std::int32_t kCustomDelimiter = 4;

}  // namespace ombrelian
