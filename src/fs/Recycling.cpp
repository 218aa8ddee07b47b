#include "fs/Recycling.h"

#include <optional>

#include "fs/Deleting.h"
#include "platform/ShellCodes.h"
#include "support/Guard.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

using platform::ErrorCode;
using platform::kShellErrorOnDestination;
using platform::kSuccess;
using platform::ShownObject;

constexpr TextView kModule = u"z_Filesystem";

struct ShellText {
  ErrorCode code;
  TextView text;
};

constexpr ShellText kShellTexts[] = {
    {0x71, u"Source and destination are one and the same file."},
    {0x72, u"Several sources were given, but only one destination."},
    {0x73, u"An object can be renamed within its folder only; the new name is in another folder."},
    {0x74, u"A root directory cannot be moved or renamed."},
    {0x75,
     u"The operation was cancelled by the user, or silently cancelled if the appropriate flags "
     u"were supplied to SHFileOperation."},
    {0x76, u"The destination lies inside of what is to be moved."},
    {0x78, u"Access to the source was denied."},
    {0x79, u"The path of the source or of the destination is too long."},
    {0x7A, u"Several destinations were given, which moving does not allow."},
    {0x7C, u"The path of the source or of the destination is not valid."},
    {0x7D, u"The source is already where it was to be moved."},
    {0x7E, u"The destination is a file that exists already."},
    {0x80, u"The destination is a folder that exists already."},
    {0x81, u"The name of the file is too long."},
    {0x82, u"The destination is a CD-ROM, which cannot be written to."},
    {0x84, u"The destination is a recordable disc, which may have no file system yet."},
    {0x85, u"The file is too large for the medium or the file system of the destination."},
    {0x86, u"The source is a CD-ROM, which cannot be written to."},
    {0x87, u"The source is a DVD, which cannot be written to."},
    {0x88, u"The source is a recordable disc, from which nothing can be removed."},
    {0xB7, u"MAX_PATH was exceeded during the operation."},
    {0x402,
     u"An unknown error occurred. This is typically due to an invalid path in the source or "
     u"destination."},
    {0x10000, u"An unspecified error occurred on the destination."},
    {0x10074, u"Destination is a root directory and cannot be renamed."},
};

constexpr ErrorCode kUnknown = 0x402;

/// Lets a removal continue always, and keeps its first failure.
class FirstFailure : public platform::RemovalProgress {
 public:
  bool goOn(std::uint64_t, std::uint64_t) override { return true; }
  void failed(TextView path, ErrorCode error) override {
    if (result.code == kSuccess) result = {error, Text(path)};
  }

  ShellResult result;
};

ShellResult recycle(const ShownObject& object) {
  ShellResult result;
  result.code = platform::RecycleObject(object, result.detail);
  if (platform::isMissing(result.code)) return {};
  return result;
}

/// Result after a fault, which must not look like success.
ShellResult unknown(const Error&) { return {kUnknown, {}}; }

/// Advice for the user about `result`; empty if the error text is enough.
Text advice(const ShellResult& result) {
  if ((result.code & kShellErrorOnDestination) != 0) {
    return TL(9620, u"Papierkorb: '%1'. Bitte Platz und Rechte dort prüfen oder endgültig löschen.",
              {result.detail});
  }
  if (result.code == platform::kNotSameDevice) {
    return TL(9621,
              u"Auf diesem Dateisystem gibt es keinen Papierkorb, der das aufnehmen kann; es "
              u"lässt sich nur endgültig löschen.");
  }
  return result.detail.empty() ? Text() : TL(9622, u"Papierkorb: '%1'.", {result.detail});
}

}  // namespace

ShellResult xDeleteFolderSHwide(const ShownObject& folder, bool recycle) {
  return GuardedOr(
      kModule, u"xDeleteFolderSHwide",
      [&]() -> ShellResult {
        if (recycle) return ombrelian::recycle(folder);
        FirstFailure progress;
        if (platform::RemoveTree(folder, progress).isGone) return ShellResult();
        return progress.result.code == kSuccess ? ShellResult{kUnknown, {}} : progress.result;
      },
      unknown);
}

ShellResult xDeleteFileSHwide(const ShownObject& file, bool recycle) {
  return GuardedOr(
      kModule, u"xDeleteFileSHwide",
      [&]() -> ShellResult {
        if (recycle) return ombrelian::recycle(file);
        const Failure failure = xDeleteFile_W(file, true);
        if (!failure) return ShellResult();
        return ShellResult{ErrorCode(failure->number), file.path};
      },
      unknown);
}

Text xGetErrorTextFromSH(ErrorCode code, bool addNumber) {
  Text text;
  for (const ShellText& row : kShellTexts) {
    if (row.code == code) text = row.text;
  }
  if (text.empty()) text = xGetErrorText(false, code & ~kShellErrorOnDestination);
  return addNumber ? text + u" - " + toText(code) : text;
}

Text recyclingReason(const ShellResult& result) {
  Text text = xGetErrorTextFromSH(result.code, false);
  if (const Text more = advice(result); !more.empty()) text.append(u" ").append(more);
  return text;
}

Text recyclingErrorText(const ShellResult& result) {
  return recyclingReason(result).append(u" (").append(toText(result.code)).append(u")");
}

}  // namespace ombrelian
