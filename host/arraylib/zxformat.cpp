// Canonical text of host arrays.
#include "arraylib/zxformat.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <type_traits>

#include "arraylib/zxdispatch.h"
#include "foundationlib/i18n/unicode.h"

namespace zx {

template <class T>
void appendElementText(std::string& out, T value) {
  if constexpr (std::is_same_v<T, zxLogical>) {
    out += value ? '1' : '0';
  } else {
    if constexpr (std::is_floating_point_v<T>) {
      if (std::isnan(value)) {
        out += "NaN";
        return;
      }
      if (std::isinf(value)) {
        out += value < 0 ? "-Inf" : "Inf";
        return;
      }
    }
    // Without a format, to_chars writes the shortest text that reads back as the same T.
    char buffer[32];
    const auto written = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, written.ptr);
  }
}

template <class T>
void appendMatrixText(std::string& out, std::span<const T> values, zxSize rows, zxSize cols,
                      const MatrixLayout& layout) {
  if (layout.bareScalar && rows == 1 && cols == 1) {
    appendElementText(out, values[0]);
    return;
  }
  const bool rowMajor = layout.order == MatrixLayout::Order::RowMajor;
  out += '[';
  for (zxSize row = 0; row < rows; ++row) {
    if (row > 0) out += layout.rowSeparator;
    for (zxSize col = 0; col < cols; ++col) {
      if (col > 0) out += ' ';
      appendElementText(out, values[rowMajor ? row * cols + col : row + col * rows]);
    }
  }
  out += ']';
}

#define ORB_INSTANTIATE(T)                             \
  template void appendElementText<T>(std::string&, T); \
  template void appendMatrixText<T>(std::string&, std::span<const T>, zxSize, zxSize, const MatrixLayout&);
ORB_INSTANTIATE(double)
ORB_INSTANTIATE(float)
ORB_INSTANTIATE(std::int8_t)
ORB_INSTANTIATE(std::uint8_t)
ORB_INSTANTIATE(std::int16_t)
ORB_INSTANTIATE(std::uint16_t)
ORB_INSTANTIATE(std::int32_t)
ORB_INSTANTIATE(std::uint32_t)
ORB_INSTANTIATE(std::int64_t)
ORB_INSTANTIATE(std::uint64_t)
ORB_INSTANTIATE(bool)
#undef ORB_INSTANTIATE

void appendQuotedRows(std::string& out, std::span<const zxChar> chars, zxSize rows, zxSize cols) {
  if (rows > 1) out += '[';
  std::u16string units;
  for (zxSize row = 0; row < rows; ++row) {
    if (row > 0) out += ';';
    units.clear();
    for (zxSize col = 0; col < cols; ++col) units += chars[row + col * rows];
    out += '\'';
    for (const char c : fl::i18n::utf16ToUtf8(units)) {
      if (c == '\'') out += '\'';
      out += c;
    }
    out += '\'';
  }
  if (rows > 1) out += ']';
}

namespace {

std::string numberText(const zxArray* array) {
  if (zxIsEmpty(array)) return "[]";
  if (zxIsSparse(array)) {
    const std::unique_ptr<zxArray, decltype(&zxDestroyArray)> full(zxMustBeFull(array), &zxDestroyArray);
    return numberText(full.get());
  }
  std::string out;
  constexpr zxSize kTypicalWidth = 8;
  out.reserve(zxGetNumberOfElements(array) * kTypicalWidth + 2);
  dispatchNumericOrLogical(zxGetClassID(array), [&](auto type) {
    using T = typename decltype(type)::type;
    const std::span values(static_cast<const T*>(zxGetData(array)), zxGetNumberOfElements(array));
    appendMatrixText(out, values, zxGetM(array), zxGetN(array));
  });
  return out;
}

std::string charText(const zxArray* array) {
  if (zxIsEmpty(array)) return {};
  const zxSize rows = zxGetM(array);
  const zxSize cols = zxGetN(array);
  const zxChar* chars = zxGetChars(array);
  if (rows == 1) return fl::i18n::utf16ToUtf8(std::u16string_view(chars, cols));
  std::string out;
  appendQuotedRows(out, std::span(chars, rows * cols), rows, cols);
  return out;
}

std::string description(const zxArray* array) {
  std::string out = "<";
  const zxSize* dims = zxGetDimensions(array);
  for (zxSize i = 0; i < zxGetNumberOfDimensions(array); ++i) {
    if (i > 0) out += 'x';
    out += std::to_string(dims[i]);
  }
  out += ' ';
  out += zxGetClassName(array);
  out += '>';
  return out;
}

}  // namespace

std::string canonicalText(const zxArray* array) {
  if (array == nullptr) return "[]";
  const zxClassID classID = zxGetClassID(array);
  if (classID == zxCHAR_CLASS) return charText(array);
  if (zxIsNumericArrayType(classID) || classID == zxLOGICAL_CLASS) return numberText(array);
  return description(array);
}

}  // namespace zx
