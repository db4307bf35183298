// The cursor over the values a type offers by name.
#include "datatype/possible_values.h"

#include <string>

#include "objsys/cos_type_conversion.h"

namespace graphics::datatype {

NamedValuesCursor::NamedValuesCursor(objsys::COSDataType* type, const char* fullTypeName,
                                     const std::vector<std::string_view>& names)
    : type_(type) {
  const objsys::COSTypeConversion* text = objsys::COSTypeRepository::getConversion("asciiString", fullTypeName);
  if (text == nullptr) return;
  values_.reserve(names.size());
  try {
    for (std::string_view name : names) {
      const std::string nameText(name);
      const objsys::COSValue value = text->from(objsys::COSValue(nameText.c_str()));
      if (!value.isEmpty()) values_.push_back(value);
    }
  } catch (...) {
    for (objsys::COSValue value : values_) type_->destroy(value);
    throw;
  }
}

NamedValuesCursor::~NamedValuesCursor() {
  for (objsys::COSValue value : values_) type_->destroy(value);
}

}  // namespace graphics::datatype
