#pragma once

#include "platform/Removal.h"

namespace ombrelian {

// Removal with the shell functions, without a question. A missing object counts as removed.

/// Result of an operation of the shell.
struct ShellResult {
  platform::ErrorCode code = 0;  // 0: success; else a code of RecycleObject or of the system
  Text detail;  // recycling: failed folder of the bin, or empty; else the path that remains
};

/// Moves a folder to the recycle bin, or deletes it permanently with all its content. The first
/// error is returned; the other objects are deleted nevertheless.
ShellResult xDeleteFolderSHwide(const platform::ShownObject& folder, bool recycle);

/// The same as xDeleteFolderSHwide for one file or link.
ShellResult xDeleteFileSHwide(const platform::ShownObject& file, bool recycle);

/// Text of a code, followed by " - " and the number if `addNumber`. A code that is not from the
/// shell has the text of the system error in it.
Text xGetErrorTextFromSH(platform::ErrorCode code, bool addNumber);

/// Message about an object that could not be moved to the recycle bin: the reason, the bin and an
/// advice, with the code in brackets.
Text recyclingErrorText(const ShellResult& result);

/// The same without the number, for a message.
Text recyclingReason(const ShellResult& result);

}  // namespace ombrelian
