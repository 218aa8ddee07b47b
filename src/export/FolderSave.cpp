#include "export/FolderSave.h"

#include "export/CsvWriter.h"
#include "export/TxtWriter.h"
#include "fs/z_Filesystem.h"
#include "platform/Time.h"
#include "support/Guard.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

constexpr std::uint64_t kProgressIntervalMs = 1000;
constexpr std::uint64_t kRowsBetweenClocks = 256;

struct Ending {
  TextView text;  // lower case, the last four characters of a name
  ReportFormat format;
};

constexpr Ending kEndings[] = {{u".txt", ReportFormat::TXT},
                               {u".csv", ReportFormat::CSV},
                               {u"html", ReportFormat::HTML},
                               {u".xml", ReportFormat::XML},
                               {u"xlsx", ReportFormat::XLSX}};

constexpr TextView kDelimiters[] = {u",", u";", u"\t", u" "};

}  // namespace

ReportFormat formatOfFileName(TextView name) {
  const Text end = asciiLower(name.substr(name.size() < 4 ? 0 : name.size() - 4));
  for (const Ending& ending : kEndings) {
    if (end == ending.text) return ending.format;
  }
  return ReportFormat::TXT;
}

bool FolderSave::canWrite(ReportFormat format) {
  return format == ReportFormat::TXT || format == ReportFormat::CSV;
}

Failure FolderSave::SAVE(const Text& FileName, std::int32_t Levels, std::int32_t Delimiter,
                         TextView CustomDelimiter) {
  Failure failure = Error{platform::kGeneralFailure, u"SAVE", u""};
  Guarded(u"frmSave", u"SAVE",
          [&] {
            if (report_.tree().empty()) {
              failure.reset();
              return;
            }
            ReportFile file;
            failure = file.open(FileName);
            if (failure) return;
            const auto writer = makeWriter(formatOfFileName(FileName), file,
                                           {delimiter(Delimiter, CustomDelimiter),
                                            options_.ShowIndent == 1, options_.DividingLine == 1});
            const FolderRows rows(report_, levelLimit(Levels));
            rowsWritten_ = 0;
            lastProgressTick_ = platform::GetTickCount();
            if (writer->wantsWidths()) measureRows(rows, *writer);
            writer->beginDocument();
            writeRows(rows, *writer, file);
            writer->endDocument();
            failure = file.commit();
          },
          {FileName});
  return failure;
}

std::unique_ptr<ReportWriter> FolderSave::makeWriter(ReportFormat format, ReportFile& file,
                                                     SaveSettings settings) const {
  if (format == ReportFormat::CSV) {
    return std::make_unique<CsvWriter>(file, report_, std::move(settings));
  }
  return std::make_unique<TxtWriter>(file, report_, std::move(settings));
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
  if (choice < 0 || choice > kCustomDelimiter) choice = options_.Delimiter;
  if (choice == kCustomDelimiter) return options_.DelimiterChars;
  return Text(kDelimiters[choice >= 0 && choice < kCustomDelimiter ? choice : 2]);
}

/// Without a selected row there is nothing to choose, and all sources are saved.
bool FolderSave::savesSelection() const {
  return options_.FolderOpt == 1 && report_.selected() != kNoNode;
}

NodeIndex FolderSave::startRow() const {
  return savesSelection() ? report_.selected() : report_.tree().firstRoot();
}

/// The row that a save goes on with behind `source`; a save of one row ends there.
NodeIndex FolderSave::nextSource(NodeIndex source) const {
  return savesSelection() ? kNoNode : report_.tree()[source].nextSibling;
}

void FolderSave::measureRows(const FolderRows& rows, ReportWriter& writer) const {
  for (NodeIndex source = startRow(); source != kNoNode; source = nextSource(source)) {
    writer.measure(source, rows.startName(source));
    rows.visitChildren(source, [&](NodeIndex node, const Text& name) {
      writer.measure(node, name);
      return true;
    });
  }
}

void FolderSave::writeRows(const FolderRows& rows, ReportWriter& writer, const ReportFile& file) {
  bool goesOn = !isCancelled();
  for (NodeIndex source = startRow(); source != kNoNode && goesOn; source = nextSource(source)) {
    writer.beginSource(source, rows.startName(source));
    goesOn = rows.visitChildren(source, [&](NodeIndex node, const Text& name) {
      if (file.failure() || isCancelled()) return false;
      writer.row(node, name);
      ++rowsWritten_;
      return true;
    });
    writer.endSource();
  }
}

bool FolderSave::isCancelled() {
  if (rowsWritten_ % kRowsBetweenClocks == 0) {
    const std::uint64_t now = platform::GetTickCount();
    if (now > lastProgressTick_ + kProgressIntervalMs) {
      ui_.saveProgress(rowsWritten_, report_.tree().nodeCount());
      ui_.yield();
      lastProgressTick_ = now;
    } else if (ui_.GetInputState()) {
      ui_.yield();
    }
  }
  return ui_.saveCancelled();
}

}  // namespace ombrelian
