// delete_tree FOLDER deletes a folder permanently as the window does, including the checks whether
// to continue, and prints how much was deleted. delete_tree --make FOLDER FILES makes a folder with
// FILES empty files.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "fs/Deleting.h"
#include "platform/Time.h"

using namespace ombrelian;

namespace {

int makeFolder(const char* path, long files) {
  if (mkdir(path, 0777) != 0) return 1;
  const int folder = open(path, O_RDONLY | O_DIRECTORY);
  for (long i = 0; i < files; ++i) {
    const int file = openat(folder, ("file" + std::to_string(i)).c_str(), O_WRONLY | O_CREAT, 0666);
    if (file < 0) return 1;
    close(file);
  }
  return close(folder);
}

int deleteFolder(const char* path) {
  std::uint64_t lastLook = 0;
  const FolderDeletion deletion =
      xDeleteFolder_W({fromBytes(path)}, [&](std::uint64_t, std::uint64_t) {
        lastLook = platform::GetTickCount();
        return lastLook != 0;
      });
  std::printf("%llu files, %llu folders\n", static_cast<unsigned long long>(deletion.files),
              static_cast<unsigned long long>(deletion.folders));
  if (!deletion.isGone) std::fprintf(stderr, "%s\n", toBytes(deletion.errorText).c_str());
  return deletion.isGone ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 2) return deleteFolder(argv[1]);
  if (argc == 4 && std::string_view(argv[1]) == "--make") {
    return makeFolder(argv[2], std::atol(argv[3]));
  }
  std::fputs("usage: delete_tree FOLDER | delete_tree --make FOLDER FILES\n", stderr);
  return 2;
}
