#pragma once

#include "fs/PathText.h"
#include "platform/FindData.h"
#include "support/Error.h"

namespace ombrelian {

// The file functions that all higher rooms use. None of them throws. A missing path gives false, 0
// or an empty text; a reason is returned if a caller can log it.

/// Reads the data of the object at `path` itself; a link is not followed.
platform::ErrorCode findObject(TextView path, platform::FindData& data);

/// True for any object with this name, also for a folder or a dangling link.
bool xExistFile(TextView path);
bool xExistFile_W(TextView path);

/// True for a folder or a link to one. The root of a drive counts without an access to its medium,
/// so that an empty reader or a sleeping network drive does not block; xExistFolder accesses
/// network drives nevertheless.
bool xExistFolder_W(TextView path);
bool xExistFolder(TextView path);

/// Attribute bits; also 0 on failure.
std::uint32_t xGetFileAttributesWide(TextView path);

/// Logical length in bytes.
std::int64_t xGetFileSizeByWFD_W(const platform::FindData& data);

/// Local time of a time stamp; 0 if there is none. It is also 0 if no calendar has the date, which
/// is then reported to the fault log; `path` is only for that line.
Date xGetFileCreateDateByWFD(const platform::FindData& data, TextView path);
Date xGetFileModifyDateByWFD(const platform::FindData& data, TextView path);
Date xGetFileAccessDateByWFD(const platform::FindData& data, TextView path);
Date xGetFileCreateDate(TextView path);
Date xGetFileModifyDate(TextView path);
Date xGetFileAccessDate(TextView path);

/// Renames an object and replaces an object with the name `target`. Returns the error text; empty:
/// success.
Text xMoveFile_W(TextView source, TextView target);

/// Makes the chain of folders to `path` (absolute). Fails if it is not a path, or is a root.
Failure xCreatePath(TextView path, char16_t separator = platform::kNativeSeparator);

/// Text for the kind of a drive; `typeCode` is the value of platform::GetDriveTypeW.
Text xGetDriveTypeString(TextView drive, int& typeCode);

/// Volume label; empty if there is none or it cannot be read (then `errorText` contains the
/// reason).
Text xGetDriveLabelW(TextView drive, Text& errorText);

/// The same as xGetDriveLabelW, but "(no label)" for a volume without a label.
Text xGetDriveLabel(TextView drive, Text& errorText);

/// Name of the file system of `path`; "?" on failure.
Text xGetDriveFileSystem(TextView path, Text& errorText);

/// Roots of all drives, separated by blanks.
Text GetAllDriveString();

}  // namespace ombrelian
