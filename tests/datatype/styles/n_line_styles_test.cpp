// NLineStyles: lists of line styles from arrays and text, their count, and refusals.
#include "datatype/styles/n_line_styles.h"

#include "../support.h"
#include "../user_view.h"

namespace {

using namespace graphics::datatype;
using userview::parsing;
using userview::setting;

class LineStyleLists : public orbtest::DataTypeTest {};

struct Case {
  const char* input;
  const char* seen;  // the read-back literal and text, or "error: <identifier>"
};

constexpr const char* kInvalidStyle = "error: Korvax:orbdatatypes:InvalidMarkerLineStyle";
constexpr const char* kNotEnough = "error: Korvax:orbdatatypes:NotEnoughStyles";
constexpr const char* kInvalidInput = "error: Korvax:orbdatatypes:InvalidInput";

TEST_F(LineStyleLists, ArraysGiveOneStylePerName) {
  const Case cases[] = {
      {"'--'", "'--' | --"},
      {"'-|--|:'", "'-|--|:' | -|--|:"},
      {"' - | NONE '", "'-|none' | -|none"},
      {"{'-.'; ':'}", "'-.|:' | -.|:"},
      {"{'-', '--'}", "'-|--' | -|--"},
      {"''", kNotEnough},
      {"cell(1,0)", kNotEnough},
      {"'o'", kInvalidStyle},
      {"'-o'", kInvalidStyle},
      {"'-||:'", kInvalidStyle},
      {"{'-', 'x'}", kInvalidStyle},
      {"5", kInvalidInput},
      {"['-';':']", kInvalidInput},
      {"cell(2,2)", kInvalidInput},
      {"{'-', 1}", kInvalidInput},
  };
  for (const Case& c : cases) EXPECT_EQ(setting("NLineStyles", c.input), c.seen) << c.input;
}

TEST_F(LineStyleLists, TextIsNamesSeparatedByBars) {
  const Case cases[] = {{"-.|-", "'-.|-' | -.|-"}, {"   ", kNotEnough}, {"-|", kInvalidStyle}, {"dots", kInvalidStyle}};
  for (const Case& c : cases) EXPECT_EQ(parsing("NLineStyles", c.input), c.seen) << c.input;
}

TEST_F(LineStyleLists, SuccessiveLinesCycleThroughTheStyles) {
  const NLineStyles styles(LineStyleArray({LineStyleArrayStyle::dashed, LineStyleArrayStyle::dotted}));
  EXPECT_EQ(styles.getCount(), 2u);
  EXPECT_EQ(styles.styleFor(0), LineStyleArrayStyle::dashed);
  EXPECT_EQ(styles.styleFor(3), LineStyleArrayStyle::dotted);
  EXPECT_EQ(NLineStylesDataType::makeDefaultValue().getCount(), 1u);
}

}  // namespace
