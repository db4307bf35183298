// Tests of the value types' conversions, corner arithmetic and tolerance comparison, and of converting
// 4-by-4 transforms and bounding volumes to and from host arrays.
#include "guilib/value_types.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <tuple>
#include <utility>
#include <vector>

#include "guilib/array_exceptions.h"
#include "guilib/obj_convert.h"

namespace gui_objects {
namespace {

using namespace orb::objConvert;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kMax = std::numeric_limits<double>::max();
constexpr std::int32_t kIntMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kIntMax = std::numeric_limits<std::int32_t>::max();

TEST(Color4dTest, AsColor4bClampsScalesAndRoundsEachChannel) {
  const std::pair<double, std::uint8_t> kCases[] = {{1.0, 255},     {0.5, 128},         {0.4 / 255, 0},
                                                    {0.6 / 255, 1}, {254.6 / 255, 255}, {-0.1, 0},
                                                    {1.5, 255},     {kInf, 255},        {kNaN, 0}};
  for (const auto& [intensity, byte] : kCases) {
    SCOPED_TRACE(testing::Message() << "intensity " << intensity);
    // Each channel takes the value in turn while the others hold markers, so swapped channels show.
    EXPECT_EQ((Color4d{intensity, 0, 1, 0}.asColor4b()), (Color4b{byte, 0, 255, 0}));
    EXPECT_EQ((Color4d{0, intensity, 1, 0}.asColor4b()), (Color4b{0, byte, 255, 0}));
    EXPECT_EQ((Color4d{0, 1, intensity, 0}.asColor4b()), (Color4b{0, 255, byte, 0}));
    EXPECT_EQ((Color4d{1, 0, 0, intensity}.asColor4b()), (Color4b{255, 0, 0, byte}));
  }
}

TEST(Point2dTest, AsPoint2iTruncatesTowardZeroAndMapsTheUnrepresentableToIntMin) {
  const std::pair<double, std::int32_t> kCases[] = {
      {1.9, 1},       {-1.9, -1}, {2147483647.9, kIntMax}, {-2147483648.9, kIntMin}, {2147483648.0, kIntMin},
      {kNaN, kIntMin}};
  for (const auto& [value, expected] : kCases) {
    SCOPED_TRACE(testing::Message() << "value " << value);
    EXPECT_EQ((Point2d{value, 7.5}.asPoint2i()), (Point2i{expected, 7}));
    EXPECT_EQ((Point2d{-7.5, value}.asPoint2i()), (Point2i{-7, expected}));
  }
}

TEST(Rectangle2iTest, SizesWrapSoTheyReadBackAsGiven) {
  for (const auto& [x, y, width, height] : std::initializer_list<std::array<std::int32_t, 4>>{
           {kIntMax, kIntMax, 10, 1}, {kIntMin, 0, -1, kIntMax}, {-5, kIntMin, kIntMin, 3}}) {
    SCOPED_TRACE(testing::Message() << x << ' ' << y << ' ' << width << ' ' << height);
    const Rectangle2i pixels = Rectangle2i::fromXYWH(x, y, width, height);
    EXPECT_EQ(pixels.getMin(), (Point2i{x, y}));
    EXPECT_EQ(pixels.getWidth(), width);
    EXPECT_EQ(pixels.getHeight(), height);
  }
}

TEST(BoundingVolumeTest, CenterIsTheMidpointPerAxisWithoutOverflow) {
  EXPECT_EQ(BoundingVolume({-1, 2, 10}, {3, 3, 14}).getCenter(), (Point3d{1, 2.5, 12}));
  EXPECT_EQ(BoundingVolume({kMax / 2, -kMax, kMax}, {kMax, kMax, kMax}).getCenter(), (Point3d{kMax * 0.75, 0, kMax}));
}

TEST(Matrix4x4dTest, NearlyEqualUsesARelativeToleranceOfOneInATrillion) {
  const std::tuple<double, double, bool> kCases[] = {
      {1, 1 + 1e-13, true}, {1, 1 + 1e-11, false},    {0, 9e-13, true},
      {0, 2e-12, false},    {1e6, 1e6 + 1e-5, false}, {-1e20, -1e20 * (1 + 1e-13), true},
      {kInf, kInf, true},   {kInf, kMax, false},      {kNaN, kNaN, false}};
  for (const auto& [a, b, equal] : kCases) {
    SCOPED_TRACE(testing::Message() << a << " vs " << b);
    Matrix4x4d lhs, rhs;
    lhs(3, 2) = a;
    rhs(3, 2) = b;
    EXPECT_EQ(nearlyEqual(lhs, rhs), equal);
    EXPECT_EQ(nearlyEqual(rhs, lhs), equal);
  }
}

// Both write doubles in column-major order: a transform as 4-by-4, a volume as minimums over maximums.
TEST(ObjConvertTest, WriteDoublesInColumnMajorOrderThatReadBack) {
  Matrix4x4d m;
  for (int i = 0; i < 16; ++i) m(i / 4, i % 4) = 10.0 * (i / 4) + i % 4 + 0.25;
  const ZxArrayPtr array = toZxArray(m);
  ASSERT_EQ(zxGetClassID(array.get()), zxDOUBLE_CLASS);
  ASSERT_EQ((std::pair(zxGetM(array.get()), zxGetN(array.get()))), (std::pair<zxSize, zxSize>(4, 4)));
  for (int i = 0; i < 16; ++i) EXPECT_EQ(zxGetPr(array.get())[i], m(i % 4, i / 4)) << "storage index " << i;
  EXPECT_EQ(toMatrix4x4d(array.get()), m);

  const BoundingVolume box({-1, -2, -3}, {1, 2, 3});
  const ZxArrayPtr boxArray = toZxArray(box);
  ASSERT_EQ((std::pair(zxGetM(boxArray.get()), zxGetN(boxArray.get()))), (std::pair<zxSize, zxSize>(2, 3)));
  const std::vector<double> storageOrder = {-1, 1, -2, 2, -3, 3};
  EXPECT_EQ(std::vector<double>(zxGetPr(boxArray.get()), zxGetPr(boxArray.get()) + 6), storageOrder);
  EXPECT_EQ(toBoundingVolume(boxArray.get()), box);
}

// Every numeric class is read as readElementAsDouble reads it; a complex array by its real part, and a
// trailing singleton dimension is no dimension.
TEST(ObjConvertTest, ReadEveryNumericClassAndTheRealPart) {
  for (int id = zxDOUBLE_CLASS; id <= zxUINT64_CLASS; ++id) {
    const ZxArrayPtr zeros(zxCreateNumericMatrix(4, 4, static_cast<zxClassID>(id), zxREAL));
    EXPECT_EQ(toMatrix4x4d(zeros.get())(3, 3), 0) << "class " << id;
  }
  const ZxArrayPtr int16(zxCreateNumericMatrix(2, 3, zxINT16_CLASS, zxREAL));
  static_cast<std::int16_t*>(zxGetWritableData(int16.get()))[5] = 300;
  EXPECT_EQ(toBoundingVolume(int16.get()), BoundingVolume({0, 0, 0}, {0, 0, 300}));
  const zxSize trailingSingleton[] = {4, 4, 1};
  const ZxArrayPtr square(zxCreateNumericArray(3, trailingSingleton, zxDOUBLE_CLASS, zxCOMPLEX));
  zxGetWritablePr(square.get())[5] = 8;
  zxGetWritablePi(square.get())[5] = 9;
  EXPECT_EQ(toMatrix4x4d(square.get())(1, 1), 8);
}

TEST(ObjConvertTest, BothRefuseNullOtherClassesAndOtherShapes) {
  EXPECT_THROW(toMatrix4x4d(nullptr), NullArrayException);
  EXPECT_THROW(toBoundingVolume(nullptr), NullArrayException);
  const ZxArrayPtr logical(zxCreateLogicalMatrix(2, 3)), cell(zxCreateCellMatrix(4, 4));
  for (const zxArray* array : {logical.get(), cell.get()}) {
    EXPECT_THROW(toMatrix4x4d(array), InvalidArrayClassException) << zxGetClassName(array);
    EXPECT_THROW(toBoundingVolume(array), InvalidArrayClassException) << zxGetClassName(array);
  }
  for (const std::vector<zxSize>& dims : {std::vector<zxSize>{1, 16}, {4, 4, 2}, {3, 2}, {2, 3, 2}, {0, 0}}) {
    SCOPED_TRACE(testing::PrintToString(dims));
    const ZxArrayPtr array(zxCreateNumericArray(dims.size(), dims.data(), zxDOUBLE_CLASS, zxREAL));
    EXPECT_THROW(toMatrix4x4d(array.get()), InvalidArrayShapeException);
    EXPECT_THROW(toBoundingVolume(array.get()), InvalidArrayShapeException);
  }
}

// Bounds in storage order (xmin, xmax, ymin, ymax, zmin, zmax), and whether they are accepted: a minimum
// above its maximum on any axis is refused, a NaN passes.
TEST(ObjConvertTest, BoundingVolumesRefuseAMinimumAboveItsMaximumOnAnyAxisButPassNaN) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  // clang-format off
  const std::pair<std::array<double, 6>, bool> kCases[] = {{{0, 0, 0, 0, 0, 0}, true}, {{1, 0, 0, 1, 0, 1}, false},
      {{0, 1, 1, 0, 0, 1}, false}, {{nan, 0, 0, 1, 0, 1}, true}, {{0, 1, 0, 1, 0, -1e-300}, false}};
  // clang-format on
  for (const auto& [bounds, accepted] : kCases) {
    const ZxArrayPtr array(zxCreateDoubleMatrix(2, 3, zxREAL));
    std::copy(bounds.begin(), bounds.end(), zxGetWritablePr(array.get()));
    if (accepted) {
      EXPECT_NO_THROW(toBoundingVolume(array.get()));
    } else {
      EXPECT_THROW(toBoundingVolume(array.get()), InvalidArrayDataException);
    }
  }
}

}  // namespace
}  // namespace gui_objects
