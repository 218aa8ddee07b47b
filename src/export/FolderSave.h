#pragma once

#include "export/FolderFeed.h"
#include "settings/Options.h"

namespace ombrelian {

/// Keeps what the save settings say of levels and of the delimiter.
inline constexpr std::int32_t kKeepLevels = -2;
inline constexpr std::int32_t kAllLevels = -1;
inline constexpr std::int32_t kKeepDelimiter = -1;

/// Saves the folder report to a file.
class FolderSave {
 public:
  /// All arguments are kept by reference.
  FolderSave(const FolderReport& report, const Options& options, UserInterface& ui)
      : report_(report), options_(options), ui_(ui) {}

  /// Saves under `FileName` (absolute) in the format that its ending asks for. `Levels`:
  /// kKeepLevels, kAllLevels or a number of levels. `Delimiter`: an entry of delimiterText, else
  /// the chosen one; a `CustomDelimiter` that is not empty goes before it. A report without rows
  /// is not written and no failure. After a failure nothing new stands under the target's name.
  Failure SAVE(const Text& FileName, std::int32_t Levels, std::int32_t Delimiter,
               TextView CustomDelimiter);

  /// The same in a format that was chosen, whatever the name ends in, with levels and delimiter as
  /// the save settings have them.
  Failure saveAs(ReportFormat format, const Text& FileName);

 private:
  Failure write(ReportFormat format, const Text& FileName, const LevelLimit& levels,
                const Text& delimiter);
  LevelLimit levelLimit(std::int32_t levels) const;
  Text delimiter(std::int32_t choice, TextView custom) const;
  ReportList list() const;

  const FolderReport& report_;
  const Options& options_;
  UserInterface& ui_;
};

}  // namespace ombrelian
