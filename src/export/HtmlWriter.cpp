#include "export/HtmlWriter.h"

#include <charconv>

#include "export/SortScript.h"
#include "format/DatePattern.h"
#include "format/Mask.h"
#include "platform/Locale.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

// The page runs no script but its own and loads nothing.
constexpr TextView kContentPolicy =
    u"<meta http-equiv='Content-Security-Policy' content=\"default-src 'none'; "
    u"style-src 'unsafe-inline'; script-src '" OMBRELIAN_SORT_SCRIPT_HASH u"'\">";
constexpr TextView kScriptBegin = u"<script type='text/javascript'>";
constexpr TextView kScriptEnd = u"</script>";
constexpr TextView kAscending = u"<span id='sorttable_sortfwdind'>&nbsp;&#x25B4;</span>";
constexpr TextView kDescending = u"<span id='sorttable_sortrevind'>&nbsp;&#x25BE;</span>";
constexpr TextView kKeyBegin = u" sorttable_customkey='";

// Numbers in a form for scripts, independent of the locale.

void appendDays(Date date, Text& out) {
  constexpr int kDigits = 15;  // significant digits of a date
  char digits[32];
  const auto end =
      std::to_chars(digits, std::end(digits), date, std::chars_format::general, kDigits);
  out.append(std::begin(digits), end.ptr);
}

void appendExact(double value, Text& out) {
  char digits[400];
  const auto end = std::to_chars(digits, std::end(digits), value, std::chars_format::fixed);
  out.append(std::begin(digits), end.ptr);
}

/// Appends a value so that a name cannot contain an element. Ampersands stay as they are, because
/// readers have always received them like that.
void appendValue(TextView value, Text& out) {
  for (const char16_t unit : value) {
    if (unit == u'<') {
      out += u"&lt;";
    } else if (unit == u'>') {
      out += u"&gt;";
    } else {
      out += unit;
    }
  }
}

}  // namespace

void HtmlWriter::beginSource(const ReportSource& source) {
  if (tableIsOpen_) SaveHtmlTableEnd(true);
  SaveHtmlHeader(source);
  tableIsOpen_ = true;
}

void HtmlWriter::endDocument() {
  if (tableIsOpen_) SaveHtmlTableEnd(false);
}

void HtmlWriter::SaveHtmlHeader(const ReportSource& source) {
  line_ = u"<!DOCTYPE html><html><head>";
  if (isPiped()) line_ += u"<meta charset=\"UTF-8\">";  // a file has a byte order mark
  line_ += kContentPolicy;
  writeLine(line_.append(kScriptBegin).append(kSortScript).append(kScriptEnd));
  writeLine(GetTableHtmlStyles());
  writeLine(u"</head><body>");
  writeTitleRow(source);
  writeLine(u"<tr>");
  for (const Column* const column : list_.columns)
    writeColumnHeader(*column);
  writeLine(u"</tr></thead><tbody>");
}

void HtmlWriter::writeTitleRow(const ReportSource& source) {
  line_ = u"<div id='mystyle' class='style3'><table class='sortable'><thead><tr>";
  line_.append(u"<th class='header1' colspan='")
      .append(toText(std::int64_t(list_.columns.size())))
      .append(u"'>Ombrelian - ")
      .append(list_.title)
      .append(u"<span style=\"font-size:12px;\">");
  if (!source.path.empty()) {
    appendValue(TL(2245, u"Pfad: %1", {describeSource(source.path, true)}), line_.append(u"<br>"));
  }
  line_.append(u"<br>").append(TL(2246, u"Erstellt: %1", {formatGeneralDate(source.created)}));
  for (const Text& note : source.notes)
    appendValue(note, line_.append(u"<br>"));
  line_.append(u"</span></th></tr>");
  writeLine(line_);
}

void HtmlWriter::writeColumnHeader(const Column& column) {
  // Dates are sorted by the keys of their cells.
  const bool sortsAsText = column.isLeftAligned() && column.kind != CellKind::Timestamp;
  line_ = sortsAsText ? u"<th class='sorttable_alpha'>" : u"<th>";
  line_ += list_.format.caption(column);
  if (&column == list_.sortColumn) line_ += list_.sortedDescending ? kDescending : kAscending;
  writeLine(line_ += u"</th>");
}

void HtmlWriter::row(const ReportRow& row) { SaveHtmlRowData(row); }

void HtmlWriter::SaveHtmlRowData(const ReportRow& row) {
  writeLine(u"<tr>");
  for (const Column* const column : list_.columns) {
    line_ = column->isLeftAligned() ? u"<td" : u"<td class='r'";
    appendCell(row, *column);
    writeLine(line_ += u"</td>");
  }
  writeLine(u"</tr>");
}

/// Appends the rest of the opening tag of a cell and its value.
void HtmlWriter::appendCell(const ReportRow& row, const Column& column) {
  value_.clear();
  if (column.kind == CellKind::Percent && list_.cells.hasValue(row.index, column)) {
    static const NumberMask kMask = parseNumberMask(u"##0.00");
    appendNumber(kMask, roundDecimal(list_.cells.real(row.index, column), kMask.decimals), value_);
    value_ += u'%';
  } else if (row.isStart) {
    cells_.append(CellForm::ShownOrPlain, row, column, value_);
  } else {
    cells_.appendNamed(CellForm::ShownOrPlain, row, column, value_);
  }
  if (column.kind == CellKind::Timestamp) {
    appendDateKey(row, column);
  } else if (!column.isLeftAligned() && column.kind != CellKind::Percent) {
    appendNumberKey(row, column);
  }
  appendValue(value_, line_ += u'>');
}

void HtmlWriter::appendDateKey(const ReportRow& row, const Column& column) {
  if (value_.empty()) return;
  line_ += kKeyBegin;
  appendDays(list_.cells.real(row.index, column), line_);
  line_ += u'\'';
}

/// Appends the sort key of a number that is shown with separators or a unit; a plain number needs
/// no key.
void HtmlWriter::appendNumberKey(const ReportRow& row, const Column& column) {
  if (value_.find_first_not_of(u"0123456789-") == Text::npos) return;
  line_ += kKeyBegin;
  appendExact(list_.format.value(list_.cells, row.index, column), line_);
  line_ += u'\'';
}

void HtmlWriter::SaveHtmlTableEnd(bool MoreTables) {
  writeLine(MoreTables ? u"</tbody></table>" : u"</tbody></table></div></body></html>");
}

}  // namespace ombrelian
