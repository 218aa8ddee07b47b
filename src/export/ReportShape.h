#pragma once

#include "support/Text.h"

namespace ombrelian {

/// The form of a cell in a format.
enum class CellForm {
  Shown,         // the text that the list shows
  Plain,         // without mask
  ShownOrPlain,  // without mask only if the list shows nothing
};

/// Differences of the formats between the folder report, which has sources and levels, and the flat
/// lists. Programs that read these files expect them.
struct ReportShape {
  // TXT
  bool blankLineBeforeHead;  // and the title of the list once, before all sources
  bool labelsDrives;         // the path of a drive is followed by its label
  bool alignsCaptions;       // captions are aligned like their columns, else at the left
  bool wholePercents;        // percentages are rounded, without mask
  CellForm txtCell;

  bool endsLastLine;  // TXT and CSV: the last row has a line end too
  CellForm csvCell;

  // XML
  TextView rowElement;
  bool nestsRows;  // a row is inside the element of the row above its level
  bool tellsDriveName;
  CellForm xmlCell;
  CellForm xmlPercent;
};

inline constexpr ReportShape kTreeShape = {
    .blankLineBeforeHead = true,
    .labelsDrives = true,
    .alignsCaptions = false,
    .wholePercents = true,
    .txtCell = CellForm::Shown,
    .endsLastLine = true,
    .csvCell = CellForm::Plain,
    .rowElement = u"node",
    .nestsRows = true,
    .tellsDriveName = true,
    .xmlCell = CellForm::Shown,
    .xmlPercent = CellForm::Plain,
};

inline constexpr ReportShape kFlatShape = {
    .blankLineBeforeHead = false,
    .labelsDrives = false,
    .alignsCaptions = true,
    .wholePercents = false,
    .txtCell = CellForm::ShownOrPlain,
    .endsLastLine = false,
    .csvCell = CellForm::ShownOrPlain,
    .rowElement = u"row",
    .nestsRows = false,
    .tellsDriveName = false,
    .xmlCell = CellForm::ShownOrPlain,
    .xmlPercent = CellForm::ShownOrPlain,
};

}  // namespace ombrelian
