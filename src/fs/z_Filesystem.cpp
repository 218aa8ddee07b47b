#include "fs/z_Filesystem.h"

#include "platform/Time.h"
#include "platform/Volumes.h"
#include "support/Guard.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

using platform::ErrorCode;
using platform::FindData;
using platform::kSuccess;

constexpr TextView kModule = u"z_Filesystem";
constexpr std::int32_t kInvalidPath = 1120;

bool isFolder(TextView path) {
  FindData data;
  return platform::GetFileInformation(LongPathPrefix(path), data) == kSuccess && data.isFolder();
}

bool isPresentDrive(TextView path, bool networkCounts) {
  if (!platform::IsDriveRoot(path)) return false;
  const int type = platform::GetDriveTypeW(path);
  return type >= platform::kDriveRemovable && type <= platform::kDriveCdRom &&
         (networkCounts || type != platform::kDriveRemote);
}

bool existsFolder(TextView name, TextView path, bool networkCounts) {
  return Guarded(kModule, name, [&] {
    return !path.empty() && (isPresentDrive(path, networkCounts) || isFolder(path));
  });
}

/// Local time of a time stamp. The failure lines of the dates differ only in `errorName`.
Date dateOf(FileTime time, TextView path, TextView errorName) {
  if (time == 0) return 0;
  DateParts parts;
  if (platform::FileTimeToLocalSystemTime(time, parts)) return toDate(parts);
  reportLine(TL(9010, u"Die Datei '%1' besitzt ein ungültiges Datum. %2: %3",
                {path, errorName, u"FILETIME " + toText(time)}));
  return 0;
}

Date dateByPath(TextView path, FileTime FindData::*field, TextView errorName) {
  return GuardedOr(
      kModule, u"xGetFileDate",
      [&]() -> Date {
        FindData data;
        if (findObject(path, data) != kSuccess) return 0;
        return dateOf(data.*field, path, errorName);
      },
      nothing<Date>);
}

/// Whether `path` is a root, which cannot be made.
bool isRoot(TextView path, char16_t separator) {
  return separator == u'/' ? path == u"/" : path.size() == 3 && isAbsolute(path, separator);
}

/// End of the first component that can be made; npos if there is none, as for the path of a share
/// itself.
std::size_t firstComponentEnd(TextView path, char16_t separator) {
  if (separator == u'/') return path.find(separator, 1);
  if (!path.starts_with(u"\\\\")) return path.find(separator, 3);
  std::size_t at = 3;
  for (int skipped = 0; skipped < 2 && at != TextView::npos; ++skipped) {
    at = path.find(separator, at + (skipped == 0 ? 0 : 1));
  }
  return at == TextView::npos ? at : path.find(separator, at + 1);
}

}  // namespace

ErrorCode findObject(TextView path, FindData& data) {
  return platform::FindFirstFileW(LongPathPrefix(path), data);
}

bool xExistFile_W(TextView path) {
  return Guarded(kModule, u"xExistFile_W", [&] {
    FindData data;
    return findObject(path, data) == kSuccess;
  });
}

bool xExistFile(TextView path) { return xExistFile_W(path); }

bool xExistFolder_W(TextView path) { return existsFolder(u"xExistFolder_W", path, true); }

bool xExistFolder(TextView path) { return existsFolder(u"xExistFolder", path, false); }

std::uint32_t xGetFileAttributesWide(TextView path) {
  return GuardedOr(
      kModule, u"xGetFileAttributesWide",
      [&]() -> std::uint32_t {
        FindData data;
        const ErrorCode error = findObject(path, data);
        return error == kSuccess ? data.dwFileAttributes : 0;
      },
      nothing<std::uint32_t>);
}

std::int64_t xGetFileSizeByWFD_W(const FindData& data) {
  return std::int64_t(std::uint64_t(data.nFileSizeHigh) << 32 | data.nFileSizeLow);
}

Date xGetFileCreateDateByWFD(const FindData& data, TextView path) {
  return dateOf(data.ftCreationTime, path, u"Error2");
}
Date xGetFileModifyDateByWFD(const FindData& data, TextView path) {
  return dateOf(data.ftLastWriteTime, path, u"Error5");
}
Date xGetFileAccessDateByWFD(const FindData& data, TextView path) {
  return dateOf(data.ftLastAccessTime, path, u"Error7");
}
Date xGetFileCreateDate(TextView path) {
  return dateByPath(path, &FindData::ftCreationTime, u"Error3");
}
Date xGetFileModifyDate(TextView path) {
  return dateByPath(path, &FindData::ftLastWriteTime, u"Error9");
}
Date xGetFileAccessDate(TextView path) {
  return dateByPath(path, &FindData::ftLastAccessTime, u"Error3");
}

Text xMoveFile_W(TextView source, TextView target) {
  return GuardedOr(
      kModule, u"xMoveFile_W",
      [&] {
        const ErrorCode error =
            platform::MoveFileExW(LongPathPrefix(source), LongPathPrefix(target));
        return error == kSuccess ? Text() : xGetErrorText(false, error);
      },
      errorTextOf);
}

Failure xCreatePath(TextView path, char16_t separator) {
  return GuardedOr(
      kModule, u"xCreatePath",
      [&]() -> Failure {
        if (isRoot(path, separator)) return Error{kInvalidPath, u"xCreatePath", {}};
        if (!isAbsolute(path, separator)) {
          return Error{kInvalidPath, u"xCreatePath",
                       TL(1120, u"Der Ordnerpfad '%1' ist ungültig und kann nicht erstellt werden!",
                          {path})};
        }
        const Text full = xGetPathWithBackslash(path, separator);
        for (auto end = firstComponentEnd(full, separator); end != Text::npos;
             end = full.find(separator, end + 1)) {
          const TextView component = TextView(full).substr(0, end);
          if (xExistFolder(component)) continue;
          const ErrorCode error = platform::CreateDirectoryW(LongPathPrefix(component, separator));
          if (error != kSuccess && error != platform::kAlreadyExists) {
            return systemError(error, u"xCreatePath");
          }
        }
        return {};
      },
      failureOf);
}

Text xGetDriveTypeString(TextView drive, int& typeCode) {
  typeCode = platform::GetDriveTypeW(drive);
  switch (typeCode) {
    case platform::kDriveRemovable:
      return TL(3509, u"Wechseldatenträger");
    case platform::kDriveFixed:
      return TL(3506, u"Lokaler Datenträger");
    case platform::kDriveRemote:
      return TL(3508, u"Netzlaufwerk");
    case platform::kDriveCdRom:
      return u"CD/DVD";
    case platform::kDriveRamDisk:
      return TL(3507, u"RAM-Disk");
    default:
      return u"?";
  }
}

Text xGetDriveLabelW(TextView drive, Text& errorText) {
  return GuardedOr(
      kModule, u"xGetDriveLabelW",
      [&] {
        platform::VolumeInformation information;
        const ErrorCode error = platform::GetVolumeInformationW(drive, information);
        errorText = error == kSuccess ? Text() : xGetErrorText(true, error);
        return information.label;
      },
      [&](const Error& error) {
        errorText = errorTextOf(error);
        return Text();
      });
}

Text xGetDriveLabel(TextView drive, Text& errorText) {
  const Text label = xGetDriveLabelW(drive, errorText);
  return label.empty() && errorText.empty() ? Text(u"(no label)") : label;
}

Text xGetDriveFileSystem(TextView path, Text& errorText) {
  return GuardedOr(
      kModule, u"xGetDriveFileSystem",
      [&]() -> Text {
        platform::VolumeInformation information;
        const ErrorCode error = platform::GetVolumeInformationW(path, information);
        errorText = error == kSuccess ? Text() : xGetErrorText(true, error);
        return error == kSuccess ? information.fileSystem : Text(u"?");
      },
      [&](const Error& error) {
        errorText = errorTextOf(error);
        return Text(u"?");
      });
}

Text GetAllDriveString() {
  return GuardedOr(
      kModule, u"GetAllDriveString",
      [&] {
        Text roots;
        for (const Text& root : platform::GetLogicalDriveStringsW()) {
          if (!roots.empty()) roots.push_back(u' ');
          roots += root;
        }
        return roots;
      },
      nothing<Text>);
}

}  // namespace ombrelian
