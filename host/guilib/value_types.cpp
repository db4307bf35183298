// Conversions and comparisons of the graphics objects' value types.
#include "guilib/value_types.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace gui_objects {

namespace {

std::uint8_t toByte(double intensity) {
  if (std::isnan(intensity)) return 0;
  return static_cast<std::uint8_t>(std::lround(std::clamp(intensity, 0.0, 1.0) * 255.0));
}

std::int32_t truncateToInt32(double value) {
  // Bounds are exact doubles; every value strictly between them truncates into range. NaN fails both.
  constexpr double kBelowMin = -2147483649.0;
  constexpr double kAboveMax = 2147483648.0;
  if (value > kBelowMin && value < kAboveMax) return static_cast<std::int32_t>(value);
  return std::numeric_limits<std::int32_t>::min();
}

bool agrees(double a, double b) {
  constexpr double kRelativeTolerance = 1e-12;
  if (a == b) return true;
  // The tolerance scales with the operands, so without this an infinity would agree with anything.
  if (!std::isfinite(a) || !std::isfinite(b)) return false;
  return std::fabs(a - b) <= kRelativeTolerance * std::max({1.0, std::fabs(a), std::fabs(b)});
}

}  // namespace

Color4b Color4d::asColor4b() const { return {toByte(r), toByte(g), toByte(b), toByte(a)}; }

Point2i Point2d::asPoint2i() const { return {truncateToInt32(x), truncateToInt32(y)}; }

Point3d BoundingVolume::getCenter() const {
  return {std::midpoint(min_.x, max_.x), std::midpoint(min_.y, max_.y), std::midpoint(min_.z, max_.z)};
}

bool nearlyEqual(const Matrix4x4d& lhs, const Matrix4x4d& rhs) {
  for (int row = 0; row < 4; ++row) {
    for (int col = 0; col < 4; ++col) {
      if (!agrees(lhs(row, col), rhs(row, col))) return false;
    }
  }
  return true;
}

}  // namespace gui_objects
