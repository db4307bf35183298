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

std::string arrayDifference(const zxArray* a, const zxArray* b) {
  if (a == nullptr || b == nullptr) return a == b ? "" : "one array is absent";
  if (zxGetClassID(a) != zxGetClassID(b)) return std::string("class ") + zxGetClassName(a) + " vs " + zxGetClassName(b);
  const std::vector<zxSize> dimsA(zxGetDimensions(a), zxGetDimensions(a) + zxGetNumberOfDimensions(a));
  const std::vector<zxSize> dimsB(zxGetDimensions(b), zxGetDimensions(b) + zxGetNumberOfDimensions(b));
  if (dimsA != dimsB) return "dimensions differ: " + describeArray(a) + " vs " + describeArray(b);
  if (zxIsComplex(a) != zxIsComplex(b)) return "complexity differs";
  if (zxIsSparse(a) != zxIsSparse(b)) return "sparsity differs";
  const zxSize count = zxGetNumberOfElements(a);
  if (zxIsChar(a)) {
    if (count > 0 && std::memcmp(zxGetChars(a), zxGetChars(b), count * sizeof(zxChar)) != 0) return "characters differ";
    return "";
  }
  if (zxIsFunctionHandle(a)) {
    return std::strcmp(zxGetFunctionName(a), zxGetFunctionName(b)) == 0 ? "" : "function names differ";
  }
  if (zxIsCell(a)) {
    for (zxSize i = 0; i < count; ++i) {
      const std::string inner = arrayDifference(zxGetCell(a, i), zxGetCell(b, i));
      if (!inner.empty()) return inner + " in cell " + std::to_string(i);
    }
    return "";
  }
  if (zxIsStruct(a)) {
    if (zxGetNumberOfFields(a) != zxGetNumberOfFields(b)) return "numbers of fields differ";
    for (int f = 0; f < zxGetNumberOfFields(a); ++f) {
      if (std::strcmp(zxGetFieldNameByNumber(a, f), zxGetFieldNameByNumber(b, f)) != 0) return "field names differ";
      for (zxSize i = 0; i < count; ++i) {
        const std::string inner = arrayDifference(zxGetFieldByNumber(a, i, f), zxGetFieldByNumber(b, i, f));
        if (!inner.empty()) return inner + " in field " + zxGetFieldNameByNumber(a, f);
      }
    }
    return "";
  }
  const gui_objects::ZxArrayPtr fullA(zxIsSparse(a) ? zxMustBeFull(a) : nullptr);
  const gui_objects::ZxArrayPtr fullB(zxIsSparse(b) ? zxMustBeFull(b) : nullptr);
  const zxArray* x = fullA ? fullA.get() : a;
  const zxArray* y = fullB ? fullB.get() : b;
  std::string difference;
  zx::dispatchNumericOrLogical(zxGetClassID(a), [&](auto type) {
    using T = typename decltype(type)::type;
    for (const bool imag : {false, true}) {
      if (imag && !zxIsComplex(a)) break;
      const T* p = static_cast<const T*>(imag ? zxGetImagData(x) : zxGetData(x));
      const T* q = static_cast<const T*>(imag ? zxGetImagData(y) : zxGetData(y));
      for (zxSize i = 0; i < count && difference.empty(); ++i) {
        bool bothNaN = false;
        if constexpr (std::is_floating_point_v<T>) bothNaN = std::isnan(p[i]) && std::isnan(q[i]);
        if (!bothNaN && std::memcmp(&p[i], &q[i], sizeof(T)) != 0) {
          difference = "element " + std::to_string(i) + " differs";
        }
      }
    }
  });
  return difference;
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
