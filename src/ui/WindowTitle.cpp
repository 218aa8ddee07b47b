#include "ui/WindowTitle.h"

#include "frame/StartUp.h"
#include "support/Translate.h"
#include "tree/TreeOrder.h"
#include "ui/QtText.h"

namespace ombrelian::ui {

QString windowTitle(const Session& session, std::size_t waiting) {
  constexpr TextView kBetween = u" \u2013 ";
  Text title = pathsOfSources(session.tree);
  if (isIncomplete(session.tree)) title.append(kBetween).append(TL(9705, u"unvollständig"));
  if (!title.empty()) title += kBetween;
  title.append(u"Ombrelian ").append(versionText());
  if (waiting == 1) title.append(kBetween).append(TL(9904, u"1 Ordner wartet"));
  if (waiting > 1)
    title.append(kBetween).append(
        TL(9905, u"%1 Ordner warten", {ombrelian::toText(std::int64_t(waiting))}));
  if (session.readOnly) title.append(kBetween).append(TL(9640, u"nur Lesen"));
  return shownOnOneLine(title);
}

}  // namespace ombrelian::ui
