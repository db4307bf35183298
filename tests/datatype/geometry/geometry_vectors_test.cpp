// Points, positions, rectangles, insets, boxes and 4-by-4 transforms: what arrays and texts give, the
// identifiers of refusals, and the round-off equalities.
#include "datatype/geometry/geometry_vectors.h"

#include <limits>
#include <string>

#include "../support.h"
#include "../user_view.h"
#include "datatype/geometry/bounding_volume.h"
#include "datatype/geometry/matrix4x4.h"
#include "guilib/auto_ptr.h"
#include "utillib/ut.h"

namespace {

using namespace graphics::datatype;
using objsys::COSValue;

class Geometry : public orbtest::DataTypeTest {};

struct Case {
  const char* type;
  const char* input;  // a host literal, or a text when text is set
  const char* seen;   // the array read back, " | " and the text; or "error: <identifier>"
  bool text = false;
};

constexpr const char* kP2Class = "error: Korvax:datatypes:Point2DataType:ArrayClass";
constexpr const char* kP2dData = "error: Korvax:datatypes:Point2dDataType:ArrayData";
constexpr const char* kExpected3 = "error: Korvax:orb:set_chck:Expected3ElementVector";
constexpr const char* kFinite3 = "error: Korvax:orb:set_chck:Matrix_to_3element_Vector_set_check_fcn:ExpectedFinite";
constexpr const char* kPositive3 = "error: Korvax:datatypes:PositivePoint3DataType:ExpectedFinitePositive";
constexpr const char* kNumeric4 = "error: Korvax:orb:dt_conv:Matrix_to_korvaxRect:ExpectedNumeric";
constexpr const char* kBadPosition = "error: Korvax:orb:PositionDataType:InvalidPositionException";
constexpr const char* kBadScreen = "error: Korvax:orb:PositionDataType:InvalidScreenPositionException";
constexpr const char* kCrossed = "error: Korvax:InsetDataType:RectangleCrossedPointsException";
constexpr const char* kBadInset = "error: Korvax:InsetDataType:InvalidInsetException";
constexpr const char* kBoxShape = "error: Korvax:datatypes:BoundingVolumeDataType:ArrayShape";
constexpr const char* kBoxWidth = "error: Korvax:datatypes:BoundingVolumeDataType:InvalidWidth";
constexpr const char* kBoxClass = "error: Korvax:datatypes:BoundingVolumeDataType:ArrayClass";
constexpr const char* kMatrixShape = "error: Korvax:datatypes:Matrix4x4DataType:ArrayShape";
constexpr const char* kCounting = "[1 2 3 4;5 6 7 8;9 10 11 12;13 14 15 16]";

// Texts are read as one matrix; points and boxes take it unchecked, rectangles and insets check it
// as they check arrays.
TEST_F(Geometry, ArraysOfAnyNumericClassInTheirShapeAndTexts) {
  const std::string counting = std::string(kCounting) + " | [1 2 3 4; 5 6 7 8; 9 10 11 12; 13 14 15 16]";
  // clang-format off
  const Case cases[] = {
      // Truncation toward zero, not rounding; unrepresentable numbers give INT32_MIN, unchecked.
      {"Point2", "[1.9 -1.9]", "[1 -1] | [1 -1]"},              {"Point2", "1.9 -1.9", "[1 -1] | [1 -1]", true},
      {"Point2", "[NaN 0]", "[-2147483648 0] | [-2147483648 0]"},
      {"Point2", "[2147483647.9 -2147483648.9]", "[2147483647 -2147483648] | [2147483647 -2147483648]"},
      {"Point2", "[2147483648 -2147483649]", "[-2147483648 -2147483648] | [-2147483648 -2147483648]"},
      // Written as decimal integers, whatever their size.
      {"Point2", "[1000000000 -100000]", "[1e+09 -1e+05] | [1000000000 -100000]"},
      {"Point2", "'ab'", kP2Class},                             {"Point2d", "[0.5; -2]", "[0.5 -2] | [0.5 -2]"},
      {"Point2d", "[NaN, Inf]", "[NaN Inf] | [NaN Inf]", true}, {"Point2d", "[Inf 0]", kP2dData},
      {"Point2d", "[0 NaN]", kP2dData},                         {"Point3", "1, 2, 3", "[1 2 3] | [1 2 3]", true},
      {"Point3", "reshape([1 2 3], 1, 1, 3)", "[1 2 3] | [1 2 3]"},
      {"Point3", "uint32([0 7 4294967295])", "[0 7 4294967295] | [0 7 4294967295]"},
      {"Point3", "complex([1 2 3], [4 5 6])", "[1 2 3] | [1 2 3]"},
      {"Point3", "'abc'", kExpected3},                          {"Point3", "1 2", kExpected3, true},
      {"Point3", "[1 NaN 1]", kFinite3},                        {"Point3", "[1 NaN 1]", "[1 NaN 1] | [1 NaN 1]", true},
      // Each element strictly positive and finite; the smallest positive number passes.
      {"PositivePoint3", "[4.9e-324 1 1]", "[5e-324 1 1] | [5e-324 1 1]"},
      {"PositivePoint3", "[1 1 -1e-300]", kPositive3},          {"PositivePoint3", "[1 NaN 1]", kPositive3},
      {"PositivePoint3", "[Inf 1 1]", kPositive3},              {"PositivePoint3", "0 0 0", "[0 0 0] | [0 0 0]", true},
      {"PositivePoint3", "1 2 3; 4 5 6", kExpected3, true},
      {"Position", "[-5; -5; 0; 0]", "[-5 -5 0 0] | [-5 -5 0 0]"},
      // The test is 0 > value, so NaN passes, deliberately.
      {"Position", "[0 0 NaN 1]", "[0 0 NaN 1] | [0 0 NaN 1]"},
      {"Position", "[0 0 1 -1e-300]", kBadPosition},            {"Position", "[0 0 -1 1]", kBadPosition, true},
      {"Position", "'abcd'", kNumeric4},
      // Whole pixels: truncated toward zero; each number finite and within 32 bits.
      {"ScreenPosition", "[10.7 -20.7 300 400]", "[10 -20 300 400] | [10 -20 300 400]"},
      {"ScreenPosition", "[2147483647 -2147483648 2147483647 0]",
          "[2147483647 -2147483648 2147483647 0] | [2147483647 -2147483648 2147483647 0]"},
      {"ScreenPosition", "[1.5 2 3 4]", "[1 2 3 4] | [1 2 3 4]", true},
      {"ScreenPosition", "[0 0 -0.5 1]", kBadScreen},           {"ScreenPosition", "[NaN 0 1 1]", kBadScreen},
      {"ScreenPosition", "[2147483648 0 1 1]", kBadScreen},     {"ScreenPosition", "0 0 -1 0", kBadScreen, true},
      {"Rectangle2", "[1 2 3 4]", "[1 2 3 4] | [1 2 3 4]"},
      {"Rectangle2", "[0 0 -1 0]", kCrossed},                   {"Rectangle2", "1 2 -3 4", kCrossed, true},
      // Margins in the order left, bottom, right, top; any numbers.
      {"Inset", "[1 2 3 4]", "[1 2 3 4] | [1 2 3 4]", true},
      {"Inset", "[-1 0 NaN Inf]", "[-1 0 NaN Inf] | [-1 0 NaN Inf]"}, {"Inset", "[1 2 3 4 5]", kBadInset, true},
      {"BoundingVolume", "1 1 1; 0 0 0", "[1 1 1;0 0 0] | [ 1 1 1 ; 0 0 0 ]", true},
      {"BoundingVolume", "int16([1 -5 0; 1 5 2])", "[1 -5 0;1 5 2] | [ 1 -5 0 ; 1 5 2 ]"},
      // The test is min > max, so NaN bounds pass, on purpose.
      {"BoundingVolume", "[NaN 0 0; 1 1 NaN]", "[NaN 0 0;1 1 NaN] | [ nan 0 0 ; 1 1 nan ]"},
      // The numbers of its text are the stream's: six significant digits.
      {"BoundingVolume", "[0 0 -Inf; 1 1 -Inf]", "[0 0 -Inf;1 1 -Inf] | [ 0 0 -inf ; 1 1 -inf ]"},
      {"BoundingVolume", "[-123456789 1e-7 0; 123456789 0.123456789 1e300]",
          "[-123456789 1e-07 0;123456789 0.123456789 1e+300] | [ -1.23457e+08 1e-07 0 ; 1.23457e+08 0.123457 1e+300 ]"},
      {"BoundingVolume", "[1 0 0; 0 1 1]", kBoxWidth},          {"BoundingVolume", "[0 1 0; 1 0 1]", kBoxWidth},
      {"BoundingVolume", "[0 0 1; 1 1 0]", kBoxWidth},          {"BoundingVolume", "[0 1 0 1 0 1]", kBoxShape},
      {"BoundingVolume", "[0 0; 0 1; 1 1]", kBoxShape},         {"BoundingVolume", "['abc'; 'def']", kBoxClass},
      {"Matrix4x4", kCounting, counting.c_str()},
      {"Matrix4x4", "int8([1 2 3 4;5 6 7 8;9 10 11 12;13 14 15 16])", counting.c_str()},
      {"Matrix4x4", "zeros(4, 4, 2)", kMatrixShape},            {"Matrix4x4", "1 0 0 0; 0 1 0 0; 0 0 1 0", kMatrixShape, true},
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.type) + (c.text ? " text \"" : " ") + c.input + (c.text ? "\"" : ""));
    EXPECT_EQ(c.text ? userview::parsing(c.type, c.input) : userview::setting(c.type, c.input), c.seen);
  }
}

TEST_F(Geometry, PositionsAndInsetsAreEqualWithinRoundoffRelativeToTheirMagnitude) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  const struct {
    Position a, b;
    bool equal;
  } pairs[] = {
      {{0, 0, 1, 1}, {0, 0, 1, 1 + 1e-13}, true},
      {{0, 0, 1, 1}, {0, 0, 1, 1.000001}, false},
      {{1e6, 0, 1, 1}, {1e6 + 1e-7, 0, 1, 1}, true},
      {{1e6, 0, 1, 1}, {1e6 + 1e-5, 0, 1, 1}, false},
      // Below a magnitude of 1 the difference itself is compared, strictly below 1e-12.
      {{0, 0, 0, 0}, {0.99e-12, 0, 0, 0}, true},
      {{0, 0, 0, 0}, {0, 1e-12, 0, 0}, false},
      {{0, 0, 0, 0}, {0, 0, 0, -1.01e-12}, false},
      {{0, 0, nan, 1}, {0, 0, nan, 1}, false},
      // Every component goes through the formula: |Inf - Inf| is NaN, so an infinity agrees with nothing.
      {{0, 0, inf, 1}, {0, 0, inf, 1}, false},
      {{-inf, 0, 1, 1}, {-inf, 0, 1, 1}, false},
      {{0, 0, 1, inf}, {0, 0, 1, 1e308}, false},
  };
  for (std::size_t i = 0; i < std::size(pairs); ++i) {
    EXPECT_EQ(equalWithinRoundoffError(pairs[i].a, pairs[i].b), pairs[i].equal) << "pair " << i;
    EXPECT_EQ(pairs[i].a == pairs[i].b, pairs[i].equal) << "pair " << i;
  }
  using gui_objects::Inset2d;
  const Inset2d base(1, 2, 3, 4);
  EXPECT_TRUE(equalWithinRoundoffError(base, Inset2d(1 + 1e-13, 2, 3, 4 - 1e-12)));
  for (const Inset2d& other :
       {Inset2d(1.001, 2, 3, 4), Inset2d(1, 2.001, 3, 4), Inset2d(1, 2, 3.001, 4), Inset2d(1, 2, 3, 4.001)}) {
    EXPECT_FALSE(equalWithinRoundoffError(base, other));
    EXPECT_FALSE(Inset(base) == Inset(other));
  }
  EXPECT_FALSE(Inset(Inset2d(0, 0, 0, nan)) == Inset(Inset2d(0, 0, 0, nan)));
}

TEST_F(Geometry, BoxesAreEqualByCenterAndWidths) {
  using Box = gui_objects::BoundingVolume;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const struct {
    Box a, b;
    bool equal;
  } pairs[] = {
      {{{0, 0, 0}, {1, 1, 1}}, {{0, 0, 0}, {1, 1, 1}}, true},
      {{{0, 0, 0}, {2, 2, 2}}, {{0, 0, 0}, {2, 2, 2.000001}}, false},
      // The same center, another width along one axis.
      {{{0, 0, 0}, {2, 2, 2}}, {{0, 0, -1}, {2, 2, 3}}, false},
      {{{nan, 0, 0}, {1, 1, 1}}, {{nan, 0, 0}, {1, 1, 1}}, false},
  };
  for (std::size_t i = 0; i < std::size(pairs); ++i) {
    EXPECT_EQ(BoundingVolume(pairs[i].a) == BoundingVolume(pairs[i].b), pairs[i].equal) << "pair " << i;
  }
}

TEST_F(Geometry, TransformsAreNearlyEqualAndNoArrayIsTheIdentity) {
  gui_objects::Matrix4x4d shifted;
  shifted(2, 3) = 1e-13;
  EXPECT_EQ(Matrix4x4(shifted), Matrix4x4());
  shifted(2, 3) = 1e-9;
  EXPECT_FALSE(Matrix4x4(shifted) == Matrix4x4());

  const COSValue identity = Matrix4x4MC().from(COSValue());
  ASSERT_FALSE(identity.isEmpty());
  EXPECT_TRUE(Matrix4x4DataType::getType()->isEqual(identity, Matrix4x4DataType::getType()->getDefaultValue()));
  Matrix4x4DataType::getType()->destroy(identity);
  const gui_objects::ZxArrayPtr readBack(Matrix4x4MC().to(COSValue()).as<zxArray>());
  EXPECT_EQ(cmdlang::writeLiteral(readBack.get()), "[1 0 0 0;0 1 0 0;0 0 1 0;0 0 0 1]");
  // A box's empty slot reads back as nothing at all.
  const gui_objects::ZxArrayPtr noBox(BoundingVolumeMC().to(COSValue()).as<zxArray>());
  EXPECT_EQ(cmdlang::writeLiteral(noBox.get()), "[]");
}

TEST_F(Geometry, AnAbsentPixelPointReadsAsTheOrigin) {
  const COSValue text = Point2SC().to(COSValue());
  ASSERT_FALSE(text.isEmpty());
  EXPECT_STREQ(text.as<const char>(), "[0 0]");
  utFree(text.pointer());
  EXPECT_TRUE(Point2dSC().to(COSValue()).isEmpty()) << "other points have no text for no value";
}

}  // namespace
