#include "tests/core/memory_faults.h"

#include <cstddef>
#include <cstdlib>
#include <new>

// Memory is malloc's, so that the sanitizers know of it. Arrays come this way, too, but for those
// of a sanitizer; nothing is aligned more than malloc aligns it.

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  if (ard::testing::AllocationsObey::NextFails()) return nullptr;
  return std::malloc(size > 0 ? size : 1);
}
void* operator new(std::size_t size) {
  void* const memory = operator new(size, std::nothrow);
  return memory ? memory : throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
