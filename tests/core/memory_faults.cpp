#include "tests/core/memory_faults.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>

// Memory is malloc's, so that the sanitizers know of it.

namespace {

using std::align_val_t;
using std::nothrow_t;
using std::size_t;

void* Allocate(size_t size, align_val_t alignment = {}) noexcept {
  if (ard::testing::AllocationsObey::NextFails()) return nullptr;
  const auto unit = static_cast<size_t>(alignment);
  size = std::max(size, size_t{1});
  if (unit <= alignof(std::max_align_t)) return std::malloc(size);
  return std::aligned_alloc(unit, (size + unit - 1) / unit * unit);
}

void* OrThrow(void* memory) { return memory ? memory : throw std::bad_alloc(); }

}  // namespace

void* operator new(size_t n) { return OrThrow(Allocate(n)); }
void* operator new[](size_t n) { return OrThrow(Allocate(n)); }
void* operator new(size_t n, align_val_t a) { return OrThrow(Allocate(n, a)); }
void* operator new[](size_t n, align_val_t a) { return OrThrow(Allocate(n, a)); }
void* operator new(size_t n, const nothrow_t&) noexcept { return Allocate(n); }
void* operator new[](size_t n, const nothrow_t&) noexcept { return Allocate(n); }
void* operator new(size_t n, align_val_t a, const nothrow_t&) noexcept { return Allocate(n, a); }
void* operator new[](size_t n, align_val_t a, const nothrow_t&) noexcept { return Allocate(n, a); }

void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, size_t) noexcept { std::free(p); }
void operator delete[](void* p, size_t) noexcept { std::free(p); }
void operator delete(void* p, align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, align_val_t) noexcept { std::free(p); }
void operator delete(void* p, size_t, align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, size_t, align_val_t) noexcept { std::free(p); }
void operator delete(void* p, const nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const nothrow_t&) noexcept { std::free(p); }
void operator delete(void* p, align_val_t, const nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, align_val_t, const nothrow_t&) noexcept { std::free(p); }
