#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "support/CNode.h"
#include "support/Error.h"
#include "support/TextRules.h"

namespace ombrelian {

/// Identifies an item of a collection: a number is a position, a text is a key, even if it consists
/// of digits. It contains only a view of the text.
class KeyOrIndex {
 public:
  KeyOrIndex(TextView key) : key_(key) {}                            // NOLINT: implicit
  KeyOrIndex(const Text& key) : key_(key) {}                         // NOLINT: implicit
  KeyOrIndex(const char16_t* key) : key_(key) {}                     // NOLINT: implicit
  KeyOrIndex(std::int32_t at) : position_(at), isPosition_(true) {}  // NOLINT: implicit
  KeyOrIndex(char16_t) = delete;  // one unit is not a text and not a number

  bool isPosition() const { return isPosition_; }
  std::int32_t position() const { return position_; }
  TextView key() const { return key_; }

  /// The key, or the digits of the position; for error texts.
  Text describe() const { return isPosition_ ? toText(position_) : Text(key_); }

 private:
  TextView key_;
  std::int32_t position_ = 0;
  bool isPosition_ = false;
};

/// The container for texts by key and by position: a red-black tree over the keys and an array of
/// positions over the same nodes. All nodes live in one growable array and are linked by index.
///
///   Nodes:       [0 empty] [1] [2] [3] ...     element 0 means "no node" in every link
///   IndexArray:  position 1, 2, ... Count  ->  index of the node there
///
/// A collection contains either items with keys, or items without keys (a sorted list with access
/// by position), never both. Views that it returns are valid until its next change.
class CStringCollection {
 public:
  static constexpr std::int32_t kPositionOutOfRange = 1;
  static constexpr std::int32_t kKeyNotFound = 2;
  static constexpr std::int32_t kDuplicateKey = 8;

  /// Options of Add.
  struct AddOptions {
    std::optional<KeyOrIndex> Before;  // insert in front of this item
    std::optional<KeyOrIndex> After;   // insert after this item; Before wins
    bool RaiseOnDuplicate = false;     // error for a duplicate key, or an unknown Before or After
    bool Sorted = false;               // place by item text, after equal items
    std::int32_t SortCompare = 0;      // 0 binary, 1 the locale's order of texts
  };

  /// Result of Add.
  struct AddResult {
    std::int32_t NewNode = 0;       // 0: nothing was added
    std::int32_t ExistingNode = 0;  // node that already has the key; 0: the key is new
    std::int32_t ExistingTag = 0;
    TextView ExistingItem;
    Failure error;
  };

  /// `rules` must outlive the collection. The constructor reads their lower case of ASCII, so keys
  /// that are only ASCII do not need them again.
  explicit CStringCollection(const TextRules& rules);

  /// Whether equal keys are accepted.
  bool AllowDuplicates = false;

  /// With 0, keys are compared without changes; with any other value, their lower-case forms are
  /// compared. Change it only while the collection is empty.
  std::int32_t CompareMode() const { return CompareMode_; }
  void setCompareMode(std::int32_t mode) { CompareMode_ = mode; }

  /// Whether a failed lookup is an error instead of a neutral result.
  bool RaiseError() const { return RaiseError_; }
  void setRaiseError(bool raise) { RaiseError_ = raise; }

  std::int32_t Count() const { return Count_; }

  /// Empties the collection and makes room for `size` items. The call is optional, because Add
  /// calls it if needed.
  void Init(std::int32_t size, double growthFactor);

  /// Empties the collection and frees its memory.
  void Clear();

  /// Adds an item. An item with an empty key has only a position. If the key exists and duplicates
  /// are not allowed, the result contains the node of the existing item.
  AddResult Add(TextView item, TextView key, std::int32_t tag, const AddOptions& options);
  AddResult Add(TextView item, TextView key, std::int32_t tag) { return Add(item, key, tag, {}); }

  /// Removes the item; the positions after it decrease by one.
  Failure Remove(const KeyOrIndex& keyOrIndex);

  Failure ChangeValues(const KeyOrIndex& keyOrIndex, TextView newItem, std::int32_t newTag);

  bool ExistKey(TextView key) const;

  /// The text of the item. If there is no such item: an error with RaiseError, else empty.
  Result<TextView> Item(const KeyOrIndex& keyOrIndex) const;
  /// Sets the text of the item. Fails if there is no such item, regardless of RaiseError.
  Failure setItem(const KeyOrIndex& keyOrIndex, TextView value);

  /// The number of the item. If there is no such item: an error with RaiseError unless `quiet`,
  /// else -1.
  Result<std::int32_t> Tag(const KeyOrIndex& keyOrIndex, bool quiet = false) const;
  Failure setTag(const KeyOrIndex& keyOrIndex, bool quiet, std::int32_t value);

  /// The key at a position; empty at position 0.
  Result<TextView> Key(std::int32_t index) const;
  /// Overwrites a key in place, but only if `newKey` already exists and duplicates are allowed; a
  /// new key changes nothing.
  Failure setKey(std::int32_t index, TextView newKey);

  /// Number of items that fit before the arrays grow; 0 without arrays.
  std::int32_t capacity() const { return Nodes.empty() ? 0 : upperBound(); }

  /// Whether the colours, links and order of the tree, and the positions, are correct. It takes
  /// linear time and is for tests.
  bool verify() const;

 private:
  struct Node {
    std::int32_t Left = 0;    // 0: none
    std::int32_t Right = 0;   // 0: none
    std::int32_t Parent = 0;  // 0: this is the root
    std::int32_t Color = 0;   // kBlack or kRed
    Text Key;                 // empty: the item has no key
    Text Item;
    std::int32_t Tag = 0;  // number of the caller, usually a row of a parallel array
  };

  static constexpr std::int32_t kBlack = 0;
  static constexpr std::int32_t kRed = 1;

  class SearchKey;

  std::int32_t upperBound() const { return std::int32_t(Nodes.size() - 1); }
  void makeArrays(std::int32_t size, double growthFactor);
  void growArrays(std::int32_t slot);

  std::int32_t GetKeyIndex(const KeyOrIndex& keyOrIndex) const;
  std::int32_t GetIndex(std::int32_t node) const;
  std::int32_t FindNode(TextView key) const;

  std::int32_t takeNode(std::int32_t parent);
  std::optional<std::int32_t> findPlace(TextView item, const AddOptions& options,
                                        Failure& error) const;
  std::int32_t sortedPlace(TextView item, std::int32_t sortCompare) const;
  void openSlot(std::int32_t position);
  void closeSlot(std::int32_t position);
  AddResult existing(std::int32_t node, TextView key, bool raise) const;

  std::int32_t& child(std::int32_t node, bool right) {
    return right ? Nodes[node].Right : Nodes[node].Left;
  }
  bool isRed(std::int32_t node) const { return Nodes[node].Color == kRed; }
  void rotate(std::int32_t x, bool right);  // the left and the right rotation of red-black trees
  void InsertFixup(std::int32_t x);
  void DeleteFixup(std::int32_t x);
  std::int32_t unlink(std::int32_t y);
  void removeNode(std::int32_t z);

  bool verifyPositions() const;
  /// Number of black nodes on every path down from `node`; -1 if a rule is broken. `previous` is
  /// the key before it in the order. The depth of the recursion is logarithmic.
  int blackHeight(std::int32_t node, const Text*& previous) const;

  const TextRules* rules_;
  std::array<char16_t, 128> asciiFold_;  // lower case of each ASCII unit
  double GrowthFactor = 1.5;
  std::int32_t InitialSize = 100;
  std::vector<Node> Nodes;
  std::int32_t Root = 0;
  std::optional<CNode> Allocator;
  std::int32_t Count_ = 0;
  std::vector<std::int32_t> IndexArray;  // has one slot more than Nodes; slot 0 is never used
  std::int32_t CompareMode_ = 1;
  bool RaiseError_ = false;
};

}  // namespace ombrelian
