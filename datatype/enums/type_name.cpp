// TypeName: the object kinds and the enumerated type's instantiation.
#include "datatype/enums/type_name.h"

#include "datatype/data_type_definitions.h"

namespace graphics::datatype {

const EnumTypeInfo& TypeName::info() {
  // The kinds of graphics object, each stored as its position here; new kinds go at the end so that
  // stored ordinals keep their meaning.
  static constexpr EnumElement kElements[] = {
      {"root", 0, 0},   {"figure", 1, 0},     {"axes", 2, 0},      {"line", 3, 0},   {"surface", 4, 0},
      {"patch", 5, 0},  {"text", 6, 0},       {"light", 7, 0},     {"image", 8, 0},  {"rectangle", 9, 0},
      {"group", 10, 0}, {"transform", 11, 0}, {"colorbar", 12, 0}, {"legend", 13, 0}};
  static constexpr EnumTypeInfo kInfo = {kName, kElements, 0};
  return kInfo;
}

}  // namespace graphics::datatype

ORB_DEFINE_ENUM_DATA_TYPE(graphics::datatype::TypeName)
