#include "lists/SumTable.h"

#include "platform/Locale.h"
#include "tree/ScanTotals.h"

namespace ombrelian {

SumTable::SumTable(std::int32_t compareMode) : keys_(platform::localeTextRules()) {
  keys_.setCompareMode(compareMode);
}

void SumTable::clear() {
  keys_.Clear();
  sizes_.clear();
  files_.clear();
  folders_.clear();
  guesses_ = {};
}

void SumTable::add(TextView key, std::int64_t size, std::int32_t files, std::int32_t folders) {
  const auto slot = std::size_t(slotOf(key));
  sizes_[slot] = addSizes(sizes_[slot], size);
  files_[slot] += files;
  folders_[slot] += folders;
}

std::int32_t SumTable::slotOf(TextView key) {
  std::uint32_t hash = 0;
  for (const char16_t unit : key)
    hash = hash * 31 + unit;
  Guess& guess = guesses_[hash % guesses_.size()];
  if (guess.slot != 0 && guess.key == key) return guess.slot;
  // The place of the sums is made first, so that there is none without them.
  if (std::size_t(count()) + 1 >= sizes_.size()) grow(count() + 1);
  const auto added = keys_.Add({}, key, 0);
  const std::int32_t slot = added.NewNode != 0 ? added.NewNode : added.ExistingNode;
  guess.key = key;
  guess.slot = slot;
  return slot;
}

void SumTable::grow(std::int32_t slot) {
  const std::size_t slots = std::size_t(slot / kGrowth + 1) * kGrowth + 1;
  files_.resize(slots);
  folders_.resize(slots);
  sizes_.resize(slots);  // last, because its size says how much room there is
}

}  // namespace ombrelian
