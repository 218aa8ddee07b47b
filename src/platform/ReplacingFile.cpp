#include "platform/ReplacingFile.h"

#include <exception>

#include "platform/FolderWalk.h"
#include "platform/Removal.h"
#include "platform/Time.h"
#include "support/Translate.h"

namespace ombrelian::platform {
namespace {

constexpr TextView kSource = u"ReplacingFile";
constexpr int kTemporaryNames = 100;  // number of names that are tried
constexpr TextView kPrefix = u".ombrelian-";
constexpr TextView kSuffix = u".tmp";

/// Target of a link at `target`; `target` itself if there is no link.
Text resolved(TextView target) {
  FindData data;
  if (FindFirstFileW(target, data) != kSuccess || !data.isReparse()) return Text(target);
  const Text final = GetFinalPathNameW(target);
  return final.empty() ? Text(target) : final;
}

/// Folder of `path`, with its final separator.
TextView folderOf(TextView path) { return path.substr(0, path.rfind(kNativeSeparator) + 1); }

bool exists(TextView path) {
  FindData data;
  return FindFirstFileW(path, data) == kSuccess;
}

/// Removes the temporary files of runs that were killed: no process holds the lock of these.
void removeLeftovers(TextView folder) try {
  FolderWalk walk(0, WalkReach::OneFolder);
  if (walk.openSource(folder) != kSuccess) return;
  while (const FindData* const data = walk.nextEntry()) {
    const TextView name = walk.name();
    if (!name.starts_with(kPrefix) || !name.ends_with(kSuffix) || data->isFolder()) continue;
    const Text path = Text(folder).append(name);
    ErrorCode error = kSuccess;
    FileHandle file = CreateFileW(path, kOpenExisting, error);
    if (error == kSuccess) error = LockFile(file);
    if (error == kSuccess) DeleteFileW({path, Text::npos, data->identity});
  }
} catch (const std::exception&) {  // a file that is complete does not fail because of the others
}

}  // namespace

Failure ReplacingFile::check(TextView target) {
  const Text path = resolved(target);
  FindData data;
  if (FindFirstFileW(path, data) == kSuccess) {
    if (data.isFolder()) {
      return Error{std::int32_t(kAccessDenied), Text(kSource),
                   TL(9012, u"Unter diesem Namen steht ein Ordner.")};
    }
    // A plain file must not replace a device or a pipe.
    constexpr auto kSpecial = kAttributeSystem | kAttributeReparsePoint;
    if ((data.dwFileAttributes & kSpecial) != 0) {
      return Error{std::int32_t(kNotSupported), Text(kSource),
                   TL(9013, u"Unter diesem Namen steht etwas anderes als eine Datei.")};
    }
  }
  const ErrorCode error = CheckFolderWritable(folderOf(path));
  return error == kSuccess ? Failure() : systemError(error, kSource);
}

Failure ReplacingFile::open(TextView target) {
  failure_ = check(target);
  if (failure_) return failure_;
  target_ = resolved(target);
  ErrorCode error = kSuccess;
  file_ = CreateFileW(folderOf(target_), kCreateNameless, error);
  if (error == kSuccess) error = hold(fromBytes(GetHandlePath(file_, {})));
  if (error == kSuccess) return {};
  removeLeftovers(folderOf(target_));
  error = takeName([this](TextView name) { return create(name); });
  if (error != kSuccess) failure_ = systemError(error, kSource);
  return failure_;
}

/// Calls `take` with names beside the target until one is free, and remembers that name. The names
/// are short for every target, because the name of the target may already have the greatest
/// possible length.
template <class Take>
ErrorCode ReplacingFile::takeName(Take take) {
  const std::uint64_t seed = GetTickCount();
  ErrorCode error = kSuccess;
  for (int attempt = 0; attempt < kTemporaryNames; ++attempt) {
    Text candidate(folderOf(target_));
    candidate.append(kPrefix).append(toText(std::int64_t(seed) + attempt)).append(kSuffix);
    error = take(candidate);
    if (error == kSuccess) temporary_ = std::move(candidate);  // never throws: the name is taken
    if (error != kAlreadyExists) break;
  }
  return error;
}

/// Makes a file with a name. Another process that removes leftovers may take it before it is
/// locked.
ErrorCode ReplacingFile::create(TextView path) {
  ErrorCode error = kSuccess;
  file_ = CreateFileW(path, kCreateNew, error);
  if (error != kSuccess) return error;
  return hold(path) == kSuccess && exists(path) ? kSuccess : kAlreadyExists;
}

/// Opens the new file at `path` once more and locks it. After the file was written and closed, this
/// handle still has the lock.
ErrorCode ReplacingFile::hold(TextView path) {
  ErrorCode error = kSuccess;
  hold_ = CreateFileW(path, kOpenRead, error);
  if (error == kSuccess && LockFile(hold_) == kSharingViolation) error = kSharingViolation;
  return error;
}

void ReplacingFile::keepAccess() {
  if (file_.isOpen()) CopyFileSecurity(target_, file_);
}

Failure ReplacingFile::write(std::string_view bytes) {
  if (failure_) return failure_;
  const ErrorCode error = WriteFile(file_, bytes);
  if (error != kSuccess) failure_ = systemError(error, kSource);
  return failure_;
}

Failure ReplacingFile::commit() {
  ErrorCode error = file_.isOpen() ? CloseHandle(file_) : kSuccess;
  if (!failure_) {
    if (error == kSuccess) error = temporary_.empty() ? nameFile() : replaceTarget();
    if (error != kSuccess) failure_ = systemError(error, kSource);
  }
  discard();
  // A process that was killed between the two steps of a replacement left its file.
  if (!failure_) removeLeftovers(folderOf(target_));
  return failure_;
}

/// Gives the nameless file its name. A file that exists can be replaced only by another name.
ErrorCode ReplacingFile::nameFile() {
  ErrorCode error = NameFile(hold_, target_);
  if (error != kAlreadyExists) return error;
  error = takeName([this](TextView name) { return NameFile(hold_, name); });
  return error == kSuccess ? replaceTarget() : error;
}

ErrorCode ReplacingFile::replaceTarget() {
  const ErrorCode error = MoveFileExW(temporary_, target_);
  if (error == kSuccess) temporary_.clear();
  return error;
}

ReplacingFile::~ReplacingFile() { discard(); }

void ReplacingFile::discard() {
  file_ = FileHandle();
  try {
    if (!temporary_.empty()) DeleteFileW({temporary_});
  } catch (const std::exception&) {  // no memory at all: the next file in the folder removes it
  }
  temporary_.clear();
  hold_ = FileHandle();
}

}  // namespace ombrelian::platform
