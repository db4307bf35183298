// OnOffBoolean: the on/off switch of properties such as Visible, Clipping and HitTest, registered as
// "on_off", with its data type and array and string conversions.
#pragma once

#include "datatype/conversions.h"
#include "datatype/enums/enum_base.h"
#include "datatype/enums/enum_value.h"
#include "datatype/export.h"

namespace graphics::datatype {

// "on" or "off", stored as the ordinal 1 or 0. Text is matched by the enumeration rule (trimmed, any
// case, an exact name before a unique abbreviation: "ON", " of "); arrays may also be a real logical or
// numeric scalar 0 or 1 (so true, false, 1, int8(0)). Text naming neither is refused with
// "Korvax:datatypes:onoffboolean:UnknownOnOffBooleanValue"; any other array (2, NaN, [1 0], a cell, a
// char matrix) with "Korvax:datatypes:onoffboolean:IncorrectValue". Reads back as its name. Default
// "on", the state of nearly every switch.
class ORB_EXPORT OnOffBoolean : public EnumBase {
 public:
  static constexpr const char* kName = "on_off";
  using EnumBase::EnumBase;
  static OnOffBoolean on() { return OnOffBoolean(1); }
  static OnOffBoolean off() { return OnOffBoolean(0); }
  bool isOn() const { return getIntValue() == 1; }
  bool isOff() const { return getIntValue() == 0; }
  bool operator==(const OnOffBoolean& other) const { return getIntValue() == other.getIntValue(); }
  static const EnumTypeInfo& info();
};

using OnOffBooleanDataType = EnumValueDataType<OnOffBoolean>;
struct ORB_EXPORT OnOffBooleanRules;
class ORB_EXPORT OnOffBooleanMC final : public ArrayConversion<OnOffBooleanRules> {};
class ORB_EXPORT OnOffBooleanSC final : public TextConversion<OnOffBooleanRules> {};

}  // namespace graphics::datatype
