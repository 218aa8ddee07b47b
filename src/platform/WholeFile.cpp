#include "platform/WholeFile.h"

#include "platform/ReplacingFile.h"

namespace ombrelian::platform {

ErrorCode ReadWholeFile(TextView path, std::string& bytes) {
  constexpr std::size_t kBlock = std::size_t(64) * 1024;
  ErrorCode error = kSuccess;
  FileHandle file = CreateFileW(path, kOpenRead, error);
  std::size_t got = 1;
  while (error == kSuccess && got > 0) {
    const std::size_t size = bytes.size();
    bytes.resize(size + kBlock);
    error = ReadFile(file, bytes.data() + size, kBlock, got);
    bytes.resize(size + got);
  }
  return error;
}

Failure ReplaceWholeFile(TextView path, std::string_view bytes) {
  ReplacingFile file;
  if (Failure failure = file.open(path)) return failure;
  file.keepAccess();
  if (Failure failure = file.write(bytes)) return failure;
  return file.commit();
}

}  // namespace ombrelian::platform
