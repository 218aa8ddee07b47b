#pragma once

#include "export/ReportWriter.h"
#include "support/UserInterface.h"

namespace ombrelian {

/// Receives the rows of a report; false: it wants no more.
class ReportSink {
 public:
  virtual ~ReportSink() = default;

  virtual bool beginSource(const ReportSource& source) = 0;
  virtual bool row(const ReportRow& row) = 0;
  virtual void endSource() = 0;
};

/// Gives the content of a report.
class ReportFeed {
 public:
  virtual ~ReportFeed() = default;

  /// Approximate number of rows of feed(), for the progress.
  virtual std::uint64_t rowCount() const = 0;

  /// Gives every source with its rows. Each call gives the same rows. A source that was begun is
  /// always ended, also if the sink wants no more rows.
  virtual void feed(ReportSink& sink) const = 0;
};

/// Saves the rows of `feed` to `target` (absolute). After a failure the target has not changed. If
/// the user ends the save, the target contains the rows that were written until then, and it is
/// well-formed. A write-protected target is replaced only if `ui` allows it. Throws what the feed
/// or a writer throws, and the target has then not changed either.
Failure saveReport(ReportFormat format, TextView target, const ReportList& list,
                   const SaveSettings& settings, const ReportFeed& feed, UserInterface& ui);

/// Why `target` must not be replaced although the folder allows it; none: it is not
/// write-protected, or `ui` allows it.
Failure protectionOf(TextView target, UserInterface& ui);

/// The size settings of a list in a format. Formats that other programs read have bytes in place of
/// the fitting unit.
SizeSettings sizesIn(ReportFormat format, const SizeSettings& sizes);

/// Text of a delimiter choice: 0 comma, 1 semicolon, 2 tab, 3 blank, 4 `chars`; tab for every other
/// number.
Text delimiterText(std::int32_t choice, TextView chars);
inline constexpr std::int32_t kCustomDelimiter = 4;

}  // namespace ombrelian
