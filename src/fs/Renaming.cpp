#include "fs/Renaming.h"

#include "fs/z_Filesystem.h"
#include "platform/Rename.h"
#include "support/Guard.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

/// Reason why no object can have this name; empty: the name is possible.
Text nameError(TextView name) {
  if (name.find(platform::kNativeSeparator) != TextView::npos || name.find(u'\0') != TextView::npos)
    return TL(9400, u"Ein Dateiname darf kein '%1' enthalten.",
              {TextView(&platform::kNativeSeparator, 1)});
  if (name.empty() || name == u"." || name == u"..")
    return TL(9702, u"'%1' ist kein Name für eine Datei oder einen Ordner.", {name});
  return {};
}

/// Whether both paths are names of the same file. On POSIX, renaming one of them to the other
/// changes nothing and is not an error.
bool areNamesOfOneFile(TextView path, TextView other) {
  platform::FindData one;
  platform::FindData two;
  return findObject(path, one) == platform::kSuccess &&
         findObject(other, two) == platform::kSuccess && one.identity == two.identity &&
         one.linkCount > 1 && !one.isFolder();
}

}  // namespace

bool isAnotherFolder(TextView path, TextView target) {
  platform::FindData own;
  platform::FindData there;
  const bool isThere = findObject(target, there) == platform::kSuccess && there.isFolder();
  return isThere && findObject(path, own) == platform::kSuccess &&
         !(own.identity == there.identity);
}

Text renameInFolder(const platform::ShownObject& object, TextView name) {
  return GuardedOr(
      u"z_Filesystem", u"renameInFolder",
      [&]() -> Text {
        const TextView present = xGetFileName(object.path);
        if (name == present) return {};
        if (Text error = nameError(name); !error.empty()) return error;
        Text target(xGetPath(object.path));
        appendName(target, name);
        if (areNamesOfOneFile(object.path, target))
          return TL(9401, u"'%1' und '%2' sind zwei Namen derselben Datei.", {present, name});
        if (isAnotherFolder(object.path, target))
          return TL(9865, u"Einen Ordner '%1' gibt es dort schon. Ein Ordner wird nicht ersetzt.",
                    {name});
        platform::FindData there;
        std::optional<platform::FileIdentity> replaced;
        if (findObject(target, there) == platform::kSuccess) replaced = there.identity;
        const platform::ErrorCode error = platform::RenameObject(object, name, replaced);
        return error == platform::kSuccess ? Text() : xGetErrorText(false, error);
      },
      errorTextOf);
}

}  // namespace ombrelian
