#pragma once

#include "export/FolderFeed.h"
#include "settings/Options.h"

namespace ombrelian {

/// Values that mean the levels and the delimiter of the save settings.
inline constexpr std::int32_t kKeepLevels = -2;
inline constexpr std::int32_t kAllLevels = -1;
inline constexpr std::int32_t kKeepDelimiter = -1;

/// Saves the folder report to a file.
class FolderSave {
 public:
  /// References to all arguments are kept.
  FolderSave(const FolderReport& report, const Options& options, UserInterface& ui)
      : report_(report), options_(options), ui_(ui) {}

  /// Saves to `FileName` (absolute, or kStandardOutput) in the format of its ending, or in `format`
  /// if there is one. `Levels` is kKeepLevels,
  /// kAllLevels or a number of levels. `Delimiter` is a choice of delimiterText; any other value
  /// means the delimiter of the settings. A `CustomDelimiter` that is not empty is used instead. A
  /// report without rows is not written, and this is not a failure. After a failure the target has
  /// not changed.
  Failure SAVE(const Text& FileName, std::int32_t Levels, std::int32_t Delimiter,
               TextView CustomDelimiter, std::optional<ReportFormat> format = {});

  /// Saves in the format `format`, regardless of the ending of the name, with the levels and the
  /// delimiter of the save settings.
  Failure saveAs(ReportFormat format, const Text& FileName);

 private:
  Failure write(ReportFormat format, const Text& FileName, std::int32_t Levels,
                std::int32_t Delimiter, TextView CustomDelimiter);
  LevelLimit levelLimit(std::int32_t levels) const;
  Text delimiter(std::int32_t choice, TextView custom) const;

  const FolderReport& report_;
  const Options& options_;
  UserInterface& ui_;
};

}  // namespace ombrelian
