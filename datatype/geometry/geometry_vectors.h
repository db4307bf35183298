// Points, positions, rectangles and insets: the geometry types held as a fixed number of coordinates,
// one row each of geometry_vectors.def, each with its data type TDataType and conversions TMC, TSC.
//   Point2, Point2d, Point3, PositivePoint3   hold guilib's points (Point2i, Point2d, Point3d)
//   Position                                  [x y width height] in data or layout units
//   ScreenPosition, Rectangle2                [x y width height] in whole pixels (Rectangle2 holds a
//                                             guilib Rectangle2i)
//   Inset                                     four margins
//   equalWithinRoundoffError                  the equality of positions and insets
//   VectorRules<TDataType>                    the conversion rules, one template for every row
#pragma once

#include <cstddef>
#include <cstdint>

#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/export.h"
#include "guilib/value_types.h"

namespace graphics::datatype {

// A rectangle kept as its corners: made from x, y, width and height, read back through guilib's
// getXMin, getYMin, getWidth and getHeight. Positions compare within round-off.
class ORB_EXPORT Position {
 public:
  Position() = default;
  Position(double x, double y, double width, double height)
      : rectangle_(gui_objects::Rectangle2d::fromXYWH(x, y, width, height)) {}
  explicit Position(const gui_objects::Rectangle2d& rectangle) : rectangle_(rectangle) {}

  const gui_objects::Rectangle2d& asRectangle2d() const { return rectangle_; }
  bool operator==(const Position& other) const;

 private:
  gui_objects::Rectangle2d rectangle_;
};

// A rectangle in whole pixels; compares exactly. Its blocks come from the host allocator.
class ORB_EXPORT ScreenPosition {
 public:
  ScreenPosition() = default;
  ScreenPosition(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height)
      : rectangle_(gui_objects::Rectangle2i::fromXYWH(x, y, width, height)) {}
  explicit ScreenPosition(const gui_objects::Rectangle2i& rectangle) : rectangle_(rectangle) {}

  const gui_objects::Rectangle2i& asRectangle2i() const { return rectangle_; }
  bool operator==(const ScreenPosition&) const = default;

  static void* operator new(std::size_t size);
  static void operator delete(void* block);

 private:
  gui_objects::Rectangle2i rectangle_;
};

// Four margins; insets compare within round-off.
class ORB_EXPORT Inset {
 public:
  Inset() = default;
  explicit Inset(const gui_objects::Inset2d& margins) : margins_(margins) {}

  const gui_objects::Inset2d& asInset2d() const { return margins_; }
  bool operator==(const Inset& other) const;

 private:
  gui_objects::Inset2d margins_;
};

// Whether each component of a agrees with that of b (positions: XMin, YMin, width, height; insets:
// XMin, XMax, YMin, YMax): |p - q| / max(|p|, |q|, 1) < 1e-12. NaN never agrees, so a value holding
// NaN is unequal even to itself.
ORB_EXPORT bool equalWithinRoundoffError(const Position& a, const Position& b);
ORB_EXPORT bool equalWithinRoundoffError(const gui_objects::Inset2d& a, const gui_objects::Inset2d& b);

// The conversion rules of every row. Arrays: exactly the row's count of numbers of any numeric class
// (not logical or char), whatever the shape, in storage order; read back as a 1-by-count double row, an
// empty slot as a 0-by-0 double. Text: one row of that many numbers ("[0.1 0.1 0.8 0.8]",
// "1, 2, 3"), written back as "[n1 n2 ...]" with each number the shortest text that reads back the
// same; a pixel point writes decimal integers and reads as "[0 0]" when it holds no point. Refusals raise the row's
// identifiers and store nothing.
template <class DataType>
struct ORB_EXPORT VectorRules;

namespace geometry {
// A pixel point's text is fixed: its numbers as decimal integers, and the origin for no point at all.
inline constexpr TypeFacts kPixelPointFacts{
    .text = TextForm::fixed, .emptySlotHasText = true, .javaPeer = &java_peers::AwtPoint};
// The usual facts, crossing to Java as peer.
constexpr TypeFacts crossingAs(const JavaPeerClass& peer) { return {.javaPeer = &peer}; }
}  // namespace geometry

#define ORB_GEOMETRY_VECTOR(Name, Value, Size, Facts, ...)                                  \
  class ORB_EXPORT Name##DataType : public BasicDataType<Name##DataType, Value> {           \
   public:                                                                                  \
    static constexpr const char* kName = #Name;                                             \
    static constexpr const char* kClassName = #Name "DataType";                             \
    static constexpr std::size_t kValueSizeInBytes = Size;                                  \
    static constexpr TypeFacts kFacts = Facts;                                              \
    static Value makeDefaultValue();                                                        \
  };                                                                                        \
  static_assert(sizeof(Value) == (Size));                                                   \
  class ORB_EXPORT Name##MC final : public ArrayConversion<VectorRules<Name##DataType>> {}; \
  class ORB_EXPORT Name##SC final : public TextConversion<VectorRules<Name##DataType>> {};
#include "datatype/geometry/geometry_vectors.def"

}  // namespace graphics::datatype
