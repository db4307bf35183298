// The style lists as users set them, from literals of every shape and from text, with the identifiers
// and the lists of names they are refused with; the value class and the nested style accessors.
#include "datatype/styles/style_arrays.h"

#include <stdexcept>
#include <string>
#include <vector>

#include "../support.h"
#include "../user_view.h"

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
  const char* input;  // a host literal, or a text when text is set
  const char* seen;   // "read-back literal | text", or "error: <identifier>"
  bool text = false;
};

// Arrays give one style, or one per element of a vector cell; text names one style or several
// separated by bars or blanks.
TEST_F(StyleArrays, ArraysAndTextsGiveOneStyleOrAList) {
  // clang-format off
  const Case cases[] = {
      // An exact name wins over the longer names it begins.
      {"LineStyleArray", "'-'", "'-' | -"},                       {"LineStyleArray", "'  -.  '", "'-.' | -."},
      {"LineStyleArray", "'n'", "'none' | none"},                 {"LineStyleArray", "  no ", "'none' | none", true},
      // A one-element cell gives one style, which reads back as a char row, not as a cell.
      {"LineStyleArray", "{'--'}", "'--' | --"},
      {"LineStyleArray", "{'-', '--', ':'}", "{'-','--',':'} | -|--|:"},
      {"LineStyleArray", "{'-'; 'no'}", "{'-','none'} | -|none"},
      {"LineStyleArray", "-|--|:|-.", "{'-','--',':','-.'} | -|--|:|-.", true},
      {"LineStyleArray", "- --\t:", "{'-','--',':'} | -|--|:", true},
      {"LineStyleArray", "cell(0, 1)", "cell(1,0) | "},          {"LineStyleArray", " \t ", "cell(1,0) | ", true},
      {"MarkerStyleArray", "{'s', 'd', 'p', 'h', 'X', '^', 'v', '<', '>', '*', '+', '.'}",
       "{'square','diamond','pentagram','hexagram','x','^','v','<','>','*','+','.'} | "
       "square|diamond|pentagram|hexagram|x|^|v|<|>|*|+|."},
      {"MarkerStyleArray", "o|s|d", "{'o','square','diamond'} | o|square|diamond", true},
      // Refused: anything but one row of text, cells that are not vectors, names of no style.
      {"LineStyleArray", "''", kNotText},                         {"LineStyleArray", "['--'; '-.']", kNotText},
      {"LineStyleArray", "[]", kNotText},                         {"LineStyleArray", "uint8(45)", kNotText},
      {"LineStyleArray", "{'-', 1}", kNotText},                   {"LineStyleArray", "cell(1, 2)", kNotText},
      {"LineStyleArray", "{'-', '--'; ':', '-.'}", "error: Korvax:datatypes:LineStyleArray:NonVectorCellArray"},
      {"LineStyleArray", "cell(0, 0)", "error: Korvax:datatypes:LineStyleArray:NonVectorCellArray"},
      {"MarkerStyleArray", "reshape({'o', 'o'}, 1, 1, 2)", "error: Korvax:datatypes:MarkerStyleArray:NonVectorCellArray"},
      {"LineStyleArray", "{'-', ''}", kNotAName},                 {"LineStyleArray", "'-|--'", kNotAName},
      // "-" is exact, but "-" followed by anything else abbreviates nothing.
      {"LineStyleArray", "'-x'", kNotAName},                      {"LineStyleArray", "-|dash|:", kNotAName, true},
      {"LineStyleArray", "|", kNotAName, true},                   {"LineStyleArray", "-|", kNotAName, true},
      {"MarkerStyleArray", "o,s", kNotAName, true},
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.type) + (c.text ? " text \"" : " ") + c.input + (c.text ? "\"" : ""));
    EXPECT_EQ(c.text ? parsing(c.type, c.input) : setting(c.type, c.input), c.seen);
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

TEST_F(StyleArrays, NoArrayIsRefusedAndNoValueReadsBackAsEmpty) {
  EXPECT_THAT([] { LineStyleArrayMC().from(COSValue()); }, orbtest::RaisesId("Korvax:datatypes:InvalidEnumValueFor"));
  const gui_objects::ZxArrayPtr empty(LineStyleArrayMC().to(COSValue()).as<zxArray>());
  EXPECT_TRUE(zxIsDouble(empty.get()) && zxIsEmpty(empty.get()));
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
  EXPECT_EQ(S::getEnumValue("-x"), std::nullopt);
  EXPECT_EQ(S::getEnumValue(nullptr), std::nullopt);
  EXPECT_EQ(S::getEnumString(99), nullptr);
}

TEST_F(StyleArrays, TheDefaultsAreOneStyleLists) {
  const COSValue line = LineStyleArrayDataType::getType()->getDefaultValue();
  EXPECT_EQ(*line.as<const LineStyleArray>(), LineStyleArray(LineStyleArrayStyle::solid));
  const COSValue marker = MarkerStyleArrayDataType::getType()->getDefaultValue();
  EXPECT_EQ(*marker.as<const MarkerStyleArray>(), MarkerStyleArray(MarkerStyleArrayStyle::none));
}

}  // namespace
