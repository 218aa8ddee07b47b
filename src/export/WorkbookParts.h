#pragma once

#include <string>

#include "support/Date.h"
#include "support/Text.h"

namespace ombrelian {

/// A part of a workbook: its name in the archive and its content.
struct WorkbookPart {
  std::string name;
  std::string content;
};

/// Styles of cells, as attributes.
inline constexpr std::string_view kPlainStyle;
inline constexpr std::string_view kDateStyle = " s=\"1\"";

/// The parts that do not depend on the sheets.
WorkbookPart packageRelations();
WorkbookPart programProperties();
WorkbookPart styles();

/// Name of the part with the sheet `number`, counted from 1, and the texts before and after its
/// rows. The first row of a sheet stays visible.
std::string sheetPart(std::size_t number);
std::string sheetHead(std::size_t number);
inline constexpr std::string_view kSheetEnd = "</sheetData></worksheet>";

/// The parts that name and list the sheets.
WorkbookPart workbookPart(TextView title, std::size_t sheets);
WorkbookPart workbookRelations(std::size_t sheets);
WorkbookPart contentTypes(std::size_t sheets);

/// The properties of the document; no date and an empty description are left out.
WorkbookPart coreProperties(Date created, TextView description);

}  // namespace ombrelian
