#include "platform/posix/OpenLevels.h"

#include "platform/posix/Retried.h"
#include "platform/posix/Stat.h"

namespace ombrelian::platform {

SharedFolder openAbove(const SharedFolder& below, const FileIdentity& expected) {
  if (below == nullptr) return nullptr;
  Descriptor folder(retried([&] { return openat(below->get(), "..", kOpenLevel); }));
  FileIdentity identity;
  const bool isSame = folder && readIdentity(folder.get(), identity) == 0 && identity == expected;
  return isSame ? std::make_shared<const Descriptor>(std::move(folder)) : nullptr;
}

}  // namespace ombrelian::platform
