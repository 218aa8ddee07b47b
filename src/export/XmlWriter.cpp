#include "export/XmlWriter.h"

#include <iterator>

#include "format/DatePattern.h"

namespace ombrelian {
namespace {

constexpr TextView kSpecial = u"<>&'\"";

/// Result for each special character after all replacements.
constexpr TextView kEntities[] = {u"&amp;lt;", u"&amp;gt;", u"&amp;", u"&apos;", u"&quot;"};
static_assert(std::size(kEntities) == kSpecial.size());

}  // namespace

void XML_replace_illegal_chars(TextView text, Text& out) {
  for (;;) {
    const auto at = text.find_first_of(kSpecial);
    out += text.substr(0, at);
    if (at == TextView::npos) return;
    out += kEntities[kSpecial.find(text[at])];
    text.remove_prefix(at + 1);
  }
}

void XmlWriter::beginDocument() { writeLine(u"<?xml version=\"1.0\" encoding=\"UTF-16\"?>"); }

void XmlWriter::beginSource(const ReportSource& source) {
  const auto writeFact = [this](TextView key, TextView value) {
    line_ = u"\t<";
    line_.append(key).append(u">").append(value).append(u"</").append(key).append(u">");
    writeLine(line_);
  };
  writeLine(u"<list>");
  writeFact(u"name", list_.title);
  writeFact(u"created", formatGeneralDate(source.created));
  writeFact(u"source", source.path);
  const Text label = list_.shape.tellsDriveName ? driveLabelOf(source.path) : Text();
  if (!label.empty()) writeFact(u"drivename", label);
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
