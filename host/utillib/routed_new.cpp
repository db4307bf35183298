// Global operator new and delete through utMalloc and utFree, so that a program linking this
// (tests that fail allocations on purpose) sends every C++ allocation of every module through
// utillib's failure injection. Defined in the program itself, they take precedence over the C++
// runtime's and the sanitizers' own.
#include <new>

#include "utillib/ut.h"

namespace {

// As the C++ runtime's operator new does: on failure the new-handler runs (it may raise an error of
// its own, or make memory and have the allocation tried again); without one, std::bad_alloc.
template <class Allocate>
void* allocateOrHandle(Allocate allocate) {
  for (;;) {
    if (void* block = allocate()) return block;
    const std::new_handler handler = std::get_new_handler();
    if (handler == nullptr) throw std::bad_alloc();
    handler();
  }
}

void* allocate(std::size_t bytes) {
  return allocateOrHandle([bytes] { return utMalloc(bytes == 0 ? 1 : bytes); });
}

void* allocateAligned(std::size_t bytes, std::align_val_t alignment) {
  return allocateOrHandle(
      [&] { return utAlignedMalloc(static_cast<std::size_t>(alignment), bytes == 0 ? 1 : bytes); });
}

}  // namespace

void* operator new(std::size_t bytes) { return allocate(bytes); }
void* operator new[](std::size_t bytes) { return allocate(bytes); }
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept { return utMalloc(bytes == 0 ? 1 : bytes); }
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept { return utMalloc(bytes == 0 ? 1 : bytes); }
void* operator new(std::size_t bytes, std::align_val_t alignment) { return allocateAligned(bytes, alignment); }
void* operator new[](std::size_t bytes, std::align_val_t alignment) { return allocateAligned(bytes, alignment); }
void operator delete(void* block) noexcept { utFree(block); }
void operator delete[](void* block) noexcept { utFree(block); }
void operator delete(void* block, std::size_t) noexcept { utFree(block); }
void operator delete[](void* block, std::size_t) noexcept { utFree(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { utFree(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { utFree(block); }
void* operator new(std::size_t bytes, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return utAlignedMalloc(static_cast<std::size_t>(alignment), bytes == 0 ? 1 : bytes);
}
void* operator new[](std::size_t bytes, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return utAlignedMalloc(static_cast<std::size_t>(alignment), bytes == 0 ? 1 : bytes);
}
void operator delete(void* block, std::align_val_t, const std::nothrow_t&) noexcept { utFree(block); }
void operator delete[](void* block, std::align_val_t, const std::nothrow_t&) noexcept { utFree(block); }
void operator delete(void* block, std::align_val_t) noexcept { utFree(block); }
void operator delete[](void* block, std::align_val_t) noexcept { utFree(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { utFree(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { utFree(block); }
