#include "fs/Deleting.h"

#include <optional>

#include "fs/PathText.h"
#include "fs/z_Filesystem.h"
#include "platform/Files.h"
#include "support/Guard.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

using platform::ErrorCode;
using platform::kSuccess;

constexpr TextView kModule = u"z_Filesystem";

constexpr int kMostErrors = 20;  // greatest number of errors in one text

Text numberedError(TextView path, ErrorCode code) {
  Text text(path);
  return text.append(u" (").append(xGetErrorText(true, code)).append(u")");
}

Error deletingError(ErrorCode code, TextView path, TextView source) {
  return {std::int32_t(code), Text(source), numberedError(path, code)};
}

/// Collects the objects of a folder that could not be removed.
class Watch : public platform::RemovalProgress {
 public:
  Watch(const Text& folder, const DeletionGoOn& goOn) : folder_(folder), goOn_(goOn) {}

  bool goOn(std::uint64_t files, std::uint64_t folders) override {
    return !goOn_ || goOn_(files, folders);
  }

  void failed(TextView path, ErrorCode error) override {
    isItself_ = isItself_ || path == folder_;
    if (++errors_ > kMostErrors) return;
    failed_.push_back({Text(path), xGetErrorText(false, error)});
    text_.append(text_.empty() ? u"" : u" ").append(numberedError(path, error));
  }

  std::int64_t errors() const { return errors_; }
  std::vector<FailedObject> takeFailed() { return std::move(failed_); }

  Text text() const {
    Text text;
    if (errors_ == 0) return text;
    if (!isItself_) text = numberedError(folder_, platform::kDirectoryNotEmpty).append(u" ");
    text.append(text_);
    if (errors_ > kMostErrors) {
      text.append(u" ").append(TL(9612, u"und %1 weitere", {toText(errors_ - kMostErrors)}));
    }
    return text;
  }

 private:
  const Text& folder_;
  const DeletionGoOn& goOn_;
  std::int64_t errors_ = 0;
  bool isItself_ = false;  // the folder itself could not be removed
  Text text_;
  std::vector<FailedObject> failed_;
};

Failure deleteFile(const platform::ShownObject& file, bool force) {
  ErrorCode error = platform::DeleteFileW(file);
  if (error == kSuccess || platform::isMissing(error)) return {};
  const Error first = deletingError(error, file.path, u"xDeleteFile_W");
  if (!force || error != platform::kAccessDenied) return first;
  const platform::ForcedRights rights(file);
  if (rights.error() != kSuccess) {
    Text text = xGetErrorText(true, rights.error()).append(u" SetFA: ").append(first.text);
    return Error{first.number, first.source, std::move(text)};
  }
  error = platform::DeleteFileW(file);
  if (error == kSuccess || platform::isMissing(error)) return {};
  return deletingError(error, file.path, u"xDeleteFile_W");
}

/// Result of a deletion that a fault ended: it is not known how much is gone.
FolderDeletion unfinished(const Error& error) {
  FolderDeletion deletion;
  deletion.errorText = errorTextOf(error);
  return deletion;
}

}  // namespace

Failure xDeleteFile_W(const platform::ShownObject& file, bool force) {
  return GuardedOr(
      kModule, u"xDeleteFile_W", [&] { return deleteFile(file, force); }, failureOf);
}

bool isMissingObject(TextView path) {
  platform::FindData data;
  return platform::isMissing(findObject(path, data));
}

bool RemoveDirectoryForce_W(const platform::ShownObject& folder) {
  return Guarded(kModule, u"RemoveDirectoryForce_W", [&] {
    if (platform::RemoveDirectoryW(folder) == kSuccess) return true;
    const platform::ForcedRights rights(folder);
    return rights.error() == kSuccess && platform::RemoveDirectoryW(folder) == kSuccess;
  });
}

FolderDeletion xDeleteFolderR_W(const platform::ShownObject& folder, const DeletionGoOn& goOn) {
  return GuardedOr(
      kModule, u"xDeleteFolderR_W",
      [&]() -> FolderDeletion {
        Watch watch(folder.path, goOn);
        const platform::Removal removal = platform::RemoveTree(folder, watch);
        return {removal.isGone, removal.wasStopped, removal.files, removal.folders,
                watch.text(),   watch.takeFailed(), watch.errors()};
      },
      unfinished);
}

FolderDeletion xDeleteFolder_W(const platform::ShownObject& folder, const DeletionGoOn& goOn) {
  return GuardedOr(
      kModule, u"xDeleteFolder_W",
      [&] {
        FolderDeletion deletion = xDeleteFolderR_W(folder, goOn);
        if (!deletion.isGone && isMissingObject(folder.path)) {
          deletion.isGone = true;
          deletion.errorText.clear();
        }
        return deletion;
      },
      unfinished);
}

}  // namespace ombrelian
