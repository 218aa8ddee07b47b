#include "frame/CommandLine.h"

#include <algorithm>
#include <limits>

#include "export/ReportFile.h"
#include "fs/PathText.h"
#include "platform/Files.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

constexpr TextView kTranslatorMode = u"-TLMODUS";
constexpr TextView kRestart = u"-RESTART";
constexpr TextView kReadOnly = u"--read-only";

bool isDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

/// The value of `digits`; a number that is too large becomes the greatest possible number of
/// levels.
std::int32_t toLevels(TextView digits) {
  std::int64_t number = std::numeric_limits<std::int32_t>::max();
  parseNumber(digits, number);
  return std::int32_t(std::min<std::int64_t>(number, std::numeric_limits<std::int32_t>::max()));
}

/// Reads arguments one after the other into a record.
class ArgumentReader {
 public:
  explicit ArgumentReader(const std::vector<Text>& arguments) {
    for (const Text& argument : arguments) {
      if (argument == kTranslatorMode) {
        line_.translatorMode = true;
      } else {
        arguments_.push_back(argument);
      }
    }
  }

  CommandLine read() {
    if (isRestart()) {
      line_.mode = CommandLine::Mode::Restart;
      line_.readOnly = arguments_.size() > 1;
      return std::move(line_);
    }
    bool optionsEnd = false;
    for (; at_ < arguments_.size(); ++at_) {
      const Text& argument = arguments_[at_];
      if (optionsEnd || argument.size() < 2 || argument.front() != u'-') {
        paths_.push_back(argument);
      } else if (argument == u"--") {
        optionsEnd = true;
      } else if (!readOption(argument)) {
        return std::move(line_);
      }
    }
    distributePaths();
    return std::move(line_);
  }

 private:
  /// Whether this program wrote the line to restart itself.
  bool isRestart() const {
    return arguments_ == std::vector<Text>{Text(kRestart)} ||
           arguments_ == std::vector<Text>{Text(kRestart), Text(kReadOnly)};
  }

  /// Reads one option; false: the rest of the line is not read.
  bool readOption(const Text& option) {
    if (option == u"--help" || option == u"-h") return stop(CommandLine::Mode::Help);
    if (option == u"--version") return stop(CommandLine::Mode::Version);
    if (option == u"--commands") return stop(CommandLine::Mode::Commands);
    if (option == u"--lists") {
      wantsLists_ = true;
      return true;
    }
    if (option == kReadOnly) return line_.readOnly = true;
    if (option == u"--json") return line_.json = true;
    if (option == u"--force") return line_.force = true;
    if (option == u"--save" || option == u"--format") return readValue(option);
    if (option == u"--rows" && readRows()) return true;
    if (option == u"--helpers") {
      return readHelpers() ||
             fail(TL(9345, u"Hinter '--helpers' muss eine Zahl von 0 bis %1 stehen.",
                     {toText(std::int64_t(platform::kMaxHelpers))}));
    }
    if (option.starts_with(u"-s") && std::all_of(option.begin() + 2, option.end(), isDigit)) {
      line_.mode = CommandLine::Mode::Silent;
      if (option.size() > 2) line_.levels = toLevels(TextView(option).substr(2));
      return true;
    }
    if (option.starts_with(u"-d")) {
      if (option.size() < 3 || option[2] < u'0' || option[2] > u'4') {
        return fail(TL(9708, u"Hinter '-d' muss eine Ziffer von 0 bis 4 stehen."));
      }
      line_.delimiter = option[2] - u'0';
      line_.customDelimiter = option.substr(3);
      return true;
    }
    if (option == u"--rows") {
      return fail(TL(9018, u"Hinter '--rows' muss die Anzahl der Zeilen stehen."));
    }
    return fail(TL(9000,
                   u"Die Option '%1' ist nicht bekannt. '--help' nennt alle Optionen; vor einem "
                   u"Pfad, der mit '-' beginnt, muss '--' stehen.",
                   {option}));
  }

  /// Reads the text after "--save" or "--format".
  bool readValue(const Text& option) {
    const Text value = at_ + 1 < arguments_.size() ? arguments_[++at_] : Text();
    if (option == u"--save") {
      if (value.empty()) return fail(TL(9019, u"Hinter '--save' muss ein Ordner stehen."));
      line_.saveFolder = platform::GetFullPathNameW(value);
      return true;
    }
    line_.format = formatOfExtension(value);
    return line_.format.has_value() ||
           fail(TL(9004, u"Das Format '%1' gibt es nicht; es gibt txt, csv, html, xml und xlsx.",
                   {value}));
  }

  /// Reads the number after "--rows".
  bool readRows() {
    std::int64_t number = -1;
    const bool isNumber = at_ + 1 < arguments_.size() && parseNumber(arguments_[at_ + 1], number);
    if (!isNumber || number < 0) return false;
    line_.rows = toLevels(arguments_[++at_]);
    return true;
  }

  /// Reads the number after "--helpers".
  bool readHelpers() {
    std::int64_t number = -1;
    const bool isNumber = at_ + 1 < arguments_.size() && parseNumber(arguments_[at_ + 1], number);
    if (!isNumber || number < 0 || number > platform::kMaxHelpers) return false;
    line_.helpers = int(number);
    ++at_;
    return true;
  }

  bool stop(CommandLine::Mode mode) {
    line_.mode = mode;
    return false;
  }

  bool fail(Text error) {
    line_.error = std::move(error);
    return stop(CommandLine::Mode::Invalid);
  }

  /// Whether the line writes a report to the standard output.
  bool writesOutput() const {
    return line_.mode == CommandLine::Mode::Silent && !paths_.empty() &&
           paths_.front() == kStandardOutput;
  }

  /// Whether the options for lists are used in a line where they have a meaning.
  bool checkLists() {
    const bool hasFormat = line_.format.has_value() && !writesOutput();
    const bool saves = !line_.saveFolder.empty() || hasFormat;
    const bool hasOptions = line_.json || line_.rows >= 0 || saves;
    if (!wantsLists_ && !hasOptions) return true;
    if (!wantsLists_ || line_.mode == CommandLine::Mode::Silent) {
      return fail(
          TL(9016,
             u"'--rows', '--json', '--save' und '--format' gelten nur mit '--lists' ('--format' "
             u"auch mit dem Ziel '-'), und "
             u"'--lists' nicht zusammen mit '-s'."));
    }
    if (saves && (line_.json || line_.rows >= 0 || line_.saveFolder.empty())) {
      return fail(TL(9342,
                     u"'--save' speichert alle Zeilen in Dateien und gilt nicht zusammen mit "
                     u"'--rows' oder '--json'; '--format' gilt nur mit '--save'."));
    }
    if (paths_.size() != 1) {
      return fail(TL(9017, u"Zu '--lists' gehört genau ein Quellordner."));
    }
    line_.mode = CommandLine::Mode::Lists;
    return true;
  }

  void distributePaths() {
    if (!checkLists()) return;
    const bool isSilent = line_.mode == CommandLine::Mode::Silent;
    if (isSilent && paths_.size() < 2) {
      fail(TL(9001,
              u"Hinter '-s' müssen eine Zieldatei und mindestens ein Quellordner stehen. "
              u"'--help' zeigt ein Beispiel."));
      return;
    }
    if (writesOutput() && line_.format == ReportFormat::XLSX) {
      fail(TL(9778,
              u"Eine Arbeitsmappe braucht eine Datei als Ziel; auf die Standardausgabe gehen "
              u"txt, csv, html und xml."));
      return;
    }
    for (std::size_t i = 0; i < paths_.size(); ++i) {
      if (paths_[i].empty()) {
        fail(TL(9703,
                u"Eine Quelle ist leer. Bitte einen Ordner nennen oder das Argument weglassen."));
        return;
      }
      Text path = platform::GetFullPathNameW(paths_[i]);
      const bool isOutput = isSilent && i == 0 && writesOutput();
      if (!isOutput && !isAbsolute(path)) {
        fail(TL(9843, u"'%1' hängt vom aktuellen Ordner ab, und den gibt es nicht mehr.",
                {paths_[i]}));
        return;
      }
      if (isSilent && i == 0) {
        line_.target = writesOutput() ? Text(kStandardOutput) : std::move(path);
      } else if (std::find(line_.sources.begin(), line_.sources.end(), path) ==
                 line_.sources.end()) {
        line_.sources.push_back(std::move(path));
      }
    }
  }

  CommandLine line_;
  std::vector<Text> arguments_;
  std::size_t at_ = 0;  // index of the current argument
  std::vector<Text> paths_;
  bool wantsLists_ = false;
};

/// Reads the text in the next pair of double quotes from `at` on; false: there is no such pair.
bool takeQuoted(TextView line, std::size_t& at, Text& quoted) {
  const auto open = line.find(u'"', at);
  if (open == TextView::npos) return false;
  const auto close = line.find(u'"', open + 1);
  if (close == TextView::npos) return false;
  quoted = line.substr(open + 1, close - open - 1);
  at = close + 1;
  return true;
}

/// Removes a word that is outside of quotes from a line; false: the line does not contain it.
bool takeWord(Text& line, TextView word) {
  bool isQuoted = false;
  for (std::size_t at = 0; at < line.size(); ++at) {
    if (line[at] == u'"') isQuoted = !isQuoted;
    if (isQuoted || !TextView(line).substr(at).starts_with(word)) continue;
    const std::size_t end = at + word.size();
    if ((at > 0 && line[at - 1] != u' ') || (end < line.size() && line[end] != u' ')) continue;
    line.erase(at, word.size());
    return true;
  }
  return false;
}

/// Reads "-d<digit>" and the quoted text directly after it; returns the position where paths begin.
std::size_t readDelimiter(TextView line, CommandLine& result) {
  const auto at = line.find(u"-d");
  if (at == TextView::npos || at + 2 >= line.size() || !isDigit(line[at + 2])) return 0;
  result.delimiter = line[at + 2] - u'0';
  std::size_t behind = at + 3;
  if (behind >= line.size() || line[behind] != u'"') return 0;
  return takeQuoted(line, behind, result.customDelimiter) ? behind : 0;
}

/// Reads a silent line without its first two characters.
void readSilentText(TextView line, CommandLine& result) {
  result.mode = CommandLine::Mode::Silent;
  const auto digits =
      std::size_t(std::find_if_not(line.begin(), line.end(), isDigit) - line.begin());
  if (digits > 0) result.levels = toLevels(line.substr(0, digits));
  std::size_t at = readDelimiter(line, result);
  if (takeQuoted(line, at, result.target)) {
    for (Text source; takeQuoted(line, at, source);)
      result.sources.push_back(source);
  }
}

}  // namespace

bool wantsTranslatorMode(const std::vector<Text>& arguments) {
  return std::find(arguments.begin(), arguments.end(), kTranslatorMode) != arguments.end();
}

Text commandText(const std::vector<Text>& arguments) {
  Text line;
  for (const Text& argument : arguments) {
    if (!line.empty()) line += u' ';
    line.append(u"\"").append(argument).append(u"\"");
  }
  return line;
}

CommandLine parseArguments(const std::vector<Text>& arguments) {
  return ArgumentReader(arguments).read();
}

CommandLine parseCommandText(TextView line) {
  CommandLine result;
  Text rest(line);
  if (const auto at = rest.find(kTranslatorMode); at != Text::npos) {
    result.translatorMode = true;
    rest.erase(at, kTranslatorMode.size());
  }
  result.readOnly = takeWord(rest, kReadOnly);
  rest = trimBlanks(rest);
  if (rest == kRestart) {
    result.mode = CommandLine::Mode::Restart;
  } else if (rest.starts_with(u"-s")) {
    readSilentText(TextView(rest).substr(2), result);
  } else {
    result.sources = KZ_GetFoldersFromCommand(rest);
  }
  return result;
}

std::deque<Text> KZ_GetFoldersFromCommand(TextView line) {
  std::deque<Text> sources;
  if (line.empty()) return sources;
  if (line.find(u'"') == TextView::npos) {
    sources.emplace_back(line);
    return sources;
  }
  std::size_t at = 0;
  for (Text source; takeQuoted(line, at, source);)
    sources.push_back(source);
  return sources;
}

}  // namespace ombrelian
