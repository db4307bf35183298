// The out-of-line members of the data type templates: each type's singleton, full name and cached
// default. Only the library's own sources include this file, and each type is instantiated in exactly
// one of them (ORB_DEFINE_DATA_TYPE), so these objects exist once per process whoever asks for them.
#pragma once

#include <new>
#include <string>

#include "datatype/data_type_base.h"

namespace graphics::datatype {

template <class Derived, class Value>
Derived* BasicDataType<Derived, Value>::getType() {
  static Derived* const instance = new (std::nothrow) Derived();
  return instance;
}

template <class Derived, class Value>
const char* BasicDataType<Derived, Value>::getDataTypeName() {
  static const std::string fullName = std::string(kPackageName) + "." + Derived::kName;
  return fullName.c_str();
}

template <class Derived, class Value>
objsys::COSValue BasicDataType<Derived, Value>::copy(objsys::COSValue value) {
  if (value.isEmpty()) return objsys::COSValue();
  return newValueBlock<Value>(*value.as<const Value>());
}

template <class Derived, class Value>
objsys::COSValue BasicDataType<Derived, Value>::getDefaultValue() const {
  static objsys::COSValue cached;
  if (cached.isEmpty()) cached = newValueBlock<Value>(Derived::makeDefaultValue());
  return cached;
}

}  // namespace graphics::datatype

// Instantiates the data type's out-of-line members in this source, exported from the library.
#define ORB_DEFINE_DATA_TYPE(DataType) template class graphics::datatype::BasicDataType<DataType, DataType::ValueType>;
