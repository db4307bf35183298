// Tests of the value types' conversions, corner arithmetic and tolerance comparison.
#include "guilib/value_types.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace gui_objects {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kMax = std::numeric_limits<double>::max();
constexpr std::int32_t kIntMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kIntMax = std::numeric_limits<std::int32_t>::max();

TEST(Color4dTest, AsColor4bClampsScalesAndRoundsEachChannel) {
  struct Case {
    double intensity;
    std::uint8_t byte;
  };
  // clang-format off
  static constexpr Case kCases[] = {
      {0.0, 0}, {1.0, 255}, {0.5, 128}, {1.0 / 255, 1}, {0.4 / 255, 0}, {0.6 / 255, 1}, {254.4 / 255, 254},
      {254.6 / 255, 255}, {-0.1, 0}, {1.5, 255}, {-kInf, 0}, {kInf, 255}, {kNaN, 0}, {-0.0, 0}};
  // clang-format on
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::Message() << "intensity " << c.intensity);
    // Each channel takes the value in turn while the others hold markers, so swapped channels show.
    EXPECT_EQ((Color4d{c.intensity, 0, 1, 0}.asColor4b()), (Color4b{c.byte, 0, 255, 0}));
    EXPECT_EQ((Color4d{0, c.intensity, 1, 0}.asColor4b()), (Color4b{0, c.byte, 255, 0}));
    EXPECT_EQ((Color4d{0, 1, c.intensity, 0}.asColor4b()), (Color4b{0, 255, c.byte, 0}));
    EXPECT_EQ((Color4d{1, 0, 0, c.intensity}.asColor4b()), (Color4b{255, 0, 0, c.byte}));
  }
  EXPECT_EQ(Color4d{}.asColor4b(), (Color4b{0, 0, 0, 255}));
}

TEST(Point2dTest, AsPoint2iTruncatesTowardZeroAndMapsTheUnrepresentableToIntMin) {
  struct Case {
    double value;
    std::int32_t expected;
  };
  // clang-format off
  static constexpr Case kCases[] = {
      {1.9, 1}, {-1.9, -1}, {-0.5, 0}, {2147483647.9, kIntMax}, {-2147483648.9, kIntMin},
      {-2147483647.5, -2147483647}, {2147483648.0, kIntMin}, {-2147483649.0, kIntMin}, {1e300, kIntMin},
      {-1e300, kIntMin}, {kInf, kIntMin}, {-kInf, kIntMin}, {kNaN, kIntMin}};
  // clang-format on
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::Message() << "value " << c.value);
    EXPECT_EQ((Point2d{c.value, 7.5}.asPoint2i()), (Point2i{c.expected, 7}));
    EXPECT_EQ((Point2d{-7.5, c.value}.asPoint2i()), (Point2i{-7, c.expected}));
  }
}

TEST(RectangleTest, SizesReadBackFromCorners) {
  const Rectangle2d r = Rectangle2d::fromXYWH(1, 2, 3, 4);
  EXPECT_EQ(r, Rectangle2d({1, 2}, {4, 6}));
  EXPECT_EQ(r.getWidth(), 3);
  EXPECT_EQ(r.getHeight(), 4);
  EXPECT_EQ(Rectangle2d({5, 5}, {2, 1}).getHeight(), -4);

  struct Case {
    std::int32_t x, y, width, height;
  };
  static constexpr Case kPixelCases[] = {
      {10, -20, 30, 40}, {kIntMax, kIntMax, 10, 1}, {kIntMin, 0, -1, kIntMax}, {-5, kIntMin, kIntMin, kIntMin}};
  for (const Case& c : kPixelCases) {
    SCOPED_TRACE(testing::Message() << c.x << ' ' << c.y << ' ' << c.width << ' ' << c.height);
    const Rectangle2i pixels = Rectangle2i::fromXYWH(c.x, c.y, c.width, c.height);
    EXPECT_EQ(pixels.getMin(), (Point2i{c.x, c.y}));
    EXPECT_EQ(pixels.getWidth(), c.width);
    EXPECT_EQ(pixels.getHeight(), c.height);
  }
}

TEST(BoundingVolumeTest, CenterAndWidthsPerAxisWithoutOverflow) {
  const BoundingVolume box({-1, 2, 10}, {3, 3, 14});
  EXPECT_EQ(box.getCenter(), (Point3d{1, 2.5, 12}));
  EXPECT_EQ(box.getXWidth(), 4);
  EXPECT_EQ(box.getYWidth(), 1);
  EXPECT_EQ(box.getZWidth(), 4);
  EXPECT_EQ(BoundingVolume(), BoundingVolume({0, 0, 0}, {0, 0, 0}));
  const BoundingVolume huge({kMax / 2, -kMax, kMax}, {kMax, kMax, kMax});
  EXPECT_EQ(huge.getCenter(), (Point3d{kMax * 0.75, 0, kMax}));
}

TEST(Matrix4x4dTest, NearlyEqualUsesARelativeToleranceOfOneInATrillion) {
  struct Case {
    double a;
    double b;
    bool equal;
  };
  // clang-format off
  static constexpr Case kCases[] = {
      {1, 1 + 1e-13, true}, {1, 1 + 1e-11, false}, {0, 9e-13, true}, {0, 2e-12, false}, {1e6, 1e6 + 1e-7, true},
      {1e6, 1e6 + 1e-5, false}, {-1e20, -1e20 * (1 + 1e-13), true}, {0.0, -0.0, true}, {kInf, kInf, true},
      {kInf, -kInf, false}, {kInf, kMax, false}, {kMax, -kMax, false}, {kNaN, kNaN, false}, {kNaN, 1, false}};
  // clang-format on
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::Message() << c.a << " vs " << c.b);
    Matrix4x4d lhs;
    Matrix4x4d rhs;
    lhs(3, 2) = c.a;
    rhs(3, 2) = c.b;
    EXPECT_EQ(nearlyEqual(lhs, rhs), c.equal);
    EXPECT_EQ(nearlyEqual(rhs, lhs), c.equal);
    EXPECT_EQ(lhs(2, 3), 0);
    EXPECT_EQ(lhs(3, 3), 1);
  }
}

}  // namespace
}  // namespace gui_objects
