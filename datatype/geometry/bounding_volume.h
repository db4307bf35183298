// BoundingVolume: an axis-aligned box given by its minimum and maximum along x, y and z, with its data
// type and array and string conversions.
#pragma once

#include <cstddef>

#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/export.h"
#include "guilib/value_types.h"

namespace graphics::datatype {

// Holds one guilib box. Two boxes are equal when their centers are equal and their widths along x, y
// and z are each exactly equal, so a box holding NaN is unequal even to itself.
class ORB_EXPORT BoundingVolume {
 public:
  BoundingVolume() = default;
  explicit BoundingVolume(const gui_objects::BoundingVolume& box) : box_(box) {}

  const gui_objects::BoundingVolume& asBoundingVolume() const { return box_; }
  bool operator==(const BoundingVolume& other) const;

 private:
  gui_objects::BoundingVolume box_;
};

class ORB_EXPORT BoundingVolumeDataType : public BasicDataType<BoundingVolumeDataType, BoundingVolume> {
 public:
  static constexpr const char* kName = "BoundingVolume";
  static constexpr const char* kClassName = "BoundingVolumeDataType";
  // The size the type has always reported, larger than the six doubles it holds.
  static constexpr std::size_t kValueSizeInBytes = 56;
  // "[ xmin ymin zmin ; xmax ymax zmax ]", the numbers as the stream writes them.
  static constexpr TypeFacts kFacts{.text = TextForm::fixed};
  static BoundingVolume makeDefaultValue() { return BoundingVolume(); }
};

// Arrays: a 2-by-3 matrix of any numeric class, minimums in the first row and maximums in the second;
// a minimum above its maximum is refused (NaN bounds pass); read back as a 2-by-3 double, an empty
// slot as a 0-by-0 double. Text: two rows of three numbers, corners unchecked; written as
// "[ xmin ymin zmin ; xmax ymax zmax ]".
struct ORB_EXPORT BoundingVolumeRules;
class ORB_EXPORT BoundingVolumeMC final : public ArrayConversion<BoundingVolumeRules> {};
class ORB_EXPORT BoundingVolumeSC final : public TextConversion<BoundingVolumeRules> {};

}  // namespace graphics::datatype
