#pragma once

#include "lists/LinkLists.h"
#include "lists/SumLists.h"
#include "lists/TopLists.h"
#include "scan/DerivedLists.h"

namespace ombrelian {

/// Owns the lists beside the tree and feeds the lists that are on.
class ListFeeder : public DerivedLists {
 public:
  /// References to all arguments are kept. The options change during a run: see reset().
  ListFeeder(Options& options, mCompare& filters, FileTypes& types);

  /// Report_Reset_All. If the size limit of a "smallest" list is 0 bytes, it is -1 during the run,
  /// so that empty files or folders are included.
  void reset() override;

  void feedFile(const File& file) override;
  void feedFolder(TextView owner) override;
  void feedJunction(const Junction& junction) override;
  void feedFolderEnd(TextView path, const ScanTotals& own) override;

  /// Reports_ProcessNewValues.
  void finish(const ScanTotals& total, const ListProgress& tell = {}) override;

  /// The list `list`, one of kDerivedLists.
  FlatList& list(ListId list);
  Grid& grid(ListId list) { return this->list(list).grid(); }
  HardlinkList& hardlinks() { return hardlinks_; }

 private:
  void replaceIgnoreNumbers(std::int64_t from, std::int64_t to);

  Options& options_;
  mCompare& filters_;
  TopLists topLists_;
  HardlinkList hardlinks_;
  JunctionList junctions_;
  OwnerList owners_;
  ExtensionList extensions_;
};

}  // namespace ombrelian
