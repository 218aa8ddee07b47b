#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "export/ReportWriter.h"
#include "platform/FolderWalk.h"
#include "support/Text.h"

namespace ombrelian {

/// The job for which the program was started.
struct CommandLine {
  enum class Mode { Interactive, Silent, Lists, Restart, Help, Version, Commands, Invalid };

  Mode mode = Mode::Interactive;
  bool translatorMode = false;    // the line contained "-TLMODUS"
  bool readOnly = false;          // "--read-only": the window changes nothing on the disk
  std::deque<Text> sources = {};  // sources in the order of the line
  Text target = {};               // Silent: the report to write; kStandardOutput is possible
  std::int32_t levels = -1;       // Silent: deepest level with rows; -1: all
  std::int32_t delimiter = -1;    // Silent: entry of the delimiter list; -1: the stored choice
  Text customDelimiter = {};      // Silent: used instead of the entry unless empty
  bool force = false;             // Silent, Lists: write-protected reports are replaced
  bool json = false;              // Lists: the output is JSON
  Text saveFolder = {};           // Lists: folder for the saved lists; empty: they are printed
  std::optional<ReportFormat> format =
      {};  // Lists: format of the saved lists; none: the stored choice. Silent: format on the
           // standard output; none: that of the target's name
  std::int32_t rows = -1;  // Lists: rows of each list; -1: the default of the output
  int helpers = platform::kHelpersByDevice;  // number of threads that read ahead
  Text error = {};                           // Invalid: message for the user
};

/// Whether the arguments request translator mode. It must be known before an error text is needed.
bool wantsTranslatorMode(const std::vector<Text>& arguments);

/// Reads the arguments after the program's name, as a POSIX shell passes them. Relative paths
/// become absolute. A path that begins with "-" must follow "--".
CommandLine parseArguments(const std::vector<Text>& arguments);

/// The arguments as one line for reports on faults, each in double quotes.
Text commandText(const std::vector<Text>& arguments);

/// Reads a whole command line with paths in double quotes, as Windows passes it.
CommandLine parseCommandText(TextView line);

/// The sources of an interactive line: the texts in pairs of double quotes, or the whole line if it
/// has no quotes. An unclosed quote ends the reading.
std::deque<Text> KZ_GetFoldersFromCommand(TextView line);

}  // namespace ombrelian
