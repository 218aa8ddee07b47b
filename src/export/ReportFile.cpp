#include "export/ReportFile.h"

#include <bit>

namespace ombrelian {
namespace {

constexpr std::size_t kBufferSize = std::size_t(256) * 1024;  // bytes

}  // namespace

Failure ReportFile::open(TextView target) {
  failure_ = file_.open(target);
  buffer_.reserve(kBufferSize + kBufferSize / 4);
  buffer_ = "\xFF\xFE";
  return failure_;
}

void ReportFile::SaveLineToFile(TextView line, bool WithLineEnd) {
  append(line);
  if (WithLineEnd) append(u"\r\n");
  if (buffer_.size() >= kBufferSize) flush();
}

void ReportFile::append(TextView text) {
  if constexpr (std::endian::native == std::endian::little) {
    buffer_.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t));
  } else {
    for (const char16_t unit : text) {
      buffer_.push_back(char(unit & 0xFF));
      buffer_.push_back(char(unit >> 8));
    }
  }
}

void ReportFile::flush() {
  if (!failure_) failure_ = file_.write(buffer_);
  buffer_.clear();
}

Failure ReportFile::commit() {
  flush();
  const Failure committed = file_.commit();
  if (!failure_) failure_ = committed;
  return failure_;
}

}  // namespace ombrelian
