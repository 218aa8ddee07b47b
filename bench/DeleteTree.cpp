// delete_tree FOLDER: deletes a folder for good as the window does, with its questions whether to go
// on; prints what went.
#include <cstdio>

#include "fs/Deleting.h"
#include "platform/Time.h"

using namespace ombrelian;

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: delete_tree FOLDER\n", stderr);
    return 2;
  }
  std::uint64_t lastLook = 0;
  const FolderDeletion deletion =
      xDeleteFolder_W({fromBytes(argv[1])}, [&](std::uint64_t, std::uint64_t) {
        lastLook = platform::GetTickCount();
        return lastLook != 0;
      });
  std::printf("%llu files, %llu folders\n", static_cast<unsigned long long>(deletion.files),
              static_cast<unsigned long long>(deletion.folders));
  if (!deletion.isGone) std::fprintf(stderr, "%s\n", toBytes(deletion.errorText).c_str());
  return deletion.isGone ? 0 : 1;
}
