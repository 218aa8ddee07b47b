#pragma once

#include "ui/WindowState.h"

namespace ombrelian::ui {

/// What an empty list shows in place of rows: why it is empty, and the caption of a button that
/// fills it.
struct EmptyNote {
  Text text;
  Text button;  // empty: no button
};

/// The note of `list`, one of kDerivedLists.
EmptyNote emptyNoteOf(const WindowState& state, ListId list);

}  // namespace ombrelian::ui
