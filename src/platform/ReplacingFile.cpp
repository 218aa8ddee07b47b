#include "platform/ReplacingFile.h"

#include "platform/Removal.h"
#include "platform/Time.h"
#include "support/Translate.h"

namespace ombrelian::platform {
namespace {

constexpr TextView kSource = u"ReplacingFile";
constexpr int kTemporaryNames = 100;  // number of names that are tried

/// Target of a link at `target`; `target` itself if there is no link.
Text resolved(TextView target) {
  FindData data;
  if (FindFirstFileW(target, data) != kSuccess || !data.isReparse()) return Text(target);
  const Text final = GetFinalPathNameW(target);
  return final.empty() ? Text(target) : final;
}

/// Folder of `path`, with its final separator.
TextView folderOf(TextView path) { return path.substr(0, path.rfind(kNativeSeparator) + 1); }

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
  // The temporary name is short for every target, because the name of the target may already have
  // the greatest possible length.
  const std::uint64_t seed = GetTickCount();
  ErrorCode error = kSuccess;
  for (int attempt = 0; attempt < kTemporaryNames; ++attempt) {
    Text candidate(folderOf(target_));
    candidate += u".ombrelian-" + toText(std::int64_t(seed) + attempt) + u".tmp";
    file_ = CreateFileW(candidate, kCreateNew, error);
    if (error == kSuccess) temporary_ = candidate;
    if (error != kAlreadyExists) break;
  }
  if (error != kSuccess) failure_ = systemError(error, kSource);
  return failure_;
}

void ReplacingFile::keepAccess() {
  if (file_.isOpen()) CopyFileSecurity(target_, file_);
}

std::string ReplacingFile::libraryFolder() {
  const Text path(folderOf(target_));
  ErrorCode ignored = kSuccess;
  if (!folder_.isOpen()) folder_ = CreateFileW(path, kOpenFolder, ignored);
  return folder_.isOpen() ? GetHandlePath(folder_, path) : toBytes(path);
}

Failure ReplacingFile::write(std::string_view bytes) {
  if (failure_) return failure_;
  const ErrorCode error = WriteFile(file_, bytes);
  if (error != kSuccess) failure_ = systemError(error, kSource);
  return failure_;
}

Failure ReplacingFile::commit() {
  if (file_.isOpen()) {
    const ErrorCode error = CloseHandle(file_);
    if (error != kSuccess && !failure_) failure_ = systemError(error, kSource);
  }
  if (!failure_) {
    const ErrorCode error = MoveFileExW(temporary_, target_);
    if (error != kSuccess) failure_ = systemError(error, kSource);
  }
  if (failure_) {
    discard();
  } else {
    temporary_.clear();
  }
  return failure_;
}

ReplacingFile::~ReplacingFile() { discard(); }

void ReplacingFile::discard() {
  if (temporary_.empty()) return;
  file_ = FileHandle();
  DeleteFileW({temporary_});
  temporary_.clear();
}

}  // namespace ombrelian::platform
