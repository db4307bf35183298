// The fuzzers' shared helpers.
#include "fuzz_support.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <type_traits>
#include <vector>

#include "arraylib/zxdispatch.h"
#include "arraylib/zxformat.h"
#include "guilib/auto_ptr.h"

namespace orbfuzz {

void ByteReader::bytes(void* out, std::size_t count) {
  auto* target = static_cast<std::uint8_t*>(out);
  for (std::size_t i = 0; i < count; ++i) target[i] = byte();
}

std::string_view ByteReader::rest() const {
  if (position_ >= size_) return {};
  return {reinterpret_cast<const char*>(data_ + position_), size_ - position_};
}

std::string_view ByteReader::line() {
  const std::string_view text = rest();
  const std::size_t end = text.find('\n');
  position_ += end == std::string_view::npos ? text.size() : end + 1;
  return text.substr(0, end);
}

void fail(std::string_view what, std::string_view detail) {
  std::fprintf(stderr, "\n*** fuzz check failed: %.*s\n", static_cast<int>(what.size()), what.data());
  if (!detail.empty()) std::fprintf(stderr, "*** %.*s\n", static_cast<int>(detail.size()), detail.data());
  std::fflush(stderr);
  std::abort();
}

std::string describeArray(const zxArray* array) {
  if (array == nullptr) return "(no array)";
  std::string text = zxGetClassName(array);
  for (zxSize d = 0; d < zxGetNumberOfDimensions(array); ++d) {
    text += (d == 0 ? " " : "x") + std::to_string(zxGetDimensions(array)[d]);
  }
  if (zxIsComplex(array)) text += " complex";
  if (zxIsSparse(array)) text += " sparse";
  return text + " " + zx::canonicalText(array);
}

namespace {

bool hasUnpairedSurrogate(const zxArray* text) {
  const zxChar* units = zxGetChars(text);
  const zxSize count = zxGetNumberOfElements(text);
  for (zxSize i = 0; i < count; ++i) {
    const unsigned unit = units[i];
    if (unit >= 0xD800 && unit < 0xDC00 && i + 1 < count && units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000) {
      ++i;
    } else if (unit >= 0xD800 && unit < 0xE000) {
      return true;
    }
  }
  return false;
}

}  // namespace

bool containsNonFinite(const zxArray* array) {
  if (array == nullptr) return false;
  const zxSize count = zxGetNumberOfElements(array);
  if (zxIsCell(array)) {
    for (zxSize i = 0; i < count; ++i) {
      if (containsNonFinite(zxGetCell(array, i))) return true;
    }
    return false;
  }
  if (zxIsStruct(array)) {
    for (int f = 0; f < zxGetNumberOfFields(array); ++f) {
      for (zxSize i = 0; i < count; ++i) {
        if (containsNonFinite(zxGetFieldByNumber(array, i, f))) return true;
      }
    }
    return false;
  }
  if (!zxIsDouble(array) && !zxIsSingle(array)) return false;
  const zxSize stored = zxIsSparse(array) ? zxGetJc(array)[zxGetN(array)] : count;
  bool found = false;
  for (const bool imag : {false, true}) {
    if (imag && !zxIsComplex(array)) break;
    const void* data = imag ? zxGetImagData(array) : zxGetData(array);
    for (zxSize i = 0; i < stored && !found; ++i) {
      found = zxIsDouble(array) ? !std::isfinite(static_cast<const double*>(data)[i])
                                : !std::isfinite(static_cast<const float*>(data)[i]);
    }
  }
  return found;
}

bool hasUnwritableParts(const zxArray* array) {
  if (array == nullptr || zxIsObject(array) || zxIsFunctionHandle(array)) return true;
  if (zxIsChar(array)) return hasUnpairedSurrogate(array);
  const zxSize count = zxGetNumberOfElements(array);
  if (zxIsCell(array)) {
    for (zxSize i = 0; i < count; ++i) {
      if (hasUnwritableParts(zxGetCell(array, i))) return true;
    }
  }
  if (zxIsStruct(array)) {
    if (zxGetM(array) != 1 || zxGetN(array) != 1 || zxGetNumberOfDimensions(array) != 2) return true;
    for (int f = 0; f < zxGetNumberOfFields(array); ++f) {
      if (hasUnwritableParts(zxGetFieldByNumber(array, 0, f))) return true;
    }
  }
  return false;
}

}  // namespace orbfuzz
