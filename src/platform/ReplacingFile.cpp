#include "platform/ReplacingFile.h"

#include <exception>

#include "platform/FolderWalk.h"
#include "platform/Time.h"
#include "support/Translate.h"

namespace ombrelian::platform {
namespace {

constexpr TextView kSource = u"ReplacingFile";
constexpr int kTemporaryNames = 100;  // number of names that are tried
constexpr TextView kPrefix = u".ombrelian-";
constexpr TextView kSuffix = u".tmp";

/// Removes the temporary files of runs that were killed: no process holds the lock of these.
void removeLeftovers(const FilePlace& place) try {
  FolderWalk walk(0, WalkReach::OneFolder);
  if (walk.openSource(place.folderPath()) != kSuccess) return;
  while (const FindData* const data = walk.nextEntry()) {
    const TextView name = walk.name();
    if (!name.starts_with(kPrefix) || !name.ends_with(kSuffix) || data->isFolder()) continue;
    ErrorCode error = kSuccess;
    FileHandle file = place.openOwn(name, kOpenExisting, error);
    FindData found;
    if (error == kSuccess) error = LockFile(file);
    if (error == kSuccess) error = GetFileInformationByHandle(file, found);
    if (error == kSuccess) place.remove(name, found.identity);
  }
} catch (const std::exception&) {  // a file that is complete does not fail because of the others
}

Error otherObject() {
  return {std::int32_t(kNotSupported), Text(kSource),
          TL(9013, u"Unter diesem Namen steht etwas anderes als eine Datei.")};
}

/// Why no file can be placed there; none: it can.
Failure obstacleAt(const FilePlace& place) {
  FindData data;
  const ErrorCode error = place.find(place.name(), data);
  if (error == kSuccess && data.isFolder()) {
    return Error{std::int32_t(kAccessDenied), Text(kSource),
                 TL(9012, u"Unter diesem Namen steht ein Ordner.")};
  }
  // A plain file must not replace a device or a pipe.
  constexpr auto kSpecial = kAttributeSystem | kAttributeReparsePoint;
  if (error == kSuccess && (data.dwFileAttributes & kSpecial) != 0) return otherObject();
  const ErrorCode writing = place.checkWritable();
  return writing == kSuccess ? Failure() : systemError(writing, kSource);
}

}  // namespace

Failure ReplacingFile::check(TextView target) { return ReplacingFile().lookAt(target); }

bool ReplacingFile::isProtected(TextView target) {
  FilePlace place;
  return place.open(target) == kSuccess && !place.mayWrite();
}

Failure ReplacingFile::lookAt(TextView target) {
  const ErrorCode error = place_.open(target);
  return error == kSuccess ? obstacleAt(place_) : systemError(error, kSource);
}

Failure ReplacingFile::open(TextView target, FileAccess access) {
  access_ = access;
  failure_ = lookAt(target);
  if (failure_) return failure_;
  const ErrorCode error = begin();
  if (error != kSuccess) failure_ = systemError(error, kSource);
  return failure_;
}

ErrorCode ReplacingFile::begin() {
  ErrorCode error = kSuccess;
  if (access_ == FileAccess::OwnersOnly) {
    const FileHandle old = place_.openOwn(place_.name(), kOpenRead, error);
    if (error != kSuccess && !isMissing(error)) return error;
  }
  file_ = place_.make({}, error);
  if (error == kSuccess) error = hold();
  if (error == kSuccess) return error;
  removeLeftovers(place_);
  return takeName([this](TextView name) { return create(name); });
}

/// Calls `take` with names beside the target until one is free, and remembers that name. The names
/// are short for every target, because the name of the target may already have the greatest
/// possible length.
template <class Take>
ErrorCode ReplacingFile::takeName(Take take) {
  const std::uint64_t seed = GetTickCount();
  ErrorCode error = kSuccess;
  for (int attempt = 0; attempt < kTemporaryNames; ++attempt) {
    Text candidate(kPrefix);
    candidate.append(toText(std::int64_t(seed) + attempt)).append(kSuffix);
    error = take(candidate);
    if (error == kSuccess) temporary_ = std::move(candidate);  // never throws: the name is taken
    if (error != kAlreadyExists) break;
  }
  return error;
}

/// Makes a file with a name. Another process that removes leftovers may take it before it is
/// locked.
ErrorCode ReplacingFile::create(TextView name) {
  ErrorCode error = kSuccess;
  file_ = place_.make(name, error);
  if (error != kSuccess) return error;
  FindData made;
  FindData found;
  const bool isThere = hold() == kSuccess && GetFileInformationByHandle(file_, made) == kSuccess &&
                       place_.find(name, found) == kSuccess && found.identity == made.identity;
  return isThere ? kSuccess : kAlreadyExists;
}

/// Locks the new file through a second handle, which still has the lock when the file was written
/// and closed.
ErrorCode ReplacingFile::hold() {
  ErrorCode error = kSuccess;
  hold_ = DuplicateHandle(file_, error);
  if (error == kSuccess && LockFile(hold_) == kSharingViolation) error = kSharingViolation;
  return error;
}

Failure ReplacingFile::write(std::string_view bytes) {
  if (failure_) return failure_;
  const ErrorCode error = WriteFile(file_, bytes);
  if (error != kSuccess) failure_ = systemError(error, kSource);
  return failure_;
}

Failure ReplacingFile::commit() {
  if (!failure_ && file_.isOpen()) {
    const ErrorCode error = finish();
    if (error != kSuccess) failure_ = systemError(error, kSource);
  }
  discard();
  // A process that was killed between the two steps of a replacement left its file.
  if (!failure_) removeLeftovers(place_);
  return failure_;
}

/// Everything that makes the written file the target.
ErrorCode ReplacingFile::finish() {
  // Without this, some file systems have the new name and no contents after a loss of power.
  ErrorCode error = FlushFileBuffers(file_);
  if (error == kSuccess && access_ == FileAccess::AsBefore) error = place_.giveAccess(file_);
  const ErrorCode closing = CloseHandle(file_);
  if (error == kSuccess) error = closing;
  if (error == kSuccess) error = temporary_.empty() ? nameFile() : replaceTarget();
  if (error == kSuccess && access_ == FileAccess::OwnersOnly) error = place_.flush();
  return error;
}

/// Gives the nameless file its name. A file that exists can be replaced only by another name.
ErrorCode ReplacingFile::nameFile() {
  const ErrorCode error = place_.nameFile(hold_, place_.name());
  if (error != kAlreadyExists) return error;
  const ErrorCode taken = takeName([this](TextView name) { return place_.nameFile(hold_, name); });
  return taken == kSuccess ? replaceTarget() : taken;
}

ErrorCode ReplacingFile::replaceTarget() {
  const ErrorCode error = place_.rename(temporary_, place_.name());
  if (error == kSuccess) temporary_.clear();
  return error;
}

ReplacingFile::~ReplacingFile() { discard(); }

void ReplacingFile::discard() {
  file_ = FileHandle();
  try {
    FindData made;
    if (!temporary_.empty() && GetFileInformationByHandle(hold_, made) == kSuccess)
      place_.remove(temporary_, made.identity);
  } catch (const std::exception&) {  // no memory at all: the next file in the folder removes it
  }
  temporary_.clear();
  hold_ = FileHandle();
}

}  // namespace ombrelian::platform
