// Tests of converting 4-by-4 transforms to and from host arrays.
#include "guilib/obj_convert.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <utility>

#include "guilib/array_dispatch.h"
#include "guilib/array_exceptions.h"

namespace orb::objConvert {
namespace {

using gui_objects::Matrix4x4d;
using gui_objects::ZxArrayPtr;

TEST(ObjConvertTest, ToZxArrayWritesA4By4DoubleInColumnMajorOrderThatReadsBack) {
  Matrix4x4d m;
  for (int row = 0; row < 4; ++row) {
    for (int col = 0; col < 4; ++col) m(row, col) = 10.0 * row + col + 0.25;
  }
  const ZxArrayPtr array = toZxArray(m);
  ASSERT_NE(array, nullptr);
  EXPECT_EQ(zxGetClassID(array.get()), zxDOUBLE_CLASS);
  EXPECT_EQ(zxGetNumberOfDimensions(array.get()), 2u);
  EXPECT_EQ(zxGetM(array.get()), 4u);
  EXPECT_EQ(zxGetN(array.get()), 4u);
  const double* values = zxGetPr(array.get());
  for (int i = 0; i < 16; ++i) EXPECT_EQ(values[i], m(i % 4, i / 4)) << "storage index " << i;
  EXPECT_EQ(toMatrix4x4d(array.get()), m);
}

TEST(ObjConvertTest, ToMatrix4x4dReadsEveryNumericClass) {
  for (int id = zxDOUBLE_CLASS; id <= zxUINT64_CLASS; ++id) {
    const auto classID = static_cast<zxClassID>(id);
    SCOPED_TRACE(testing::Message() << "class " << id);
    const ZxArrayPtr array(zxCreateNumericMatrix(4, 4, classID, zxREAL));
    gui_objects::dispatchNumericOrLogical(classID, [&](auto type) {
      using T = typename decltype(type)::type;
      T* values = static_cast<T*>(zxGetWritableData(array.get()));
      for (int i = 0; i < 16; ++i) values[i] = static_cast<T>(3 * i + 1);
    });
    const Matrix4x4d m = toMatrix4x4d(array.get());
    for (int i = 0; i < 16; ++i) EXPECT_EQ(m(i % 4, i / 4), 3.0 * i + 1) << "storage index " << i;
  }
}

TEST(ObjConvertTest, ToMatrix4x4dRefusesNullOtherClassesAndOtherShapes) {
  EXPECT_THROW(toMatrix4x4d(nullptr), gui_objects::NullArrayException);
  const ZxArrayPtr logical(zxCreateLogicalMatrix(4, 4));
  const ZxArrayPtr cell(zxCreateCellMatrix(4, 4));
  const char* const rows[] = {"abcd", "abcd", "abcd", "abcd"};
  const ZxArrayPtr text(zxCreateCharMatrixFromStrings(4, rows));
  for (const zxArray* array : {logical.get(), cell.get(), text.get()}) {
    SCOPED_TRACE(zxGetClassName(array));
    EXPECT_THROW(toMatrix4x4d(array), gui_objects::InvalidArrayClassException);
  }

  struct Shape {
    zxSize ndim;
    zxSize dims[3];
  };
  static constexpr Shape kWrongShapes[] = {{2, {4, 3}}, {2, {3, 4}},    {2, {1, 16}},  {2, {16, 1}},
                                           {2, {0, 0}}, {3, {4, 2, 2}}, {3, {4, 4, 2}}};
  for (const Shape& shape : kWrongShapes) {
    SCOPED_TRACE(testing::Message() << shape.dims[0] << 'x' << shape.dims[1] << 'x' << shape.dims[2]);
    const ZxArrayPtr array(zxCreateNumericArray(shape.ndim, shape.dims, zxDOUBLE_CLASS, zxREAL));
    EXPECT_THROW(toMatrix4x4d(array.get()), gui_objects::InvalidArrayShapeException);
  }
  const zxSize trailingSingleton[] = {4, 4, 1};
  const ZxArrayPtr square(zxCreateNumericArray(3, trailingSingleton, zxDOUBLE_CLASS, zxCOMPLEX));
  zxGetWritablePr(square.get())[5] = 8;
  zxGetWritablePi(square.get())[5] = 9;
  const Matrix4x4d read = toMatrix4x4d(square.get());
  EXPECT_EQ(read(1, 1), 8);
  EXPECT_EQ(read(0, 0), 0);
}

TEST(ObjConvertTest, BoundingVolumesReadBackFromA2By3ArrayOfMinimumsOverMaximums) {
  const gui_objects::BoundingVolume box({-1, -2, -3}, {1, 2, 3});
  const ZxArrayPtr array = toZxArray(box);
  ASSERT_EQ(zxGetM(array.get()), 2u);
  ASSERT_EQ(zxGetN(array.get()), 3u);
  const double* values = zxGetPr(array.get());
  const double storageOrder[] = {-1, 1, -2, 2, -3, 3};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(values[i], storageOrder[i]) << "storage index " << i;
  EXPECT_EQ(toBoundingVolume(array.get()), box);

  const ZxArrayPtr int16(zxCreateNumericMatrix(2, 3, zxINT16_CLASS, zxREAL));
  static_cast<std::int16_t*>(zxGetWritableData(int16.get()))[5] = 300;
  EXPECT_EQ(toBoundingVolume(int16.get()), gui_objects::BoundingVolume({0, 0, 0}, {0, 0, 300}));
}

TEST(ObjConvertTest, BoundingVolumesRefuseAMinimumAboveItsMaximumOnAnyAxisButPassNaN) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  struct Case {
    double bounds[6];  // storage order: xmin, xmax, ymin, ymax, zmin, zmax
    bool accepted;
  };
  const Case cases[] = {
      {{0, 0, 0, 0, 0, 0}, true},        {{1, 0, 0, 1, 0, 1}, false},   {{0, 1, 1, 0, 0, 1}, false},
      {{0, 1, 0, 1, 1, 0}, false},       {{nan, 0, 0, 1, 0, 1}, true},  {{0, nan, 0, 1, nan, nan}, true},
      {{0, 1, 0, 1, 0, -1e-300}, false},
  };
  for (const Case& c : cases) {
    const ZxArrayPtr array(zxCreateDoubleMatrix(2, 3, zxREAL));
    std::copy(std::begin(c.bounds), std::end(c.bounds), zxGetWritablePr(array.get()));
    if (c.accepted) {
      EXPECT_NO_THROW(toBoundingVolume(array.get()));
    } else {
      EXPECT_THROW(toBoundingVolume(array.get()), gui_objects::InvalidArrayDataException);
    }
  }
  EXPECT_THROW(toBoundingVolume(nullptr), gui_objects::NullArrayException);
  const ZxArrayPtr logical(zxCreateLogicalMatrix(2, 3));
  EXPECT_THROW(toBoundingVolume(logical.get()), gui_objects::InvalidArrayClassException);
  for (const auto& [m, n] : {std::pair<zxSize, zxSize>{3, 2}, {1, 6}, {2, 4}, {0, 0}}) {
    const ZxArrayPtr array(zxCreateDoubleMatrix(m, n, zxREAL));
    EXPECT_THROW(toBoundingVolume(array.get()), gui_objects::InvalidArrayShapeException) << m << 'x' << n;
  }
}

}  // namespace
}  // namespace orb::objConvert
