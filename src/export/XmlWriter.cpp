#include "export/XmlWriter.h"

#include <iterator>

#include "format/DatePattern.h"
#include "support/Surrogates.h"

namespace ombrelian {
namespace {

constexpr TextView kSpecial = u"<>&'\"";

/// Result for each special character after all replacements.
constexpr TextView kEntities[] = {u"&amp;lt;", u"&amp;gt;", u"&amp;", u"&apos;", u"&quot;"};
static_assert(std::size(kEntities) == kSpecial.size());

/// Whether XML 1.0 can contain the unit at `at`, alone or as a part of a pair of surrogates.
bool isAllowed(TextView text, std::size_t at) {
  const char16_t unit = text[at];
  if (unit < 0x20) return unit == u'\t' || unit == u'\n' || unit == u'\r';
  if (isHighSurrogate(unit)) return at + 1 < text.size() && isLowSurrogate(text[at + 1]);
  if (isLowSurrogate(unit)) return at > 0 && isHighSurrogate(text[at - 1]);
  return unit < 0xFFFE;
}

}  // namespace

void XML_replace_illegal_chars(TextView text, Text& out) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto special = kSpecial.find(text[at]);
    if (special != TextView::npos) {
      out += kEntities[special];
    } else {
      out += isAllowed(text, at) ? text[at] : u'\uFFFD';
    }
  }
}

void XmlWriter::beginDocument() {
  line_ = u"<?xml version=\"1.0\" encoding=\"";
  writeLine(line_.append(isPiped() ? u"UTF-8" : u"UTF-16").append(u"\"?>"));
}

void XmlWriter::beginSource(const ReportSource& source) {
  const auto writeFact = [this](TextView key, TextView value) {
    line_ = u"\t<";
    XML_replace_illegal_chars(value, line_.append(key).append(u">"));
    line_.append(u"</").append(key).append(u">");
    writeLine(line_);
  };
  writeLine(u"<list>");
  writeFact(u"name", list_.title);
  writeFact(u"created", formatGeneralDate(source.created));
  writeFact(u"source", source.path);
  const Text label = list_.shape.tellsDriveName ? driveLabelOf(source.path) : Text();
  if (!label.empty()) writeFact(u"drivename", label);
  for (const Text& note : source.notes)
    writeFact(u"note", note);
}

void XmlWriter::row(const ReportRow& row) {
  const std::uint32_t level = list_.shape.nestsRows ? row.level : 0;
  closeRowsDownTo(level);
  openLevels_.push_back(level);
  line_.assign(level + 1, u'\t').append(u"<").append(list_.shape.rowElement).append(u">");
  writeLine(line_);
  FormatPrintValuesForXML(row, level + 2);
}

void XmlWriter::FormatPrintValuesForXML(const ReportRow& row, std::size_t tabs) {
  for (const Column* const column : list_.columns) {
    const bool isPercent = column->kind == CellKind::Percent;
    value_.clear();
    cells_.append(isPercent ? list_.shape.xmlPercent : list_.shape.xmlCell, row, *column, value_);
    writeElement(tabs, list_.format.fieldKey(*column), trimBlanks(value_));
  }
}

void XmlWriter::writeElement(std::size_t tabs, TextView key, TextView value) {
  line_.assign(tabs, u'\t').append(u"<").append(key);
  if (value.empty()) {
    line_ += u"/>";
  } else {
    line_ += u'>';
    XML_replace_illegal_chars(value, line_);
    line_.append(u"</").append(key).append(u">");
  }
  writeLine(line_);
}

/// Closes the open rows of `level` and of all deeper levels.
void XmlWriter::closeRowsDownTo(std::uint32_t level) {
  while (!openLevels_.empty() && openLevels_.back() >= level) {
    line_.assign(openLevels_.back() + 1, u'\t');
    line_.append(u"</").append(list_.shape.rowElement).append(u">");
    writeLine(line_);
    openLevels_.pop_back();
  }
}

void XmlWriter::endSource() {
  closeRowsDownTo(0);
  writeLine(u"</list>");
}

}  // namespace ombrelian
