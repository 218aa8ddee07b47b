#include "fs/Deleting.h"

#include "support/Guard.h"

namespace ombrelian {
namespace {

using platform::ErrorCode;
using platform::kSuccess;

constexpr TextView kModule = u"z_Filesystem";

Error deletingError(ErrorCode code, TextView path, TextView source) {
  Text text(path);
  text.append(u" (").append(xGetErrorText(true, code)).append(u")");
  return {std::int32_t(code), Text(source), std::move(text)};
}

}  // namespace

Failure xDeleteFile_W(const platform::ShownObject& file, bool force) {
  return Guarded(kModule, u"xDeleteFile_W", [&]() -> Failure {
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
  });
}

}  // namespace ombrelian
