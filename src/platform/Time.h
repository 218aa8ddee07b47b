#pragma once

#include <cstdint>

#include "support/Date.h"

namespace ombrelian::platform {

/// Local time of `time`, to the second; fractions are dropped. Returns false and does not change
/// `parts` if the system does not know such a date.
bool FileTimeToLocalSystemTime(FileTime time, DateParts& parts);

/// Current local time, to the second.
DateParts GetLocalTime();

/// Milliseconds since some fixed moment; the value never decreases.
std::uint64_t GetTickCount();

/// Waits without using the processor.
void Sleep(std::uint32_t milliseconds);

}  // namespace ombrelian::platform
