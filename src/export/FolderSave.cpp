#include "export/FolderSave.h"

#include "lists/ListTable.h"

#include "support/Guard.h"
#include "support/Translate.h"

namespace ombrelian {

Failure FolderSave::SAVE(const Text& FileName, std::int32_t Levels, std::int32_t Delimiter,
                         TextView CustomDelimiter, std::optional<ReportFormat> format) {
  return write(format.value_or(formatOfFileName(FileName)), FileName, Levels, Delimiter,
               CustomDelimiter);
}

Failure FolderSave::saveAs(ReportFormat format, const Text& FileName) {
  return write(format, FileName, kKeepLevels, kKeepDelimiter, {});
}

Failure FolderSave::write(ReportFormat format, const Text& FileName, std::int32_t Levels,
                          std::int32_t Delimiter, TextView CustomDelimiter) {
  return GuardedOr(u"frmSave", u"SAVE",
                   [&]() -> Failure {
                     if (report_.tree().empty()) return {};
                     // Without a selected row all sources are saved.
                     const bool single = options_.FolderOpt == 1 && report_.selected() != kNoNode;
                     const NodeIndex start =
                         single ? report_.selected() : report_.tree().firstRoot();
                     const CellFormat cells(report_.columns(),
                                            sizesIn(format, listSizes(options_, ListId::Folders)),
                                            options_.DateFormat);
                     const ReportList list = {TL(2232, u"Ordnerliste"), kTreeShape, report_, cells,
                                              report_.reportColumns()};
                     return saveReport(format, FileName, list,
                                       {delimiter(Delimiter, CustomDelimiter),
                                        options_.ShowIndent == 1, options_.DividingLine == 1},
                                       FolderFeed(report_, levelLimit(Levels), start, single), ui_);
                   },
                   failureOf, {FileName});
}

LevelLimit FolderSave::levelLimit(std::int32_t levels) const {
  if (levels == kAllLevels) return {LevelLimit::Kind::All, 0};
  if (levels >= 0) return {LevelLimit::Kind::Number, levels};
  switch (options_.LevelOpt) {
    case 0:
      return {LevelLimit::Kind::All, 0};
    case 1:
      return {LevelLimit::Kind::Number, options_.Levels};
    default:
      return {LevelLimit::Kind::Expanded, 0};
  }
}

Text FolderSave::delimiter(std::int32_t choice, TextView custom) const {
  if (!custom.empty()) return Text(custom);
  const bool isEntry = choice >= 0 && choice <= kCustomDelimiter;
  return delimiterText(isEntry ? choice : options_.Delimiter, options_.DelimiterChars);
}

}  // namespace ombrelian
