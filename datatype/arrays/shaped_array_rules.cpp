// The checks and conversion steps that every shaped array type shares.
#include "datatype/arrays/shaped_array_rules.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

#include "arraylib/zxdispatch.h"
#include "arraylib/zxerror.h"
#include "arraylib/zxrethrow.h"
#include "datatype/arrays/array_base.h"
#include "datatype/errors.h"
#include "datatype/failures.h"
#include "guilib/convert_from_string_utils.h"

namespace graphics::datatype::shaped {
namespace {

enum class Failure : std::uint8_t { none, valueLeaf, notANumber, infinite };

// Floating elements are tested sixteen bytes at a time with the compiler's vector extensions; each
// rule is written once, as a generic lambda that takes one element or a vector of them and answers
// with a bool or a mask of lanes.
typedef double DoubleLanes __attribute__((vector_size(16)));
typedef float SingleLanes __attribute__((vector_size(16)));
template <class E>
struct LanesOf {};
template <>
struct LanesOf<double> {
  using type = DoubleLanes;
};
template <>
struct LanesOf<float> {
  using type = SingleLanes;
};

// What a rule compares in: the element type of floating elements and their vectors; double for
// integers, which holds the small bounds of the rules exactly.
template <class X>
struct CompareTypeOf {
  using type = double;
};
template <>
struct CompareTypeOf<float> {
  using type = float;
};
template <>
struct CompareTypeOf<SingleLanes> {
  using type = float;
};
template <class X>
using CompareAs = typename CompareTypeOf<X>::type;

template <class X>
auto isNaNOf(X x) {
  if constexpr (std::is_integral_v<X>) {
    return false;
  } else {
    return x != x;
  }
}

// x - x is NaN exactly when x is NaN or infinite.
template <class X>
auto isNonFinite(X x) {
  return isNaNOf(x - x);
}

// Whether b fails to follow a strictly: a < b fails (as it does when either is NaN), or the two are
// -Inf and Inf. For floating values a + b is NaN exactly when one is NaN or they are opposite infinities.
template <class X>
auto notStrictlyBefore(X a, X b) {
  if constexpr (std::is_integral_v<X>) {
    return !(a < b);
  } else {
    return (a >= b) | isNaNOf(a + b);
  }
}

template <class Mask>
bool anyLane(const Mask& mask) {
  if constexpr (std::is_integral_v<Mask>) {
    return mask != 0;
  } else {
    std::uint64_t halves[2];
    std::memcpy(halves, &mask, sizeof halves);
    return (halves[0] | halves[1]) != 0;
  }
}

template <class Lanes, class E>
Lanes lanesAt(const E* values) {
  Lanes lanes;
  std::memcpy(&lanes, values, sizeof lanes);
  return lanes;
}

// Vectors tested per branch: their masks are ORed and tested once, 128 bytes at a time, so that the
// loop's cost is the comparisons alone.
constexpr std::size_t kVectorsPerStep = 8;

// The index of the first element x for which breaks(x) holds, or count. Floating elements go
// kVectorsPerStep vectors per branch; the step that holds the first bad element is read again one by
// one to find it.
template <class E, class Breaks>
std::size_t firstBreaking(const E* values, std::size_t count, Breaks breaks) {
  std::size_t i = 0;
  if constexpr (std::is_floating_point_v<E>) {
    using Lanes = typename LanesOf<E>::type;
    constexpr std::size_t width = sizeof(Lanes) / sizeof(E);
    constexpr std::size_t step = kVectorsPerStep * width;
    const auto stepBreaks = [&]<std::size_t... V>(const E* at, std::index_sequence<V...>) {
      return (breaks(lanesAt<Lanes>(at + V * width)) | ...);
    };
    for (; i + step <= count; i += step) {
      if (anyLane(stepBreaks(values + i, std::make_index_sequence<kVectorsPerStep>()))) break;
    }
  }
  for (; i < count; ++i) {
    if (anyLane(breaks(values[i]))) return i;
  }
  return count;
}

// The index of the first pair of neighbours (a, b) for which breaks(a, b) holds, or the number of pairs.
template <class E, class Breaks>
std::size_t firstBreakingPair(const E* values, std::size_t count, Breaks breaks) {
  const std::size_t pairs = count < 2 ? 0 : count - 1;
  std::size_t i = 0;
  if constexpr (std::is_floating_point_v<E>) {
    using Lanes = typename LanesOf<E>::type;
    constexpr std::size_t width = sizeof(Lanes) / sizeof(E);
    constexpr std::size_t step = kVectorsPerStep * width;
    const auto stepBreaks = [&]<std::size_t... V>(const E* at, std::index_sequence<V...>) {
      return (breaks(lanesAt<Lanes>(at + V * width), lanesAt<Lanes>(at + V * width + 1)) | ...);
    };
    for (; i + step <= pairs; i += step) {
      if (anyLane(stepBreaks(values + i, std::make_index_sequence<kVectorsPerStep>()))) break;
    }
  }
  for (; i < pairs; ++i) {
    if (anyLane(breaks(values[i], values[i + 1]))) return i;
  }
  return pairs;
}

template <class E, class Breaks>
Failure valueLeafWhere(const E* values, std::size_t count, Breaks breaks) {
  return firstBreaking(values, count, breaks) < count ? Failure::valueLeaf : Failure::none;
}

template <class E, class Breaks>
Failure valueLeafBetween(const E* values, std::size_t count, Breaks breaks) {
  return firstBreakingPair(values, count, breaks) + 1 < count ? Failure::valueLeaf : Failure::none;
}

// The first element that is NaN or infinite decides the identifier.
template <class E>
Failure firstNonFinite(const E* values, std::size_t count) {
  if constexpr (std::is_floating_point_v<E>) {
    const std::size_t at = firstBreaking(values, count, [](auto x) { return isNonFinite(x); });
    if (at < count) return std::isnan(values[at]) ? Failure::notANumber : Failure::infinite;
  }
  return Failure::none;
}

template <class E>
Failure pairInOrder(const E* values, std::size_t count, bool finiteEnds) {
  if (count != 2) return Failure::valueLeaf;
  const E a = values[0];
  const E b = values[1];
  if (finiteEnds && (isNonFinite(a) || isNonFinite(b))) return Failure::valueLeaf;
  return a < b ? Failure::none : Failure::valueLeaf;  // false when either is NaN
}

template <class E>
Failure firstFailure(ValueRule rule, const E* values, std::size_t count) {
  switch (rule) {
    case noValueRule: return Failure::none;
    case unitIntervalSkippingNaN:
    case normalized:
      return valueLeafWhere(values, count, [](auto x) {
        using T = CompareAs<decltype(x)>;
        return (x < T(0)) | (x > T(1));
      });
    case unitInterval:
      return valueLeafWhere(values, count, [](auto x) {
        using T = CompareAs<decltype(x)>;
        return (x < T(0)) | (x > T(1)) | isNaNOf(x);
      });
    case finite: return firstNonFinite(values, count);
    // The range is tested over every element first, so NaN and infinities report the value identifier,
    // never NaN or Inf: no element outside [-1, 1] is left for the finite test.
    case unitNormal:
      return valueLeafWhere(values, count, [](auto x) {
        using T = CompareAs<decltype(x)>;
        return (x < T(-1)) | (x > T(1)) | isNaNOf(x);
      });
    case atLeastOneSkippingNaN:
      return valueLeafWhere(values, count, [](auto x) { return x < CompareAs<decltype(x)>(1); });
    case nonZero: return valueLeafWhere(values, count, [](auto x) { return x == CompareAs<decltype(x)>(0); });
    case equalOrIncreasing: return valueLeafBetween(values, count, [](auto a, auto b) { return b < a; });
    case increasingFinitePair: return pairInOrder(values, count, true);
    case increasingPair: return pairInOrder(values, count, false);
    case strictlyIncreasing:
      if (values == nullptr) return Failure::none;
      return valueLeafBetween(values, count, [](auto a, auto b) { return notStrictlyBefore(a, b); });
  }
  return Failure::none;
}

// The rule over an array's real elements in storage order; a sparse array is read in its full form.
Failure firstFailureOf(ValueRule rule, const zxArray* array) {
  if (rule == noValueRule) return Failure::none;
  gui_objects::ZxArrayPtr full;
  if (zxIsSparse(array)) {
    full.reset(zxMustBeFull(array));
    array = full.get();
  }
  Failure failure = Failure::none;
  zx::dispatchNumericOrLogical(zxGetClassID(array), [&](auto type) {
    using E = typename decltype(type)::type;
    failure = firstFailure(rule, static_cast<const E*>(zxGetData(array)), zxGetNumberOfElements(array));
  });
  return failure;
}

bool matches(int wanted, zxSize actual) { return wanted == kAnyExtent || actual == static_cast<zxSize>(wanted); }

bool fits(const ShapeRule& shape, const zxArray* array) {
  const zxSize ndim = zxGetNumberOfDimensions(array);
  const zxSize* dims = zxGetDimensions(array);
  switch (shape.kind) {
    case ShapeKind::matrix: return ndim == 2 && matches(shape.first, dims[0]) && matches(shape.second, dims[1]);
    case ShapeKind::threeD:
      return ndim == 3 && matches(shape.first, dims[0]) && matches(shape.second, dims[1]) &&
             matches(shape.third, dims[2]);
    case ShapeKind::vector: return zxIsVector(array);
    case ShapeKind::rowOrColumn:
      return (zxGetM(array) == 1 || zxGetN(array) == 1) && matches(shape.first, zxGetNumberOfElements(array));
  }
  return false;
}

}  // namespace

template <class E>
bool passesBufferRule(ValueRule rule, const E* values, std::size_t count) {
  return firstFailure(rule, values, count) == Failure::none;
}
template bool passesBufferRule(ValueRule, const double*, std::size_t);
template bool passesBufferRule(ValueRule, const float*, std::size_t);
template bool passesBufferRule(ValueRule, const std::int8_t*, std::size_t);
template bool passesBufferRule(ValueRule, const std::uint8_t*, std::size_t);
template bool passesBufferRule(ValueRule, const std::int16_t*, std::size_t);
template bool passesBufferRule(ValueRule, const std::uint16_t*, std::size_t);
template bool passesBufferRule(ValueRule, const std::int32_t*, std::size_t);
template bool passesBufferRule(ValueRule, const std::uint32_t*, std::size_t);
template bool passesBufferRule(ValueRule, const std::int64_t*, std::size_t);
template bool passesBufferRule(ValueRule, const std::uint64_t*, std::size_t);

bool checkPredicate(const Row& row, const PredicateRule& rule, const zxArray* array, boost::exception_ptr& failure) {
  namespace ids = Korvax::orb::shaped_arrays;
  if (array == nullptr) {
    failure = row.sizeFailure();
    return false;
  }
  if ((row.checks & sparseCheck) != 0 && zxIsSparse(array)) {
    failure = failureOf<ids::Sparse>(row.name);
    return false;
  }
  if ((row.checks & complexCheck) != 0 && zxIsComplex(array) && zxGetImagData(array) != nullptr) {
    failure = failureOf<ids::Complex>(row.name);
    return false;
  }
  const bool shapeFits = fits(rule.shape, array);
  if (!shapeFits) failure = row.sizeFailure();
  if ((rule.classes & classBit(zxGetClassID(array))) == 0) {
    failure = row.typeFailure();
    return false;
  }
  if (!shapeFits) return false;
  switch (firstFailureOf(rule.rule, array)) {
    case Failure::none: return true;
    case Failure::valueLeaf: failure = row.valueFailure(); break;
    case Failure::notANumber: failure = failureOf<ids::NaN>(row.name); break;
    case Failure::infinite: failure = failureOf<ids::Inf>(row.name); break;
  }
  return false;
}

bool checkPredicate(const Row& row, const PredicateRule& rule, const zxArray* array) {
  boost::exception_ptr ignored;
  return checkPredicate(row, rule, array, ignored);
}

bool acceptsAsEmpty(const Row& row, const zxArray* array) {
  return row.emptyShortcut && (array == nullptr || (zxGetM(array) == 0 && zxGetN(array) == 0));
}

void requireValid(const ArrayBase& value, const zxArray* array) {
  if (array == nullptr) return;
  boost::exception_ptr failure;
  if (!value.isValid(array, failure)) zxReThrowException(failure);
}

zxArray* arrayForValue(const ArrayBase* value, const Row& row) {
  const zxArray* held = value != nullptr ? value->getPtr() : nullptr;
  if (held == nullptr) return zxCreateNumericMatrix(0, 0, row.parseClass, zxREAL);
  const bool zeroByZero = zxGetNumberOfDimensions(held) == 2 && zxGetM(held) == 0 && zxGetN(held) == 0;
  if (zeroByZero && row.emptyForm.canonical) {
    return zxCreateNumericArray(3, row.emptyForm.dims, row.emptyForm.classID, zxREAL);
  }
  return value->getSharedDataCopy().release();
}

ParsedText parseText(const char* text, const Row& row) {
  namespace parse = gui_objects::convert_from_string_utils;
  if (text == nullptr) return {false, nullptr};
  try {
    zxSize rows = 0;
    zxSize columns = 0;
    parse::parse_array_dimensions(text, rows, columns);
    if (rows == 0 || columns == 0) return {true, nullptr};
    gui_objects::ZxArrayPtr array(parse::parse_mxn(text, rows, columns, row.parseClass));
    const bool produced = array != nullptr;
    return {produced, std::move(array)};
  } catch (const parse::ParseException&) {
    zxReThrowException(row.textFailure());
  }
}

}  // namespace graphics::datatype::shaped
