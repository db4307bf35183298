// OnOffBoolean: its two elements, and conversions that also take logical and numeric 0 and 1.
#include "datatype/enums/on_off_boolean.h"

#include <optional>
#include <string>

#include "arraylib/zxarray.h"
#include "datatype/conversion_support.h"
#include "datatype/enums/enum_value_definitions.h"
#include "datatype/errors.h"

namespace graphics::datatype {

const EnumTypeInfo& OnOffBoolean::info() {
  static constexpr EnumElement kElements[] = {{"on", 1}, {"off", 0}};
  static constexpr EnumTypeInfo kInfo = {kName, kElements, 1};
  return kInfo;
}

struct OnOffBooleanRules {
  using Value = OnOffBoolean;

  static OnOffBoolean fromArray(const zxArray& array) {
    if (zxIsChar(&array)) {
      // One row of text; a NUL would cut the name short, so such text names nothing.
      if (zxGetM(&array) > 1 || zxGetNumberOfDimensions(&array) > 2) {
        raise<Korvax::datatypes::onoffboolean::IncorrectValue>();
      }
      if (holdsNul(&array)) raise<Korvax::datatypes::onoffboolean::UnknownOnOffBooleanValue>();
      return fromText(textOfCharArray(&array).get());
    }
    if (!(zxIsNumeric(&array) || zxIsLogical(&array)) || !zxIsScalar(&array) || zxIsComplex(&array)) {
      raise<Korvax::datatypes::onoffboolean::IncorrectValue>();
    }
    const double number = readScalarAsDouble(&array);
    if (number == 1.0) return OnOffBoolean::on();
    if (number == 0.0) return OnOffBoolean::off();
    raise<Korvax::datatypes::onoffboolean::IncorrectValue>();
  }
  static zxArray* toArray(const OnOffBoolean& value) { return type().nameArrayOf(ordinalOf(value)); }
  static zxArray* noValueArray() { return zxCreateString(""); }

  static OnOffBoolean fromText(const char* text) {
    const objsys::COSValue element = type().enumType().getEnumValue(text, false);
    if (element.isEmpty()) raise<Korvax::datatypes::onoffboolean::UnknownOnOffBooleanValue>();
    return OnOffBoolean(EnumDataTypeBase::ordinalOf(element));
  }
  static std::optional<std::string> toText(const OnOffBoolean& value) { return type().nameOf(ordinalOf(value)); }

  static const EnumDataTypeBase& type() { return *OnOffBooleanDataType::getType(); }
  static signed char ordinalOf(const OnOffBoolean& value) { return static_cast<signed char>(value.getIntValue()); }
};

}  // namespace graphics::datatype

template class graphics::datatype::EnumValueDataType<graphics::datatype::OnOffBoolean>;
ORB_DEFINE_CONVERSIONS(graphics::datatype::OnOffBooleanRules)
