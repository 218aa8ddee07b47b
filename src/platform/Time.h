#pragma once

#include <cstdint>

#include "support/Date.h"

namespace ombrelian::platform {

/// Local time of `time`, to the second; what is below is dropped. Returns false, and leaves
/// `parts`, where the system knows no such date.
bool FileTimeToLocalSystemTime(FileTime time, DateParts& parts);

/// Present local time, to the second.
DateParts GetLocalTime();

/// Milliseconds since some fixed moment; it never goes back.
std::uint64_t GetTickCount();

/// Waits without using the processor.
void Sleep(std::uint32_t milliseconds);

}  // namespace ombrelian::platform
