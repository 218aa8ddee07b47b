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

TextView OwnerTexts::of(bool areKept, const platform::FindData& data) const {
  if (!areKept) return everyone_;
  const bool isKnown = data.statError == platform::kSuccess;
  return isKnown ? of(true, platform::LookupAccountName(data.ownerId)) : TextView(unknown_);
}

Text OwnerTexts::at(TextView path, bool areKept) const {
  return Text(of(areKept, areKept ? GetFileOwnerW(path) : Text()));
}

}  // namespace ombrelian
