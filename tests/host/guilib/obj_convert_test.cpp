// Tests of converting 4-by-4 transforms and bounding volumes to and from host arrays.
#include "guilib/obj_convert.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <limits>
#include <utility>
#include <vector>

#include "guilib/array_exceptions.h"

namespace orb::objConvert {
namespace {

using gui_objects::Matrix4x4d;
using gui_objects::ZxArrayPtr;

TEST(ObjConvertTest, TransformsWriteA4By4DoubleInColumnMajorOrderThatReadsBack) {
  Matrix4x4d m;
  for (int row = 0; row < 4; ++row) {
    for (int col = 0; col < 4; ++col) m(row, col) = 10.0 * row + col + 0.25;
  }
  const ZxArrayPtr array = toZxArray(m);
  ASSERT_EQ(zxGetClassID(array.get()), zxDOUBLE_CLASS);
  ASSERT_EQ(zxGetM(array.get()), 4u);
  ASSERT_EQ(zxGetN(array.get()), 4u);
  const double* values = zxGetPr(array.get());
  for (int i = 0; i < 16; ++i) EXPECT_EQ(values[i], m(i % 4, i / 4)) << "storage index " << i;
  EXPECT_EQ(toMatrix4x4d(array.get()), m);
  // Every numeric class is read; the values themselves are read as readElementAsDouble reads them.
  for (int id = zxDOUBLE_CLASS; id <= zxUINT64_CLASS; ++id) {
    const ZxArrayPtr zeros(zxCreateNumericMatrix(4, 4, static_cast<zxClassID>(id), zxREAL));
    EXPECT_EQ(toMatrix4x4d(zeros.get())(3, 3), 0) << "class " << id;
  }
}

TEST(ObjConvertTest, BothRefuseNullOtherClassesAndOtherShapes) {
  EXPECT_THROW(toMatrix4x4d(nullptr), gui_objects::NullArrayException);
  EXPECT_THROW(toBoundingVolume(nullptr), gui_objects::NullArrayException);
  const ZxArrayPtr logical(zxCreateLogicalMatrix(2, 3));
  const ZxArrayPtr cell(zxCreateCellMatrix(4, 4));
  for (const zxArray* array : {logical.get(), cell.get()}) {
    EXPECT_THROW(toMatrix4x4d(array), gui_objects::InvalidArrayClassException) << zxGetClassName(array);
    EXPECT_THROW(toBoundingVolume(array), gui_objects::InvalidArrayClassException) << zxGetClassName(array);
  }
  for (const std::vector<zxSize>& dims :
       {std::vector<zxSize>{4, 3}, {1, 16}, {0, 0}, {4, 4, 2}, {3, 2}, {1, 6}, {2, 3, 2}}) {
    SCOPED_TRACE(testing::PrintToString(dims));
    const ZxArrayPtr array(zxCreateNumericArray(dims.size(), dims.data(), zxDOUBLE_CLASS, zxREAL));
    EXPECT_THROW(toMatrix4x4d(array.get()), gui_objects::InvalidArrayShapeException);
    EXPECT_THROW(toBoundingVolume(array.get()), gui_objects::InvalidArrayShapeException);
  }
  // A trailing singleton dimension is no dimension, and a complex array is read by its real part.
  const zxSize trailingSingleton[] = {4, 4, 1};
  const ZxArrayPtr square(zxCreateNumericArray(3, trailingSingleton, zxDOUBLE_CLASS, zxCOMPLEX));
  zxGetWritablePr(square.get())[5] = 8;
  zxGetWritablePi(square.get())[5] = 9;
  EXPECT_EQ(toMatrix4x4d(square.get())(1, 1), 8);
}

TEST(ObjConvertTest, BoundingVolumesReadBackFromA2By3ArrayOfMinimumsOverMaximums) {
  const gui_objects::BoundingVolume box({-1, -2, -3}, {1, 2, 3});
  const ZxArrayPtr array = toZxArray(box);
  ASSERT_EQ(zxGetM(array.get()), 2u);
  ASSERT_EQ(zxGetN(array.get()), 3u);
  const double storageOrder[] = {-1, 1, -2, 2, -3, 3};
  EXPECT_TRUE(std::equal(std::begin(storageOrder), std::end(storageOrder), zxGetPr(array.get())));
  EXPECT_EQ(toBoundingVolume(array.get()), box);

  const ZxArrayPtr int16(zxCreateNumericMatrix(2, 3, zxINT16_CLASS, zxREAL));
  static_cast<std::int16_t*>(zxGetWritableData(int16.get()))[5] = 300;
  EXPECT_EQ(toBoundingVolume(int16.get()), gui_objects::BoundingVolume({0, 0, 0}, {0, 0, 300}));
}

TEST(ObjConvertTest, BoundingVolumesRefuseAMinimumAboveItsMaximumOnAnyAxisButPassNaN) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  // Bounds in storage order (xmin, xmax, ymin, ymax, zmin, zmax), and whether they are accepted.
  // clang-format off
  const std::pair<std::array<double, 6>, bool> kCases[] = {
      {{0, 0, 0, 0, 0, 0}, true}, {{1, 0, 0, 1, 0, 1}, false}, {{0, 1, 1, 0, 0, 1}, false},
      {{nan, 0, 0, 1, 0, 1}, true}, {{0, 1, 0, 1, 0, -1e-300}, false}};
  // clang-format on
  for (const auto& [bounds, accepted] : kCases) {
    const ZxArrayPtr array(zxCreateDoubleMatrix(2, 3, zxREAL));
    std::copy(bounds.begin(), bounds.end(), zxGetWritablePr(array.get()));
    if (accepted) {
      EXPECT_NO_THROW(toBoundingVolume(array.get()));
    } else {
      EXPECT_THROW(toBoundingVolume(array.get()), gui_objects::InvalidArrayDataException);
    }
  }
}

}  // namespace
}  // namespace orb::objConvert
