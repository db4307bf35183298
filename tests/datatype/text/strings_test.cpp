// CaseInsensitiveString, FontName, UTF16String and NStrings: what each takes, what it gives back, and
// text outside ASCII kept exactly.
#include "datatype/text/case_insensitive_text.h"
#include "datatype/text/n_strings.h"
#include "datatype/text/utf16_string.h"
// The types' headers come first: they bring in the class system's repository that the helpers use.
#include <string>

#include "../support.h"
#include "../user_view.h"

namespace {

using namespace graphics::datatype;
using userview::parsing;
using userview::setting;

class Strings : public orbtest::DataTypeTest {};

struct Case {
  const char* type;
  const char* input;
  const char* seen;  // the read-back literal and text, or "error: <identifier>"
};

constexpr const char* kSingleLine = "error: Korvax:orb:set_chck:ExpectedSingleLineString";
constexpr const char* kNonEmpty = "error: Korvax:orb:set_chck:ExpectedNonEmptyString";
constexpr const char* kUtf16Class = "error: Korvax:datatypes:UTF16StringDataType:ArrayClass";
constexpr const char* kUtf16Count = "error: Korvax:datatypes:UTF16StringDataType:NumberOfStrings";
constexpr const char* kTextClass = "error: Korvax:orb:datatypes:TextStringDataType:ArrayClass";
constexpr const char* kTextShape = "error: Korvax:orb:datatypes:TextStringDataType:IncorrectShape";
constexpr const char* kTextCell = "error: Korvax:orb:datatypes:TextStringDataType:InvalidCellArray";

TEST_F(Strings, ArraysAreTakenOrRefusedByType) {
  const Case cases[] = {
      {"CaseInsensitiveString", "'Mixed Case'", "'Mixed Case' | Mixed Case"},
      {"CaseInsensitiveString", "''", "'' | "},
      {"CaseInsensitiveString", "['ab';'cd']", kSingleLine},
      {"CaseInsensitiveString", "5", kSingleLine},
      {"FontName", "'  Courier '", "'Courier' | Courier"},
      {"FontName", "'   '", kNonEmpty},
      {"FontName", "{'Courier'}", kSingleLine},
      {"UTF16String", "'abc'", "'abc' | abc"},
      {"UTF16String", "{'abc'}", "'abc' | abc"},
      {"UTF16String", "{'a', 'b'}", kUtf16Count},
      {"UTF16String", "cell(1,0)", kUtf16Count},
      {"UTF16String", "['ab';'cd']", kUtf16Count},
      {"UTF16String", "{5}", kUtf16Class},
      {"UTF16String", "reshape('abcd',1,2,2)", kUtf16Class},
      {"UTF16String", "5", kUtf16Class},
      {"NStrings", "['ab ';'cde']", "{'ab';'cde'} | ab|cde"},
      {"NStrings", "{'x', ' y '}", "{'x';' y '} | x| y "},
      {"NStrings", "''", "cell(0,1) | "},
      {"NStrings", "{'a'; 5}", kTextCell},
      {"NStrings", "{['a';'b']}", kTextCell},
      {"NStrings", "cell(2,2)", kTextShape},
      {"NStrings", "reshape('abcd',1,2,2)", kTextShape},
      {"NStrings", "[1 2]", kTextClass},
  };
  for (const Case& c : cases) EXPECT_EQ(setting(c.type, c.input), c.seen) << c.type << " " << c.input;
}

TEST_F(Strings, TextIsTakenOrRefusedByType) {
  const Case cases[] = {
      {"CaseInsensitiveString", "two\nlines", kSingleLine},
      {"FontName", "", kNonEmpty},
      {"FontName", " Times ", "'Times' | Times"},
      {"NStrings", "a|b||c", "{'a';'b';'';'c'} | a|b||c"},
      {"NStrings", "", "cell(0,1) | "},
  };
  for (const Case& c : cases) EXPECT_EQ(parsing(c.type, c.input), c.seen) << c.type << " " << c.input;
}

TEST_F(Strings, CaseInsensitiveTextsCompareWithoutRegardToCaseButKeepTheirCase) {
  EXPECT_EQ(CaseInsensitiveString("Hello"), CaseInsensitiveString("hELLO"));
  EXPECT_FALSE(CaseInsensitiveString("Hello") == CaseInsensitiveString("Hello "));
  EXPECT_EQ(FontName("Courier New"), FontName("COURIER NEW"));
  EXPECT_EQ(FontNameDataType::makeDefaultValue().getText(), "Helvetica");
}

// Text outside ASCII, including a character outside the basic plane (a surrogate pair in UTF-16).
TEST_F(Strings, TextOutsideAsciiSurvivesEveryRoundTrip) {
  const std::string text = "h\xC3\xA9llo \xE2\x82\xAC \xF0\x9F\x98\x80";
  for (const char* type : {"CaseInsensitiveString", "FontName", "UTF16String"}) {
    EXPECT_EQ(parsing(type, text.c_str()), "'" + text + "' | " + text) << type;
  }
  EXPECT_EQ(parsing("NStrings", (text + "|" + text).c_str()), "{'" + text + "';'" + text + "'} | " + text + "|" + text);
  const gui_objects::ZxArrayPtr row(zxCreateString(text.c_str()));
  const objsys::COSValue stored = UTF16StringMC().from(objsys::COSValue(row.get()));
  EXPECT_EQ(stored.as<const UTF16String>()->getUnits(), u"h\u00E9llo \u20AC \U0001F600");
  UTF16StringDataType::getType()->destroy(stored);
}

}  // namespace
