// Matrix4x4: its conversions.
#include "datatype/geometry/matrix4x4.h"

#include <optional>
#include <string>

#include "datatype/conversion_definitions.h"
#include "datatype/data_type_definitions.h"
#include "datatype/geometry/geometry_support.h"
#include "guilib/convert_from_string_utils.h"
#include "guilib/obj_convert.h"

namespace graphics::datatype {

struct Matrix4x4Rules {
  using Value = Matrix4x4;
  using Refusals = geometry::ArrayRefusals<Korvax::datatypes::Matrix4x4DataType::ArrayNull,
                                           Korvax::datatypes::Matrix4x4DataType::ArrayClass,
                                           Korvax::datatypes::Matrix4x4DataType::ArrayShape, void>;

  static Matrix4x4 fromArray(const zxArray& array) {
    return Matrix4x4(geometry::readOrRefuse<Refusals>([&] { return orb::objConvert::toMatrix4x4d(&array); }));
  }
  // No array at all gives the identity, and an empty slot reads back as it.
  static Matrix4x4 fromNoArray() { return Matrix4x4(); }
  static zxArray* toArray(const Matrix4x4& value) { return orb::objConvert::toZxArray(value.asMatrix4x4d()).release(); }
  static zxArray* noValueArray() { return toArray(Matrix4x4()); }

  static Matrix4x4 fromText(const char* text) {
    return Matrix4x4(geometry::parseOrRefuse<Refusals::Shape>(
        [&] { return gui_objects::convert_from_string_utils::parse_4x4_double(text); }));
  }
  static std::optional<std::string> toText(const Matrix4x4& value) {
    double rows[16];
    for (int index = 0; index < 16; ++index) rows[index] = value.asMatrix4x4d()(index / 4, index % 4);
    return geometry::numbersText(rows, 4);
  }
};

}  // namespace graphics::datatype

ORB_DEFINE_DATA_TYPE(graphics::datatype::Matrix4x4DataType)
ORB_DEFINE_CONVERSIONS(graphics::datatype::Matrix4x4Rules)
