// The enumeration of an enumerated property type, its cache and its errors.
#include "datatype/enums/orb_typed_enum_string_type.h"

#include <string>

#include "datatype/conversion_support.h"
#include "datatype/data_type_base.h"
#include "datatype/errors.h"
#include "datatype/java_conversion.h"

namespace graphics::datatype {

utils::EnumCache::EnumCache(const OrbTypedEnumStringType& type) : validValues_(validValuesOf(type.elements())) {}

OrbTypedEnumStringType::OrbTypedEnumStringType(objsys::COSDataType* owner)
    : owner_(owner), elements_(OrbEnumerationType::createObjectTypeEnumeration(owner)) {}

OrbTypedEnumStringType::~OrbTypedEnumStringType() = default;

std::vector<std::string> OrbTypedEnumStringType::getEnumStrings() const {
  std::vector<std::string> names;
  for (int i = 0; i < elements_->getEnumLength(); ++i) names.emplace_back(elements_->elementName(i));
  return names;
}

const std::string& OrbTypedEnumStringType::validValues() const {
  if (cache_ == nullptr) cache_ = std::make_unique<utils::EnumCache>(*this);
  return cache_->validValues();
}

void errorForInvalidEnumValue(const char* given, const OrbTypedEnumStringType& type) {
  raise<Korvax::datatypes::InvalidEnumValue>(given != nullptr ? given : "", type.validValues());
}

void errorForInvalidEnumValueFor(const OrbTypedEnumStringType& type) {
  raise<Korvax::datatypes::InvalidEnumValueFor>(type.validValues());
}

void errorForInvalidValue(const OrbTypedEnumStringType& type) {
  raise<Korvax::datatypes::InvalidValue>(type.validValues());
}

std::string getStringFromZxArray(const zxArray* array) {
  const ArrayText text = textOfCharArray(array);
  return text != nullptr ? std::string(text.get()) : std::string();
}

objsys::JavaTypeConversion* OrbTypedEnumStringType::createJavaConverter(const OrbTypedEnumStringType* type,
                                                                        const char* javaForm) {
  return new PeerJavaConversion(std::string(kPackageName) + "." + type->getName(), nullptr, javaForm);
}

}  // namespace graphics::datatype
