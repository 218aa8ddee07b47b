#pragma once

#include <functional>

#include "platform/Removal.h"
#include "support/Error.h"

namespace ombrelian {

// Deleting for good. What is not there counts as deleted; links are removed, never what they lead
// to, and mount points are not crossed. Error texts name the path and the numbered system error.

/// `force`: also where the rights for it have to be had first.
Failure xDeleteFile_W(const platform::ShownObject& file, bool force);

/// Whether the system says that there is nothing of that path; one that it cannot tell is not.
bool isMissingObject(TextView path);

/// Removes one empty folder, getting the rights for it if need be.
bool RemoveDirectoryForce_W(const platform::ShownObject& folder);

/// Called at every object that is deleted, with the files and folders deleted so far; false ends
/// the deletion.
using DeletionGoOn = std::function<bool(std::uint64_t files, std::uint64_t folders)>;

/// What came of the deletion of a folder.
struct FolderDeletion {
  bool isGone = false;
  bool wasStopped = false;  // the caller ended it; a part of the folder may be gone
  std::uint64_t files = 0;  // files that were deleted
  std::uint64_t folders = 0;
  Text errorText;  // what could not be deleted, the folder itself first; a long list is cut short
};

/// Removes a folder with all that it holds, or a link to one alone. What can go goes, even where
/// other things cannot.
FolderDeletion xDeleteFolderR_W(const platform::ShownObject& folder, const DeletionGoOn& goOn = {});

/// The same as xDeleteFolderR_W, but a folder that others removed meanwhile counts as deleted.
FolderDeletion xDeleteFolder_W(const platform::ShownObject& folder, const DeletionGoOn& goOn = {});

}  // namespace ombrelian
