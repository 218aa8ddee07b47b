#include "fs/ExactPath.h"

#include <algorithm>
#include <vector>

#include "fs/PathText.h"
#include "platform/FolderWalk.h"
#include "support/Surrogates.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

constexpr char16_t kMark = u'\uFFFD';

/// `name` as a dialog shows it, with one mark for each run of bytes that are no text: toolkits
/// differ in the number of marks.
Text likeShown(TextView name) {
  Text shown;
  for (std::size_t at = 0; at < name.size(); ++at) {
    const char16_t unit = name[at];
    const bool isPair =
        isHighSurrogate(unit) && at + 1 < name.size() && isLowSurrogate(name[at + 1]);
    if (isPair) {
      shown.append(name.substr(at++, 2));
    } else if (unit != kMark && !isLowSurrogate(unit)) {
      shown += unit;
    } else if (shown.empty() || shown.back() != kMark) {
      shown += kMark;
    }
  }
  return shown;
}

/// The names in `folder` that look like `name`.
std::vector<Text> namesLike(TextView folder, TextView name) {
  std::vector<Text> found;
  platform::FolderWalk walk(0, platform::WalkReach::OneFolder);
  if (walk.openSource(folder) != platform::kSuccess) return found;
  const Text wanted = likeShown(name);
  while (walk.nextEntry() != nullptr) {
    if (likeShown(walk.name()) == wanted) found.emplace_back(walk.name());
  }
  return found;
}

bool exists(TextView path) {
  platform::FindData data;
  return platform::FindFirstFileW(path, data) == platform::kSuccess;
}

Error notFound(TextView path, bool isAmbiguous) {
  return {std::int32_t(platform::kFileNotFound), u"exactPath",
          isAmbiguous
              ? TL(9822,
                   u"Im Ordner gibt es mehrere Namen, die wie '%1' aussehen, denn sie enthalten "
                   u"Bytes, die kein Text sind. Bitte den Pfad eintippen oder einen umbenennen.",
                   {Text(path)})
              : TL(9823, u"'%1' gibt es nicht.", {Text(path)})};
}

}  // namespace

Result<Text> exactPath(TextView path, bool mayBeNew) {
  if (path.find(kMark) == TextView::npos) return Text(path);
  Text exact(1, platform::kNativeSeparator);
  for (std::size_t at = 0; at < path.size();) {
    const std::size_t end = std::min(path.find(platform::kNativeSeparator, at), path.size());
    const TextView name = path.substr(at, end - at);
    at = end + 1;
    if (name.empty()) continue;
    Text next = exact;
    appendName(next, name);
    if (name.find(kMark) != TextView::npos && !exists(next)) {
      const std::vector<Text> names = namesLike(exact, name);
      const bool isNew = names.empty() && mayBeNew && at >= path.size();
      if (!isNew && names.size() != 1) return notFound(next, names.size() > 1);
      if (!isNew) next = appendName(exact, names.front());
    }
    exact = std::move(next);
  }
  return exact;
}

}  // namespace ombrelian
