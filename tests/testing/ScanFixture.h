#pragma once

#include <gtest/gtest.h>

#include "platform/Locale.h"
#include "scan/ScanRun.h"
#include "tests/testing/ScopedLocale.h"
#include "tests/testing/TestFolder.h"
#include "tree/TreeOrder.h"

namespace ombrelian::testing {

/// A user interface without effect; a test can make it cancel.
class QuietInterface : public UserInterface {
 public:
  void scanBegins() override {}
  void scanEnds() override {}
  void scanProgress(TextView, std::int64_t, std::int64_t, std::int64_t) override {}
  void saveProgress(std::uint64_t, std::uint64_t) override {}
  bool saveCancelled() override {
    if (asksUntilSaveIsCancelled > 0) --asksUntilSaveIsCancelled;
    return asksUntilSaveIsCancelled == 0;
  }
  void yield() override {
    if (onYield) onYield();
  }
  void runAside(const std::function<void()>& job) override {
    if (beforeAside) beforeAside();
    job();
  }
  bool GetInputState() override { return static_cast<bool>(onYield); }
  void message(TextView text, Severity) override { messages.emplace_back(text); }
  bool ask(TextView) override { return false; }
  bool confirm(TextView, const std::vector<Text>&, TextView) override { return confirms; }

  std::function<void()> onYield;      // set: the walk calls it for every entry
  std::function<void()> beforeAside;  // called before each job that runs aside
  int asksUntilSaveIsCancelled = -1;  // -1: no cancel
  bool confirms = false;
  std::vector<Text> messages;
};

/// All parts that a scan needs, and functions to read its results.
class ScanFixture : public ::testing::Test {
 protected:
  /// Scans one source in a run of its own; returns the root.
  NodeIndex scan(const Text& path, DerivedLists* lists = nullptr) {
    std::deque<Text> queue = {path};
    result = ScanRun(state(lists)).Ordnerliste_Abarbeiten(queue);
    EXPECT_TRUE(queue.empty());
    return result.lastRoot;
  }

  ScanState state(DerivedLists* lists = nullptr) {
    return {options, tree, context, filters, log, ui, lists};
  }

  /// The node with the path below the root of the source, with names joined by "/"; kNoNode: none.
  NodeIndex find(NodeIndex root, TextView path) const {
    while (!path.empty() && root != kNoNode) {
      const TextView name = path.substr(0, path.find(u'/'));
      NodeIndex child = tree[root].firstChild;
      while (child != kNoNode && tree[child].name() != name)
        child = tree[child].nextSibling;
      root = child;
      path.remove_prefix(std::min(path.size(), name.size() + 1));
    }
    return root;
  }

  ScanTotals totals(NodeIndex node) const {
    const FolderNode& n = tree[node];
    return {n.size, n.files, n.folders, n.errors, n.hardlinks, n.junctions};
  }

  std::vector<Text> logTexts() const {
    std::vector<Text> texts;
    for (const LogRow& row : log.rows())
      texts.push_back(row.text);
    return texts;
  }

  /// Makes the user cancel the scan at the entry with the given number, counted from 1.
  void cancelAfter(int entries) {
    ui.onYield = [this, entries]() mutable {
      if (--entries == 0) context.ScanCancelState = kScanCancelRequested;
    };
  }

  const ScopedLocale locale{"C"};  // the tests compare texts of numbers
  TestFolder folder;
  Options options;
  FolderTree tree;
  ScanContext context;
  mCompare filters{platform::localeTextRules()};
  Log log{options};
  QuietInterface ui;
  RunResult result;
};

}  // namespace ombrelian::testing
