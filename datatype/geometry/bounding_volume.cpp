// BoundingVolume: its equality and conversions.
#include "datatype/geometry/bounding_volume.h"

#include <optional>
#include <string>

#include "datatype/conversion_definitions.h"
#include "datatype/conversion_support.h"
#include "datatype/data_type_definitions.h"
#include "datatype/geometry/geometry_support.h"
#include "guilib/convert_from_string_utils.h"
#include "guilib/obj_convert.h"

namespace graphics::datatype {

bool BoundingVolume::operator==(const BoundingVolume& other) const {
  const gui_objects::BoundingVolume& a = box_;
  const gui_objects::BoundingVolume& b = other.box_;
  return a.getCenter() == b.getCenter() && a.getXWidth() == b.getXWidth() && a.getYWidth() == b.getYWidth() &&
         a.getZWidth() == b.getZWidth();
}

struct BoundingVolumeRules {
  using Value = BoundingVolume;
  using Refusals = geometry::ArrayRefusals<
      Korvax::datatypes::BoundingVolumeDataType::ArrayNull, Korvax::datatypes::BoundingVolumeDataType::ArrayClass,
      Korvax::datatypes::BoundingVolumeDataType::ArrayShape, Korvax::datatypes::BoundingVolumeDataType::InvalidWidth>;

  static BoundingVolume fromArray(const zxArray& array) {
    return BoundingVolume(geometry::readOrRefuse<Refusals>([&] { return orb::objConvert::toBoundingVolume(&array); }));
  }
  static zxArray* toArray(const BoundingVolume& box) {
    return orb::objConvert::toZxArray(box.asBoundingVolume()).release();
  }
  static zxArray* noValueArray() { return zxCreateDoubleMatrix(0, 0, zxREAL); }

  // The corners are taken as parsed, unchecked, as guilib's parser gives them.
  static BoundingVolume fromText(const char* text) {
    return BoundingVolume(geometry::parseOrRefuse<Refusals::Shape>(
        [&] { return gui_objects::convert_from_string_utils::parse_2x3_double(text); }));
  }
  static std::optional<std::string> toText(const BoundingVolume& value) {
    const gui_objects::BoundingVolume& box = value.asBoundingVolume();
    const double corners[] = {box.getXMin(), box.getYMin(), box.getZMin(), box.getXMax(), box.getYMax(), box.getZMax()};
    std::string text = "[";
    for (std::size_t i = 0; i < std::size(corners); ++i) text += (i == 3 ? " ; " : " ") + streamInserted(corners[i]);
    return text + " ]";
  }
};

}  // namespace graphics::datatype

ORB_DEFINE_DATA_TYPE(graphics::datatype::BoundingVolumeDataType)
ORB_DEFINE_CONVERSIONS(graphics::datatype::BoundingVolumeRules)
