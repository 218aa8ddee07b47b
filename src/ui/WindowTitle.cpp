#include "ui/WindowTitle.h"

#include "frame/StartUp.h"
#include "support/Translate.h"
#include "ui/QtText.h"

namespace ombrelian::ui {

QString windowTitle(const Session& session) {
  constexpr TextView kBetween = u" \u2013 ";
  const FolderTree& tree = session.tree;
  Text title;
  bool isIncomplete = false;
  for (NodeIndex root = tree.firstRoot(); root != kNoNode; root = tree[root].nextSibling) {
    if (!title.empty()) title += u", ";
    title += onOneLine(tree[root].name());
    isIncomplete = isIncomplete || tree[root].has(FolderNode::IsIncomplete);
  }
  if (isIncomplete) title.append(kBetween).append(TL(9705, u"unvollständig"));
  if (!title.empty()) title += kBetween;
  title.append(u"Ombrelian ").append(versionText());
  if (session.readOnly) title.append(kBetween).append(TL(9640, u"nur Lesen"));
  return toQString(title);
}

}  // namespace ombrelian::ui
