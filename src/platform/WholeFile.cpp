#include "platform/WholeFile.h"

#include "platform/ReplacingFile.h"

namespace ombrelian::platform {

namespace {

ErrorCode readAll(FileHandle& file, ErrorCode error, std::string& bytes) {
  constexpr std::size_t kBlock = std::size_t(64) * 1024;
  std::size_t got = 1;
  while (error == kSuccess && got > 0) {
    const std::size_t size = bytes.size();
    bytes.resize(size + kBlock);
    error = ReadFile(file, bytes.data() + size, kBlock, got);
    bytes.resize(size + got);
  }
  return error;
}

}  // namespace

ErrorCode ReadWholeFile(TextView path, std::string& bytes) {
  ErrorCode error = kSuccess;
  FileHandle file = CreateFileW(path, kOpenRead, error);
  return readAll(file, error, bytes);
}

ErrorCode ReadOwnFile(TextView path, std::string& bytes) {
  ErrorCode error = kSuccess;
  FileHandle file = OpenOwnFile(path, kOpenRead, error);
  return readAll(file, error, bytes);
}

Failure ReplaceOwnFile(TextView path, std::string_view bytes) {
  ReplacingFile file;
  if (Failure failure = file.open(path, FileAccess::OwnersOnly)) return failure;
  if (Failure failure = file.write(bytes)) return failure;
  return file.commit();
}

ErrorCode AppendToLog(TextView path, std::string_view bytes, std::uint64_t limit) {
  ErrorCode error = kSuccess;
  FileHandle log = OpenOwnFile(path, kOpenAppend, error);
  FindData data;
  if (error == kSuccess && limit != 0) error = GetFileInformationByHandle(log, data);
  const std::uint64_t size = std::uint64_t(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
  if (error == kSuccess && limit != 0 && size >= limit) {
    error = MoveFileExW(path, Text(path).append(u".old"));
    if (error == kSuccess) log = OpenOwnFile(path, kOpenAppend, error);
  }
  return error == kSuccess ? WriteFile(log, bytes) : error;
}

}  // namespace ombrelian::platform
