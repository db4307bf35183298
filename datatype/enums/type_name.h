// TypeName: the kind of a graphics object ("figure", "axes", "line", ...), the value of every object's
// Type property, as an enumerated type.
#pragma once

#include "datatype/enums/enum_base.h"
#include "datatype/enums/enum_value.h"
#include "datatype/export.h"

namespace graphics::datatype {

// One of the object kinds listed in type_name.cpp, matched by the enumeration rule, so type names compare
// without regard to case ("Axes" is "axes") and a unique abbreviation is accepted ("fig"). Text or a
// char row naming no kind, or naming several ("t": "text" and "transform"), is refused with
// "Korvax:datatypes:InvalidEnumValue"; an array that is not text with "Korvax:datatypes:InvalidEnumValueFor";
// empty text with "Korvax:datatypes:InvalidValue". Reads back as the kind's name. Default "root", the
// object at the top of every tree.
class ORB_EXPORT TypeName : public EnumBase {
 public:
  static constexpr const char* kName = "TypeName";
  using EnumBase::EnumBase;
  bool operator==(const TypeName& other) const { return getIntValue() == other.getIntValue(); }
  static const EnumTypeInfo& info();
};

using TypeNameDataType = EnumValueDataType<TypeName>;
using TypeNameMC = EnumValueMC<TypeName>;
using TypeNameSC = EnumValueSC<TypeName>;

}  // namespace graphics::datatype
