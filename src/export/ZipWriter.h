#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/ReplacingFile.h"

struct z_stream_s;

namespace ombrelian {

/// Writes a ZIP archive part by part in one pass: every part is compressed while it is written, and
/// nothing is read back. The same parts always give the same bytes. A failed write is kept; later
/// calls then have no effect.
class ZipWriter {
 public:
  /// The size of a part, in bytes, that no part may exceed.
  static constexpr std::uint64_t kMostPartBytes = 0xFFFF'FFFF;

  ZipWriter();
  ~ZipWriter();

  /// Begins an archive, which is placed at `target` (absolute) when it is complete.
  Failure open(TextView target);

  /// Begins a part with an ASCII name. The part before it must have ended.
  void beginPart(std::string_view name);
  void write(std::string_view bytes);
  void endPart();

  /// Number of bytes in the current part, before their compression.
  std::uint64_t partBytes() const { return partBytes_; }

  /// Writes the directory of all parts, with which an archive ends.
  void endArchive();

  /// The first failure so far.
  const Failure& failure() const { return failure_; }

  /// Replaces the target with the archive, but not after a failure.
  Failure commit();

 private:
  struct Part {
    std::string name;
    std::uint64_t offset = 0;  // of its header in the archive
    std::uint32_t checksum = 0;
    std::uint64_t packed = 0;  // bytes
    std::uint64_t size = 0;    // bytes
  };

  void compress(std::string_view bytes, int flushing);
  void put(std::string_view bytes);
  void flush();
  std::uint64_t position() const { return written_ + used_; }

  platform::ReplacingFile file_;
  std::unique_ptr<z_stream_s> stream_;
  std::vector<char> buffer_;   // compressed bytes that wait for the disk
  std::size_t used_ = 0;       // number of bytes in buffer_
  std::uint64_t written_ = 0;  // bytes of the archive that are no longer in buffer_
  std::uint64_t partBytes_ = 0;
  std::vector<Part> parts_;
  Failure failure_;
};

}  // namespace ombrelian
