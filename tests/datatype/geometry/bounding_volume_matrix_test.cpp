// BoundingVolume and Matrix4x4: arrays and texts, refusals per axis and class, and their equalities.
#include "datatype/geometry/bounding_volume.h"
#include "datatype/geometry/matrix4x4.h"

#include <limits>
#include <string>

#include "geometry_cases.h"
#include "../support.h"
#include "guilib/auto_ptr.h"

namespace {

using namespace graphics::datatype;
using userview::parsing;
using userview::setting;
using geometrytest::Case;
using objsys::COSValue;

class BoxesAndTransforms : public orbtest::DataTypeTest {};

constexpr const char* kBoxShape = "error: Korvax:datatypes:BoundingVolumeDataType:ArrayShape";
constexpr const char* kBoxWidth = "error: Korvax:datatypes:BoundingVolumeDataType:InvalidWidth";
constexpr const char* kBoxClass = "error: Korvax:datatypes:BoundingVolumeDataType:ArrayClass";
constexpr const char* kMatrixShape = "error: Korvax:datatypes:Matrix4x4DataType:ArrayShape";
constexpr const char* kMatrixClass = "error: Korvax:datatypes:Matrix4x4DataType:ArrayClass";
constexpr const char* kCounting = "[1 2 3 4;5 6 7 8;9 10 11 12;13 14 15 16]";

TEST_F(BoxesAndTransforms, ArraysOfAnyNumericClassInTheirOneShape) {
  const std::string counting = std::string(kCounting) + " | [1 2 3 4; 5 6 7 8; 9 10 11 12; 13 14 15 16]";
  // clang-format off
  const Case cases[] = {
      {"BoundingVolume", "[0 0 0; 1 1 1]", "[0 0 0;1 1 1] | [ 0 0 0 ; 1 1 1 ]"},
      {"BoundingVolume", "[-1 -2 -3; 1 2 3]", "[-1 -2 -3;1 2 3] | [ -1 -2 -3 ; 1 2 3 ]"},
      {"BoundingVolume", "[1 1 1; 1 1 1]", "[1 1 1;1 1 1] | [ 1 1 1 ; 1 1 1 ]"},
      {"BoundingVolume", "int16([0 -5 0; 1 5 2])", "[0 -5 0;1 5 2] | [ 0 -5 0 ; 1 5 2 ]"},
      {"BoundingVolume", "zeros(2, 3, 'uint64')", "[0 0 0;0 0 0] | [ 0 0 0 ; 0 0 0 ]"},
      {"BoundingVolume", "single([0 0 0; 0.5 0.5 0.5])", "[0 0 0;0.5 0.5 0.5] | [ 0 0 0 ; 0.5 0.5 0.5 ]"},
      // The test is min > max, so NaN bounds pass, on purpose.
      {"BoundingVolume", "[NaN 0 0; 1 1 NaN]", "[NaN 0 0;1 1 NaN] | [ NaN 0 0 ; 1 1 NaN ]"},
      {"BoundingVolume", "[1 0 0; 0 1 1]", kBoxWidth},
      {"BoundingVolume", "[0 1 0; 1 0 1]", kBoxWidth},
      {"BoundingVolume", "[0 0 1; 1 1 0]", kBoxWidth},
      {"BoundingVolume", "[0 0 -Inf; 1 1 -Inf]", "[0 0 -Inf;1 1 -Inf] | [ 0 0 -Inf ; 1 1 -Inf ]"},
      {"BoundingVolume", "[0 0 Inf; 1 1 -Inf]", kBoxWidth},
      {"BoundingVolume", "[0 1 0 1 0 1]", kBoxShape},
      {"BoundingVolume", "[0 0; 0 1; 1 1]", kBoxShape},
      {"BoundingVolume", "zeros(2, 3, 2)", kBoxShape},
      {"BoundingVolume", "[]", kBoxShape},
      {"BoundingVolume", "['abc'; 'def']", kBoxClass},
      {"BoundingVolume", "logical([0 0 0; 1 1 1])", kBoxClass},
      {"BoundingVolume", "{0, 0, 0; 1, 1, 1}", kBoxClass},
      {"Matrix4x4", kCounting, counting.c_str()},
      {"Matrix4x4", "int8([1 2 3 4;5 6 7 8;9 10 11 12;13 14 15 16])", counting.c_str()},
      {"Matrix4x4", "[1 2 3 4]", kMatrixShape},
      {"Matrix4x4", "zeros(4, 4, 2)", kMatrixShape},
      {"Matrix4x4", "[]", kMatrixShape},
      {"Matrix4x4", "logical(zeros(4))", kMatrixClass},
      {"Matrix4x4", "cell(4, 4)", kMatrixClass},
  };
  // clang-format on
  geometrytest::expectSettings(cases);
}

TEST_F(BoxesAndTransforms, TextsReadTheirMatrixAndBoxCornersAreTakenUnchecked) {
  // clang-format off
  const Case cases[] = {
      {"BoundingVolume", "[ 0 0 0 ; 1 1 1 ]", "[0 0 0;1 1 1] | [ 0 0 0 ; 1 1 1 ]"},
      {"BoundingVolume", "1 1 1; 0 0 0", "[1 1 1;0 0 0] | [ 1 1 1 ; 0 0 0 ]"},
      {"BoundingVolume", "[0 0 0]", kBoxShape},
      {"BoundingVolume", "box", kBoxShape},
      {"Matrix4x4", "1 0 0 0; 0 1 0 0; 0 0 1 0; 0 0 0.5 1",
          "[1 0 0 0;0 1 0 0;0 0 1 0;0 0 0.5 1] | [1 0 0 0; 0 1 0 0; 0 0 1 0; 0 0 0.5 1]"},
      {"Matrix4x4", "1 0 0 0; 0 1 0 0; 0 0 1 0", kMatrixShape},
  };
  // clang-format on
  geometrytest::expectParsings(cases);
}

TEST_F(BoxesAndTransforms, BoxesAreEqualByCenterAndWidths) {
  using Box = gui_objects::BoundingVolume;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  struct Pair {
    Box a;
    Box b;
    bool equal;
  };
  const Pair pairs[] = {
      {{{0, 0, 0}, {1, 1, 1}}, {{0, 0, 0}, {1, 1, 1}}, true},
      {{{0, 0, 0}, {2, 2, 2}}, {{0, 0, 0}, {2, 2, 2.000001}}, false},
      // The same center, another width along one axis.
      {{{0, 0, 0}, {2, 2, 2}}, {{0, 0, -1}, {2, 2, 3}}, false},
      {{{0, 0, 0}, {2, 2, 2}}, {{1, 0, 0}, {3, 2, 2}}, false},
      {{{nan, 0, 0}, {1, 1, 1}}, {{nan, 0, 0}, {1, 1, 1}}, false},
  };
  for (const Pair& p : pairs) EXPECT_EQ(BoundingVolume(p.a) == BoundingVolume(p.b), p.equal);
  // Made from an array or from text, the unit box is the same value.
  EXPECT_EQ(setting("BoundingVolume", "[0 0 0; 1 1 1]"), parsing("BoundingVolume", "0 0 0; 1 1 1"));
}

TEST_F(BoxesAndTransforms, TransformsAreNearlyEqualAndNoArrayIsTheIdentity) {
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

}  // namespace
