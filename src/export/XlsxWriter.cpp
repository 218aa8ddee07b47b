#include "export/XlsxWriter.h"

#include <xlsxwriter.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <utility>

#include "export/WorkbookCheck.h"
#include "support/Surrogates.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

constexpr TextView kSource = u"XlsxWriter";
constexpr std::size_t kMostNameUnits = 31;
constexpr std::uint8_t kLocalDateAndTime =
    22;  // number of a built-in format that follows the locale of the reader

// Range of the dates that a sheet can show. Sheets have a 29 February 1900, so that earlier dates
// would be wrong by one day.
constexpr Date kFirstSheetDate = 61;
constexpr Date kEndOfSheetDates = 2'958'466;  // 1 January 10000

static_assert(XlsxWriter::kMostRows == LXW_ROW_MAX);

bool isHexDigit(char16_t unit) {
  return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'F') ||
         (unit >= u'a' && unit <= u'f');
}

/// Whether `text` begins with "_xHHHH_", which readers replace by the character with that number.
bool beginsWithEscape(TextView text) {
  return text.size() >= 7 && text[1] == u'x' && text[6] == u'_' &&
         std::all_of(text.begin() + 2, text.begin() + 6, isHexDigit);
}

/// The time for the properties of a workbook, which have no time zone.
std::time_t toTime(Date date) {
  const DateParts parts = toParts(date);
  const std::int64_t days = daysFromCivil(parts.year, parts.month, parts.day);
  return std::time_t(((days * 24 + parts.hour) * 60 + parts.minute) * 60 + parts.second);
}

}  // namespace

Text FixExcelWorkSheetName(TextView name) {
  Text fixed(trimBlanks(name));
  if (fixed.empty()) fixed = u"Name";
  fixed.resize(std::min(fixed.size(), kMostNameUnits));
  for (char16_t& unit : fixed) {
    if (TextView(u":\\/?*[]").find(unit) != TextView::npos) unit = u' ';
  }
  return fixed;
}

void toWorkbookText(TextView text, std::string& out) {
  out.clear();
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char16_t unit = text[at];
    const bool isPair =
        isHighSurrogate(unit) && at + 1 < text.size() && isLowSurrogate(text[at + 1]);
    if (isPair) {
      appendBytes(text.substr(at++, 2), out);
    } else if (isHighSurrogate(unit) || isLowSurrogate(unit) || unit >= 0xFFFE) {
      appendBytes(u"\uFFFD", out);
    } else if (unit == u'_' && beginsWithEscape(text.substr(at))) {
      out += "_x005F_";
    } else if (unit < 0x80) {
      out += char(unit);
    } else {
      appendBytes(text.substr(at, 1), out);
    }
  }
}

XlsxWriter::~XlsxWriter() {
  if (workbook_ != nullptr) lxw_workbook_free(workbook_);
}

Failure XlsxWriter::open(TextView target) {
  failure_ = file_.open(target);
  if (failure_) return failure_;
  folder_ = file_.libraryFolder();
  lxw_workbook_options options = {};
  options.constant_memory = LXW_TRUE;
  options.tmpdir = folder_.data();
  workbook_ = workbook_new_opt(file_.libraryPath().c_str(), &options);
  if (workbook_ == nullptr) failUnwritten({});
  return failure_;
}

void XlsxWriter::beginDocument() {
  sheet_ = workbook_add_worksheet(workbook_, toBytes(FixExcelWorkSheetName(list_.title)).c_str());
  dateFormat_ = workbook_add_format(workbook_);
  if (sheet_ == nullptr || dateFormat_ == nullptr) return failUnwritten({});
  format_set_num_format_index(dateFormat_, kLocalDateAndTime);
  std::uint16_t place = 0;
  for (const Column* const column : list_.columns)
    writeText(place++, list_.format.caption(*column));
  worksheet_activate(sheet_);
  worksheet_freeze_panes(sheet_, 1, 0);
}

/// The workbook has the date of the first source, so that a list that is saved again gives the same
/// bytes.
void XlsxWriter::beginSource(const ReportSource& source) {
  if (failure_ || hasProperties_) return;
  lxw_doc_properties properties = {};
  properties.created = toTime(source.created);
  take(workbook_set_properties(workbook_, &properties));
  hasProperties_ = true;
}

void XlsxWriter::row(const ReportRow& row) {
  if (failure_) return;
  if (++row_ >= kMostRows) {
    return fail(TL(9250,
                   u"Ein Tabellenblatt fasst höchstens %1 Zeilen. Bitte ein anderes Format oder "
                   u"weniger Ebenen wählen.",
                   {toText(kMostRows)}));
  }
  std::uint16_t place = 0;
  for (const Column* const column : list_.columns)
    writeCell(place++, row, *column);
}

void XlsxWriter::writeCell(std::uint16_t place, const ReportRow& row, const Column& column) {
  if (&column == &kRowNumberColumn) return writeNumber(place, double(row.number), nullptr);
  switch (column.kind) {
    case CellKind::Timestamp:
      return writeDate(place, row, column);
    case CellKind::Size:
    case CellKind::Percent:
    case CellKind::Count:
    case CellKind::Number:
      if (!list_.cells.hasValue(row.index, column)) return;
      return writeNumber(place, list_.format.value(list_.cells, row.index, column), nullptr);
    default:
      value_.clear();
      cells_.appendNamed(CellForm::Shown, row, column, value_);
      return writeText(place, value_);
  }
}

void XlsxWriter::writeDate(std::uint16_t place, const ReportRow& row, const Column& column) {
  const Date date = list_.cells.real(row.index, column);
  if (date >= kFirstSheetDate && date < kEndOfSheetDates) {
    return writeNumber(place, date, dateFormat_);
  }
  value_.clear();
  cells_.append(CellForm::Shown, row, column, value_);
  writeText(place, value_);
}

void XlsxWriter::writeText(std::uint16_t place, TextView text) {
  if (text.empty() || failure_) return;
  if (text.size() > kMostUnits) {
    return fail(TL(9343,
                   u"Eine Zelle fasst höchstens %1 Zeichen, aber der Text '%2...' ist länger. "
                   u"Bitte ein anderes Format wählen.",
                   {toText(std::int64_t(kMostUnits)), Text(text.substr(0, 60))}));
  }
  toWorkbookText(text, bytes_);
  take(worksheet_write_string(sheet_, row_, place, bytes_.c_str(), nullptr));
  ++cellCount_;
}

void XlsxWriter::writeNumber(std::uint16_t place, double number, lxw_format* format) {
  take(worksheet_write_number(sheet_, row_, place, number, format));
  ++cellCount_;
}

void XlsxWriter::take(int error) {
  if (error != LXW_NO_ERROR) failUnwritten(fromBytes(lxw_strerror(lxw_error(error))));
}

void XlsxWriter::fail(Text text) {
  if (!failure_)
    failure_ = Error{std::int32_t(platform::kGeneralFailure), Text(kSource), std::move(text)};
}

/// Keeps the reason of a failed write. The library reports too little about a full disk, so a write
/// of our own finds the reason.
void XlsxWriter::failUnwritten(TextView reason) {
  if (failure_) return;
  failure_ = file_.write(std::string(std::size_t(1) << 20, ' '));
  if (!failure_) {
    fail(TL(9344, u"Die Arbeitsmappe ließ sich nicht ganz schreiben (%1). Ist die Platte voll?",
            {Text(reason)}));
  }
}

Failure XlsxWriter::commit() {
  if (!failure_) closeWorkbook();
  if (!failure_ && !isWholeWorkbook(file_.libraryPath(), cellCount_)) failUnwritten({});
  if (failure_) return failure_;
  return failure_ = file_.commit();
}

void XlsxWriter::closeWorkbook() {
  // This is the last check for rows that did not reach the disk, because the library reads its file
  // back without a check.
  std::FILE* const rows = sheet_->optimize_tmpfile;
  if (rows != nullptr && (std::fflush(rows) != 0 || std::ferror(rows) != 0)) {
    return failUnwritten({});
  }
  lxw_workbook* const closing = workbook_;
  workbook_ = nullptr;  // freed by the call
  take(workbook_close(closing));
}

}  // namespace ombrelian
