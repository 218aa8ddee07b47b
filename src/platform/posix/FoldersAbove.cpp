#include "platform/posix/FoldersAbove.h"

#include <errno.h>
#include <fcntl.h>

#include "platform/posix/Descriptor.h"
#include "platform/posix/PathAt.h"
#include "platform/posix/Retried.h"
#include "platform/posix/Stat.h"

namespace ombrelian::platform {
namespace {

/// Opens `name` below the open folder `above`, and reads which folder it is. Returns 0 or errno.
int openBelow(int above, const char* name, Descriptor& folder, FileIdentity& identity) {
  Descriptor found(retried([&] { return openat(above, name, O_PATH | O_DIRECTORY | O_CLOEXEC); }));
  if (!found) return errno;
  folder = std::move(found);
  return readIdentity(folder.get(), identity);
}

}  // namespace

int addFoldersUpwards(int folder, std::vector<FileIdentity>& folders) {
  FileIdentity identity;
  Descriptor above;
  int error = readIdentity(folder, identity);
  while (error == 0 && (folders.empty() || !(identity == folders.back()))) {
    folders.push_back(identity);
    error = openBelow(above ? above.get() : folder, "..", above, identity);
  }
  return error;
}

int foldersAbove(const std::string& path, std::vector<FileIdentity>& folders) {
  std::string_view rest = path;
  FileIdentity identity;
  Descriptor folder;
  int error = openBelow(AT_FDCWD, path.starts_with('/') ? "/" : ".", folder, identity);
  for (std::string step = takeComponent(rest); error == 0 && !step.empty();
       step = takeComponent(rest)) {
    folders.push_back(identity);
    error = openBelow(folder.get(), step.c_str(), folder, identity);
  }
  if (error != 0) return error;
  std::vector<FileIdentity> upwards;
  error = addFoldersUpwards(folder.get(), upwards);
  // The first one is the folder itself.
  if (!upwards.empty()) folders.insert(folders.end(), upwards.begin() + 1, upwards.end());
  return error;
}

}  // namespace ombrelian::platform
