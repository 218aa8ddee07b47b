#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "export/ReportWriter.h"
#include "platform/FolderWalk.h"
#include "support/Text.h"

namespace ombrelian {

/// What the program was started to do.
struct CommandLine {
  enum class Mode { Interactive, Silent, Lists, Restart, Help, Version, Commands, Invalid };

  Mode mode = Mode::Interactive;
  bool translatorMode = false;         // "-TLMODUS" stood in the line
  bool readOnly = false;               // "--read-only": the window changes nothing on the disk
  std::deque<Text> sources;            // sources in the order of the line
  Text target;                         // Silent: the report to write
  std::int32_t levels = -1;            // Silent: deepest level with rows; -1: all
  std::int32_t delimiter = -1;         // Silent: entry of the delimiter list; -1: the stored choice
  Text customDelimiter;                // Silent: goes before the entry unless empty
  bool json = false;                   // Lists: for machines
  Text saveFolder;                     // Lists: where each list is saved; empty: they are printed
  std::optional<ReportFormat> format;  // Lists: of the saved ones; none: the stored choice
  std::int32_t rows = -1;              // Lists: rows of each list; -1: as many as suits the form
  int helpers = platform::kHelpersByDevice;  // threads that read ahead
  Text error;                                // Invalid: what to tell the user
};

/// Whether translator mode is asked for. This is known before a text for an error is needed.
bool wantsTranslatorMode(const std::vector<Text>& arguments);

/// Reads the arguments behind the program's name, as a POSIX shell hands them over. Relative paths
/// become absolute. A path that begins with "-" goes behind "--".
CommandLine parseArguments(const std::vector<Text>& arguments);

/// Reads a whole command line in which paths stand in double quotes, as Windows hands it over.
CommandLine parseCommandText(TextView line);

/// The sources of an interactive line: what stands in pairs of double quotes, or all of a line
/// that has none. An unclosed quote ends the reading.
std::deque<Text> KZ_GetFoldersFromCommand(TextView line);

}  // namespace ombrelian
