#include "export/CsvWriter.h"

#include "platform/Locale.h"

namespace ombrelian {

void CsvWriter::beginDocument() {
  line_.clear();
  for (const FolderColumn* const column : columns_) {
    appendCell(platform::localeTextRules().upper(report_.caption(*column)));
  }
  file_.SaveLineToFile(line_, true);
}

void CsvWriter::row(NodeIndex node, const Text& name) {
  FormatPrintValuesForCSV(node, name);
  file_.SaveLineToFile(line_, true);
}

void CsvWriter::FormatPrintValuesForCSV(NodeIndex node, const Text& name) {
  line_.clear();
  for (const FolderColumn* const column : columns_) {
    if (column->id == FolderColumnId::Name) {
      appendCell(name);
    } else {
      appendCell(report_.rawText(*column, node));
    }
  }
}

void CsvWriter::appendCell(TextView text) {
  if (!line_.empty()) line_ += settings_.delimiter;
  line_.append(u"\"").append(text).append(u"\"");
}

}  // namespace ombrelian
