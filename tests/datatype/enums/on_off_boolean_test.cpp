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
  const char* input;  // a host literal, or a text when text is set
  const char* seen;   // the read-back literal and text, or "error: <identifier>"
  bool text = false;
};

std::string seen(const char* type, const Case& c) { return c.text ? parsing(type, c.input) : setting(type, c.input); }

constexpr const char* kIncorrect = "error: Korvax:datatypes:onoffboolean:IncorrectValue";
constexpr const char* kUnknown = "error: Korvax:datatypes:onoffboolean:UnknownOnOffBooleanValue";

// Text is matched by name only; arrays may also be the numbers zero and one.
TEST_F(Switches, OnOffTakesNamesAndTheNumbersZeroAndOne) {
  const Case cases[] = {
      {"'on'", "'on' | on"}, {"'OFF'", "'off' | off"},      {"' of '", "'off' | off"},
      {"1", "'on' | on"},    {"single(0)", "'off' | off"},  {"'o'", kUnknown},
      {"''", kUnknown},      {"complex(1,0)", kIncorrect},  {"['on';'on']", kIncorrect},
      {"2", kIncorrect},     {" Off", "'off' | off", true}, {"1", kUnknown, true},
  };
  for (const Case& c : cases) EXPECT_EQ(seen("on_off", c), c.seen) << (c.text ? "text " : "") << c.input;
}

TEST_F(Switches, TypeNamesMatchWithoutRegardToCase) {
  const Case cases[] = {
      {"'fig'", "'figure' | figure"},
      {"'t'", "error: Korvax:datatypes:InvalidEnumValue"},  // text, transform
      {"''", "error: Korvax:datatypes:InvalidValue"},
      {"LINE", "'line' | line", true},
  };
  for (const Case& c : cases) EXPECT_EQ(seen("TypeName", c), c.seen) << (c.text ? "text " : "") << c.input;
}

}  // namespace
