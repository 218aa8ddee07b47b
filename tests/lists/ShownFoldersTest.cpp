#include "lists/ShownFolders.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "format/Attributes.h"
#include "lists/FolderSort.h"
#include "platform/Locale.h"
#include "tree/TreeEdit.h"

namespace ombrelian {
namespace {

class ShownFoldersTest : public ::testing::Test {
 protected:
  /// Three sources with random folders below them; names and sizes repeat.
  void grow(std::size_t folders) {
    for (const TextView root : {u"/b", u"/a", u"/c"})
      nodes_.push_back(tree_.addRoot(root));
    while (nodes_.size() < folders) {
      const NodeIndex parent = nodes_[random_() % nodes_.size()];
      const Text name =
          Text(1, char16_t(u'a' + random_() % 26)) + toText(std::int64_t(random_() % 9));
      nodes_.push_back(tree_.addChild(parent, name, true));
      tree_[nodes_.back()].size = std::int64_t(random_() % 100);
      tree_[nodes_.back()].attributes = std::uint32_t(random_() % 8);
      tree_[nodes_.back()].dateModified = FileTime(random_() % 5);
      tree_[nodes_.back()].dateCreate = FileTime(random_() % 5);
      tree_[nodes_.back()].dateAccess = FileTime(random_() % 5);
    }
  }

  /// The rows that must be visible, computed only from the rule.
  std::vector<NodeIndex> expected() const {
    std::vector<NodeIndex> rows;
    const std::function<void(NodeIndex)> add = [&](NodeIndex first) {
      for (NodeIndex node = first; node != kNoNode; node = tree_[node].nextSibling) {
        rows.push_back(node);
        if (report_.isExpanded(node)) add(tree_[node].firstChild);
      }
    };
    add(tree_.firstRoot());
    return rows;
  }

  std::vector<NodeIndex> shown() const {
    std::vector<NodeIndex> rows;
    for (std::size_t row = 0; row < shown_.count(); ++row)
      rows.push_back(shown_.node(row));
    return rows;
  }

  const Column& column(int id) {
    options_.FolderColumnVisible.fill(1);
    const std::vector<const Column*> all = report_.visibleColumns();
    return **std::find_if(all.begin(), all.end(), [id](auto* column) { return column->id == id; });
  }

  std::mt19937 random_{7};
  Options options_;
  FolderTree tree_;
  FolderReport report_{tree_, options_};
  ShownFolders shown_{report_};
  std::vector<NodeIndex> nodes_;
};

TEST_F(ShownFoldersTest, ExpandingAndCollapsingKeepsTheRowsOfTheTree) {
  grow(400);
  shown_.rebuild();
  for (int step = 0; step < 600; ++step) {
    const std::size_t row = random_() % shown_.count();
    const std::size_t before = shown_.count();
    if (shown_.isExpanded(row)) {
      const std::size_t gone = shown_.rowsBelow(row);
      shown_.collapse(row);
      ASSERT_EQ(shown_.count(), before - gone);
    } else {
      const std::size_t more = shown_.rowsToShow(row);
      shown_.expand(row);
      ASSERT_EQ(shown_.count(), before + (tree_[shown_.node(row)].hasChildren() ? more : 0));
    }
    ASSERT_EQ(shown(), expected()) << step;
    ASSERT_EQ(shown_.rowOf(shown_.node(row)), row);
  }
  shown_.markSubtree(kNoNode, true);
  shown_.rebuild();
  EXPECT_EQ(shown_.count(), nodes_.size());
  shown_.markLevels(1);
  shown_.rebuild();
  for (std::size_t row = 0; row < shown_.count(); ++row)
    EXPECT_LE(tree_[shown_.node(row)].level, 1U);
  EXPECT_EQ(shown(), expected());
  shown_.markAbove(nodes_.back());
  shown_.rebuild();
  EXPECT_NE(shown_.rowOf(nodes_.back()), ShownFolders::kNoRow);
}

TEST_F(ShownFoldersTest, WhatIsGoneIsForgottenAndNothingElse) {
  grow(6);
  for (const NodeIndex node : {nodes_[0], nodes_[2]})
    report_.setExpanded(node, true);
  report_.select(nodes_[2]);
  takeOutFolders(tree_, {nodes_[2]});
  report_.forgetFreeNodes();
  EXPECT_TRUE(report_.isExpanded(nodes_[0]));
  EXPECT_FALSE(report_.isExpanded(nodes_[1]));
  EXPECT_FALSE(report_.isExpanded(nodes_[2]));
  EXPECT_EQ(report_.selected(), kNoNode);
}

TEST_F(ShownFoldersTest, SortingOrdersSiblingsKeepsEqualsInOrderAndLosesNone) {
  using Id = FolderColumnId;
  grow(400);
  shown_.markSubtree(kNoNode, true);
  shown_.rebuild();
  const TextRules& rules = platform::localeTextRules();
  const auto order = [&](int id, NodeIndex a, NodeIndex b) {
    if (id == Id::Name) return rules.compare(tree_[a].name(), tree_[b].name(), false);
    if (id == Id::Size || id == Id::Percent) return int(tree_[a].size - tree_[b].size);
    if (id == Id::Modified) return int(tree_[a].dateModified - tree_[b].dateModified);
    if (id == Id::Created) return int(tree_[a].dateCreate - tree_[b].dateCreate);
    if (id == Id::Accessed) return int(tree_[a].dateAccess - tree_[b].dateAccess);
    const auto letters = [&](NodeIndex node) {
      return xFormatFileAttribute(tree_[node].attributes, false, {});
    };
    return letters(a).compare(letters(b));
  };
  for (const bool descending : {false, true}) {
    for (const int id : {Id::Percent, Id::Name, Id::Size, Id::Modified, Id::Created, Id::Accessed,
                         Id::Attributes, Id::Depth}) {
      std::vector<std::size_t> before(nodes_.size());
      for (const NodeIndex node : nodes_)
        before[node] = shown_.rowOf(node);
      sortFolders(tree_, report_, column(id), descending);
      shown_.rebuild();
      ASSERT_EQ(shown_.count(), nodes_.size());
      for (const NodeIndex node : nodes_) {
        const NodeIndex next = tree_[node].nextSibling;
        if (next == kNoNode) continue;
        const int found = id == Id::Depth ? 0 : order(id, node, next);
        EXPECT_TRUE(descending ? found >= 0 : found <= 0) << id;
        EXPECT_TRUE(found != 0 || before[node] < before[next]) << id;
      }
    }
  }
  EXPECT_EQ(tree_[tree_.lastRoot()].nextSibling, kNoNode);
}

TEST(TextRulesTest, SortKeysOrderAsComparisonDoes) {
  const TextRules& rules = platform::localeTextRules();
  const Text longText(500, u'q');
  const TextView texts[] = {u"",   u"a",  u"A", u"\u00E4",   u"b",      u"B10",
                            u"b9", u".x", u"_", u"zz\u4E00", u"\xDC80", longText};
  for (const TextView a : texts) {
    for (const TextView b : texts) {
      const int order = rules.compare(a, b, false);
      const int keys = rules.sortKey(a).compare(rules.sortKey(b));
      EXPECT_EQ(order < 0, keys < 0) << toBytes(a) << " " << toBytes(b);
      EXPECT_EQ(order == 0, keys == 0) << toBytes(a) << " " << toBytes(b);
    }
  }
}

}  // namespace
}  // namespace ombrelian
