// NLineStyles: lists of line styles from arrays and text, their count, and refusals.
#include "datatype/styles/n_line_styles.h"

#include "../support.h"
#include "../user_view.h"

namespace {

using namespace graphics::datatype;

class LineStyleLists : public orbtest::DataTypeTest {};

constexpr const char* kInvalidStyle = "error: Korvax:orbdatatypes:InvalidMarkerLineStyle";
constexpr const char* kNotEnough = "error: Korvax:orbdatatypes:NotEnoughStyles";
constexpr const char* kInvalidInput = "error: Korvax:orbdatatypes:InvalidInput";

// Arrays give one style per name, in bar-separated text or a vector cell; text is names separated by bars.
TEST_F(LineStyleLists, ArraysAndTextsGiveOneStylePerName) {
  const struct {
    const char* input;  // a host literal, or a text when text is set
    const char* seen;   // the read-back literal and text, or "error: <identifier>"
    bool text = false;
  } cases[] = {
      {"'-|--|:'", "'-|--|:' | -|--|:"},
      {"' - | NONE '", "'-|none' | -|none"},
      {"{'-.'; ':'}", "'-.|:' | -.|:"},
      {"-.|-", "'-.|-' | -.|-", true},
      {"''", kNotEnough},
      {"cell(1,0)", kNotEnough},
      {"'-o'", kInvalidStyle},
      {"'-||:'", kInvalidStyle},
      {"{'-', 'x'}", kInvalidStyle},
      {"-|", kInvalidStyle, true},
      {"['-';':']", kInvalidInput},
      {"cell(2,2)", kInvalidInput},
      {"{'-', 1}", kInvalidInput},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.text ? userview::parsing("NLineStyles", c.input) : userview::setting("NLineStyles", c.input), c.seen)
        << (c.text ? "text " : "") << c.input;
  }
}

TEST_F(LineStyleLists, SuccessiveLinesCycleThroughTheStyles) {
  const NLineStyles styles(LineStyleArray({LineStyleArrayStyle::dashed, LineStyleArrayStyle::dotted}));
  EXPECT_EQ(styles.getCount(), 2u);
  EXPECT_EQ(styles.styleFor(0), LineStyleArrayStyle::dashed);
  EXPECT_EQ(styles.styleFor(3), LineStyleArrayStyle::dotted);
}

}  // namespace
