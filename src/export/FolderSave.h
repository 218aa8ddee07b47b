#pragma once

#include <memory>

#include "export/FolderRows.h"
#include "export/ReportWriter.h"
#include "settings/Options.h"
#include "support/UserInterface.h"

namespace ombrelian {

/// Keeps what the save settings say of levels and of the delimiter.
inline constexpr std::int32_t kKeepLevels = -2;
inline constexpr std::int32_t kAllLevels = -1;
inline constexpr std::int32_t kKeepDelimiter = -1;
inline constexpr std::int32_t kCustomDelimiter = 4;

/// Saves the folder report to a file.
class FolderSave {
 public:
  /// All are kept by reference.
  FolderSave(const FolderReport& report, const Options& options, UserInterface& ui)
      : report_(report), options_(options), ui_(ui) {}

  /// Saves under `FileName` (absolute) in the format that its ending asks for. `Levels`:
  /// kKeepLevels, kAllLevels or a number of levels. `Delimiter`: 0 comma, 1 semicolon, 2 tab, 3
  /// blank, else the chosen one; a `CustomDelimiter` that is not empty goes before it. A report
  /// without rows is not written and no failure. After a failure nothing new stands under the
  /// target's name.
  Failure SAVE(const Text& FileName, std::int32_t Levels, std::int32_t Delimiter,
               TextView CustomDelimiter);

  /// Whether this program can write the format.
  static bool canWrite(ReportFormat format);

 private:
  std::unique_ptr<ReportWriter> makeWriter(ReportFormat format, ReportFile& file,
                                           SaveSettings settings) const;
  LevelLimit levelLimit(std::int32_t levels) const;
  Text delimiter(std::int32_t choice, TextView custom) const;
  void measureRows(const FolderRows& rows, ReportWriter& writer) const;
  void writeRows(const FolderRows& rows, ReportWriter& writer, const ReportFile& file);
  bool isCancelled();
  bool savesSelection() const;
  NodeIndex startRow() const;
  NodeIndex nextSource(NodeIndex source) const;

  const FolderReport& report_;
  const Options& options_;
  UserInterface& ui_;
  std::uint64_t rowsWritten_ = 0;
  std::uint64_t lastProgressTick_ = 0;
};

}  // namespace ombrelian
