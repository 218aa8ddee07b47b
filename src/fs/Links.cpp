#include "fs/Links.h"

#include "fs/z_Filesystem.h"
#include "platform/Accounts.h"
#include "support/Guard.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

using platform::ErrorCode;
using platform::FindData;
using platform::kSuccess;

constexpr TextView kModule = u"z_Filesystem";

}  // namespace

Text xGetJunctionPath(TextView path, std::uint32_t tag, Text& errorText) {
  return GuardedOr(
      kModule, u"xGetJunctionPath",
      [&] {
        ErrorCode error = kSuccess;
        Text target = platform::GetReparseTarget(path, tag, error);
        errorText = error == kSuccess ? Text() : xGetErrorText(true, error) + u" (DeviceIoControl)";
        return target;
      },
      [&](const Error& error) {
        errorText = errorTextOf(error);
        return Text();
      });
}

std::int32_t xGetHardlinkCount(TextView path, Text* id, Text& errorText) {
  return GuardedOr(
      kModule, u"xGetHardlinkCount",
      [&]() -> std::int32_t {
        FindData data;
        const ErrorCode error = findObject(path, data);
        if (error != kSuccess) {
          errorText = TL(4071,
                         u"Die Datei '%1' konnte nicht geöffnet werden. "
                         u"(xGetHardlinkCount\\CreateFileWide: %2)",
                         {path, xGetErrorText(true, error)});
          return 0;
        }
        errorText.clear();
        if (id != nullptr) *id = hardlinkIdentity(data);
        return hardlinkCount(data);
      },
      [&](const Error& error) {
        errorText = errorTextOf(error);
        return std::int32_t(0);
      });
}

std::int32_t hardlinkCount(const FindData& data) {
  return data.linkCount > 1 ? std::int32_t(data.linkCount) : 0;
}

Text hardlinkIdentity(const FindData& data) {
  const auto low = std::int32_t(std::uint32_t(data.identity.index));
  const auto high = std::int32_t(std::uint32_t(data.identity.index >> 32));
  return toText(low) + u"-" + toText(high);
}

Text GetFileOwnerW(TextView path) {
  return GuardedOr(
      kModule, u"GetFileOwnerW",
      [&]() -> Text {
        FindData data;
        if (findObject(path, data) != kSuccess) return {};
        return platform::LookupAccountName(data.ownerId);
      },
      nothing<Text>);
}

}  // namespace ombrelian
