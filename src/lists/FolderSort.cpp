#include "lists/FolderSort.h"

#include <algorithm>
#include <map>

#include "format/Attributes.h"
#include "platform/Locale.h"
#include "tree/TreeOrder.h"

namespace ombrelian {
namespace {

using Id = FolderColumnId;

/// Number of siblings below which comparing texts is faster than making sort keys.
constexpr std::size_t kFewSiblings = 8;

/// Sorts the children of one folder after the other and reuses the same memory.
class SiblingSort {
 public:
  SiblingSort(FolderTree& tree, const FolderReport& report, const Column& column, bool descending)
      : tree_(tree), report_(report), column_(column), descending_(descending) {
    if (column.id == Id::Owner) rankOwners();
  }

  void all() {
    sortFrom(tree_.firstRoot(), kNoNode);
    for (NodeIndex root = tree_.firstRoot(); root != kNoNode; root = tree_[root].nextSibling) {
      for (NodeIndex node = root; node != kNoNode; node = nextInSubtree(tree_, node, root)) {
        sortFrom(tree_[node].firstChild, node);
      }
    }
  }

 private:
  struct Numbered {
    std::int64_t key;
    NodeIndex node;
  };

  struct Keyed {
    std::string key;
    NodeIndex node;
  };

  void sortFrom(NodeIndex first, NodeIndex parent) {
    if (first == kNoNode || tree_[first].nextSibling == kNoNode) return;
    order_.clear();
    for (NodeIndex node = first; node != kNoNode; node = tree_[node].nextSibling)
      order_.push_back(node);
    sort();
    tree_.orderChildren(parent, order_);
  }

  void sort() {
    if (column_.id == Id::Name || column_.id == Id::Target || column_.id == Id::Attributes) {
      sortByText();
    } else {
      sortByNumber();
    }
  }

  void sortByNumber() {
    numbered_.clear();
    for (const NodeIndex node : order_)
      numbered_.push_back({number(node), node});
    std::stable_sort(
        numbered_.begin(), numbered_.end(),
        [this](const Numbered& a, const Numbered& b) { return isBefore(a.key, b.key); });
    std::transform(numbered_.begin(), numbered_.end(), order_.begin(),
                   [](const Numbered& entry) { return entry.node; });
  }

  void sortByText() {
    const TextRules& rules = platform::localeTextRules();
    if (order_.size() < kFewSiblings) {
      std::stable_sort(order_.begin(), order_.end(),
                       [&](NodeIndex a, NodeIndex b) { return isBefore(compare(rules, a, b), 0); });
      return;
    }
    keyed_.clear();
    for (const NodeIndex node : order_)
      keyed_.push_back({keyOf(rules, node), node});
    std::stable_sort(keyed_.begin(), keyed_.end(),
                     [this](const Keyed& a, const Keyed& b) { return isBefore(a.key, b.key); });
    std::transform(keyed_.begin(), keyed_.end(), order_.begin(),
                   [](const Keyed& entry) { return entry.node; });
  }

  template <class Key>
  bool isBefore(const Key& a, const Key& b) const {
    return descending_ ? b < a : a < b;
  }

  /// The number by which a node is sorted. In the percent column sources are sorted by size,
  /// because they have no parent.
  std::int64_t number(NodeIndex index) const {
    const FolderNode& node = tree_[index];
    switch (column_.id) {
      case Id::Percent:
        return node.size;
      case Id::Modified:
        return std::int64_t(node.dateModified);
      case Id::Created:
        return std::int64_t(node.dateCreate);
      case Id::Accessed:
        return std::int64_t(node.dateAccess);
      case Id::Owner:
        return node.has(FolderNode::HasOwner) ? ownerRanks_[node.owner] : -1;
      default:
        return report_.number(index, column_);
    }
  }

  int compare(const TextRules& rules, NodeIndex a, NodeIndex b) const {
    if (column_.id != Id::Attributes)
      return rules.compare(report_.text(a, column_), report_.text(b, column_), false);
    if (tree_[a].attributes == tree_[b].attributes) return 0;
    return letters(a).compare(letters(b));
  }

  std::string keyOf(const TextRules& rules, NodeIndex node) const {
    if (column_.id == Id::Attributes) return toBytes(letters(node));
    return rules.sortKey(report_.text(node, column_));
  }

  Text letters(NodeIndex node) const {
    return xFormatFileAttribute(tree_[node].attributes, false, {});
  }

  void rankOwners() {
    const TextRules& rules = platform::localeTextRules();
    std::multimap<std::string, std::uint32_t> owners;
    for (std::uint32_t owner = 0; owner < tree_.ownerCount(); ++owner)
      owners.emplace(rules.sortKey(tree_.ownerText(owner)), owner);
    ownerRanks_.resize(owners.size());
    std::int64_t rank = 0;
    for (const auto& entry : owners)
      ownerRanks_[entry.second] = rank++;
  }

  FolderTree& tree_;
  const FolderReport& report_;
  const Column& column_;
  const bool descending_;
  std::vector<NodeIndex> order_;
  std::vector<Numbered> numbered_;
  std::vector<Keyed> keyed_;
  std::vector<std::int64_t> ownerRanks_;
};

}  // namespace

void sortFolders(FolderTree& tree, const FolderReport& report, const Column& column,
                 bool descending) {
  SiblingSort(tree, report, column, descending).all();
}

}  // namespace ombrelian
