// The style lists as users set them, from literals of every shape and from text, with the identifiers
// and the lists of names they are refused with; the value class and the nested style accessors.
#include "datatype/styles/style_arrays.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "../support.h"
#include "../user_view.h"

namespace {

using namespace graphics::datatype;
using objsys::COSValue;

constexpr const char* kLineNames = "'-' | '--' | ':' | '-.' | 'none'";
constexpr const char* kNotText = "error: Korvax:datatypes:InvalidEnumValueFor";
constexpr const char* kNotAName = "error: Korvax:datatypes:InvalidEnumValue";
constexpr const char* kNonVector = "error: Korvax:datatypes:LineStyleArray:NonVectorCellArray";

class StyleArrays : public orbtest::DataTypeTest {};

// Arrays give one style, or one per element of a vector cell; text names one style or several
// separated by bars or blanks.
TEST_F(StyleArrays, ArraysAndTextsGiveOneStyleOrAList) {
  const struct {
    const char* type;
    const char* input;  // a host literal, or a text when text is set
    const char* seen;   // "read-back literal | text", or "error: <identifier>"
    bool text = false;
  } cases[] = {
      // clang-format off
      // An exact name wins over the longer names it begins.
      {"LineStyleArray", "'-'", "'-' | -"},                       {"LineStyleArray", "'  -.  '", "'-.' | -."},
      {"LineStyleArray", "'n'", "'none' | none"},                 {"LineStyleArray", "  no ", "'none' | none", true},
      // A one-element cell gives one style, which reads back as a char row, not as a cell.
      {"LineStyleArray", "{'--'}", "'--' | --"},                  {"LineStyleArray", "{'-'; 'no'}", "{'-','none'} | -|none"},
      {"LineStyleArray", "- --\t:", "{'-','--',':'} | -|--|:", true},
      {"LineStyleArray", "cell(0, 1)", "cell(1,0) | "},
      {"MarkerStyleArray", "{'s', 'd', 'p', 'h', 'X', '^', 'v', '<', '>', '*', '+', '.'}",
       "{'square','diamond','pentagram','hexagram','x','^','v','<','>','*','+','.'} | "
       "square|diamond|pentagram|hexagram|x|^|v|<|>|*|+|."},
      {"MarkerStyleArray", "o|s|d", "{'o','square','diamond'} | o|square|diamond", true},
      // Refused: anything but one row of text, cells that are not vectors, names of no style.
      {"LineStyleArray", "''", kNotText},                         {"LineStyleArray", "['--'; '-.']", kNotText},
      {"LineStyleArray", "{'-', 1}", kNotText},                   {"LineStyleArray", "cell(1, 2)", kNotText},
      {"LineStyleArray", "{'-', '--'; ':', '-.'}", kNonVector},   {"LineStyleArray", "cell(0, 0)", kNonVector},
      {"MarkerStyleArray", "reshape({'o', 'o'}, 1, 1, 2)", "error: Korvax:datatypes:MarkerStyleArray:NonVectorCellArray"},
      {"LineStyleArray", "{'-', ''}", kNotAName},                 {"LineStyleArray", "'-|--'", kNotAName},
      // "-" is exact, but "-" followed by anything else abbreviates nothing.
      {"LineStyleArray", "'-x'", kNotAName},                      {"LineStyleArray", "-|dash|:", kNotAName, true},
      {"LineStyleArray", "|", kNotAName, true},                   {"LineStyleArray", "-|", kNotAName, true},
      {"MarkerStyleArray", "o,s", kNotAName, true},
      // clang-format on
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.type) + (c.text ? " text \"" : " ") + c.input + (c.text ? "\"" : ""));
    EXPECT_EQ(c.text ? userview::parsing(c.type, c.input) : userview::setting(c.type, c.input), c.seen);
  }
}

// The arguments of the refusal that convert raises.
std::vector<std::string> refusalArguments(const std::function<void()>& convert) {
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
  using Arguments = std::vector<std::string>;
  EXPECT_EQ(fromArray(zxCreateString("dash")), (Arguments{"dash", kLineNames}));
  EXPECT_EQ(fromArray(zxCreateDoubleScalar(1)), (Arguments{kLineNames}));
  // A NUL would cut the name short and select "-"; the message shows it, also from within a cell.
  EXPECT_EQ(fromArray(zxCreateStringFromUTF16(u"-\0x", 3)), (Arguments{"-\\0x", kLineNames}));
  zxArray* cell = zxCreateCellMatrix(1, 2);
  zxSetCell(cell, 0, zxCreateString("--"));
  zxSetCell(cell, 1, zxCreateStringFromUTF16(u"-\0x", 3));
  EXPECT_EQ(fromArray(cell), (Arguments{"-\\0x", kLineNames}));
  EXPECT_EQ(refusalArguments([] { LineStyleArraySC().from(COSValue("- | dash")); }), (Arguments{"dash", kLineNames}));
  EXPECT_EQ(refusalArguments([] { LineStyleArraySC().from(COSValue("-||--")); }), (Arguments{"-||--", kLineNames}));
  // No array at all is refused too; an empty slot reads back as an empty double array.
  EXPECT_EQ(refusalArguments([] { MarkerStyleArrayMC().from(COSValue()); }).at(0),
            "'+' | 'o' | '*' | '.' | 'x' | 'square' | 'diamond' | 'v' | '^' | '>' | '<' | 'pentagram' | 'hexagram' | "
            "'none'");
  const gui_objects::ZxArrayPtr empty(LineStyleArrayMC().to(COSValue()).as<zxArray>());
  EXPECT_TRUE(zxIsDouble(empty.get()) && zxIsEmpty(empty.get()));
}

TEST_F(StyleArrays, TheValueIsAnOrderedListOfStylesWhoseStylesForwardToTheirEnumeration) {
  using S = LineStyleArrayStyle;
  LineStyleArray list({S::dashed, S::dotted});
  EXPECT_FALSE(list == LineStyleArray({S::dotted, S::dashed}));
  list.setLength(3);  // lengthening adds the first style
  EXPECT_EQ(list, LineStyleArray({S::dashed, S::dotted, S::solid}));
  list.setStyle(S::none, 0);
  list.setLength(1);
  EXPECT_EQ(list, LineStyleArray(S::none));
  EXPECT_THROW(list.setStyle(S::none, 1), std::out_of_range);
  // The first style's ordinal is 0, which must not read as "no style".
  EXPECT_EQ(S::getEnumValue("-"), S::solid);
  EXPECT_EQ(S::getEnumValue("-x"), std::nullopt);
  EXPECT_EQ(S::getEnumValue(nullptr), std::nullopt);
  EXPECT_EQ(S::getEnumString(99), nullptr);
}

}  // namespace
