#pragma once

#include <functional>
#include <vector>

#include "platform/Removal.h"
#include "support/Error.h"

namespace ombrelian {

// Permanent deletion. A missing object counts as deleted. Links are removed, never their targets,
// and mount points are not crossed. Error texts contain the path and the system error with its
// number.

/// Deletes a file or a link. `force`: missing rights are obtained first.
Failure xDeleteFile_W(const platform::ShownObject& file, bool force);

/// Whether the system reports that no object with this path exists; false if this cannot be found
/// out.
bool isMissingObject(TextView path);

/// Removes one empty folder; missing rights are obtained first.
bool RemoveDirectoryForce_W(const platform::ShownObject& folder);

/// Called for every deleted object with the number of files and folders deleted so far; false ends
/// the deletion.
using DeletionGoOn = std::function<bool(std::uint64_t files, std::uint64_t folders)>;

/// An object that could not be deleted.
struct FailedObject {
  Text path;
  Text reason;  // text of the system, without a number
};

/// Result of the deletion of a folder.
struct FolderDeletion {
  bool isGone = false;
  bool wasStopped = false;  // the caller ended it; a part of the folder may be gone
  std::uint64_t files = 0;  // files that were deleted
  std::uint64_t folders = 0;
  Text errorText;  // objects that could not be deleted, with the folder itself first; a long list
                   // is cut
  std::vector<FailedObject> failed = {};  // the same objects without the folder itself
  std::int64_t failures = 0;              // number of all of them
};

/// Removes a folder with all its content; of a link to a folder, only the link. An object that
/// cannot be removed does not stop the others.
FolderDeletion xDeleteFolderR_W(const platform::ShownObject& folder, const DeletionGoOn& goOn = {});

/// The same as xDeleteFolderR_W, but a folder that another program removed meanwhile counts as
/// deleted.
FolderDeletion xDeleteFolder_W(const platform::ShownObject& folder, const DeletionGoOn& goOn = {});

}  // namespace ombrelian
