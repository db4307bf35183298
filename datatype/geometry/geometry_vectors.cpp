// Points, positions, rectangles and insets: the layouts of the rows, the value classes and the one
// set of conversion rules.
#include "datatype/geometry/geometry_vectors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <type_traits>

#include "datatype/conversion_definitions.h"
#include "datatype/data_type_definitions.h"
#include "datatype/geometry/geometry_support.h"
#include "guilib/array_dispatch.h"
#include "guilib/convert_from_string_utils.h"
#include "utillib/ut.h"

namespace graphics::datatype {

namespace geometry {

template <std::size_t N>
using Numbers = std::array<double, N>;

// A layout gives kCount, kChecksText (whether text passes the checks that arrays pass), make (numbers
// to value, unchecked), numbersOf (value to numbers) and, where its row refuses numbers, accepts.

// Truncated toward zero by guilib's Point2d::asPoint2i: NaN, infinities and out-of-range numbers give
// INT32_MIN.
// Written as decimal integers, and an absent point as the origin.
struct TruncatedPoint2 {
  static constexpr std::size_t kCount = 2;
  static constexpr bool kChecksText = false;
  static gui_objects::Point2i make(const Numbers<2>& n) { return gui_objects::Point2d{n[0], n[1]}.asPoint2i(); }
  static Numbers<2> numbersOf(const gui_objects::Point2i& p) { return {double(p.x), double(p.y)}; }
  static std::string text(const gui_objects::Point2i& p) {
    return "[" + std::to_string(p.x) + " " + std::to_string(p.y) + "]";
  }
  static std::string noValueText() { return text({0, 0}); }
};

// Coordinates in order. Text is taken as parsed, unchecked, deliberately: only arrays are checked.
template <class Point, bool kPositive = false>
struct FinitePoint {
  static constexpr std::size_t kCount = sizeof(Point) / sizeof(double);
  static constexpr bool kChecksText = false;
  static bool accepts(const Numbers<kCount>& n) {
    return std::all_of(n.begin(), n.end(), [](double v) { return std::isfinite(v) && (!kPositive || v > 0.0); });
  }
  static Point make(const Numbers<kCount>& n) {
    if constexpr (kCount == 2) {
      return {n[0], n[1]};
    } else {
      return {n[0], n[1], n[2]};
    }
  }
  static Numbers<kCount> numbersOf(const Point& p) {
    if constexpr (kCount == 2) {
      return {p.x, p.y};
    } else {
      return {p.x, p.y, p.z};
    }
  }
};
// Zero is refused.
using PositivePoint = FinitePoint<gui_objects::Point3d, true>;

// [x y width height]. The size test is 0 > value, so a NaN width or height passes, deliberately.
bool sizeNotNegative(const Numbers<4>& n) { return !(0.0 > n[2]) && !(0.0 > n[3]); }

struct RealRectangle {
  static constexpr std::size_t kCount = 4;
  static constexpr bool kChecksText = true;
  static bool accepts(const Numbers<4>& n) { return sizeNotNegative(n); }
  static Position make(const Numbers<4>& n) { return Position(n[0], n[1], n[2], n[3]); }
  static Numbers<4> numbersOf(const Position& p) {
    const gui_objects::Rectangle2d& r = p.asRectangle2d();
    return {r.getXMin(), r.getYMin(), r.getWidth(), r.getHeight()};
  }
};

// Whether v is finite and truncates toward zero into 32 bits; the bounds are exact doubles.
bool isPixel(double v) { return v > -2147483649.0 && v < 2147483648.0; }

const gui_objects::Rectangle2i& rectangleOf(const ScreenPosition& p) { return p.asRectangle2i(); }
const gui_objects::Rectangle2i& rectangleOf(const gui_objects::Rectangle2i& r) { return r; }

// [x y width height] in whole pixels: each number finite, truncated toward zero as Point2 truncates,
// and within 32 bits; width and height not negative (tested before truncation, so -0.5 is refused).
template <class Value>
struct PixelRectangle {
  static constexpr std::size_t kCount = 4;
  static constexpr bool kChecksText = true;
  static bool accepts(const Numbers<4>& n) { return std::all_of(n.begin(), n.end(), isPixel) && sizeNotNegative(n); }
  static Value make(const Numbers<4>& n) {
    return Value(gui_objects::Rectangle2i::fromXYWH(static_cast<std::int32_t>(n[0]), static_cast<std::int32_t>(n[1]),
                                                    static_cast<std::int32_t>(n[2]), static_cast<std::int32_t>(n[3])));
  }
  static Numbers<4> numbersOf(const Value& value) {
    const gui_objects::Rectangle2i& r = rectangleOf(value);
    return {double(r.getXMin()), double(r.getYMin()), double(r.getWidth()), double(r.getHeight())};
  }
};

// [left bottom right top], the order of the host's inset properties; any numbers.
struct Margins {
  static constexpr std::size_t kCount = 4;
  static constexpr bool kChecksText = true;
  static Inset make(const Numbers<4>& n) { return Inset(gui_objects::Inset2d(n[0], n[2], n[1], n[3])); }
  static Numbers<4> numbersOf(const Inset& inset) {
    const gui_objects::Inset2d& m = inset.asInset2d();
    return {m.getXMin(), m.getYMin(), m.getXMax(), m.getYMax()};
  }
};

template <std::size_t N>
Numbers<N> parseRow(const char* text) {
  namespace parse = gui_objects::convert_from_string_utils;
  if constexpr (N == 2) {
    const gui_objects::Point2d p = parse::parse_1x2_double(text);
    return {p.x, p.y};
  } else if constexpr (N == 3) {
    const gui_objects::Point3d p = parse::parse_1x3_double(text);
    return {p.x, p.y, p.z};
  } else {
    static_assert(N == 4);
    const gui_objects::Point4d p = parse::parse_1x4_double(text);
    return {p.x, p.y, p.z, p.w};
  }
}

template <class DataType>
struct VectorRow;
#define ORB_GEOMETRY_VECTOR(Name, Value, Size, Facts, LayoutType, NullId, ClassId, ShapeId, DataId, ...) \
  template <>                                                                                            \
  struct VectorRow<Name##DataType> {                                                                     \
    using Layout = LayoutType;                                                                           \
    using Refusals = ArrayRefusals<NullId, ClassId, ShapeId, DataId>;                                    \
    static constexpr Numbers<Layout::kCount> kDefault{__VA_ARGS__};                                      \
  };
#include "datatype/geometry/geometry_vectors.def"

// One component agrees with another within round-off, relative to the larger magnitude (at least 1).
// Every component goes through the formula, so NaN and infinities agree with nothing, not even
// themselves: |Inf - Inf| is NaN.
bool agrees(double p, double q) {
  const double scale = std::max({std::fabs(p), std::fabs(q), 1.0});
  return std::fabs(p - q) / scale < 1e-12;
}

bool allAgree(const Numbers<4>& a, const Numbers<4>& b) { return std::equal(a.begin(), a.end(), b.begin(), agrees); }

}  // namespace geometry

bool equalWithinRoundoffError(const Position& a, const Position& b) {
  return geometry::allAgree(geometry::RealRectangle::numbersOf(a), geometry::RealRectangle::numbersOf(b));
}

bool equalWithinRoundoffError(const gui_objects::Inset2d& a, const gui_objects::Inset2d& b) {
  return geometry::allAgree({a.getXMin(), a.getXMax(), a.getYMin(), a.getYMax()},
                            {b.getXMin(), b.getXMax(), b.getYMin(), b.getYMax()});
}

bool Position::operator==(const Position& other) const { return equalWithinRoundoffError(*this, other); }

bool Inset::operator==(const Inset& other) const { return equalWithinRoundoffError(margins_, other.margins_); }

void* ScreenPosition::operator new(std::size_t size) { return allocateValueBlock(size); }

void ScreenPosition::operator delete(void* block) { utFree(block); }

template <class DataType>
struct VectorRules {
  using Value = typename DataType::ValueType;
  using Layout = typename geometry::VectorRow<DataType>::Layout;
  using Refusals = typename geometry::VectorRow<DataType>::Refusals;
  static constexpr std::size_t kCount = Layout::kCount;
  using Numbers = geometry::Numbers<kCount>;

  static Value checked(const Numbers& numbers) {
    if constexpr (!std::is_void_v<typename Refusals::Data>) {
      if (!Layout::accepts(numbers)) geometry::refuse<typename Refusals::Data>();
    }
    return Layout::make(numbers);
  }

  static Value fromArray(const zxArray& array) {
    Numbers numbers;
    geometry::readOrRefuse<Refusals>([&] { gui_objects::readNumericElements(&array, numbers.data(), kCount); });
    return checked(numbers);
  }
  static zxArray* toArray(const Value& value) {
    const Numbers numbers = Layout::numbersOf(value);
    zxArray* array = zxCreateDoubleMatrix(1, kCount, zxREAL);
    std::copy(numbers.begin(), numbers.end(), zxGetWritablePr(array));
    return array;
  }
  static zxArray* noValueArray() { return zxCreateDoubleMatrix(0, 0, zxREAL); }

  static Value fromText(const char* text) {
    const Numbers numbers =
        geometry::parseOrRefuse<typename Refusals::Shape>([&] { return geometry::parseRow<kCount>(text); });
    if constexpr (Layout::kChecksText) {
      return checked(numbers);
    } else {
      return Layout::make(numbers);
    }
  }
  static std::optional<std::string> toText(const Value& value) {
    if constexpr (requires { Layout::text(value); }) {
      return Layout::text(value);
    } else {
      return geometry::numbersText(Layout::numbersOf(value), kCount);
    }
  }
  static std::string noValueText() requires requires { Layout::noValueText(); }
  { return Layout::noValueText(); }
};

#define ORB_GEOMETRY_VECTOR(Name, Value, ...)        \
  Value Name##DataType::makeDefaultValue() {         \
    using Row = geometry::VectorRow<Name##DataType>; \
    return Row::Layout::make(Row::kDefault);         \
  }
#include "datatype/geometry/geometry_vectors.def"

}  // namespace graphics::datatype

#define ORB_GEOMETRY_VECTOR(Name, ...)                     \
  ORB_DEFINE_DATA_TYPE(graphics::datatype::Name##DataType) \
  ORB_DEFINE_CONVERSIONS(graphics::datatype::VectorRules<graphics::datatype::Name##DataType>)
#include "datatype/geometry/geometry_vectors.def"
