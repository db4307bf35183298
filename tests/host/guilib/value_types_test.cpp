// Tests of the value types' conversions, corner arithmetic and tolerance comparison.
#include "guilib/value_types.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <tuple>
#include <utility>

namespace gui_objects {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kMax = std::numeric_limits<double>::max();
constexpr std::int32_t kIntMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kIntMax = std::numeric_limits<std::int32_t>::max();

TEST(Color4dTest, AsColor4bClampsScalesAndRoundsEachChannel) {
  // clang-format off
  const std::pair<double, std::uint8_t> kCases[] = {
      {0.0, 0}, {1.0, 255}, {0.5, 128}, {0.4 / 255, 0}, {0.6 / 255, 1}, {254.6 / 255, 255}, {-0.1, 0},
      {1.5, 255}, {kInf, 255}, {kNaN, 0}};
  // clang-format on
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
  // clang-format off
  const std::pair<double, std::int32_t> kCases[] = {
      {1.9, 1}, {-1.9, -1}, {2147483647.9, kIntMax}, {-2147483648.9, kIntMin}, {2147483648.0, kIntMin},
      {-2147483649.0, kIntMin}, {kInf, kIntMin}, {kNaN, kIntMin}};
  // clang-format on
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
  // clang-format off
  const std::tuple<double, double, bool> kCases[] = {
      {1, 1 + 1e-13, true}, {1, 1 + 1e-11, false}, {0, 9e-13, true}, {0, 2e-12, false}, {1e6, 1e6 + 1e-7, true},
      {1e6, 1e6 + 1e-5, false}, {-1e20, -1e20 * (1 + 1e-13), true}, {kInf, kInf, true}, {kInf, kMax, false},
      {kNaN, kNaN, false}};
  // clang-format on
  for (const auto& [a, b, equal] : kCases) {
    SCOPED_TRACE(testing::Message() << a << " vs " << b);
    Matrix4x4d lhs;
    Matrix4x4d rhs;
    lhs(3, 2) = a;
    rhs(3, 2) = b;
    EXPECT_EQ(nearlyEqual(lhs, rhs), equal);
    EXPECT_EQ(nearlyEqual(rhs, lhs), equal);
  }
}

}  // namespace
}  // namespace gui_objects
