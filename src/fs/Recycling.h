#pragma once

#include "platform/Removal.h"

namespace ombrelian {

// Removing by way of the shell, which asks nothing. What is not there counts as removed.

/// What came of an operation of the shell.
struct ShellResult {
  platform::ErrorCode code = 0;  // 0: done; else as RecycleObject, or of the system
  Text detail;  // recycling: folder of the bin that failed, or empty; else the path that stayed
};

/// Moves a folder to the recycle bin, or deletes it for good with all that it holds. The first
/// error counts; what else can be deleted goes all the same.
ShellResult xDeleteFolderSHwide(const platform::ShownObject& folder, bool recycle);

/// The same as xDeleteFolderSHwide for one file or link.
ShellResult xDeleteFileSHwide(const platform::ShownObject& file, bool recycle);

/// Text of a code; with " - " and the number behind it if `addNumber`. For a code that is not the
/// shell's the text of the system's error in it.
Text xGetErrorTextFromSH(platform::ErrorCode code, bool addNumber);

/// Why an object did not go to the recycle bin, which bin is meant and what can be done, with the
/// code in brackets.
Text recyclingErrorText(const ShellResult& result);

}  // namespace ombrelian
