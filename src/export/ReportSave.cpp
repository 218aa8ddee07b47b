#include "export/ReportSave.h"

#include "export/CsvWriter.h"
#include "export/HtmlWriter.h"
#include "export/TxtWriter.h"
#include "export/XlsxWriter.h"
#include "export/XmlWriter.h"
#include "platform/Process.h"
#include "platform/Time.h"
#include "support/Guard.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

constexpr std::uint64_t kProgressIntervalMs = 1000;
constexpr std::uint64_t kRowsBetweenClocks = 256;

struct Ending {
  TextView text;  // last four characters of a name, in lower case
  TextView extension;
  ReportFormat format;
};

constexpr Ending kEndings[] = {{u".txt", u"txt", ReportFormat::TXT},
                               {u".csv", u"csv", ReportFormat::CSV},
                               {u"html", u"html", ReportFormat::HTML},
                               {u".xml", u"xml", ReportFormat::XML},
                               {u"xlsx", u"xlsx", ReportFormat::XLSX}};

constexpr TextView kDelimiters[] = {u",", u";", u"\t", u" "};
constexpr std::int32_t kTab = 2;

/// Shows the progress of a save and lets the user end it.
class Progress {
 public:
  Progress(UserInterface& ui, std::uint64_t rows)
      : ui_(ui), rows_(rows), lastTick_(platform::GetTickCount()) {}

  /// Counts one more row; false: the user ended the save.
  bool goesOn() {
    if (row_++ % kRowsBetweenClocks == 0) look();
    return !ui_.saveCancelled();
  }

  /// The same for a row that is only measured and does not count as progress.
  bool goesOnMeasuring() {
    if (measured_++ % kRowsBetweenClocks == 0 && ui_.GetInputState()) ui_.yield();
    return !ui_.saveCancelled();
  }

  /// Reports that all rows are written. The rest cannot be ended and takes some time in some
  /// formats, so a save that reported progress also reports this.
  void rowsAreDone() {
    if (isTold_) ui_.saveProgress(rows_, rows_);
    ui_.yield();
  }

 private:
  void look() {
    const std::uint64_t now = platform::GetTickCount();
    if (now > lastTick_ + kProgressIntervalMs) {
      ui_.saveProgress(row_, rows_);
      ui_.yield();
      isTold_ = true;
      lastTick_ = now;
    } else if (ui_.GetInputState()) {
      ui_.yield();
    }
  }

  UserInterface& ui_;
  const std::uint64_t rows_;
  std::uint64_t row_ = 0;
  std::uint64_t measured_ = 0;
  std::uint64_t lastTick_;
  bool isTold_ = false;
};

class MeasuringSink : public ReportSink {
 public:
  MeasuringSink(ReportWriter& writer, Progress& progress) : writer_(writer), progress_(progress) {}

  bool beginSource(const ReportSource&) override { return progress_.goesOnMeasuring(); }
  bool row(const ReportRow& row) override {
    writer_.measure(row);
    return progress_.goesOnMeasuring();
  }
  void endSource() override {}

 private:
  ReportWriter& writer_;
  Progress& progress_;
};

class WritingSink : public ReportSink {
 public:
  WritingSink(ReportWriter& writer, Progress& progress) : writer_(writer), progress_(progress) {}

  bool beginSource(const ReportSource& source) override {
    if (!goesOn()) return false;
    writer_.beginSource(source);
    return true;
  }
  bool row(const ReportRow& row) override {
    writer_.row(row);
    return goesOn();
  }
  void endSource() override { writer_.endSource(); }

 private:
  bool goesOn() { return !writer_.failure() && progress_.goesOn(); }

  ReportWriter& writer_;
  Progress& progress_;
};

}  // namespace

ReportFormat formatOfFileName(TextView name) {
  const Text end = asciiLower(name.substr(name.size() < 4 ? 0 : name.size() - 4));
  for (const Ending& ending : kEndings) {
    if (end == ending.text) return ending.format;
  }
  return ReportFormat::TXT;
}

std::optional<ReportFormat> formatOfExtension(TextView extension) {
  const Text wanted = asciiLower(extension);
  for (const Ending& ending : kEndings) {
    if (wanted == ending.extension) return ending.format;
  }
  return {};
}

TextView fileExtension(ReportFormat format) { return kEndings[std::size_t(format)].extension; }

std::unique_ptr<ReportWriter> makeReportWriter(ReportFormat format, const ReportList& list,
                                               SaveSettings settings) {
  switch (format) {
    case ReportFormat::CSV:
      return std::make_unique<CsvWriter>(list, std::move(settings));
    case ReportFormat::HTML:
      return std::make_unique<HtmlWriter>(list, std::move(settings));
    case ReportFormat::XML:
      return std::make_unique<XmlWriter>(list, std::move(settings));
    case ReportFormat::XLSX:
      return std::make_unique<XlsxWriter>(list);
    case ReportFormat::TXT:
      break;
  }
  return std::make_unique<TxtWriter>(list, std::move(settings));
}

Failure protectionOf(TextView target, UserInterface& ui) {
  if (target == kStandardOutput || !platform::ReplacingFile::isProtected(target)) return {};
  if (ui.mayReplaceProtected(target)) return {};
  return Error{std::int32_t(platform::kWriteProtect), u"saveReport",
               TL(9879,
                  u"Der vorhandene Bericht ist schreibgeschützt; ohne Fenster ersetzt ihn die "
                  u"Option '--force'.")};
}

Failure saveReport(ReportFormat format, TextView target, const ReportList& list,
                   const SaveSettings& settings, const ReportFeed& feed, UserInterface& ui) {
  if (Failure failure = protectionOf(target, ui)) return failure;
  const std::uint64_t faults = caughtFaults();
  const std::unique_ptr<ReportWriter> writer = makeReportWriter(format, list, settings);
  if (Failure failure = writer->open(target)) return failure;
  Progress progress(ui, feed.rowCount());
  if (writer->wantsWidths()) {
    MeasuringSink sink(*writer, progress);
    feed.feed(sink);
  }
  WritingSink sink(*writer, progress);
  writer->beginDocument();
  feed.feed(sink);
  writer->endDocument();
  progress.rowsAreDone();
  throwIfFaultsSince(faults);
  if (platform::StopSignal() != 0) return systemError(platform::kCancelled, u"ReportSave");
  Failure failure;
  ui.runAside([&] { failure = writer->commit(); });
  if (!failure && writer->cutCells() > 0) ui.cellsWereCut(writer->cutCells());
  return failure;
}

SizeSettings sizesIn(ReportFormat format, const SizeSettings& sizes) {
  const bool isForPeople = format == ReportFormat::TXT || format == ReportFormat::HTML;
  if (isForPeople || sizes.unit != kUnitFitting) return sizes;
  return {kUnitBytes, sizes.decimals, false};
}

Text delimiterText(std::int32_t choice, TextView chars) {
  if (choice == kCustomDelimiter) return Text(chars);
  return Text(kDelimiters[choice >= 0 && choice < kCustomDelimiter ? choice : kTab]);
}

}  // namespace ombrelian
