#include "tests/testing/Allocations.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::int64_t untilFailure = 0;  // number of allocations left; 0: none fails
thread_local bool failed = false;

}  // namespace

void* operator new(std::size_t size) {
  if (untilFailure > 0 && --untilFailure == 0) {
    failed = true;
    throw std::bad_alloc();
  }
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

FailingAllocation::FailingAllocation(std::int64_t number) {
  untilFailure = number;
  failed = false;
}

FailingAllocation::~FailingAllocation() { untilFailure = 0; }

bool FailingAllocation::hasFailed() const { return failed; }

}  // namespace ombrelian::testing
