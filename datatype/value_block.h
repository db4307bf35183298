// Value blocks: one native value in a zero-filled C-heap block, held by a COSValue slot.
#pragma once

#include <cstring>
#include <new>
#include <utility>

#include "foundationlib/except.h"
#include "objsys/cos_value.h"
#include "utillib/ut.h"

namespace graphics::datatype {

// A new zero-filled block holding T constructed from arguments; the out-of-memory error when it cannot be had.
// If the constructor raises, the block is released and nothing is returned.
template <class T, class... Args>
objsys::COSValue newValueBlock(Args&&... arguments) {
  // Zero-filled as calloc would give it; glibc serves malloc from its per-thread cache, calloc never.
  void* block = utMalloc(sizeof(T));
  if (block == nullptr) throw fl::except::bad_alloc();
  std::memset(block, 0, sizeof(T));
  try {
    ::new (block) T(std::forward<Args>(arguments)...);
  } catch (...) {
    utFree(block);
    throw;
  }
  return objsys::COSValue(block);
}

// Destroys the value a block holds and releases the block; an empty slot is harmless.
template <class T>
void freeValueBlock(objsys::COSValue value) {
  if (T* held = value.as<T>()) held->~T();
  utFree(value.pointer());
}

}  // namespace graphics::datatype
