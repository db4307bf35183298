// Bounds of what reading a value back costs.
#include "orbdt/response_size.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <type_traits>

#include "arraylib/zxdispatch.h"
#include "cmdlanglib/budget.h"

namespace orbdt {
namespace {

using cmdlang::saturatingAdd;
using cmdlang::saturatingMultiply;

// Memory beyond text, bounding libstdc++'s JSON values with allocator overhead and vector growth.
constexpr std::size_t kValueCost = 48;    // a value's slot in a JSON array, old and new storage while it grows
constexpr std::size_t kStringCost = 64;   // a JSON string's own record ("NaN", a text row)
constexpr std::size_t kMemberCost = 112;  // a member of a JSON object, with its key
constexpr std::size_t kArrayCost = 512;   // an ARRAY object's fixed members, and a copy of a header
// The longest text of one floating-point element ("-2.2250738585072014e-308") and its separator.
constexpr std::size_t kFloatText = 26;

std::size_t digitsOf(std::uint64_t value) {
  std::size_t digits = 1;
  for (; value >= 10; value /= 10) ++digits;
  return digits;
}

// The bound of one part (real or imaginary) of a full numeric or logical array: memory of its JSON
// values plus its element texts with separators.
struct PartCost {
  std::size_t memory = 0;
  std::size_t text = 0;
};

PartCost partCost(zxClassID classID, const void* data, zxSize count) {
  PartCost cost;
  cost.memory = saturatingMultiply(count, kValueCost);
  zx::dispatchNumericOrLogical(classID, [&](auto type) {
    using T = typename decltype(type)::type;
    const T* values = static_cast<const T*>(data);
    for (zxSize i = 0; i < count; ++i) {
      const T value = values[i];
      // A logical's digit and separator, unless the class says otherwise.
      std::size_t text = 2;
      if constexpr (std::is_integral_v<T> && !std::is_same_v<T, zxLogical>) {
        auto magnitude = static_cast<std::uint64_t>(value);
        std::size_t sign = 0;
        if constexpr (std::is_signed_v<T>) {
          if (value < 0) {
            magnitude = 0 - magnitude;
            sign = 1;
          }
        }
        text = digitsOf(magnitude) + sign + 1;
      } else if constexpr (std::is_floating_point_v<T>) {
        if (!std::isfinite(value)) {
          text = 7;
          cost.memory += kStringCost;
        } else if (std::fabs(value) < 1e15 && std::floor(value) == value) {
          // A whole number, written with ".0" in JSON.
          text = digitsOf(static_cast<std::uint64_t>(std::fabs(value))) + 4;
        } else {
          text = kFloatText;
        }
      }
      cost.text += text;
    }
  });
  return cost;
}

// The memory of JSON values and textCopies of their text.
struct Totals {
  std::size_t textCopies;
  std::size_t operator()(std::size_t memory, std::size_t text) const {
    return saturatingAdd(memory, saturatingMultiply(text, textCopies));
  }
};

std::size_t valuesBytes(const zxArray* array, Totals totalOf) {
  const zxSize count = zxGetNumberOfElements(array);
  if (zxIsSparse(array)) {
    // Both writers work from a full copy; its values are all but the stored ones zero.
    const std::size_t parts = zxIsComplex(array) ? 2 : 1;
    const std::size_t copy = saturatingMultiply(count, zxGetElementSize(array) * parts);
    const std::size_t zeros = totalOf(saturatingMultiply(count, kValueCost), saturatingMultiply(count, 4));
    return saturatingAdd(copy, saturatingMultiply(zeros, parts));
  }
  const zxClassID classID = zxGetClassID(array);
  PartCost re = partCost(classID, zxGetData(array), count);
  std::size_t bytes = totalOf(re.memory, re.text);
  if (zxIsComplex(array)) {
    const PartCost im = partCost(classID, zxGetImagData(array), count);
    bytes = saturatingAdd(bytes, totalOf(im.memory, im.text));
  }
  return bytes;
}

std::size_t charsBytes(const zxArray* array, Totals totalOf) {
  // A unit takes at most 6 bytes of JSON text ("\u001f") and 3 of UTF-8; each row is a string.
  const zxSize count = zxGetNumberOfElements(array);
  const std::size_t rows = zxGetM(array);
  return totalOf(saturatingMultiply(rows, kStringCost + kValueCost), saturatingMultiply(count, 6));
}

}  // namespace

std::size_t readBackBytes(const zxArray* array, std::size_t textCopies) {
  if (array == nullptr) return 0;
  const Totals totalOf{textCopies};
  std::size_t bytes = kArrayCost;
  if (zxIsNumeric(array) || zxIsLogical(array)) {
    bytes = saturatingAdd(bytes, valuesBytes(array, totalOf));
  } else if (zxIsChar(array)) {
    bytes = saturatingAdd(bytes, charsBytes(array, totalOf));
  } else if (zxIsCell(array)) {
    const zxSize count = zxGetNumberOfElements(array);
    bytes = saturatingAdd(bytes, totalOf(saturatingMultiply(count, kValueCost), saturatingMultiply(count, 3)));
    for (zxSize i = 0; i < count && bytes != cmdlang::ByteBudget::kUnlimited; ++i) {
      bytes = saturatingAdd(bytes, readBackBytes(zxGetCell(array, i), textCopies));
    }
  } else if (zxIsStruct(array)) {
    const zxSize count = zxGetNumberOfElements(array);
    const int fields = zxGetNumberOfFields(array);
    for (int f = 0; f < fields; ++f) {
      const std::size_t name = std::char_traits<char>::length(zxGetFieldNameByNumber(array, f)) + 4;
      const std::size_t perElement = totalOf(kMemberCost + name, name);
      bytes = saturatingAdd(bytes, saturatingMultiply(count + 1, perElement));
      for (zxSize i = 0; i < count && bytes != cmdlang::ByteBudget::kUnlimited; ++i) {
        bytes = saturatingAdd(bytes, readBackBytes(zxGetFieldByNumber(array, i, f), textCopies));
      }
    }
  }
  return bytes;
}

std::size_t valueBytes(const zxArray* array) {
  if (array == nullptr) return 0;
  const zxSize count = zxGetNumberOfElements(array);
  std::size_t bytes = saturatingAdd(cmdlang::kArrayOverhead, saturatingMultiply(count, kNativeBytesPerElement));
  if (zxIsCell(array)) {
    bytes = saturatingAdd(bytes, saturatingMultiply(count, sizeof(void*)));
    for (zxSize i = 0; i < count && bytes != cmdlang::ByteBudget::kUnlimited; ++i) {
      bytes = saturatingAdd(bytes, valueBytes(zxGetCell(array, i)));
    }
  } else if (zxIsStruct(array)) {
    const int fields = zxGetNumberOfFields(array);
    for (int f = 0; f < fields; ++f) {
      bytes = saturatingAdd(bytes, std::char_traits<char>::length(zxGetFieldNameByNumber(array, f)) + kStringCost);
      bytes = saturatingAdd(bytes, saturatingMultiply(count, sizeof(void*)));
      for (zxSize i = 0; i < count && bytes != cmdlang::ByteBudget::kUnlimited; ++i) {
        bytes = saturatingAdd(bytes, valueBytes(zxGetFieldByNumber(array, i, f)));
      }
    }
  } else {
    const std::size_t parts = zxIsComplex(array) ? 2 : 1;
    const zxSize stored = zxIsSparse(array) ? zxGetNzmax(array) + zxGetN(array) + 1 : count;
    bytes =
        saturatingAdd(bytes, saturatingMultiply(stored, zxGetElementSize(array) * parts + (zxIsSparse(array) ? 8 : 0)));
  }
  return bytes;
}

}  // namespace orbdt
