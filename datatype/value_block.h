// Value blocks: one native value in a zero-filled C-heap block, held by a COSValue slot. Every block
// of the library, whatever its type, comes from allocateValueBlock and goes back through utFree.
#pragma once

#include <cstddef>
#include <cstring>
#include <new>
#include <utility>

#include "datatype/export.h"
#include "objsys/cos_value.h"
#include "utillib/ut.h"

namespace graphics::datatype {

// A zero-filled C-heap block of size bytes, released with utFree; the foundation library's bad_alloc
// when it cannot be had.
ORB_EXPORT void* allocateValueBlock(std::size_t size);

// Raises the foundation library's bad_alloc for a value block that could not be had.
[[noreturn]] ORB_EXPORT void raiseOutOfMemoryForBlock();

// A new block holding T constructed from arguments. If the constructor raises, the block is released
// and nothing is returned.
template <class T, class... Args>
objsys::COSValue newValueBlock(Args&&... arguments) {
  // allocateValueBlock's work, inline: the block's size is known here, so zero-filling it is a few
  // stores rather than a call.
  void* block = utMalloc(sizeof(T));
  if (block == nullptr) raiseOutOfMemoryForBlock();
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
