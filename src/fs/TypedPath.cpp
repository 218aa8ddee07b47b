#include "fs/TypedPath.h"

#include "fs/PathText.h"
#include "fs/z_Filesystem.h"
#include "platform/Files.h"
#include "platform/Process.h"

namespace ombrelian {
namespace {

constexpr TextView kFileAddress = u"file://";

int hexDigit(char unit) {
  if (unit >= '0' && unit <= '9') return unit - '0';
  const char lower = char(unit | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// The path of a "file://" address; its host is left out.
Text pathOfAddress(TextView address) {
  const std::string bytes = toBytes(address.substr(kFileAddress.size()));
  std::string path;
  for (std::size_t at = std::min(bytes.find('/'), bytes.size()); at < bytes.size(); ++at) {
    const bool isCode = bytes[at] == '%' && at + 2 < bytes.size() && hexDigit(bytes[at + 1]) >= 0 &&
                        hexDigit(bytes[at + 2]) >= 0;
    path += isCode ? char(hexDigit(bytes[at + 1]) * 16 + hexDigit(bytes[at + 2])) : bytes[at];
    if (isCode) at += 2;
  }
  return fromBytes(path);
}

TextView withoutQuotes(TextView text) {
  const bool isQuoted = text.size() > 1 && text.front() == text.back() &&
                        (text.front() == u'"' || text.front() == u'\'');
  return isQuoted ? text.substr(1, text.size() - 2) : text;
}

}  // namespace

Text typedPath(TextView typed) {
  if (xExistFolder_W(typed)) return platform::GetFullPathNameW(typed);
  Text path(withoutQuotes(trimBlanks(typed)));
  if (path.empty()) return path;
  if (path.starts_with(kFileAddress)) path = pathOfAddress(path);
  if (path == u"~" || path.starts_with(u"~/")) path.replace(0, 1, platform::GetHomeFolder());
  path = platform::GetFullPathNameW(path);
  if (!xExistFolder_W(path) && xExistFile_W(path)) path = Text(xGetPath(path));
  return path;
}

}  // namespace ombrelian
