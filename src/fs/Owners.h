#pragma once

#include <cstdint>

#include "support/Text.h"

namespace ombrelian {

/// Whether the file system that holds `path` keeps owners. False too where it cannot be asked.
bool keepsOwners(TextView path);

/// Decides which owner every list shows: the name of an account, "-Unbekannt-" where that cannot be
/// learnt, or "Jeder" on a file system without owners. The texts are looked up once, so that a walk
/// can ask for every entry.
class OwnerTexts {
 public:
  OwnerTexts();

  /// The owner of an object by the name of its account; empty: the name is unknown. The view is
  /// valid as long as the texts and `account` are.
  TextView of(bool areKept, const Text& account) const;

  /// The same by the number in a find record.
  TextView of(bool areKept, std::uint32_t ownerId) const;

  /// The same for the object at `path`, which is asked only where owners are kept.
  Text at(TextView path, bool areKept) const;

 private:
  Text everyone_;
  Text unknown_;
};

}  // namespace ombrelian
