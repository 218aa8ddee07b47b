#pragma once

#include "support/Text.h"

namespace ombrelian {

/// Which form of a cell a format takes.
enum class CellForm {
  Shown,         // the text that the list shows
  Plain,         // without mask
  ShownOrPlain,  // without mask only where the list shows nothing
};

/// What the formats do differently for the folder report, which has sources and levels, and for
/// the flat lists. Readers of either have always had it so.
struct ReportShape {
  // TXT
  bool blankLineBeforeHead;  // and the list's title once, in front of all sources
  bool labelsDrives;         // a drive's path has its label behind it
  bool alignsCaptions;       // captions are aligned like their columns; else all at the left
  bool trimsLines;           // no blanks at the ends of lines
  bool wholePercents;        // rounded, without mask
  CellForm txtCell;

  bool endsLastLine;  // TXT and CSV: the last row has a line end too
  CellForm csvCell;

  // XML
  TextView rowElement;
  bool nestsRows;  // rows stand in the element of the row above their level
  bool tellsDriveName;
  CellForm xmlCell;
  CellForm xmlPercent;
};

inline constexpr ReportShape kTreeShape = {
    .blankLineBeforeHead = true,
    .labelsDrives = true,
    .alignsCaptions = false,
    .trimsLines = false,
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
    .trimsLines = true,
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
