#include "frame/Console.h"

#include <cstdio>

#include "format/Sizes.h"
#include "format/TerminalText.h"
#include "platform/Process.h"
#include "support/Guard.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

constexpr std::string_view kClearLine = "\r\x1B[K";

/// The beginning and the end of a line that is longer than `width` code units.
Text shortened(const Text& line, std::size_t width) {
  if (line.size() <= width || width < 8) return line.substr(0, width);
  const std::size_t head = width / 2;
  return line.substr(0, head) + u"\u2026" + line.substr(line.size() - (width - head - 1));
}

bool writeAll(FILE* stream, std::string_view bytes) {
  const std::size_t written = std::fwrite(bytes.data(), 1, bytes.size(), stream);
  return std::fflush(stream) == 0 && written == bytes.size();
}

}  // namespace

Console::Console()
    : isTerminal_(platform::IsTerminal(platform::StandardStream::Error)),
      isOutputTerminal_(platform::IsTerminal(platform::StandardStream::Output)) {}

Console::~Console() { clearProgress(); }

bool Console::print(TextView line) { return write(toBytes(line) + "\n"); }

bool Console::write(std::string_view bytes) {
  clearProgress();
  if (isOutputTerminal_) return writeAll(stdout, toBytes(forTerminal(fromBytes(bytes))));
  return writeAll(stdout, bytes);
}

void Console::scanProgress(TextView folder, std::int64_t files, std::int64_t folders,
                           std::int64_t bytes) {
  if (!isTerminal_) return;
  // The folder gets the space that the numbers leave.
  const Text numbers =
      TL(9002, u"%1 Dateien, %2 Ordner, %3  ",
         {xFormatFileSize(0, files, false, false), xFormatFileSize(0, folders, false, false),
          xFormatFileSize(4, bytes, true, false)});
  const auto width = std::size_t(platform::GetTerminalWidth() - 1);
  const std::size_t room = width > numbers.size() ? width - numbers.size() : 0;
  showProgress(numbers + shortened(Text(folder), room));
}

void Console::saveProgress(std::uint64_t row, std::uint64_t rows) {
  if (!isTerminal_) return;
  showProgress(TL(9003, u"Speichere Zeile %1 von %2",
                  {xFormatFileSize(0, std::int64_t(row), false, false),
                   xFormatFileSize(0, std::int64_t(rows), false, false)}));
}

bool Console::saveCancelled() { return platform::StopSignal() != 0; }

void Console::cellsWereCut(std::uint64_t cells) {
  hasCutCells_ = true;
  message(TL(9821, u"Zu lange Zellen, die gekürzt wurden: %1", {toText(std::int64_t(cells))}),
          Severity::Warning);
}

void Console::showProgress(const Text& line) {
  const auto width = std::size_t(platform::GetTerminalWidth() - 1);
  std::string bytes(kClearLine);
  appendBytes(shortened(forTerminal(replaceAll(line, u"\n", u" ")), width), bytes);
  writeAll(stderr, bytes);
  progressShown_ = true;
}

void Console::clearProgress() {
  if (!progressShown_) return;
  writeAll(stderr, kClearLine);
  progressShown_ = false;
}

std::string Console::forErrorOutput(TextView text) const {
  const Text lines = replaceAll(text, u"\r\n", u"\n");
  return toBytes(isTerminal_ ? forTerminal(lines) : lines) + "\n";
}

void Console::message(TextView text, Severity) {
  clearProgress();
  writeAll(stderr, "ombrelian: " + forErrorOutput(text));
}

void Console::fault(const Error& error) noexcept {
  try {
    message(TL(9701, u"Der Vorgang wurde durch einen Fehler des Programms beendet: %1",
               {errorTextOf(error)}),
            Severity::Error);
  } catch (...) {
    writeAll(stderr, "ombrelian: out of memory\n");
  }
}

void Console::logged(const LogRow& row) {
  if (row.isError) message(row.text, Severity::Error);
}

}  // namespace ombrelian
