#include "services/ShellVerb.h"

#include <cstdlib>

#include "fs/PathText.h"
#include "fs/z_Filesystem.h"
#include "platform/Process.h"
#include "platform/Removal.h"
#include "platform/WholeFile.h"
#include "support/Guard.h"

namespace ombrelian {
namespace {

constexpr std::string_view kMark = "# Made by Ombrelian, with new folders: ";

/// `word` in an Exec key. The word stands in quotes; in it some characters need a backslash, and a
/// percent sign is doubled. Then the value as a whole doubles each backslash again.
std::string execWord(std::string_view word) {
  std::string text = "\"";
  for (const char c : word) {
    if (c == '"' || c == '`' || c == '$') {
      text += "\\\\";
      text += c;
    } else if (c == '\\') {
      text += "\\\\\\\\";
    } else if (c == '\n') {
      text += "\\n";
    } else if (c == '%') {
      text += "%%";
    } else {
      text += c;
    }
  }
  return text += '"';
}

/// The command that starts `program` with folders. Some desktops look for the first word before
/// they replace a doubled percent sign, so that they would not find a program with one.
std::string command(const std::string& program) {
  const bool needsHelp = program.find('%') != std::string::npos;
  return (needsHelp ? "Exec=env " : "Exec=") + execWord(program) + " %F\n";
}

std::string shellWord(const std::string& word) {
  std::string text = "'";
  for (const char c : word) {
    if (c == '\'') {
      text += "'\\''";
    } else {
      text += c;
    }
  }
  return text += '\'';
}

std::string desktopEntry(const std::string& program) {
  return "[Desktop Entry]\nType=Application\nName=Ombrelian\n"
         "GenericName=Disk Usage Analyzer\nGenericName[de]=Speicherplatz-Analyse\n"
         "Comment=Shows where the disk space went\n"
         "Comment[de]=Zeigt, wo der Speicherplatz geblieben ist\n"
         "Icon=ombrelian\nTerminal=false\nCategories=System;Filesystem;\n"
         "MimeType=inode/directory;\nStartupNotify=true\n" +
         command(program);
}

std::string serviceMenu(const std::string& program) {
  return "[Desktop Entry]\nType=Service\nName=Ombrelian\n"
         "X-KDE-ServiceTypes=KonqPopupMenu/Plugin\nMimeType=inode/directory;\n"
         "Actions=ombrelian;\n\n"
         "[Desktop Action ombrelian]\nName=Ombrelian\nIcon=ombrelian\n" +
         command(program);
}

std::string nemoAction(const std::string& program) {
  return "[Nemo Action]\nName=Ombrelian\nComment=Shows where the disk space went\n"
         "Icon-Name=ombrelian\nSelection=notnone\nExtensions=dir;\nQuote=double\n" +
         command(program);
}

/// Without a selection, the script gets the folder that the file manager shows.
std::string nautilusScript(const std::string& program) {
  return "if test $# -eq 0; then set -- \"$PWD\"; fi\nexec " + shellWord(program) + " -- \"$@\"\n";
}

struct VerbFile {
  TextView place;  // in the folder for data
  std::string_view begin;
  std::string (*content)(const std::string& program);
  bool isProgram;  // file managers ask for the right to execute it
};

constexpr VerbFile kFiles[] = {
    {u"applications/ombrelian.desktop", "", desktopEntry, false},
    {u"kio/servicemenus/ombrelian.desktop", "", serviceMenu, true},
    {u"nemo/actions/ombrelian.nemo_action", "", nemoAction, false},
    {u"nautilus/scripts/Ombrelian", "#!/bin/sh\n", nautilusScript, true}};

/// The number of folders that were made for the file with these bytes; -1: it is not one of ours.
int foldersMade(const std::string& bytes) {
  const std::size_t at = bytes.find(kMark);
  return at == std::string::npos ? -1 : std::atoi(bytes.c_str() + at + kMark.size());
}

/// Reads an ordinary file; its rights stay as they are.
platform::ErrorCode readFile(const Text& path, std::string& bytes) {
  platform::FindData data;
  if (const platform::ErrorCode error = findObject(path, data); error != platform::kSuccess)
    return error;
  constexpr auto kSpecial = platform::kAttributeSystem | platform::kAttributeReparsePoint;
  const bool isOrdinary = !data.isFolder() && (data.dwFileAttributes & kSpecial) == 0;
  return isOrdinary ? platform::ReadWholeFile(path, bytes) : platform::kNotOwnFile;
}

Text stepError(TextView path, platform::ErrorCode error) {
  return Text(path).append(u": ").append(platform::FormatMessageW(error));
}

/// Makes the folders above `path` that are missing, and counts them.
platform::ErrorCode makeFolders(const Text& path, int& made) {
  std::vector<Text> missing;
  for (Text folder(xGetPath(path)); !xExistFolder_W(folder);) {
    while (folder.ends_with(u'/'))
      folder.pop_back();
    if (folder.empty()) break;
    missing.push_back(folder);
    folder.resize(folder.rfind(u'/') + 1);
  }
  for (auto folder = missing.rbegin(); folder != missing.rend(); ++folder) {
    const platform::ErrorCode error = platform::CreateDirectoryW(*folder);
    if (error != platform::kSuccess) return error;
    ++made;
  }
  return platform::kSuccess;
}

void removeFolders(Text path, int number) {
  for (; number > 0; --number) {
    path.resize(path.rfind(u'/'));
    if (platform::RemoveDirectoryW({path}) != platform::kSuccess) return;
  }
}

Text addFile(const VerbFile& file, const Text& path, const std::string& program) {
  std::string older;
  platform::ErrorCode error = readFile(path, older);
  const bool isThere = error == platform::kSuccess;
  if (isThere && foldersMade(older) < 0) return {};
  int made = isThere ? foldersMade(older) : 0;
  error = makeFolders(path, made);
  if (error != platform::kSuccess) return stepError(path, error);
  const std::string bytes = std::string(file.begin)
                                .append(kMark)
                                .append(std::to_string(made))
                                .append("\n")
                                .append(file.content(program));
  if (isThere && older == bytes) return {};
  if (const Failure failure = platform::ReplaceOwnFile(path, bytes)) {
    removeFolders(path, isThere ? 0 : made);
    return stepError(path, platform::ErrorCode(failure->number));
  }
  if (file.isProgram) error = platform::AllowExecution(path);
  return error == platform::kSuccess ? Text() : stepError(path, error);
}

void removeFile(const Text& path) {
  std::string bytes;
  if (readFile(path, bytes) != platform::kSuccess) return;
  const int made = foldersMade(bytes);
  if (made < 0 || platform::DeleteFileW({path}) != platform::kSuccess) return;
  removeFolders(path, made);
}

}  // namespace

Text setShellVerb(bool isWanted, const Text& program, const Text& folder) {
  Text failed;
  for (std::size_t i = 0; i < std::size(kFiles) && failed.empty(); ++i) {
    // The last file is removed first, so that folders which several files share become empty.
    const VerbFile& file = kFiles[isWanted ? i : std::size(kFiles) - 1 - i];
    Text path = folder;
    appendName(path, file.place);
    if (isWanted) {
      failed = addFile(file, path, toBytes(program));
    } else {
      removeFile(path);
    }
  }
  return failed;
}

Text Kontextmenu(int mode) {
  return GuardedOr(
      u"main", u"Kontextmenu",
      [&] {
        const Text folder = platform::GetUserDataFolder();
        if (folder.empty()) return stepError(u"XDG_DATA_HOME", platform::kPathNotFound);
        Text program = platform::GetModuleFolder();
        appendName(program, u"ombrelian");
        return setShellVerb(mode == 1, program, folder);
      },
      [](const Error& error) { return error.text; });
}

}  // namespace ombrelian
