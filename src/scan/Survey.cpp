#include "scan/Survey.h"

#include "fs/z_Filesystem.h"
#include "platform/FolderWalk.h"

namespace ombrelian {

using platform::FindData;
using platform::kSuccess;

bool Survey::add(TextView path, const FindData& data, const GoOn& goOn) {
  count(data);
  return !data.isFolder() || data.isReparse() || walk(path, goOn);
}

void Survey::count(const FindData& data) {
  if (data.dwReserved0 == platform::kTagMountPoint) {
    ++mountPoints;
    return;
  }
  ++(data.isFolder() ? folders : files);
  if (data.isReparse()) ++links;
  if (data.isFolder()) return;
  const std::int64_t size = xGetFileSizeByWFD_W(data);
  bytes += size;
  if (data.linkCount < 2) return;
  ++hardlinks;
  Names& names = names_[data.identity];
  ++names.counted;
  names.all = data.linkCount;
  names.size = size;
}

bool Survey::walk(TextView folder, const GoOn& goOn) {
  platform::FolderWalk walk(helpers_);
  if (walk.openSource(folder) != kSuccess) ++unreadable;
  while (walk.depth() > 0 && !walk.hasGivenUp()) {
    const FindData* const entry = walk.nextEntry();
    if (entry == nullptr) {
      if (walk.listError() != kSuccess) ++unreadable;
      walk.goOut();
      continue;
    }
    count(*entry);
    if (!goOn(objects())) return false;
    if (!entry->isFolder() || entry->isReparse()) continue;
    const platform::ErrorCode error = walk.goIn();
    if (error != kSuccess && !platform::isMissing(error)) ++unreadable;
  }
  isSilent = walk.hasGivenUp();
  return !isSilent;
}

std::int64_t Survey::keptBytes() const {
  std::int64_t kept = 0;
  for (const auto& [identity, names] : names_) {
    kept += names.size * std::int64_t(names.counted);
    if (names.counted >= names.all) kept -= names.size;
  }
  return kept;
}

}  // namespace ombrelian
