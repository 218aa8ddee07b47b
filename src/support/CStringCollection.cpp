#include "support/CStringCollection.h"

#include <algorithm>
#include <numeric>

#include "support/Guard.h"

namespace ombrelian {
namespace {

constexpr TextView kModule = u"CStringCollection";
constexpr TextView kAddSource = u"CStringCollection.Add";

Error notFound(TextView source, const KeyOrIndex& keyOrIndex, TextView more = {}) {
  return {CStringCollection::kKeyNotFound, Text(source),
          u"Key: " + keyOrIndex.describe() + Text(more)};
}

Error outOfRange(TextView source, std::int32_t index) {
  return {CStringCollection::kPositionOutOfRange, Text(source), u"Index: " + toText(index)};
}

}  // namespace

/// The key of one search, which is compared with many stored keys. Its lower case is made at most
/// once, and only if a comparison finds a unit beyond ASCII.
class CStringCollection::SearchKey {
 public:
  SearchKey(const CStringCollection& owner, TextView key) : owner_(owner), key_(key) {}

  /// Negative if the searched key is before `stored`, 0 if they are equal, else positive.
  int compare(TextView stored) {
    if (owner_.CompareMode_ == 0) return key_.compare(stored);
    const std::size_t common = std::min(key_.size(), stored.size());
    for (std::size_t i = 0; i < common; ++i) {
      if (!isAscii(key_, i) || !isAscii(stored, i)) return compareLowered(stored);
      const char16_t own = owner_.asciiFold_[key_[i]];
      const char16_t other = owner_.asciiFold_[stored[i]];
      if (own == other) continue;
      // A combining mark after a letter can change its lower case.
      if (!isAscii(key_, i + 1) || !isAscii(stored, i + 1)) return compareLowered(stored);
      return own < other ? -1 : 1;
    }
    if (key_.size() == stored.size()) return 0;
    if (!isAscii(key_, common) || !isAscii(stored, common)) return compareLowered(stored);
    return key_.size() < stored.size() ? -1 : 1;
  }

 private:
  static bool isAscii(TextView text, std::size_t at) {
    return at >= text.size() || text[at] < 0x80;
  }

  int compareLowered(TextView stored) {
    if (!isLowered_) lowered_ = owner_.rules_->lower(key_);
    isLowered_ = true;
    return lowered_.compare(owner_.rules_->lower(stored));
  }

  const CStringCollection& owner_;
  TextView key_;
  Text lowered_;
  bool isLowered_ = false;
};

CStringCollection::CStringCollection(const TextRules& rules) : rules_(&rules) {
  std::iota(asciiFold_.begin(), asciiFold_.end(), u'\0');
  for (char16_t& unit : asciiFold_) {
    const Text lowered = rules.lower(TextView(&unit, 1));
    if (lowered.size() == 1) unit = lowered[0];
  }
}

void CStringCollection::Init(std::int32_t size, double growthFactor) {
  Guarded(kModule, u"Init", [&] { makeArrays(size, growthFactor); });
}

void CStringCollection::makeArrays(std::int32_t size, double growthFactor) {
  InitialSize = std::max(size, 1);
  GrowthFactor = growthFactor;
  Nodes.assign(std::size_t(InitialSize) + 1, {});
  IndexArray.assign(std::size_t(InitialSize) + 2, 0);
  CNode slots;
  slots.Init(InitialSize, float(growthFactor));
  Allocator.emplace(std::move(slots));
  Root = 0;
  Count_ = 0;
}

void CStringCollection::growArrays(std::int32_t slot) {
  const std::int32_t bound = std::max(grownBound(upperBound(), GrowthFactor), slot);
  IndexArray.resize(std::size_t(bound) + 2);
  Nodes.resize(std::size_t(bound) + 1);  // last, because upperBound() depends on it
}

void CStringCollection::Clear() {
  Allocator.reset();
  std::vector<Node>().swap(Nodes);
  std::vector<std::int32_t>().swap(IndexArray);
  Root = 0;
  Count_ = 0;
}

std::int32_t CStringCollection::FindNode(TextView key) const {
  return GuardedOr(
      kModule, u"FindNode",
      [&]() -> std::int32_t {
        SearchKey search(*this, key);
        std::int32_t node = Root;
        while (node != 0) {
          const int order = search.compare(Nodes[node].Key);
          if (order == 0) break;
          node = order < 0 ? Nodes[node].Left : Nodes[node].Right;
        }
        return node;
      },
      nothing<std::int32_t>);
}

std::int32_t CStringCollection::GetKeyIndex(const KeyOrIndex& keyOrIndex) const {
  if (!keyOrIndex.isPosition()) return FindNode(keyOrIndex.key());
  const std::int32_t position = keyOrIndex.position();
  return position < 1 || position > Count_ ? 0 : IndexArray[position];
}

std::int32_t CStringCollection::GetIndex(std::int32_t node) const {
  const auto first = IndexArray.begin() + 1;
  const auto last = first + Count_;
  const auto at = std::find(first, last, node);
  return at == last ? 0 : std::int32_t(at - IndexArray.begin());
}

CStringCollection::AddResult CStringCollection::existing(std::int32_t node, TextView key,
                                                         bool raise) const {
  AddResult result;
  result.ExistingNode = node;
  result.ExistingTag = Nodes[node].Tag;
  result.ExistingItem = Nodes[node].Item;
  if (raise) {
    const Text what = CompareMode_ == 0 ? u"Duplicate KeyB: " : u"Duplicate KeyA: ";
    result.error = Error{kDuplicateKey, Text(kAddSource), what + Text(key)};
  }
  return result;
}

CStringCollection::AddResult CStringCollection::Add(TextView item, TextView key, std::int32_t tag,
                                                    const AddOptions& options) {
  if (!Allocator) makeArrays(InitialSize, GrowthFactor);
  std::int32_t parent = 0;
  bool right = false;
  if (!key.empty()) {
    SearchKey search(*this, key);
    for (std::int32_t node = Root; node != 0; node = child(node, right)) {
      const int order = search.compare(Nodes[node].Key);
      if (order == 0 && !AllowDuplicates) return existing(node, key, options.RaiseOnDuplicate);
      parent = node;
      right = order >= 0;
    }
  }
  AddResult result;
  Text ownKey(key);
  Text ownItem(item);
  const std::int32_t node = takeNode(parent);
  const auto position = findPlace(item, options, result.error);
  if (!position) return result;  // the slot and the count remain changed
  openSlot(*position);
  IndexArray[*position] = node;
  Nodes[node].Key = std::move(ownKey);
  Nodes[node].Item = std::move(ownItem);
  Nodes[node].Tag = tag;
  (parent == 0 ? Root : child(parent, right)) = node;
  InsertFixup(node);
  result.NewNode = node;
  return result;
}

std::int32_t CStringCollection::takeNode(std::int32_t parent) {
  std::int32_t node = 0;
  Allocator->Alloc(node);
  try {
    if (node > upperBound()) growArrays(node);
  } catch (...) {
    Allocator->Free(node);
    throw;
  }
  Nodes[node].Parent = parent;
  Nodes[node].Left = 0;
  Nodes[node].Right = 0;
  Nodes[node].Color = kRed;
  ++Count_;
  return node;
}

std::optional<std::int32_t> CStringCollection::findPlace(TextView item, const AddOptions& options,
                                                         Failure& error) const {
  if (options.Before || options.After) {
    const KeyOrIndex& neighbour = options.Before ? *options.Before : *options.After;
    const std::int32_t found = GetKeyIndex(neighbour);
    if (found != 0) return GetIndex(found) + (options.Before ? 0 : 1);
    const Text what = options.Before ? u"Key not found before: " : u"Key not found after: ";
    if (options.RaiseOnDuplicate) {
      error = Error{kKeyNotFound, Text(kAddSource), what + neighbour.describe()};
    }
    return std::nullopt;
  }
  return options.Sorted && Count_ > 1 ? sortedPlace(item, options.SortCompare) : Count_;
}

std::int32_t CStringCollection::sortedPlace(TextView item, std::int32_t sortCompare) const {
  const std::int32_t last = Count_ - 1;  // Count_ includes the new item
  const auto compareAt = [&](std::int32_t position) {
    return rules_->compare(item, Nodes[IndexArray[position]].Item, sortCompare == 0);
  };
  if (compareAt(1) < 0) return 1;
  if (compareAt(last) > 0) return last + 1;
  std::int32_t low = 1;
  std::int32_t high = last;
  std::int32_t middle = (low + high) / 2;
  while (middle != low) {
    const int order = compareAt(middle);
    if (order == 0) break;
    (order < 0 ? high : low) = middle;
    middle = (low + high) / 2;
  }
  while (middle < last && compareAt(middle + 1) == 0) {
    ++middle;
  }
  return middle + 1;
}

void CStringCollection::openSlot(std::int32_t position) {
  const auto first = IndexArray.begin() + position;
  const auto last = IndexArray.begin() + Count_;  // Count_ includes the new item
  std::move_backward(first, last, last + 1);
}

void CStringCollection::closeSlot(std::int32_t position) {
  const auto first = IndexArray.begin() + position;
  const auto end = IndexArray.begin() + Count_ + 1;
  std::move(first + 1, end, first);
  IndexArray[Count_] = 0;
}

Failure CStringCollection::Remove(const KeyOrIndex& keyOrIndex) {
  return GuardedOr(
      kModule, u"Remove",
      [&]() -> Failure {
        const std::int32_t z = GetKeyIndex(keyOrIndex);
        if (z == 0) {
          if (!RaiseError_) return {};
          return notFound(u"Remove", keyOrIndex);
        }
        removeNode(z);
        return {};
      },
      failureOf);
}

void CStringCollection::removeNode(std::int32_t z) {
  std::int32_t y = z;
  if (Nodes[z].Left != 0 && Nodes[z].Right != 0) {
    y = Nodes[z].Right;
    while (Nodes[y].Left != 0) {
      y = Nodes[y].Left;
    }
  }
  const std::int32_t x = unlink(y);
  const std::int32_t freed = GetIndex(z);
  if (y != z) {
    // The item of the successor moves to z and keeps its position.
    Nodes[z].Key.swap(Nodes[y].Key);
    Nodes[z].Item.swap(Nodes[y].Item);
    Nodes[z].Tag = Nodes[y].Tag;
    IndexArray[GetIndex(y)] = z;
  }
  if (!isRed(y)) DeleteFixup(x);
  Nodes[y].Key = Text();
  Nodes[y].Item = Text();
  Nodes[y].Tag = 0;
  closeSlot(freed);
  --Count_;
  Allocator->Free(y);
}

Failure CStringCollection::ChangeValues(const KeyOrIndex& keyOrIndex, TextView newItem,
                                        std::int32_t newTag) {
  const std::int32_t node = GetKeyIndex(keyOrIndex);
  if (node == 0) return notFound(u"ChangeValues", keyOrIndex);
  Nodes[node].Item = newItem;
  Nodes[node].Tag = newTag;
  return {};
}

bool CStringCollection::ExistKey(TextView key) const { return Count_ != 0 && FindNode(key) != 0; }

Result<TextView> CStringCollection::Item(const KeyOrIndex& keyOrIndex) const {
  const std::int32_t node = GetKeyIndex(keyOrIndex);
  if (node != 0) return TextView(Nodes[node].Item);
  if (RaiseError_) return notFound(u"Get Item", keyOrIndex);
  return TextView();
}

Failure CStringCollection::setItem(const KeyOrIndex& keyOrIndex, TextView value) {
  const std::int32_t node = GetKeyIndex(keyOrIndex);
  if (node == 0) return notFound(u"Let Item", keyOrIndex);
  Nodes[node].Item = value;
  return {};
}

Result<std::int32_t> CStringCollection::Tag(const KeyOrIndex& keyOrIndex, bool quiet) const {
  const std::int32_t node = GetKeyIndex(keyOrIndex);
  if (node != 0) return Nodes[node].Tag;
  if (RaiseError_ && !quiet) return notFound(u"Get Tag", keyOrIndex);
  return -1;
}

Failure CStringCollection::setTag(const KeyOrIndex& keyOrIndex, bool quiet, std::int32_t value) {
  const std::int32_t node = GetKeyIndex(keyOrIndex);
  if (node != 0) {
    Nodes[node].Tag = value;
    return {};
  }
  if (!RaiseError_ || quiet) return {};
  return notFound(u"Let Tag", keyOrIndex, u" NewTag: " + toText(value));
}

Result<TextView> CStringCollection::Key(std::int32_t index) const {
  if (index < 0 || index > Count_) return outOfRange(u"Get Key", index);
  const std::int32_t node = GetKeyIndex(index);
  return node == 0 ? TextView() : TextView(Nodes[node].Key);
}

Failure CStringCollection::setKey(std::int32_t index, TextView newKey) {
  if (index < 0 || index > Count_) return outOfRange(u"Let Key", index);
  if (FindNode(newKey) == 0) return {};
  if (!AllowDuplicates) {
    return Error{kDuplicateKey, u"Let Key",
                 u"Index: " + toText(index) + u" NewKey: " + Text(newKey)};
  }
  const std::int32_t node = GetKeyIndex(index);
  if (node != 0) Nodes[node].Key = newKey;
  return {};
}

bool CStringCollection::verify() const {
  if (Nodes.empty()) return Root == 0 && Count_ == 0;
  const Node& none = Nodes[0];
  if (none.Left != 0 || none.Right != 0 || none.Color != kBlack) return false;
  if (isRed(Root) || (Root != 0 && Nodes[Root].Parent != 0)) return false;
  const Text* previous = nullptr;
  return verifyPositions() && blackHeight(Root, previous) >= 0;
}

bool CStringCollection::verifyPositions() const {
  std::vector<bool> seen(Nodes.size());
  for (std::int32_t position = 1; position <= Count_; ++position) {
    const std::int32_t node = IndexArray[position];
    if (node < 0 || node > upperBound()) return false;
    if (node != 0 && seen[node]) return false;  // 0: the Add of this item failed half-way
    seen[node] = true;
  }
  return std::all_of(IndexArray.begin() + Count_ + 1, IndexArray.end(),
                     [](std::int32_t node) { return node == 0; });
}

int CStringCollection::blackHeight(std::int32_t node, const Text*& previous) const {
  if (node == 0) return 0;
  const Node& n = Nodes[node];
  const int left = blackHeight(n.Left, previous);
  const int least = AllowDuplicates ? 0 : 1;
  if (previous != nullptr && SearchKey(*this, n.Key).compare(*previous) < least) return -1;
  previous = &n.Key;
  const int right = blackHeight(n.Right, previous);
  for (const std::int32_t below : {n.Left, n.Right}) {
    if (below == 0) continue;
    if (Nodes[below].Parent != node || (isRed(node) && isRed(below))) return -1;
  }
  if (left < 0 || left != right) return -1;
  return left + (isRed(node) ? 0 : 1);
}

}  // namespace ombrelian
