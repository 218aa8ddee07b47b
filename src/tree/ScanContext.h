#pragma once

#include "platform/FolderWalk.h"
#include "tree/FolderTree.h"

namespace ombrelian {

inline constexpr int kScanIdle = 0;
inline constexpr int kScanCancelRequested = 3;

/// Data that all sources of one run share, and that the walker shares with its caller.
struct ScanContext {
  ScanTotals Total;                   // sums of the current source; with files of cancelled folders
  bool SilentMode = false;            // the run does not yield and cannot be cancelled
  bool IgnoresCancel = false;         // the current read must be whole, or sums would be wrong
  bool SuppressDerivedLists = false;  // the run has more than one source
  bool ReadHardlinkCounts = false;
  int helpers = platform::kHelpersByDevice;  // number of helpers of FolderWalk
  bool KeepsOwners = false;                  // the source's file system keeps owners
  int ScanCancelState = kScanIdle;
  bool ScanBusy = false;
  HardlinkNames::Run run = 0;  // number of the run that is under way
};

}  // namespace ombrelian
