// The one allocator of value blocks.
#include "datatype/value_block.h"

#include <cstring>

#include "foundationlib/except.h"

namespace graphics::datatype {

// Zero-filled as calloc would give it, but from malloc: glibc serves small malloc calls from its
// per-thread cache and calloc never, and the blocks are small.
void raiseOutOfMemoryForBlock() { throw fl::except::bad_alloc(); }

void* allocateValueBlock(std::size_t size) {
  void* block = utMalloc(size);
  if (block == nullptr) raiseOutOfMemoryForBlock();
  std::memset(block, 0, size);
  return block;
}

}  // namespace graphics::datatype
