#include "fs/Owners.h"

#include "fs/Links.h"
#include "platform/Accounts.h"
#include "platform/Volumes.h"
#include "support/Translate.h"

namespace ombrelian {

bool keepsOwners(TextView path) {
  platform::VolumeInformation volume;
  return platform::GetVolumeInformationW(path, volume) == platform::kSuccess && volume.keepsOwners;
}

OwnerTexts::OwnerTexts() : everyone_(TL(4141, u"Jeder")), unknown_(TL(3822, u"-Unbekannt-")) {}

TextView OwnerTexts::of(bool areKept, const Text& account) const {
  if (!areKept) return everyone_;
  return account.empty() ? unknown_ : account;
}

TextView OwnerTexts::of(bool areKept, std::uint32_t ownerId) const {
  return areKept ? of(true, platform::LookupAccountName(ownerId)) : TextView(everyone_);
}

Text OwnerTexts::at(TextView path, bool areKept) const {
  return Text(of(areKept, areKept ? GetFileOwnerW(path) : Text()));
}

}  // namespace ombrelian
