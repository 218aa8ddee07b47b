#pragma once

#include "platform/FindData.h"
#include "support/Text.h"
#include "tree/ScanTotals.h"

namespace ombrelian {

/// Takes what the lists beside the tree need, in the order of the walk; a run of one source has
/// one, others none. The texts are good for the time of the call only.
class DerivedLists {
 public:
  struct File {
    TextView name;
    TextView folder;  // full path, ends in a separator
    const platform::FindData& data;
    std::int64_t size;   // bytes
    std::int32_t links;  // names of the file; 0 if it has one, or was not asked
    TextView owner;      // empty unless owners are listed and the file system keeps them
  };

  struct Junction {
    TextView path;  // without trailing separator
    TextView target;
    std::uint32_t tag;
  };

  virtual ~DerivedLists() = default;

  /// A single-source run begins: earlier results go (Report_Reset_All).
  virtual void reset() = 0;

  virtual void feedFile(const File& file) = 0;

  /// A folder got its node; `owner` as it is shown.
  virtual void feedFolder(TextView owner) = 0;

  virtual void feedJunction(const Junction& junction) = 0;

  /// A folder was read to its end; `own` is its direct content, `path` ends in a separator.
  virtual void feedFolderEnd(TextView path, const ScanTotals& own) = 0;

  /// The walk is over (Reports_ProcessNewValues).
  virtual void finish(const ScanTotals& total) = 0;
};

}  // namespace ombrelian
