#include "settings/IniSetUp.h"

#include "platform/FilePlace.h"
#include "platform/WholeFile.h"
#include "support/Guard.h"

namespace ombrelian {
namespace {

using platform::ErrorCode;
using platform::FileHandle;
using platform::kSuccess;

constexpr TextView kModule = u"main";

struct Key {
  TextView section;
  TextView key;
};
constexpr Key kShellVerb = {u"Optionen", u"Kontextmenu"};
constexpr Key kLanguage = {u"Allgemein", u"Lang"};

void migrate(TextView from, TextView to) {
  constexpr TextView kMissing = u"-99";
  const IniStore old{Text(from)};
  IniStore file{Text(to)};
  for (const auto& [section, key] : {kShellVerb, kLanguage}) {
    const Text value = old.INI_ReadString(section, key, kMissing);
    if (value != kMissing) file.INI_WriteString(section, key, value);
  }
}

/// The same settings with a byte order mark. Bytes with a NUL are taken for UTF-16, and the mark
/// overwrites the first unit. All others are UTF-8, in which a path may contain any bytes.
std::string withMark(std::string bytes) {
  constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
  if (bytes.find('\0') != std::string::npos)
    return bytes.replace(0, kIniByteOrderMark.size(), kIniByteOrderMark);
  if (bytes.starts_with(kUtf8Mark)) bytes.erase(0, kUtf8Mark.size());
  return encodeIni(fromBytes(bytes));
}

/// Returns the path of the copy that it made; empty: there was nothing to repair.
Text repair(const Text& path) {
  std::string bytes;
  const ErrorCode error = platform::ReadOwnFile(path, bytes);
  if (error != kSuccess || bytes.starts_with(kIniByteOrderMark)) return {};
  Text copy = bytes.empty() ? Text() : path + u".bak";
  if (!copy.empty() && platform::ReplaceOwnFile(copy, bytes)) return {};
  platform::ReplaceOwnFile(path, withMark(std::move(bytes)));
  return copy;
}

}  // namespace

Text prepareIniFile(const Text& path, TextView oldPath) {
  Text copy;
  Guarded(kModule, u"Main", [&] {
    ErrorCode error = kSuccess;
    FileHandle made = platform::OpenOwnFile(path, platform::kCreateNew, error);
    if (error != kSuccess) {
      copy = repair(path);
      return;
    }
    platform::WriteFile(made, kIniByteOrderMark);
    platform::CloseHandle(made);
    migrate(oldPath, path);
  });
  return copy;
}

bool claimFirstStart(IniStore& file) {
  constexpr TextView kUnset = u"99";
  const auto& [section, key] = kShellVerb;
  if (file.INI_ReadString(section, key, kUnset) != kUnset) return false;
  file.INI_WriteString(section, key, u"1");
  return true;
}

}  // namespace ombrelian
