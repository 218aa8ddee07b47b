#pragma once

#include <cstdint>

#include "platform/FindData.h"
#include "support/Text.h"

namespace ombrelian {

/// Whether the file system of `path` keeps owners. Also false if this cannot be found out.
bool keepsOwners(TextView path);

/// Decides which owner every list shows: the name of an account, "-Unbekannt-" if the name is not
/// known, or "Jeder" on a file system without owners. The texts are looked up once, so that a walk
/// can use them for every entry.
class OwnerTexts {
 public:
  OwnerTexts();

  /// The owner text for the account name `account`; empty: the name is unknown. The view is valid
  /// as long as this object and `account` exist.
  TextView of(bool areKept, const Text& account) const;

  /// The same for the owner in a find record.
  TextView of(bool areKept, const platform::FindData& data) const;

  /// The same for the object at `path`, which is read only if owners are kept.
  Text at(TextView path, bool areKept) const;

 private:
  Text everyone_;
  Text unknown_;
};

}  // namespace ombrelian
