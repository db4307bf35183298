// The enumerated property types (ActivePosition, FontWeight, LineStyle, ...), generated from
// enum_types.def: each is an EnumBase with operator== and a predicate per element.
#pragma once

#include "datatype/enums/enum_base.h"
#include "datatype/enums/enum_value.h"
#include "datatype/export.h"

namespace graphics::datatype {

#define ORB_ENUM(Predicate, name, ordinal, status) \
  bool is##Predicate() const { return getIntValue() == (ordinal); }
#define ORB_ENUM_TYPE(Type, defaultOrdinal, ...)                                              \
  class ORB_EXPORT Type : public EnumBase {                                                   \
   public:                                                                                    \
    static constexpr const char* kName = #Type;                                               \
    using EnumBase::EnumBase;                                                                 \
    bool operator==(const Type& other) const { return getIntValue() == other.getIntValue(); } \
    __VA_ARGS__                                                                               \
    /* The element table and default that the type's data type and conversions work from. */  \
    static const EnumTypeInfo& info();                                                        \
  };
#include "datatype/enums/enum_types.def"

}  // namespace graphics::datatype
