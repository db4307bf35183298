// The graphics objects' plain value types: colors, points, rectangles, insets, bounding volumes and
// 4-by-4 matrices.
//
// Every type is copyable and compares with operator== field by field as doubles (or integers), so
// NaN never compares equal and -0 equals +0. None of them validates its fields: they hold whatever
// they are given, and range rules belong to the property types built on them.
#pragma once

#include <array>
#include <cstdint>

#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace gui_objects {

// A color as four bytes; the default is opaque black.
struct KX_HOST_API Color4b {
  std::uint8_t r = 0;
  std::uint8_t g = 0;
  std::uint8_t b = 0;
  std::uint8_t a = 255;

  friend bool operator==(const Color4b&, const Color4b&) = default;
};

// A color as four intensities, nominally 0 to 1; the default is opaque black.
struct KX_HOST_API Color4d {
  double r = 0;
  double g = 0;
  double b = 0;
  double a = 1;

  // Each component clamped to [0, 1], scaled by 255 and rounded to nearest (halves up); NaN gives 0.
  Color4b asColor4b() const;

  friend bool operator==(const Color4d&, const Color4d&) = default;
};

// A color as three intensities without alpha; the default is black.
struct KX_HOST_API Color3d {
  double r = 0;
  double g = 0;
  double b = 0;

  friend bool operator==(const Color3d&, const Color3d&) = default;
};

// A pixel position.
struct KX_HOST_API Point2i {
  std::int32_t x = 0;
  std::int32_t y = 0;

  friend bool operator==(const Point2i&, const Point2i&) = default;
};

struct KX_HOST_API Point2d {
  double x = 0;
  double y = 0;

  // Each coordinate truncated toward zero. NaN, infinities and values whose truncation does not fit
  // give INT32_MIN, as the processor's own conversion does.
  Point2i asPoint2i() const;

  friend bool operator==(const Point2d&, const Point2d&) = default;
};

struct KX_HOST_API Point3d {
  double x = 0;
  double y = 0;
  double z = 0;

  friend bool operator==(const Point3d&, const Point3d&) = default;
};

struct KX_HOST_API Point4d {
  double x = 0;
  double y = 0;
  double z = 0;
  double w = 0;

  friend bool operator==(const Point4d&, const Point4d&) = default;
};

// An axis-aligned rectangle kept as its minimum and maximum corners. Crossed corners are kept as
// given and show as a negative width or height. Built from x, y, width and height, the maximum corner
// is rounded like any double sum, so getWidth() may differ from the width given in the last bit.
class KX_HOST_API Rectangle2d {
 public:
  Rectangle2d() = default;
  Rectangle2d(Point2d minCorner, Point2d maxCorner) : min_(minCorner), max_(maxCorner) {}
  static Rectangle2d fromXYWH(double x, double y, double width, double height) {
    return {{x, y}, {x + width, y + height}};
  }

  Point2d getMin() const { return min_; }
  Point2d getMax() const { return max_; }
  double getXMin() const { return min_.x; }
  double getYMin() const { return min_.y; }
  double getXMax() const { return max_.x; }
  double getYMax() const { return max_.y; }
  double getWidth() const { return max_.x - min_.x; }
  double getHeight() const { return max_.y - min_.y; }

  friend bool operator==(const Rectangle2d&, const Rectangle2d&) = default;

 private:
  Point2d min_;
  Point2d max_;
};

// An axis-aligned rectangle in whole pixels, kept as its corners. Corner and size arithmetic wraps
// modulo 2^32 instead of overflowing, so fromXYWH(x, y, w, h) always reads back x, y, w and h.
class KX_HOST_API Rectangle2i {
 public:
  Rectangle2i() = default;
  Rectangle2i(Point2i minCorner, Point2i maxCorner) : min_(minCorner), max_(maxCorner) {}
  static Rectangle2i fromXYWH(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) {
    return {{x, y}, {wrappingAdd(x, width), wrappingAdd(y, height)}};
  }

  Point2i getMin() const { return min_; }
  Point2i getMax() const { return max_; }
  std::int32_t getXMin() const { return min_.x; }
  std::int32_t getYMin() const { return min_.y; }
  std::int32_t getXMax() const { return max_.x; }
  std::int32_t getYMax() const { return max_.y; }
  std::int32_t getWidth() const { return wrappingAdd(max_.x, -static_cast<std::int64_t>(min_.x)); }
  std::int32_t getHeight() const { return wrappingAdd(max_.y, -static_cast<std::int64_t>(min_.y)); }

  friend bool operator==(const Rectangle2i&, const Rectangle2i&) = default;

 private:
  static std::int32_t wrappingAdd(std::int64_t a, std::int64_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
  }

  Point2i min_;
  Point2i max_;
};

// Four margins; the default is no margin.
class KX_HOST_API Inset2d {
 public:
  Inset2d() = default;
  Inset2d(double xMin, double xMax, double yMin, double yMax) : xMin_(xMin), xMax_(xMax), yMin_(yMin), yMax_(yMax) {}

  double getXMin() const { return xMin_; }
  double getXMax() const { return xMax_; }
  double getYMin() const { return yMin_; }
  double getYMax() const { return yMax_; }

  friend bool operator==(const Inset2d&, const Inset2d&) = default;

 private:
  double xMin_ = 0;
  double xMax_ = 0;
  double yMin_ = 0;
  double yMax_ = 0;
};

// An axis-aligned box from its minimum and maximum corners; the default is the zero box at the
// origin. Crossed or NaN bounds are kept as given.
class KX_HOST_API BoundingVolume {
 public:
  BoundingVolume() = default;
  BoundingVolume(Point3d minCorner, Point3d maxCorner) : min_(minCorner), max_(maxCorner) {}

  Point3d getMin() const { return min_; }
  Point3d getMax() const { return max_; }
  double getXMin() const { return min_.x; }
  double getYMin() const { return min_.y; }
  double getZMin() const { return min_.z; }
  double getXMax() const { return max_.x; }
  double getYMax() const { return max_.y; }
  double getZMax() const { return max_.z; }
  // The midpoint of each axis, computed without overflow for bounds near the largest doubles.
  Point3d getCenter() const;
  double getXWidth() const { return max_.x - min_.x; }
  double getYWidth() const { return max_.y - min_.y; }
  double getZWidth() const { return max_.z - min_.z; }

  friend bool operator==(const BoundingVolume&, const BoundingVolume&) = default;

 private:
  Point3d min_;
  Point3d max_;
};

// A 4-by-4 transform, identity by default. Elements are addressed as (row, col) with both in 0..3;
// indices outside that range are a caller error and are not checked.
class KX_HOST_API Matrix4x4d {
 public:
  Matrix4x4d() : elements_{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1} {}

  double& operator()(int row, int col) { return elements_[index(row, col)]; }
  double operator()(int row, int col) const { return elements_[index(row, col)]; }

  friend bool operator==(const Matrix4x4d&, const Matrix4x4d&) = default;

 private:
  static std::size_t index(int row, int col) { return static_cast<std::size_t>(row * 4 + col); }

  std::array<double, 16> elements_;
};

// True when every pair of elements a and b agrees within a relative tolerance:
// |a - b| <= 1e-12 * max(1, |a|, |b|) for finite elements, and a == b otherwise (an infinity agrees
// only with the same infinity). NaN never agrees, so a matrix holding NaN is not nearly equal even
// to itself.
bool nearlyEqual(const Matrix4x4d& lhs, const Matrix4x4d& rhs);

}  // namespace gui_objects

KX_HOST_API_END
