// TypeName: the object kinds and the enumerated type's instantiation.
#include "datatype/enums/type_name.h"

#include "datatype/enums/enum_value_definitions.h"

namespace graphics::datatype {

const EnumTypeInfo& TypeName::info() {
  // The kinds of graphics object, each stored as its position here; new kinds go at the end so that
  // stored ordinals keep their meaning.
  static constexpr EnumElement kElements[] = {{"root", 0},      {"figure", 1},    {"axes", 2},   {"line", 3},
                                              {"surface", 4},   {"patch", 5},     {"text", 6},   {"light", 7},
                                              {"image", 8},     {"rectangle", 9}, {"group", 10}, {"transform", 11},
                                              {"colorbar", 12}, {"legend", 13}};
  static constexpr EnumTypeInfo kInfo = {kName, kElements, 0};
  return kInfo;
}

}  // namespace graphics::datatype

ORB_DEFINE_ENUM_DATA_TYPE(graphics::datatype::TypeName)
