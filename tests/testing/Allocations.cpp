#include "tests/testing/Allocations.h"

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

using ombrelian::testing::FailsIn;

thread_local bool isOwner = false;              // this thread made the FailingAllocation
std::atomic<bool> isOn = false;                 // there is a FailingAllocation
std::atomic<FailsIn> failingThreads;            // threads whose allocations are counted
std::atomic<std::int64_t> allocations = 0;      // number of counted allocations so far
std::atomic<std::int64_t> first = 0, last = 0;  // numbers of the allocations that fail

/// Counts an allocation; true: it has to fail.
bool fails() {
  if (!isOn.load(std::memory_order_relaxed)) return false;
  const FailsIn threads = failingThreads;
  if (threads != FailsIn::AnyThread && isOwner != (threads == FailsIn::ThisThread)) return false;
  const std::int64_t number = ++allocations;
  return number >= first && number <= last;
}

}  // namespace

void* operator new(std::size_t size) {
  if (fails()) throw std::bad_alloc();
  if (void* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

// All forms are replaced, because a sanitizer has its own versions and checks that they match.
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void* operator new[](std::size_t size, const std::nothrow_t& none) noexcept {
  return operator new(size, none);
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }

namespace ombrelian::testing {

FailingAllocation::FailingAllocation(std::int64_t number, FailsIn threads, std::int64_t times) {
  isOwner = true;
  allocations = 0;
  failingThreads = threads;
  first = number;
  last = times > std::numeric_limits<std::int64_t>::max() - number
             ? std::numeric_limits<std::int64_t>::max()
             : number + times - 1;
  isOn = true;
}

FailingAllocation::~FailingAllocation() {
  isOn = false;
  isOwner = false;
}

bool FailingAllocation::hasFailed() const { return allocations >= first; }

}  // namespace ombrelian::testing
