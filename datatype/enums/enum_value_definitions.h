// The out-of-line members of EnumValueDataType<E>: each enumerated type's singleton and full name.
// Only the enumeration family's sources include this file, and each type is instantiated in exactly one
// of them (ORB_DEFINE_ENUM_DATA_TYPE), so these objects exist once per process whoever asks for them.
#pragma once

#include <new>
#include <string>

#include "datatype/conversion_definitions.h"
#include "datatype/data_type_base.h"
#include "datatype/enums/enum_value.h"

namespace graphics::datatype {

template <class E>
EnumValueDataType<E>* EnumValueDataType<E>::getType() {
  static EnumValueDataType* const instance = new (std::nothrow) EnumValueDataType();
  return instance;
}

template <class E>
const char* EnumValueDataType<E>::getDataTypeName() {
  static const std::string fullName = std::string(kPackageName) + "." + E::info().name;
  return fullName.c_str();
}

}  // namespace graphics::datatype

// Instantiates an enumerated property type E's data type and conversions in this source, exported from
// the library.
#define ORB_DEFINE_ENUM_DATA_TYPE(E)                       \
  template class graphics::datatype::EnumValueDataType<E>; \
  ORB_DEFINE_CONVERSIONS(graphics::datatype::EnumRules<E>)
