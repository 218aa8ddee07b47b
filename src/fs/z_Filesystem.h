#pragma once

#include "fs/PathText.h"
#include "platform/FindData.h"
#include "support/Error.h"

namespace ombrelian {

// The file primitives that everything above uses. None throws; a missing path gives false, 0 or
// empty; a reason comes back where a caller can log it.

/// Asks the system about the object at `path` itself; a link is not followed.
platform::ErrorCode findObject(TextView path, platform::FindData& data);

/// True for whatever has that name, a folder or a dangling link too.
bool xExistFile(TextView path);
bool xExistFile_W(TextView path);

/// True for a folder or a link to one. The root of a drive counts without a look at its medium, so
/// that an empty reader or a sleeping network drive does not block; xExistFolder looks at network
/// drives nevertheless.
bool xExistFolder_W(TextView path);
bool xExistFolder(TextView path);

/// Attribute bits; 0 on failure too.
std::uint32_t xGetFileAttributesWide(TextView path);

/// Logical length in bytes.
std::int64_t xGetFileSizeByWFD_W(const platform::FindData& data);

/// Local time of a time stamp; 0 if it is none or no calendar has it, which is then told to the
/// fault log with `path` (for that line only).
Date xGetFileCreateDateByWFD(const platform::FindData& data, TextView path);
Date xGetFileModifyDateByWFD(const platform::FindData& data, TextView path);
Date xGetFileAccessDateByWFD(const platform::FindData& data, TextView path);
Date xGetFileCreateDate(TextView path);
Date xGetFileModifyDate(TextView path);
Date xGetFileAccessDate(TextView path);

/// Renames an object and replaces an object of the name `target`. Returns the error text; empty:
/// done.
Text xMoveFile_W(TextView source, TextView target);

/// Makes the chain of folders to `path` (absolute). Fails on a path that is none or a root.
Failure xCreatePath(TextView path, char16_t separator = platform::kNativeSeparator);

/// Text of a drive's kind; `typeCode` as platform::GetDriveTypeW.
Text xGetDriveTypeString(TextView drive, int& typeCode);

/// Volume label; empty if there is none or it cannot be read (then `errorText` says why).
Text xGetDriveLabelW(TextView drive, Text& errorText);

/// The same as xGetDriveLabelW, but "(no label)" for a volume without a label.
Text xGetDriveLabel(TextView drive, Text& errorText);

/// Name of the file system that holds `path`; "?" on failure.
Text xGetDriveFileSystem(TextView path, Text& errorText);

/// Roots of all drives, separated by blanks.
Text GetAllDriveString();

}  // namespace ombrelian
