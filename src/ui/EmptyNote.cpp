#include "ui/EmptyNote.h"

#include "lists/ListTable.h"
#include "support/Translate.h"

namespace ombrelian::ui {

EmptyNote emptyNoteOf(const WindowState& state, ListId list) {
  const FilledLists& filled = state.filled;
  if (!isOn(state.session.options, list)) {
    return {TL(9763, u"Diese Liste ist ausgeschaltet."),
            filled.source.empty() ? TL(9764, u"Einschalten")
                                  : TL(9765, u"Einschalten und neu einlesen")};
  }
  if (filled.source.empty()) {
    const Word& word = listRow(list).empty;
    return {TL(word.id, word.german), {}};
  }
  if (!filled.wasOn[std::size_t(list)]) {
    return {TL(9766, u"Diese Liste war beim Einlesen ausgeschaltet."), TL(9767, u"Neu einlesen")};
  }
  return {TL(9768, u"In '%1' wurde dafür nichts gefunden.", {filled.source}), {}};
}

}  // namespace ombrelian::ui
