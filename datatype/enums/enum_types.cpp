// The element tables of the enumerated property types and their registration, generated from
// enum_types.def.
#include "datatype/enums/enum_types.h"

#include "datatype/enums/enum_value_definitions.h"

namespace graphics::datatype {

#define ORB_ENUM(Predicate, name, ordinal, status) EnumElement{name, ordinal, EnumStatus::status},
#define ORB_ENUM_TYPE(Type, defaultOrdinal, ...)                              \
  const EnumTypeInfo& Type::info() {                                          \
    static constexpr EnumElement kElements[] = {__VA_ARGS__};                 \
    static constexpr EnumTypeInfo kInfo = {#Type, kElements, defaultOrdinal}; \
    return kInfo;                                                             \
  }
#include "datatype/enums/enum_types.def"

}  // namespace graphics::datatype

#define ORB_ENUM_TYPE(Type, defaultOrdinal, ...) ORB_DEFINE_ENUM_DATA_TYPE(graphics::datatype::Type)
#include "datatype/enums/enum_types.def"
