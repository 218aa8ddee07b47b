#include "export/ReportFile.h"

#include <bit>

#include "format/TerminalText.h"
#include "platform/Process.h"

namespace ombrelian {
namespace {

constexpr std::size_t kBufferSize = std::size_t(256) * 1024;  // bytes

}  // namespace

Failure ReportFile::open(TextView target) {
  if (target == kStandardOutput) return openOutput();
  failure_ = file_.open(target);
  buffer_.reserve(kBufferSize + kBufferSize / 4);
  buffer_ = "\xFF\xFE";
  return failure_;
}

Failure ReportFile::openOutput() {
  platform::ErrorCode error = platform::kSuccess;
  output_ = platform::OpenStandardOutput(error);
  if (error != platform::kSuccess) failure_ = systemError(error, u"ReportFile");
  isTerminal_ = platform::IsTerminal(platform::StandardStream::Output);
  return failure_;
}

void ReportFile::SaveLineToFile(TextView line, bool WithLineEnd) {
  append(line);
  if (WithLineEnd) append(isPiped() ? u"\n" : u"\r\n");
  if (buffer_.size() >= kBufferSize) flush();
}

void ReportFile::append(TextView text) {
  if (isTerminal_) {
    appendBytes(forTerminal(text), buffer_);
  } else if (isPiped()) {
    appendBytes(text, buffer_);
  } else if constexpr (std::endian::native == std::endian::little) {
    buffer_.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t));
  } else {
    for (const char16_t unit : text) {
      buffer_.push_back(char(unit & 0xFF));
      buffer_.push_back(char(unit >> 8));
    }
  }
}

void ReportFile::flush() {
  if (!failure_) failure_ = isPiped() ? writeOutput() : file_.write(buffer_);
  buffer_.clear();
}

Failure ReportFile::writeOutput() {
  const platform::ErrorCode error = platform::WriteFile(output_, buffer_);
  return error == platform::kSuccess ? Failure() : systemError(error, u"ReportFile");
}

Failure ReportFile::commit() {
  flush();
  if (isPiped()) return failure_;
  const Failure committed = file_.commit();
  if (!failure_) failure_ = committed;
  return failure_;
}

}  // namespace ombrelian
