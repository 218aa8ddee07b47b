#include "frame/Properties.h"

#include "format/Attributes.h"
#include "format/DatePattern.h"
#include "format/LetterCase.h"
#include "format/Sizes.h"
#include "format/ToolTips.h"
#include "fs/Owners.h"
#include "fs/PathText.h"
#include "fs/z_Filesystem.h"
#include "lists/ListStatus.h"
#include "platform/SystemError.h"
#include "support/Translate.h"
#include "tree/TreeEdit.h"

namespace ombrelian {
namespace {

/// A size in a fitting unit and in bytes.
Text bothSizes(std::int64_t bytes) {
  constexpr std::int64_t kKilobyte = 1024;
  const Text plain = xFormatFileSize(0, bytes, true, false);
  return bytes < kKilobyte ? plain : xFormatFileSizeAuto(bytes, true) + u" (" + plain + u")";
}

Text typeOf(const platform::FindData& data, TextView path, FileTypes& types) {
  if (data.isReparse()) return TL(3735, u"Symbolischer Link");
  if (data.isFolder()) return TL(9870, u"Ordner");
  return types.typeText(lowerCase(xGetExtension(path)));
}

}  // namespace

std::vector<std::pair<Text, Text>> propertiesOf(const Text& path, const FolderTree& tree,
                                                const Options& options, FileTypes& types) {
  std::vector<std::pair<Text, Text>> rows;
  const auto add = [&rows](Text caption, Text value) {
    if (!value.empty()) rows.emplace_back(std::move(caption), std::move(value));
  };
  add(TL(3571, u"Name"), Text(xGetFileName(path)));
  add(TL(3728, u"Pfad"), Text(xGetPath(path)));
  platform::FindData data;
  if (const platform::ErrorCode error = findObject(path, data); error != platform::kSuccess) {
    add(TL(3792, u"Fehler"), xGetErrorText(false, error));
    return rows;
  }
  add(TL(3585, u"Typ"), typeOf(data, path, types));
  if (const std::vector<NodeIndex> nodes = foldersAt(tree, path); !nodes.empty()) {
    const FolderNode& node = tree[nodes.front()];
    add(TL(3583, u"Größe"), bothSizes(node.size));
    add(TL(3573, u"Dateien"), statusCount(node.files));
    add(TL(3574, u"Ordner"), statusCount(node.folders));
  } else if (!data.isFolder()) {
    add(TL(3583, u"Größe"), bothSizes(xGetFileSizeByWFD_W(data)));
    add(TL(9871, u"Auf dem Datenträger"), bothSizes(data.allocatedSize));
    if (data.linkCount > 1) add(TL(3790, u"Hardlinks"), statusCount(data.linkCount));
  }
  const Text form = options.DateFormat.empty() ? defaultDateFormat() : options.DateFormat;
  const DatePattern pattern(form);
  for (const auto& [caption, date] :
       {std::pair(TL(3587, u"Änderungsdatum"), xGetFileModifyDateByWFD(data, path)),
        std::pair(TL(3588, u"Erstellungsdatum"), xGetFileCreateDateByWFD(data, path)),
        std::pair(TL(3589, u"Letzter Zugriff"), xGetFileAccessDateByWFD(data, path))})
    if (date != 0) add(caption, pattern.format(date));
  add(TL(3801, u"Besitzer"), Text(OwnerTexts().of(keepsOwners(path), data)));
  add(TL(3586, u"Attribute"), xFormatFileAttribute(data.dwFileAttributes, false, {}));
  return rows;
}

}  // namespace ombrelian
