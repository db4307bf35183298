// What the literal reader, its functions and casts and the writer share: class conversion of elements,
// the text being read with its budget, and the function call being built.
#pragma once

#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "arraylib/zxarray.h"
#include "arraylib/zxdispatch.h"
#include "cmdlanglib/budget.h"
#include "cmdlanglib/literal.h"
#include "cmdlanglib/utf8.h"
#include "guilib/auto_ptr.h"
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace cmdlang::literal_detail {

using gui_objects::ZxArrayPtr;

// The most elements an array may span, counting its nonzero dimensions only; within it no product
// of dimensions overflows.
inline constexpr zxSize kMaxElements = zxSize{1} << 40;

// Charged for one array beyond its elements, and for one element of a row or argument list while it
// is read (vector growth included).
inline constexpr std::size_t kArrayCost = kArrayOverhead;
inline constexpr std::size_t kSlotCost = 64;

// The name of a numeric or logical class, or "char"; "unknown" for any other.
std::string_view valueClassName(zxClassID classID);

bool isIntegerClass(zxClassID classID);

// The bytes of one element of a numeric or logical class.
std::size_t classBytes(zxClassID classID);

inline bool isValueArray(const zxArray* array) { return zxIsNumeric(array) || zxIsLogical(array); }

inline std::vector<zxSize> dimsOf(const zxArray* array) {
  const zxSize* dims = zxGetDimensions(array);
  return {dims, dims + zxGetNumberOfDimensions(array)};
}

inline bool isZeroByZero(const zxArray* array) {
  return zxGetNumberOfDimensions(array) == 2 && zxGetM(array) == 0 && zxGetN(array) == 0;
}

inline zxSize elementCount(const std::vector<zxSize>& dims) {
  zxSize count = 1;
  for (const zxSize d : dims) count = saturatingMultiply(count, d);
  return count;
}

// The product of the nonzero dimensions: what zxGetN and its kin compute even for an empty array.
inline zxSize extentCount(const std::vector<zxSize>& dims) {
  zxSize count = 1;
  for (const zxSize d : dims) count = d == 0 ? count : saturatingMultiply(count, d);
  return count;
}

inline std::string dimsText(const std::vector<zxSize>& dims) {
  std::string text;
  for (const zxSize d : dims) text += (text.empty() ? "" : "x") + std::to_string(d);
  return text;
}

// One element converted between classes by the rules of the casts: integers round half away from
// zero and saturate, NaN becomes integer 0, anything nonzero becomes logical 1.
template <class To, class From>
To convertElement(From value) {
  if constexpr (std::is_same_v<To, From>) {
    return value;
  } else if constexpr (std::is_same_v<To, zxLogical>) {
    return value != From{};
  } else if constexpr (std::is_same_v<From, zxLogical>) {
    return static_cast<To>(value ? 1 : 0);
  } else if constexpr (std::is_floating_point_v<To>) {
    if constexpr (std::is_same_v<To, float> && std::is_same_v<From, double>) {
      if (std::isfinite(value) && std::fabs(value) > std::numeric_limits<float>::max()) {
        return value > 0 ? std::numeric_limits<float>::infinity() : -std::numeric_limits<float>::infinity();
      }
    }
    return static_cast<To>(value);
  } else if constexpr (std::is_floating_point_v<From>) {
    if (std::isnan(value)) return 0;
    const double rounded = std::round(static_cast<double>(value));
    // For 64-bit classes the limit as a double is 2^63 or 2^64, one past the limit, so >= saturates
    // exactly the values that do not fit.
    if (rounded <= static_cast<double>(std::numeric_limits<To>::min())) return std::numeric_limits<To>::min();
    if (rounded >= static_cast<double>(std::numeric_limits<To>::max())) return std::numeric_limits<To>::max();
    return static_cast<To>(rounded);
  } else {
    if (std::cmp_less(value, std::numeric_limits<To>::min())) return std::numeric_limits<To>::min();
    if (std::cmp_greater(value, std::numeric_limits<To>::max())) return std::numeric_limits<To>::max();
    return static_cast<To>(value);
  }
}

// Converts count values of one class (numeric, logical or char; char only to char) into another,
// value i landing at to[where(i)].
template <class Where>
void convertValues(zxClassID fromClass, const void* from, zxClassID toClass, void* to, zxSize count, Where where) {
  if (fromClass == zxCHAR_CLASS) {
    for (zxSize i = 0; i < count; ++i) static_cast<zxChar*>(to)[where(i)] = static_cast<const zxChar*>(from)[i];
    return;
  }
  zx::dispatchNumericOrLogical(fromClass, [&](auto source) {
    zx::dispatchNumericOrLogical(toClass, [&](auto target) {
      using From = typename decltype(source)::type;
      using To = typename decltype(target)::type;
      for (zxSize i = 0; i < count; ++i) {
        static_cast<To*>(to)[where(i)] = convertElement<To>(static_cast<const From*>(from)[i]);
      }
    });
  });
}

inline constexpr auto kSamePlace = [](zxSize i) { return i; };

// A number or logical value read inside brackets. Concatenation needs only its class and value, so
// it gets no array of its own.
struct Scalar {
  zxClassID classID = zxDOUBLE_CLASS;
  alignas(8) unsigned char value[8] = {};
};

// One element of a row or argument list: an array, or inside brackets a scalar.
struct Item {
  ZxArrayPtr value;  // null when the element is the scalar
  Scalar scalar;
  std::size_t column;
};

// The text being read and the budget its arrays are charged to. Positions are byte offsets into the
// text; messages show them as 1-based character columns.
class Source {
 public:
  Source(std::string_view text, ByteBudget& budget) : text_(text), budget_(budget) {}

  std::string_view text() const { return text_; }
  std::string columnText(std::size_t at) const { return " at column " + std::to_string(utf8Column(text_, at)); }
  [[noreturn]] void fail(const std::string& what, std::size_t at) const {
    throw LiteralError(what + columnText(at), at);
  }

  // Charges bytes before they are allocated; describe() names what needs them when they do not fit.
  template <class Describe>
  void charge(std::size_t bytes, Describe describe) const {
    if (!budget_.tryCharge(bytes)) budget_.refuse(bytes, describe());
  }

  // Charges an element of a row or argument list, or a small array, made at byte offset at.
  void chargeSmall(std::size_t bytes, std::size_t at) const {
    charge(bytes, [&] { return "the literal" + columnText(at); });
  }

  ByteBudget& budget() const { return budget_; }

 private:
  std::string_view text_;
  ByteBudget& budget_;
};

// One function call being built: its name, where it starts and its arguments.
struct Call {
  const Source& source;
  std::string_view name;
  std::size_t column;
  std::vector<Item> args;

  [[noreturn]] void fail(const std::string& what, std::size_t at) const {
    source.fail(std::string(name) + ": " + what, at);
  }
  [[noreturn]] void fail(const std::string& what) const { fail(what, column); }

  void requireCount(std::size_t least, std::size_t most) const;

  const zxArray* arg(std::size_t i) const { return args[i].value.get(); }

  std::string textArg(std::size_t i, const char* what) const;

  zxSize dimension(std::size_t i) const;

  // The dimensions given by arguments [first, last); one dimension d means d-by-d.
  std::vector<zxSize> dimensions(std::size_t first, std::size_t last) const;

  // Charges the array this call makes, dims with elements of bytesEach, before it is allocated,
  // then refuses dimensions whose products would overflow the host's sizes.
  void chargeArray(const std::vector<zxSize>& dims, std::size_t bytesEach, std::string_view className) const;
};

// A cast such as uint8(X) to classID.
ZxArrayPtr buildCast(const Call& call, zxClassID classID);

// The builder of a function such as zeros or struct; null when no function has the name.
using FunctionBuilder = ZxArrayPtr (*)(Call&);
FunctionBuilder functionNamed(std::string_view name);

}  // namespace cmdlang::literal_detail

KX_HOST_API_END
