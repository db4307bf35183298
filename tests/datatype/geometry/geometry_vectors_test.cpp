// Points, positions, rectangles and insets: what arrays and texts give, the identifiers of refusals,
// and the round-off equality of positions and insets.
#include "datatype/geometry/geometry_vectors.h"

#include <limits>
#include <string>

#include "geometry_cases.h"
#include "../support.h"

namespace {

using namespace graphics::datatype;
using geometrytest::Case;

class GeometryVectors : public orbtest::DataTypeTest {};

constexpr const char* kP2Shape = "error: Korvax:datatypes:Point2DataType:ArrayShape";
constexpr const char* kP2dData = "error: Korvax:datatypes:Point2dDataType:ArrayData";
constexpr const char* kExpected3 = "error: Korvax:orb:set_chck:Expected3ElementVector";
constexpr const char* kFinite3 = "error: Korvax:orb:set_chck:Matrix_to_3element_Vector_set_check_fcn:ExpectedFinite";
constexpr const char* kPositive3 = "error: Korvax:datatypes:PositivePoint3DataType:ExpectedFinitePositive";
constexpr const char* kExpected4 = "error: Korvax:orb:dt_conv:Matrix_to_korvaxRect:Expected4ElementVector";
constexpr const char* kNumeric4 = "error: Korvax:orb:dt_conv:Matrix_to_korvaxRect:ExpectedNumeric";
constexpr const char* kBadPosition = "error: Korvax:orb:PositionDataType:InvalidPositionException";
constexpr const char* kBadScreen = "error: Korvax:orb:PositionDataType:InvalidScreenPositionException";
constexpr const char* kCrossed = "error: Korvax:InsetDataType:RectangleCrossedPointsException";
constexpr const char* kBadInset = "error: Korvax:InsetDataType:InvalidInsetException";

TEST_F(GeometryVectors, PointArraysOfAnyNumericClassAndShape) {
  // clang-format off
  const Case cases[] = {
      // Truncation toward zero, not rounding; unrepresentable numbers give INT32_MIN, unchecked.
      {"Point2", "[1.9 -1.9]", "[1 -1] | [1 -1]"},
      {"Point2", "[NaN 0]", "[-2147483648 0] | [-2147483648 0]"},
      {"Point2", "[Inf -Inf]", "[-2147483648 -2147483648] | [-2147483648 -2147483648]"},
      {"Point2", "[2147483647.9 -2147483648.9]", "[2147483647 -2147483648] | [2147483647 -2147483648]"},
      {"Point2", "[2147483648 -2147483649]", "[-2147483648 -2147483648] | [-2147483648 -2147483648]"},
      {"Point2", "int8([-128 127])", "[-128 127] | [-128 127]"},
      {"Point2", "uint64([5; 6])", "[5 6] | [5 6]"},
      {"Point2", "single([1.5 -2.5])", "[1 -2] | [1 -2]"},
      {"Point2", "[1 2 3]", kP2Shape},
      {"Point2", "[]", "error: Korvax:datatypes:Point2DataType:ArrayNull"},
      {"Point2", "'ab'", "error: Korvax:datatypes:Point2DataType:ArrayClass"},
      {"Point2", "[true false]", "error: Korvax:datatypes:Point2DataType:ArrayClass"},
      {"Point2", "{1, 2}", "error: Korvax:datatypes:Point2DataType:ArrayClass"},
      {"Point2d", "[0.5; -2]", "[0.5 -2] | [0.5 -2]"},
      {"Point2d", "int16([-3 4])", "[-3 4] | [-3 4]"},
      {"Point2d", "[Inf 0]", kP2dData},
      {"Point2d", "[0 -Inf]", kP2dData},
      {"Point2d", "[0 NaN]", kP2dData},
      {"Point2d", "zeros(0, 2)", "error: Korvax:datatypes:Point2dDataType:ArrayNull"},
      {"Point2d", "[1 2 3]", "error: Korvax:datatypes:Point2dDataType:ArrayShape"},
      {"Point2d", "'xy'", "error: Korvax:datatypes:Point2dDataType:ArrayClass"},
      {"Point3", "[1 2 3]", "[1 2 3] | [1 2 3]"},
      {"Point3", "[1; 2; 3]", "[1 2 3] | [1 2 3]"},
      {"Point3", "reshape([1 2 3], 1, 1, 3)", "[1 2 3] | [1 2 3]"},
      {"Point3", "uint32([0 7 4294967295])", "[0 7 4294967295] | [0 7 4294967295]"},
      {"Point3", "complex([1 2 3], [4 5 6])", "[1 2 3] | [1 2 3]"},
      {"Point3", "sparse([0 2 0])", "[0 2 0] | [0 2 0]"},
      {"Point3", "[1 2 3 4]", kExpected3},
      {"Point3", "'abc'", kExpected3},
      {"Point3", "[1 NaN 1]", kFinite3},
      {"Point3", "[1 1 -Inf]", kFinite3},
      {"Point3", "[]", "error: Korvax:datatypes:Point3DataType:ArrayNull"},
      // Each element strictly positive and finite; the smallest positive number passes.
      {"PositivePoint3", "uint8([1 2 3])", "[1 2 3] | [1 2 3]"},
      {"PositivePoint3", "[4.9e-324 1 1]", "[5e-324 1 1] | [5e-324 1 1]"},
      {"PositivePoint3", "[1 0 1]", kPositive3},
      {"PositivePoint3", "[1 1 -1e-300]", kPositive3},
      {"PositivePoint3", "[-1 1 1]", kPositive3},
      {"PositivePoint3", "[1 NaN 1]", kPositive3},
      {"PositivePoint3", "[Inf 1 1]", kPositive3},
      {"PositivePoint3", "[1 2 3 4]", kExpected3},
      {"PositivePoint3", "[]", "error: Korvax:datatypes:Point3DataType:ArrayNull"},
  };
  // clang-format on
  geometrytest::expectSettings(cases);
}

TEST_F(GeometryVectors, RectangleArraysCheckTheirWidthAndHeight) {
  // clang-format off
  const Case cases[] = {
      {"Position", "[0.25 0.5 0.5 0.25]", "[0.25 0.5 0.5 0.25] | [0.25 0.5 0.5 0.25]"},
      {"Position", "[0 0 0 0]", "[0 0 0 0] | [0 0 0 0]"},
      {"Position", "[-5; -5; 1; 1]", "[-5 -5 1 1] | [-5 -5 1 1]"},
      {"Position", "int8([1 2 3 4])", "[1 2 3 4] | [1 2 3 4]"},
      {"Position", "sparse([0 0 1 1])", "[0 0 1 1] | [0 0 1 1]"},
      // The test is 0 > value, so NaN passes, deliberately.
      {"Position", "[0 0 NaN 1]", "[0 0 NaN 1] | [0 0 NaN 1]"},
      {"Position", "[0 0 -1 1]", kBadPosition},
      {"Position", "[0 0 1 -1e-300]", kBadPosition},
      {"Position", "[0 0 1 -Inf]", kBadPosition},
      {"Position", "[1 2 3]", kExpected4},
      {"Position", "[]", kExpected4},
      {"Position", "'abcd'", kNumeric4},
      {"Position", "[true true true true]", kNumeric4},
      {"Position", "{1, 2, 3, 4}", kNumeric4},
      // Whole pixels: truncated toward zero; each number finite and within 32 bits.
      {"ScreenPosition", "[10.7 -20.7 300 400]", "[10 -20 300 400] | [10 -20 300 400]"},
      {"ScreenPosition", "[2147483647 -2147483648 2147483647 0]",
          "[2147483647 -2147483648 2147483647 0] | [2147483647 -2147483648 2147483647 0]"},
      {"ScreenPosition", "uint64([1 2 3 4])", "[1 2 3 4] | [1 2 3 4]"},
      {"ScreenPosition", "[0 0 -0.5 1]", kBadScreen},
      {"ScreenPosition", "int64([1 2 3 -4])", kBadScreen},
      {"ScreenPosition", "[NaN 0 1 1]", kBadScreen},
      {"ScreenPosition", "[0 0 Inf 1]", kBadScreen},
      {"ScreenPosition", "[2147483648 0 1 1]", kBadScreen},
      {"ScreenPosition", "[0 -2147483649 1 1]", kBadScreen},
      {"ScreenPosition", "[1 2 3]", kExpected4},
      {"ScreenPosition", "'abcd'", kNumeric4},
      {"Rectangle2", "[1 2 3 4]", "[1 2 3 4] | [1 2 3 4]"},
      {"Rectangle2", "[0 0 -1 0]", kCrossed},
      {"Rectangle2", "[0 0 0 -1]", kCrossed},
      {"Rectangle2", "[1 2]", "error: Korvax:datatypes:Rectangle2DataType:ArrayShape"},
      {"Rectangle2", "[]", "error: Korvax:datatypes:Rectangle2DataType:ArrayNull"},
      {"Rectangle2", "{1, 2, 3, 4}", "error: Korvax:datatypes:Rectangle2DataType:ArrayClass"},
      // Margins in the order left, bottom, right, top; any numbers.
      {"Inset", "[1 2 3 4]", "[1 2 3 4] | [1 2 3 4]"},
      {"Inset", "[-1 0 NaN Inf]", "[-1 0 NaN Inf] | [-1 0 NaN Inf]"},
      {"Inset", "[1 2 3]", kBadInset},
      {"Inset", "'abcd'", kBadInset},
      {"Inset", "[]", "error: Korvax:datatypes:InsetDataType:ArrayNull"},
  };
  // clang-format on
  geometrytest::expectSettings(cases);
}

TEST_F(GeometryVectors, TextsReadOneRowAndPointsTakeItUnchecked) {
  // clang-format off
  const Case cases[] = {
      {"Point2", "1.9 -1.9", "[1 -1] | [1 -1]"},
      {"Point2", "[1 2 3]", kP2Shape},
      {"Point2", "one two", kP2Shape},
      {"Point2d", "[NaN, Inf]", "[NaN Inf] | [NaN Inf]"},
      {"Point3", "1, 2, 3", "[1 2 3] | [1 2 3]"},
      {"Point3", "1 2", kExpected3},
      {"Point3", "[1 NaN 1]", "[1 NaN 1] | [1 NaN 1]"},
      {"PositivePoint3", "0 0 0", "[0 0 0] | [0 0 0]"},
      {"PositivePoint3", "1 2 3; 4 5 6", kExpected3},
      // Rectangles and insets pass the same checks as their arrays.
      {"Position", "0.1 0.1 0.8 0.8", "[0.1 0.1 0.8 0.8] | [0.1 0.1 0.8 0.8]"},
      {"Position", "[0 0 -1 1]", kBadPosition},
      {"Position", "1 2 3", kExpected4},
      {"Position", "", kExpected4},
      {"ScreenPosition", "[1.5 2 3 4]", "[1 2 3 4] | [1 2 3 4]"},
      {"ScreenPosition", "0 0 -1 0", kBadScreen},
      {"ScreenPosition", "0 0 1", kExpected4},
      {"Rectangle2", "1 2 3", "error: Korvax:datatypes:Rectangle2DataType:ArrayShape"},
      {"Rectangle2", "1 2 -3 4", kCrossed},
      {"Inset", "[1 2 3 4]", "[1 2 3 4] | [1 2 3 4]"},
      {"Inset", "[1 2 3 4 5]", kBadInset},
  };
  // clang-format on
  geometrytest::expectParsings(cases);
}

TEST_F(GeometryVectors, PositionsAreEqualWithinRoundoffRelativeToTheirMagnitude) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  struct Pair {
    Position a;
    Position b;
    bool equal;
  };
  const Pair pairs[] = {
      {{0, 0, 1, 1}, {0, 0, 1, 1 + 1e-13}, true},
      {{0, 0, 1, 1}, {0, 0, 1, 1.000001}, false},
      {{1e6, 0, 1, 1}, {1e6 + 1e-7, 0, 1, 1}, true},
      {{1e6, 0, 1, 1}, {1e6 + 1e-5, 0, 1, 1}, false},
      // Below a magnitude of 1 the difference itself is compared, strictly below 1e-12.
      {{0, 0, 0, 0}, {0.99e-12, 0, 0, 0}, true},
      {{0, 0, 0, 0}, {0, 1e-12, 0, 0}, false},
      {{0, 0, 0, 0}, {0, 0, 1.01e-12, 0}, false},
      {{0, 0, 0, 0}, {0, 0, 0, -1.01e-12}, false},
      {{0, 0, nan, 1}, {0, 0, nan, 1}, false},
      // An infinite size agrees with itself (its difference would be NaN).
      {{0, 0, inf, 1}, {0, 0, inf, 1}, true},
      {{0, 0, 1, inf}, {0, 0, 1, 1e308}, false},
  };
  for (const Pair& p : pairs) {
    SCOPED_TRACE(testing::Message() << "x " << p.b.asRectangle2d().getXMin() << " y " << p.b.asRectangle2d().getYMin()
                                    << " w " << p.b.asRectangle2d().getWidth() << " h " << p.b.asRectangle2d().getHeight());
    EXPECT_EQ(equalWithinRoundoffError(p.a, p.b), p.equal);
    EXPECT_EQ(p.a == p.b, p.equal);
  }
  // The data type compares through the same rule.
  const objsys::COSValue a = PositionDataType::getType()->copy(PositionDataType::getType()->getDefaultValue());
  EXPECT_TRUE(PositionDataType::getType()->isEqual(a, PositionDataType::getType()->getDefaultValue()));
  PositionDataType::getType()->destroy(a);
}

TEST_F(GeometryVectors, InsetsCompareEveryMarginWithinRoundoff) {
  using gui_objects::Inset2d;
  const Inset2d base(1, 2, 3, 4);
  EXPECT_TRUE(equalWithinRoundoffError(base, Inset2d(1 + 1e-13, 2, 3, 4 - 1e-12)));
  const Inset2d changed[] = {{1.001, 2, 3, 4}, {1, 2.001, 3, 4}, {1, 2, 3.001, 4}, {1, 2, 3, 4.001}};
  for (const Inset2d& other : changed) {
    EXPECT_FALSE(equalWithinRoundoffError(base, other));
    EXPECT_FALSE(Inset(base) == Inset(other));
  }
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(Inset(Inset2d(0, 0, 0, nan)) == Inset(Inset2d(0, 0, 0, nan)));
}

TEST_F(GeometryVectors, DefaultsAreTheUnitPositionOnesAndZeros) {
  EXPECT_EQ(*PositionDataType::getType()->getDefaultValue().as<const Position>(), Position(0, 0, 1, 1));
  EXPECT_EQ(*PositivePoint3DataType::getType()->getDefaultValue().as<const gui_objects::Point3d>(),
            (gui_objects::Point3d{1, 1, 1}));
  EXPECT_EQ(*ScreenPositionDataType::getType()->getDefaultValue().as<const ScreenPosition>(), ScreenPosition());
  EXPECT_EQ(*Point2DataType::getType()->getDefaultValue().as<const gui_objects::Point2i>(), gui_objects::Point2i());
}

}  // namespace
