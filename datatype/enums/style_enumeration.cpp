// Style enumerations on integer enumeration types.
#include "datatype/enums/style_enumeration.h"

#include <new>
#include <string>

#include "datatype/enums/named_styles.h"
#include "datatype/possible_values.h"
#include "foundationlib/except.h"

namespace graphics::datatype {

StyleEnumeration::StyleEnumeration(std::span<const StyleEntry> entries)
    : enumeration_(OrbEnumerationType::createIntegerEnumeration()) {
  for (const StyleEntry& entry : entries) {
    enumeration_->addElement(objsys::COSValue::fromWord(entry.value), entry.name, entry.status);
    names_.add(entry.name);
    values_.push_back(entry.value);
  }
  validValues_ = validValuesOf(*enumeration_);
}

std::optional<int> StyleEnumeration::find(std::string_view text) const {
  const std::optional<std::size_t> index = names_.find(text);
  if (!index) return std::nullopt;
  return values_[*index];
}

const char* StyleEnumeration::nameOf(int value) const {
  for (int i = 0; i < enumeration_->getEnumLength(); ++i) {
    if (enumeration_->elementValue(i, false).word() == value) return enumeration_->elementName(i);
  }
  return nullptr;
}

std::vector<std::string_view> StyleEnumeration::offeredNames() const {
  std::vector<std::string_view> names;
  for (int i = 0; i < enumeration_->getEnumLength(); ++i) {
    if (enumeration_->elementStatus(i) == EnumStatus::offered) names.emplace_back(enumeration_->elementName(i));
  }
  return names;
}

objsys::COSEnumeration* newOfferedStylesCursor(objsys::COSDataType* type, const char* fullName,
                                               const StyleEnumeration& styles) {
  auto* cursor = new (std::nothrow) NamedValuesCursor(type, fullName, styles.offeredNames());
  if (cursor == nullptr) throw fl::except::bad_alloc();
  return cursor;
}

}  // namespace graphics::datatype
