#include "platform/posix/FoldersAbove.h"

#include <fcntl.h>

#include <algorithm>
#include <string_view>

#include "platform/posix/Descriptor.h"
#include "platform/posix/Stat.h"

namespace ombrelian::platform {
namespace {

/// Opens `name` below the open folder `above`, and reads which folder it is.
Descriptor openBelow(int above, const char* name, FileIdentity& identity) {
  Descriptor folder(openat(above, name, O_PATH | O_DIRECTORY | O_CLOEXEC));
  const bool isKnown = folder && readIdentity(folder.get(), identity) == 0;
  return isKnown ? std::move(folder) : Descriptor();
}

void addFoldersOnTheWay(std::string_view path, std::vector<FileIdentity>& folders) {
  FileIdentity identity;
  Descriptor folder = openBelow(AT_FDCWD, path.starts_with('/') ? "/" : ".", identity);
  while (folder) {
    path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
    if (path.empty()) return;
    folders.push_back(identity);
    const std::string step(path.substr(0, path.find('/')));
    path.remove_prefix(step.size());
    folder = openBelow(folder.get(), step.c_str(), identity);
  }
}

void addRealFolders(int from, std::vector<FileIdentity>& folders) {
  FileIdentity last;
  Descriptor folder = openBelow(from, ".", last);
  while (folder) {
    FileIdentity identity;
    folder = openBelow(folder.get(), "..", identity);
    if (!folder || identity == last) return;
    folders.push_back(identity);
    last = identity;
  }
}

}  // namespace

std::vector<FileIdentity> foldersAbove(const std::string& path, int folder) {
  std::vector<FileIdentity> folders;
  addFoldersOnTheWay(path, folders);
  addRealFolders(folder, folders);
  return folders;
}

}  // namespace ombrelian::platform
