// OnOffBoolean and TypeName: what each takes from arrays and text, and how a refusal is reported.
#include "datatype/enums/on_off_boolean.h"

#include "../support.h"
#include "../user_view.h"
#include "datatype/enums/type_name.h"

namespace {

using userview::parsing;
using userview::setting;

class Switches : public orbtest::DataTypeTest {};

struct Case {
  const char* input;
  const char* seen;  // the read-back literal and text, or "error: <identifier>"
};

constexpr const char* kIncorrect = "error: Korvax:datatypes:onoffboolean:IncorrectValue";
constexpr const char* kUnknown = "error: Korvax:datatypes:onoffboolean:UnknownOnOffBooleanValue";

TEST_F(Switches, OnOffTakesNamesAndTheNumbersZeroAndOne) {
  const Case cases[] = {
      {"'on'", "'on' | on"},       {"'OFF'", "'off' | off"},      {"' of '", "'off' | off"},
      {"true", "'on' | on"},       {"false", "'off' | off"},      {"1", "'on' | on"},
      {"0", "'off' | off"},        {"int8(1)", "'on' | on"},      {"single(0)", "'off' | off"},
      {"'o'", kUnknown},           {"'yes'", kUnknown},           {"''", kUnknown},
      {"2", kIncorrect},           {"0.5", kIncorrect},           {"NaN", kIncorrect},
      {"[1 0]", kIncorrect},       {"complex(1,0)", kIncorrect},  {"{'on'}", kIncorrect},
      {"['on';'on']", kIncorrect}, {"struct('a',1)", kIncorrect},
  };
  for (const Case& c : cases) EXPECT_EQ(setting("on_off", c.input), c.seen) << c.input;
}

TEST_F(Switches, OnOffTextIsMatchedByName) {
  const Case cases[] = {{"on", "'on' | on"}, {" Off", "'off' | off"}, {"of", "'off' | off"},
                        {"1", kUnknown},     {"o", kUnknown},         {"", kUnknown}};
  for (const Case& c : cases) EXPECT_EQ(parsing("on_off", c.input), c.seen) << c.input;
}

TEST_F(Switches, OnOffIsRegisteredUnderItsOwnNameWithOnAsDefault) {
  objsys::COSDataType* type = graphics::datatype::OnOffBooleanDataType::getType();
  EXPECT_STREQ(graphics::datatype::OnOffBooleanDataType::getDataTypeName(), "korvax.graphics.datatype.on_off");
  EXPECT_EQ(*type->getDefaultValue().as<const signed char>(), 1);
  EXPECT_EQ(type->getValueSizeInBytes(objsys::COSValue()), 1u);
}

TEST_F(Switches, TypeNamesMatchWithoutRegardToCase) {
  const Case cases[] = {
      {"'Axes'", "'axes' | axes"},
      {"'fig'", "'figure' | figure"},
      {"'t'", "error: Korvax:datatypes:InvalidEnumValue"},  // text, transform
      {"''", "error: Korvax:datatypes:InvalidValue"},
      {"3", "error: Korvax:datatypes:InvalidEnumValueFor"},
  };
  for (const Case& c : cases) EXPECT_EQ(setting("TypeName", c.input), c.seen) << c.input;
  EXPECT_EQ(parsing("TypeName", "LINE"), "'line' | line");
}

}  // namespace
