#include "platform/Accounts.h"

#include <errno.h>
#include <pwd.h>
#include <unistd.h>

#include <unordered_map>
#include <vector>

namespace ombrelian::platform {
namespace {

Text askAccountName(uid_t owner) {
  std::vector<char> buffer(1024);
  struct passwd entry;
  struct passwd* found = nullptr;
  while (getpwuid_r(owner, &entry, buffer.data(), buffer.size(), &found) == ERANGE) {
    buffer.resize(buffer.size() * 2);
  }
  return found != nullptr ? fromBytes(found->pw_name) : Text();
}

}  // namespace

const Text& LookupAccountName(std::uint32_t ownerId) {
  // References into this map stay valid while it grows.
  static std::unordered_map<std::uint32_t, Text> names;
  const auto known = names.find(ownerId);
  if (known != names.end()) return known->second;
  Text name = askAccountName(ownerId);
  if (name.empty()) name = toText(std::int64_t(ownerId));
  return names.emplace(ownerId, std::move(name)).first->second;
}

Text GetUserNameW() { return askAccountName(geteuid()); }

bool IsNTAdmin() { return geteuid() == 0; }

}  // namespace ombrelian::platform
