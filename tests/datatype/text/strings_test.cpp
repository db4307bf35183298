// The text types other than TextString: what each takes and gives back, how values compare, text
// outside ASCII kept exactly, and the numbers a format writes.
#include "datatype/text/case_insensitive_text.h"
#include "datatype/text/n_strings.h"
#include "datatype/text/numeric_or_string.h"
#include "datatype/text/printf_format.h"
#include "datatype/text/utf16_string.h"
// The types' headers come first: they bring in the class system's repository that the helpers use.
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "../support.h"
#include "../user_view.h"
#include "cmdlanglib/literal.h"
#include "datatype/value_block.h"

namespace {

using namespace graphics::datatype;
using orbtest::RaisesId;
using userview::parsing;
using userview::setting;

class Strings : public orbtest::DataTypeTest {};

constexpr const char* kSingleLine = "error: Korvax:orb:set_chck:ExpectedSingleLineString";
constexpr const char* kUtf16Class = "error: Korvax:datatypes:UTF16StringDataType:ArrayClass";
constexpr const char* kUtf16Count = "error: Korvax:datatypes:UTF16StringDataType:NumberOfStrings";
constexpr const char* kText = "error: Korvax:orb:datatypes:TextStringDataType:";
constexpr const char* kNumClass = "error: Korvax:orb:datatypes:NumericOrStringDataType:ArrayClass";
constexpr const char* kNumCell = "error: Korvax:orb:datatypes:NumericOrStringDataType:InvalidCellArray";

// Each case is set from a literal, or read from text when text is true; seen is the read-back literal
// and text, or "error: <identifier>".
TEST_F(Strings, InputIsTakenOrRefusedByType) {
  const struct {
    const char* type;
    const char* input;
    std::string seen;
    bool text = false;
  } cases[] = {{"CaseInsensitiveString", "'Mixed Case'", "'Mixed Case' | Mixed Case"},
               {"CaseInsensitiveString", "['ab';'cd']", kSingleLine},
               {"CaseInsensitiveString", "two\nlines", kSingleLine, true},
               {"FontName", "'  Courier '", "'Courier' | Courier"},
               {"FontName", "'   '", "error: Korvax:orb:set_chck:ExpectedNonEmptyString"},
               {"UTF16String", "{'abc'}", "'abc' | abc"},
               {"UTF16String", "{'a', 'b'}", kUtf16Count},
               {"UTF16String", "['ab';'cd']", kUtf16Count},
               {"UTF16String", "{5}", kUtf16Class},
               {"NStrings", "['ab ';'cde']", "{'ab';'cde'} | ab|cde"},
               {"NStrings", "{'x', ' y '}", "{'x';' y '} | x| y "},
               {"NStrings", "''", "cell(0,1) | "},
               {"NStrings", "{'a'; 5}", std::string(kText) + "InvalidCellArray"},
               {"NStrings", "cell(2,2)", std::string(kText) + "IncorrectShape"},
               {"NStrings", "[1 2]", std::string(kText) + "ArrayClass"},
               {"NStrings", "a|b||c", "{'a';'b';'';'c'} | a|b||c", true},
               // Text that reads as one number is the number; any other text stays text.
               {"NumericOrString", "-2.5e3", "-2500 | -2500", true},
               {"NumericOrString", "12abc", "'12abc' | 12abc", true},
               {"NumericOrString", "1 2", "'1 2' | 1 2", true},
               {"NumericOrString", "", "'' | ", true},
               {"PrintfFormat", "['%d';'%d']", "error: Korvax:datatypes:PrintfFormatDataType:InvalidFormat"}};
  for (const auto& c : cases) {
    EXPECT_EQ(c.text ? parsing(c.type, c.input) : setting(c.type, c.input), c.seen) << c.type << " " << c.input;
  }
}

// Arrays are kept as given, text that reads as a number included; only the UI type takes logicals.
TEST_F(Strings, NumbersOrTextKeepArraysAsGiven) {
  const char* const cases[][2] = {{"int16([1 2])", "int16([1 2]) | [1 2]"},
                                  {"'5'", "'5' | 5"},
                                  {"{'a'; 2}", "{'a';2} | <2x1 cell>"},
                                  {"complex(1,2)", kNumClass},
                                  {"sparse(1)", kNumClass},
                                  {"struct('a',1)", kNumClass},
                                  {"{{'a'}}", kNumCell},
                                  {"{complex(1,2)}", kNumCell}};
  for (const auto& c : cases) {
    EXPECT_EQ(setting("NumericOrString", c[0]), c[1]) << c[0];
    EXPECT_EQ(setting("UINumericOrString", c[0]), c[1]) << c[0];
  }
  EXPECT_EQ(setting("NumericOrString", "true"), kNumClass);
  EXPECT_EQ(setting("UINumericOrString", "true"), "true | 1");
  EXPECT_EQ(setting("NumericOrString", "{true}"), kNumCell);
  EXPECT_EQ(setting("UINumericOrString", "{true}"), "{true} | <1x1 cell>");
}

// Case-insensitive texts compare without regard to case; numbers or text are equal when class, shape
// and elements agree (so a number and its text differ, and NaN equals nothing), and a value holding
// nothing cannot be compared at all.
TEST_F(Strings, ValuesCompareByTheirOwnRules) {
  EXPECT_EQ(CaseInsensitiveString("Hello"), CaseInsensitiveString("hELLO"));
  EXPECT_FALSE(CaseInsensitiveString("Hello") == CaseInsensitiveString("Hello "));
  EXPECT_EQ(FontName("Courier New"), FontName("COURIER NEW"));
  const auto value = [](const char* literal) { return NumericOrString(cmdlang::readLiteral(literal).get()); };
  EXPECT_EQ(value("{'a'; 2}"), value("{'a'; 2}"));
  for (const auto& [a, b] :
       {std::pair{"5", "'5'"}, {"5", "int8(5)"}, {"[1 2]", "[1; 2]"}, {"NaN", "NaN"}, {"{'a'}", "{'b'}"}}) {
    EXPECT_FALSE(value(a) == value(b)) << a << " vs " << b;
  }
  const objsys::COSValue empty = newValueBlock<NumericOrString>();
  const objsys::COSValue uiEmpty = newValueBlock<UINumericOrString>();
  NumericOrStringDataType& type = *NumericOrStringDataType::getType();
  UINumericOrStringDataType& uiType = *UINumericOrStringDataType::getType();
  EXPECT_THAT([&] { type.isEqual(empty, type.getDefaultValue()); },
              RaisesId("Korvax:graphics::datatype::NumericOrStringDataType::isEqual"));
  EXPECT_THAT([&] { uiType.isEqual(uiType.getDefaultValue(), uiEmpty); },
              RaisesId("Korvax:graphics::datatype::UINumericOrStringDataType::isEqual"));
  type.destroy(empty);
  uiType.destroy(uiEmpty);
}

// Text outside ASCII, including a character outside the basic plane (a surrogate pair in UTF-16).
TEST_F(Strings, TextOutsideAsciiSurvivesEveryRoundTrip) {
  const std::string text = "h\xC3\xA9llo \xE2\x82\xAC \xF0\x9F\x98\x80";
  for (const char* type : {"CaseInsensitiveString", "FontName", "UTF16String"}) {
    EXPECT_EQ(parsing(type, text.c_str()), "'" + text + "' | " + text) << type;
  }
  const gui_objects::ZxArrayPtr row(zxCreateString(text.c_str()));
  const objsys::COSValue stored = UTF16StringMC().from(objsys::COSValue(row.get()));
  EXPECT_EQ(stored.as<const UTF16String>()->getUnits(), u"h\u00E9llo \u20AC \U0001F600");
  UTF16StringDataType::getType()->destroy(stored);
}

// A format takes exactly one numeric conversion; the key after the type's catalog says why not.
TEST_F(Strings, PrintfFormatsTakeOneNumericConversion) {
  const auto refusal = [](const char* format) -> std::string {
    try {
      PrintfFormat accepted(format);
    } catch (const fl::except::IMsgIDException& error) {
      const std::string id = error.get_error_id();
      return id.substr(id.rfind(':') + 1);
    }
    return "";
  };
  for (const char* format :
       {"%d", "%i", "%u", "%o", "%x", "%X", "%f", "%F", "%e", "%E", "%g", "%G", "%-+ 0#100.100e"}) {
    EXPECT_EQ(refusal(format), "") << format;
  }
  const char* const refused[][2] = {
      {"%s", "UnsupportedType"}, {"%n", "UnsupportedType"}, {"%q", "InvalidFormat"},     {"%ld", "InvalidFormat"},
      {"%", "InvalidFormat"},    {"abc", "InvalidFormat"},  {"%d %d", "InvalidFormat"},  {"%%d", "InvalidFormat"},
      {"%*d", "DynamicNumber"},  {"%.*f", "DynamicNumber"}, {"%101d", "NumberTooLarge"}, {"%.101f", "NumberTooLarge"}};
  for (const auto& c : refused) EXPECT_EQ(refusal(c[0]), c[1]) << c[0];
}

// Integer conversions round to the nearest (ties to even) and write non-finite numbers as %f would.
TEST_F(Strings, PrintfFormatsWriteOneNumber) {
  const double inf = std::numeric_limits<double>::infinity();
  const struct {
    const char* format;
    double number;
    const char* written;
  } cases[] = {
      {"%d", 2.6, "3"},      {"%i", -2.5, "-2"},        {"%u", -7, "-7"},       {"%o", 8, "10"},
      {"%#x", 255, "0xff"},  {"%05d", 42, "00042"},     {"%-4d|", 42, "42  |"}, {"%d", inf, "inf"},
      {"%5d", NAN, "  nan"}, {"%.2f", 3.14159, "3.14"}, {"%F", inf, "INF"},     {"%.1E", 0.05, "5.0E-02"},
      {"%g", 1e-5, "1e-05"}, {"%G", 1e20, "1E+20"},     {"%g%%", 50, "50%"},    {"x = %.1f mm", 2, "x = 2.0 mm"}};
  for (const auto& c : cases) EXPECT_EQ(PrintfFormat(c.format).format(c.number), c.written) << c.format;
}

}  // namespace
