#include "lists/Log.h"

#include "format/Sizes.h"
#include "fs/z_Filesystem.h"
#include "platform/Time.h"
#include "platform/WholeFile.h"
#include "support/Guard.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

/// The line end of text files on this system.
TextView lineEnd() { return platform::kNativeSeparator == u'\\' ? u"\r\n" : u"\n"; }

constexpr std::uint64_t kLongestLog = std::uint64_t(16) << 20;  // bytes

constexpr Column kColumns[] = {
    {1, 3841, u"Zeit", u"date", CellKind::Timestamp},
    {2, 3551, u"Info", u"text", CellKind::PlainText},
};

}  // namespace

void Log::LogProtokoll(TextView text, bool isError) {
  Guarded(u"basMain", u"LogProtokoll",
          [&] {
            LogRow row{toDate(platform::GetLocalTime()), onOneLine(text), isError, group_};
            if (options_.DontCreateLogFile != 1 && !file_.empty()) appendToFile(row);
            rows_.push_back(std::move(row));
            addToGrid(rows_.back());
            if (listener_ != nullptr) listener_->logged(rows_.back());
          },
          {file_});
}

void Log::appendToFile(const LogRow& row) {
  const Text line = dateText(row).append(u" - ").append(row.text) += lineEnd();
  platform::AppendToLog(file_, toBytes(line), kLongestLog);
}

void Log::addToGrid(const LogRow& row) {
  const Grid::RowIndex at = grid_.addRow();
  grid_.set(at, kColumns[0], row.date);
  grid_.set(at, kColumns[1], TextView(row.text));
  grid_.setBand(at, row.group);
}

void Log::clearRows() {
  rows_.clear();
  grid_.clear();
}

Columns Log::columns() { return kColumns; }

std::optional<ListOrigin> Log::origin() const {
  return ListOrigin{{}, toDate(platform::GetLocalTime())};
}

Text Log::dateText(const LogRow& row) {
  const Text format = options_.DateFormat.empty() ? defaultDateFormat() : options_.DateFormat;
  if (format != dateFormat_) {
    datePattern_ = DatePattern(format);
    dateFormat_ = format;
  }
  return datePattern_.format(row.date);
}

Text Log::List_Log_ShowStat() const {
  const auto count = std::int64_t(rows_.size());
  return TL(9014, u"%1 Einträge", {xFormatFileSize(0, count, false, false)});
}

Text Log::Show_Log() const { return xExistFile_W(file_) ? file_ : Text(); }

}  // namespace ombrelian
