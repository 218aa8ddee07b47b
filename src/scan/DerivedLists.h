#pragma once

#include "lists/ListTable.h"
#include "platform/FindData.h"
#include "support/Text.h"
#include "tree/ScanTotals.h"

namespace ombrelian {

/// Receives the data for the lists beside the tree, in the order of the walk. Only a run of one
/// source has such lists. The texts are valid only during the call.
class DerivedLists {
 public:
  struct File {
    TextView name;
    TextView folder;  // full path, ends in a separator
    const platform::FindData& data;
    std::int64_t size;   // bytes
    std::int32_t links;  // number of names; 0 if the file has only one, or if it was not read
    TextView owner;      // empty unless owners are listed and the file system keeps them
  };

  struct Junction {
    TextView path;  // without trailing separator
    TextView target;
    std::uint32_t tag;
  };

  virtual ~DerivedLists() = default;

  /// A run of one source begins: earlier results are removed (Report_Reset_All).
  virtual void reset() = 0;

  virtual void feedFile(const File& file) = 0;

  /// A folder got its node; `owner` is the text that is shown.
  virtual void feedFolder(TextView owner) = 0;

  virtual void feedJunction(const Junction& junction) = 0;

  /// A folder was read completely; `own` is its direct content, and `path` ends in a separator.
  virtual void feedFolderEnd(TextView path, const ScanTotals& own) = 0;

  /// The walk has ended (Reports_ProcessNewValues). `tell` gets a text for each list.
  virtual void finish(const ScanTotals& total, const ListProgress& tell) = 0;
};

}  // namespace ombrelian
