// What the fuzzers share: reading structured choices from the input bytes, the failure report that
// ends a run, and a deep comparison of host arrays.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "arraylib/zxarray.h"

namespace orbfuzz {

// Hands out the input's bytes front to back; once they run out every read gives zeros, so a short
// input still decodes to something.
class ByteReader {
 public:
  ByteReader(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  std::uint8_t byte() { return position_ < size_ ? data_[position_++] : 0; }
  // A number in [0, bound) from one byte; bound must be at most 256.
  unsigned below(unsigned bound) { return byte() % bound; }
  bool flag() { return (byte() & 1) != 0; }
  // Copies count bytes into out, zero-filling past the end of the input.
  void bytes(void* out, std::size_t count);
  // Everything not read yet.
  std::string_view rest() const;
  // The bytes up to the next '\n' (taken with it), or everything left when there is none.
  std::string_view line();
  std::uint8_t peek() const { return position_ < size_ ? data_[position_] : 0; }
  bool empty() const { return position_ >= size_; }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t position_ = 0;
};

// Reports a broken property of the code under test and aborts, so that libFuzzer keeps the input
// and the replay test fails.
[[noreturn]] void fail(std::string_view what, std::string_view detail = {});

#define ORB_FUZZ_CHECK(condition, detail)                                     \
  do {                                                                        \
    if (!(condition)) ::orbfuzz::fail("check failed: " #condition, (detail)); \
  } while (false)

// Whether an array holds, at any depth, something that a literal cannot write: an absent cell
// element or struct field, a struct array that is not 1-by-1, an object or a function handle, or
// text with an unpaired UTF-16 surrogate.
bool hasUnwritableParts(const zxArray* array);

// Whether an array holds a NaN or an infinity at any depth, in real or imaginary parts.
bool containsNonFinite(const zxArray* array);

// The class, dimensions and canonical text of an array, for messages.
std::string describeArray(const zxArray* array);

}  // namespace orbfuzz
