#include "export/ListJson.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "format/Attributes.h"
#include "support/Surrogates.h"

namespace ombrelian {
namespace {

constexpr std::size_t kPieceBytes = std::size_t(64) * 1024;

void appendEscape(char16_t unit, std::string& out) {
  char escape[8];
  std::snprintf(escape, sizeof escape, "\\u%04x", unsigned(unit));
  out += escape;
}

template <class Number>
void appendNumber(Number value, std::string& out) {
  char digits[32];
  out.append(digits, std::to_chars(digits, std::end(digits), value).ptr);
}

void appendDate(Date date, std::string& out) {
  if (date == 0) {
    out += "null";
    return;
  }
  const DateParts parts = toParts(date);
  char text[64];
  std::snprintf(text, sizeof text, "\"%04d-%02d-%02dT%02d:%02d:%02d\"", parts.year, parts.month,
                parts.day, parts.hour, parts.minute, parts.second);
  out += text;
}

void appendCell(const Grid& grid, Grid::RowIndex row, const Column& column, std::string& out) {
  if (!grid.hasValue(row, column)) {
    out += "null";
    return;
  }
  switch (column.kind) {
    case CellKind::PlainText:
      appendJsonText(grid.text(row, column), out);
      break;
    case CellKind::Timestamp:
      appendDate(grid.real(row, column), out);
      break;
    case CellKind::Percent:
      appendNumber(grid.real(row, column), out);
      break;
    case CellKind::Attributes:
      appendJsonText(xFormatFileAttribute(std::uint32_t(grid.number(row, column)), false, {}), out);
      break;
    default:
      appendNumber(grid.number(row, column), out);
      break;
  }
}

void appendRow(const Grid& grid, Grid::RowIndex row, std::string& out) {
  if (row > 0) out += ',';
  char before = '{';
  for (const Column& column : grid.columns()) {
    out += before;
    before = ',';
    appendJsonText(column.key, out);
    out += ':';
    appendCell(grid, row, column, out);
  }
  out += '}';
}

}  // namespace

void appendJsonText(TextView text, std::string& out) {
  out += '"';
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char16_t unit = text[at];
    const bool isPair =
        isHighSurrogate(unit) && at + 1 < text.size() && isLowSurrogate(text[at + 1]);
    const bool isLone = !isPair && (isHighSurrogate(unit) || isLowSurrogate(unit));
    if (unit == u'"' || unit == u'\\') {
      out += '\\';
      out += char(unit);
    } else if (unit < 0x20 || unit == 0x7F || isLone) {
      appendEscape(unit, out);
    } else if (isPair) {
      appendBytes(text.substr(at++, 2), out);
    } else {
      appendBytes(text.substr(at, 1), out);
    }
  }
  out += '"';
}

bool writeListJson(TextView key, TextView title, const Grid& grid, std::size_t limit,
                   const ByteSink& sink) {
  std::string out = "{\"list\":";
  appendJsonText(key, out);
  out += ",\"title\":";
  appendJsonText(title, out);
  out += ",\"count\":";
  appendNumber(grid.rowCount(), out);
  out += ",\"rows\":[";
  for (Grid::RowIndex row = 0; row < std::min(limit, grid.rowCount()); ++row) {
    appendRow(grid, row, out);
    if (out.size() < kPieceBytes) continue;
    if (!sink(out)) return false;
    out.clear();
  }
  return sink(out += "]}\n");
}

}  // namespace ombrelian
