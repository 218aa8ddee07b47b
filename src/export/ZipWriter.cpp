#include "export/ZipWriter.h"

#include <zlib.h>

#include <algorithm>
#include <new>

#include "support/Translate.h"

namespace ombrelian {
namespace {

constexpr std::size_t kBufferBytes = std::size_t(256) * 1024;
constexpr int kLevel = 3;  // half the time of the standard level, and a sixth more bytes
constexpr int kRawDeflate = -15;
constexpr int kMemoryLevel = 9;

// Numbers of the ZIP format.
constexpr std::uint32_t kLocalHeader = 0x04034B50;
constexpr std::uint32_t kDescriptor = 0x08074B50;
constexpr std::uint32_t kDirectoryEntry = 0x02014B50;
constexpr std::uint32_t kDirectoryEnd = 0x06054B50;
constexpr std::uint16_t kVersion = 20;
constexpr std::uint16_t kSizesFollow = 8;  // flag: checksum and sizes are behind the part
constexpr std::uint16_t kDeflated = 8;
constexpr std::uint32_t kFirstDate = 0x0021'0000;  // 1 January 1980, the time of every part

/// Fields of the format, which are little-endian.
class Fields {
 public:
  Fields& two(std::uint64_t value) { return add(value, 2); }
  Fields& four(std::uint64_t value) { return add(value, 4); }
  Fields& text(std::string_view text) { return bytes_ += text, *this; }
  operator std::string_view() const { return bytes_; }  // NOLINT: implicit on purpose

 private:
  Fields& add(std::uint64_t value, int bytes) {
    for (int at = 0; at < bytes; ++at)
      bytes_ += char(value >> (8 * at) & 0xFF);
    return *this;
  }

  std::string bytes_;
};

}  // namespace

ZipWriter::ZipWriter() : stream_(std::make_unique<z_stream_s>()), buffer_(kBufferBytes) {
  if (deflateInit2(stream_.get(), kLevel, Z_DEFLATED, kRawDeflate, kMemoryLevel,
                   Z_DEFAULT_STRATEGY) != Z_OK) {
    throw std::bad_alloc();
  }
}

ZipWriter::~ZipWriter() { deflateEnd(stream_.get()); }

Failure ZipWriter::open(TextView target) { return failure_ = file_.open(target); }

void ZipWriter::beginPart(std::string_view name) {
  parts_.push_back({std::string(name), position()});
  parts_.back().checksum = std::uint32_t(crc32_z(0, nullptr, 0));
  partBytes_ = 0;
  deflateReset(stream_.get());
  put(Fields()
          .four(kLocalHeader)
          .two(kVersion)
          .two(kSizesFollow)
          .two(kDeflated)
          .four(kFirstDate)
          .four(0)
          .four(0)
          .four(0)
          .two(name.size())
          .two(0)
          .text(name));
  parts_.back().packed = position();
}

void ZipWriter::write(std::string_view bytes) {
  partBytes_ += bytes.size();
  std::uint32_t& checksum = parts_.back().checksum;
  checksum =
      std::uint32_t(crc32_z(checksum, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
  compress(bytes, Z_NO_FLUSH);
}

void ZipWriter::endPart() {
  compress({}, Z_FINISH);
  Part& part = parts_.back();
  part.packed = position() - part.packed;
  part.size = partBytes_;
  put(Fields().four(kDescriptor).four(part.checksum).four(part.packed).four(part.size));
}

void ZipWriter::compress(std::string_view bytes, int flushing) {
  if (failure_) return;
  z_stream_s& stream = *stream_;
  // The library does not change its input, although its type says so.
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = uInt(bytes.size());
  do {
    if (used_ == buffer_.size()) flush();
    stream.next_out = reinterpret_cast<Bytef*>(buffer_.data() + used_);
    stream.avail_out = uInt(buffer_.size() - used_);
    deflate(&stream, flushing);
    used_ = buffer_.size() - stream.avail_out;
  } while (stream.avail_out == 0);
}

void ZipWriter::endArchive() {
  const std::uint64_t start = position();
  for (const Part& part : parts_) {
    put(Fields()
            .four(kDirectoryEntry)
            .two(kVersion)
            .two(kVersion)
            .two(kSizesFollow)
            .two(kDeflated)
            .four(kFirstDate)
            .four(part.checksum)
            .four(part.packed)
            .four(part.size)
            .two(part.name.size())
            .four(0)  // sizes of the further fields and of a comment
            .four(0)  // number of the volume, and inner attributes
            .four(0)  // outer attributes
            .four(part.offset)
            .text(part.name));
  }
  const std::uint64_t end = position();
  put(Fields()
          .four(kDirectoryEnd)
          .four(0)
          .two(parts_.size())
          .two(parts_.size())
          .four(end - start)
          .four(start)
          .two(0));
  if (failure_ || end <= kMostPartBytes) return;
  failure_ = Error{std::int32_t(platform::kGeneralFailure), u"ZipWriter",
                   TL(9820,
                      u"Eine Arbeitsmappe fasst gepackt höchstens 4 GB. Bitte ein anderes "
                      u"Format oder weniger Ebenen wählen.")};
}

void ZipWriter::put(std::string_view bytes) {
  while (!bytes.empty() && !failure_) {
    if (used_ == buffer_.size()) flush();
    const std::size_t count = std::min(bytes.size(), buffer_.size() - used_);
    std::copy_n(bytes.begin(), count, buffer_.begin() + std::ptrdiff_t(used_));
    used_ += count;
    bytes.remove_prefix(count);
  }
}

void ZipWriter::flush() {
  if (!failure_) failure_ = file_.write({buffer_.data(), used_});
  written_ += used_;
  used_ = 0;
}

Failure ZipWriter::commit() {
  flush();
  const Failure committed = file_.commit();
  if (!failure_) failure_ = committed;
  return failure_;
}

}  // namespace ombrelian
