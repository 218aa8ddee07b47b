#include "settings/IniSetUp.h"

#include "platform/Files.h"
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

void repair(TextView path) {
  ErrorCode error = kSuccess;
  FileHandle file = platform::CreateFileW(path, platform::kOpenRead, error);
  if (error != kSuccess) return;
  char bytes[2] = {};
  std::size_t got = 0;
  platform::ReadFile(file, bytes, sizeof bytes, got);
  if (std::string_view(bytes, got) == kIniByteOrderMark) return;
  FileHandle mended = platform::CreateFileW(path, platform::kOpenExisting, error);
  if (error == kSuccess) platform::WriteFile(mended, kIniByteOrderMark);
}

}  // namespace

void prepareIniFile(TextView path, TextView oldPath) {
  Guarded(kModule, u"Main", [&] {
    ErrorCode error = kSuccess;
    FileHandle made = platform::CreateFileW(path, platform::kCreateNew, error);
    if (error != kSuccess) {
      repair(path);
      return;
    }
    platform::WriteFile(made, kIniByteOrderMark);
    platform::CloseHandle(made);
    migrate(oldPath, path);
  });
}

bool claimFirstStart(IniStore& file) {
  constexpr TextView kUnset = u"99";
  const auto& [section, key] = kShellVerb;
  if (file.INI_ReadString(section, key, kUnset) != kUnset) return false;
  file.INI_WriteString(section, key, u"1");
  return true;
}

}  // namespace ombrelian
