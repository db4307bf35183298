// The style lists as users set them, from literals of every shape and from text, with the identifiers
// and the lists of names they are refused with; the text forms read back; the value class and the
// nested style accessors.
#include "datatype/styles/style_arrays.h"

#include <stdexcept>
#include <string>
#include <vector>

#include "../support.h"
#include "../user_view.h"
#include "utillib/ut.h"

namespace {

using namespace graphics::datatype;
using objsys::COSValue;
using userview::parsing;
using userview::setting;

constexpr const char* kLineNames = "'-' | '--' | ':' | '-.' | 'none'";
constexpr const char* kNotText = "error: Korvax:datatypes:InvalidEnumValueFor";
constexpr const char* kNotAName = "error: Korvax:datatypes:InvalidEnumValue";

class StyleArrays : public orbtest::DataTypeTest {};

struct Case {
  const char* type;
  const char* input;
  const char* seen;  // "read-back literal | text", or "error: <identifier>"
};

TEST_F(StyleArrays, ArraysGiveOneStyleOrOnePerElementOfAVectorCell) {
  // clang-format off
  const Case cases[] = {
      // An exact name wins over the longer names it begins.
      {"LineStyleArray", "'-'", "'-' | -"},
      {"LineStyleArray", "'  -.  '", "'-.' | -."},
      {"LineStyleArray", "'NONE'", "'none' | none"},
      {"LineStyleArray", "'n'", "'none' | none"},
      // A one-element cell gives one style, which reads back as a char row, not as a cell.
      {"LineStyleArray", "{'--'}", "'--' | --"},
      {"LineStyleArray", "{'-', '--', ':'}", "{'-','--',':'} | -|--|:"},
      {"LineStyleArray", "{'-'; 'no'}", "{'-','none'} | -|none"},
      {"LineStyleArray", "cell(0, 1)", "cell(1,0) | "},
      {"MarkerStyleArray", "{'s', 'd', 'p', 'h', 'X', '^', 'v', '<', '>', '*', '+', '.'}",
       "{'square','diamond','pentagram','hexagram','x','^','v','<','>','*','+','.'} | "
       "square|diamond|pentagram|hexagram|x|^|v|<|>|*|+|."},
      // Refused: anything but one row of text, cells that are not vectors, names of no style.
      {"LineStyleArray", "''", kNotText},
      {"LineStyleArray", "reshape('', 1, 0)", kNotText},
      {"LineStyleArray", "['--'; '-.']", kNotText},
      {"LineStyleArray", "reshape('----', 1, 2, 2)", kNotText},
      {"LineStyleArray", "[]", kNotText},
      {"LineStyleArray", "uint8(45)", kNotText},
      {"LineStyleArray", "struct('style', '-')", kNotText},
      {"LineStyleArray", "{'-', '--'; ':', '-.'}", "error: Korvax:datatypes:LineStyleArray:NonVectorCellArray"},
      {"LineStyleArray", "cell(0, 0)", "error: Korvax:datatypes:LineStyleArray:NonVectorCellArray"},
      {"MarkerStyleArray", "reshape({'o', 'o'}, 1, 1, 2)", "error: Korvax:datatypes:MarkerStyleArray:NonVectorCellArray"},
      {"LineStyleArray", "{'-', 1}", kNotText},
      {"LineStyleArray", "{'-', {'--'}}", kNotText},
      {"LineStyleArray", "cell(1, 2)", kNotText},
      {"LineStyleArray", "{['--'; '-.']}", kNotText},
      {"LineStyleArray", "{'-', ''}", kNotAName},
      {"LineStyleArray", "'-|--'", kNotAName},
      // "-" is exact, but "-" followed by anything else abbreviates nothing.
      {"LineStyleArray", "'-x'", kNotAName},
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.type) + " " + c.input);
    EXPECT_EQ(setting(c.type, c.input), c.seen);
  }
}

TEST_F(StyleArrays, TextNamesOneStyleOrSeveralSeparatedByBarsOrBlanks) {
  // clang-format off
  const Case cases[] = {
      {"LineStyleArray", "  no ", "'none' | none"},
      {"LineStyleArray", "-|--|:|-.", "{'-','--',':','-.'} | -|--|:|-."},
      {"LineStyleArray", " - | -- ", "{'-','--'} | -|--"},
      {"LineStyleArray", "- --\t:", "{'-','--',':'} | -|--|:"},
      {"LineStyleArray", " \t ", "cell(1,0) | "},
      {"MarkerStyleArray", "o|s|d", "{'o','square','diamond'} | o|square|diamond"},
      {"LineStyleArray", "-|dash|:", kNotAName},
      {"LineStyleArray", "|", kNotAName},
      {"LineStyleArray", "-|", kNotAName},
      {"LineStyleArray", "-| |--", kNotAName},
      {"MarkerStyleArray", "o,s", kNotAName},
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.type) + " \"" + c.input + "\"");
    EXPECT_EQ(parsing(c.type, c.input), c.seen);
  }
}

// The arguments of the refusal that convert raises.
template <class Convert>
std::vector<std::string> refusalArguments(Convert&& convert) {
  try {
    convert();
  } catch (const fl::except::IMsgIDException& error) {
    return error.get_arguments();
  }
  return {"accepted"};
}

TEST_F(StyleArrays, RefusalsCarryTheOffendingTextAndTheNamesTheTypeTakes) {
  const auto fromArray = [](zxArray* array) {
    const gui_objects::ZxArrayPtr owned(array);
    return refusalArguments([&] { LineStyleArrayMC().from(COSValue(array)); });
  };
  const auto fromText = [](const char* text) {
    return refusalArguments([&] { LineStyleArraySC().from(COSValue(text)); });
  };
  using Arguments = std::vector<std::string>;
  EXPECT_EQ(fromArray(zxCreateString("dash")), (Arguments{"dash", kLineNames}));
  EXPECT_EQ(fromArray(zxCreateDoubleScalar(1)), (Arguments{kLineNames}));
  // A NUL would cut the name short and select "-"; the message shows it.
  EXPECT_EQ(fromArray(zxCreateStringFromUTF16(u"-\0x", 3)), (Arguments{"-\\0x", kLineNames}));
  zxArray* cell = zxCreateCellMatrix(1, 2);
  zxSetCell(cell, 0, zxCreateString("--"));
  zxSetCell(cell, 1, zxCreateStringFromUTF16(u"-\0x", 3));
  EXPECT_EQ(fromArray(cell), (Arguments{"-\\0x", kLineNames}));
  EXPECT_EQ(fromText("- | dash"), (Arguments{"dash", kLineNames}));
  EXPECT_EQ(fromText("-||--"), (Arguments{"-||--", kLineNames}));
  EXPECT_EQ(refusalArguments([] { MarkerStyleArrayMC().from(COSValue()); }).at(0),
            "'+' | 'o' | '*' | '.' | 'x' | 'square' | 'diamond' | 'v' | '^' | '>' | '<' | 'pentagram' | 'hexagram' | "
            "'none'");
}

// Every list, from empty to long, reads back as the same list through both conversions.
TEST_F(StyleArrays, TheArrayAndTextOfEveryListReadBackAsThatList) {
  using S = MarkerStyleArrayStyle;
  const MarkerStyleArray lists[] = {
      MarkerStyleArray(),
      MarkerStyleArray(S::point),
      MarkerStyleArray({S::plus, S::circle, S::asterisk, S::point, S::cross, S::square, S::diamond, S::triangledown,
                        S::triangleup, S::triangleright, S::triangleleft, S::pentagram, S::hexagram, S::none}),
      MarkerStyleArray({S::none, S::none}),
  };
  MarkerStyleArrayDataType& type = *MarkerStyleArrayDataType::getType();
  for (const MarkerStyleArray& list : lists) {
    SCOPED_TRACE(list.getLength());
    const COSValue value = newValueBlock<MarkerStyleArray>(list);
    const gui_objects::ZxArrayPtr array(MarkerStyleArrayMC().to(value).as<zxArray>());
    const COSValue fromArray = MarkerStyleArrayMC().from(COSValue(array.get()));
    EXPECT_EQ(*fromArray.as<const MarkerStyleArray>(), list);
    const COSValue text = MarkerStyleArraySC().to(value);
    const COSValue fromText = MarkerStyleArraySC().from(text);
    EXPECT_EQ(*fromText.as<const MarkerStyleArray>(), list);
    for (const COSValue made : {value, fromArray, fromText}) type.destroy(made);
    utFree(text.pointer());
  }
}

TEST_F(StyleArrays, NoArrayIsRefusedAndNoValueReadsBackAsEmpty) {
  EXPECT_THAT([] { LineStyleArrayMC().from(COSValue()); }, orbtest::RaisesId("Korvax:datatypes:InvalidEnumValueFor"));
  const gui_objects::ZxArrayPtr empty(LineStyleArrayMC().to(COSValue()).as<zxArray>());
  EXPECT_TRUE(zxIsDouble(empty.get()) && zxIsEmpty(empty.get()));
  EXPECT_EQ(setting("LineStyleArray", "cell(1, 0)"), "cell(1,0) | ");
  EXPECT_EQ(parsing("LineStyleArray", ""), "cell(1,0) | ");
}

TEST_F(StyleArrays, TheValueIsAnOrderedListOfStyles) {
  using S = LineStyleArrayStyle;
  LineStyleArray list({S::dashed, S::dotted});
  EXPECT_FALSE(list == LineStyleArray({S::dotted, S::dashed}));
  list.setLength(3);  // lengthening adds the first style
  EXPECT_EQ(list, LineStyleArray({S::dashed, S::dotted, S::solid}));
  list.setStyle(S::none, 0);
  list.setLength(1);
  EXPECT_EQ(list, LineStyleArray(S::none));
  EXPECT_THROW(list.setStyle(S::none, 1), std::out_of_range);
}

TEST_F(StyleArrays, TheNestedStylesForwardToTheirEnumeration) {
  using S = LineStyleArrayStyle;
  // The first style's ordinal is 0, which must not read as "no style".
  EXPECT_EQ(S::getEnumValue("-"), S::solid);
  EXPECT_EQ(S::getEnumValue(" No"), S::none);
  EXPECT_EQ(S::getEnumValue("-x"), std::nullopt);
  EXPECT_EQ(S::getEnumValue(nullptr), std::nullopt);
  EXPECT_EQ(S::getEnumString(99), nullptr);
  EXPECT_EQ(S::getEnumVisibility("dash"), -1);
  EXPECT_TRUE(S::isEnumNameAmbiguous("dash"));
  EXPECT_EQ(S::getEnumStrings(), (std::vector<std::string>{"-", "--", ":", "-.", "none"}));
  EXPECT_EQ(S::getVisibleValues(), (std::vector<S::value>{S::solid, S::dashed, S::dotted, S::dashdot, S::none}));
}

TEST_F(StyleArrays, TheDefaultsAreOneStyleLists) {
  const COSValue line = LineStyleArrayDataType::getType()->getDefaultValue();
  EXPECT_EQ(*line.as<const LineStyleArray>(), LineStyleArray(LineStyleArrayStyle::solid));
  const COSValue marker = MarkerStyleArrayDataType::getType()->getDefaultValue();
  EXPECT_EQ(*marker.as<const MarkerStyleArray>(), MarkerStyleArray(MarkerStyleArrayStyle::none));
}

}  // namespace
