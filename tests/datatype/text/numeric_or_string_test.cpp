// NumericOrString and UINumericOrString: numbers against text, cells, comparison.
#include "datatype/text/numeric_or_string.h"

#include "../support.h"
#include "../user_view.h"
#include "cmdlanglib/literal.h"
#include "datatype/value_block.h"

namespace {

using namespace graphics::datatype;
using orbtest::RaisesId;
using userview::parsing;
using userview::setting;

class NumbersOrText : public orbtest::DataTypeTest {};

struct Case {
  const char* input;
  const char* seen;  // for NumericOrString
  const char* seenByUI;
};

constexpr const char* kClass = "error: Korvax:orb:datatypes:NumericOrStringDataType:ArrayClass";
constexpr const char* kCell = "error: Korvax:orb:datatypes:NumericOrStringDataType:InvalidCellArray";

TEST_F(NumbersOrText, ArraysAreKeptAsGiven) {
  const Case cases[] = {
      {"5", "5 | 5", "5 | 5"},
      {"int16([1 2])", "int16([1 2]) | [1 2]", "int16([1 2]) | [1 2]"},
      {"'five'", "'five' | five", "'five' | five"},
      {"'5'", "'5' | 5", "'5' | 5"},
      {"{'a'; 2}", "{'a';2} | <2x1 cell>", "{'a';2} | <2x1 cell>"},
      {"true", kClass, "true | 1"},
      {"{true}", kCell, "{true} | <1x1 cell>"},
      {"complex(1,2)", kClass, kClass},
      {"sparse(1)", kClass, kClass},
      {"struct('a',1)", kClass, kClass},
      {"{{'a'}}", kCell, kCell},
      {"{complex(1,2)}", kCell, kCell},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(setting("NumericOrString", c.input), c.seen) << c.input;
    EXPECT_EQ(setting("UINumericOrString", c.input), c.seenByUI) << c.input;
  }
}

TEST_F(NumbersOrText, TextThatReadsAsOneNumberIsTheNumber) {
  const Case cases[] = {{"12", "12 | 12", ""},      {"-2.5e3", "-2500 | -2500", ""},
                        {"Inf", "Inf | Inf", ""},   {"12abc", "'12abc' | 12abc", ""},
                        {"1 2", "'1 2' | 1 2", ""}, {"", "'' | ", ""},
                        {"x", "'x' | x", ""}};
  for (const Case& c : cases) EXPECT_EQ(parsing("NumericOrString", c.input), c.seen) << c.input;
}

TEST_F(NumbersOrText, ANumberAndItsTextDiffer) {
  const auto value = [](const char* literal) { return NumericOrString(cmdlang::readLiteral(literal).get()); };
  EXPECT_EQ(value("[1 2]"), value("[1 2]"));
  EXPECT_EQ(value("{'a'; 2}"), value("{'a'; 2}"));
  EXPECT_FALSE(value("5") == value("'5'"));
  EXPECT_FALSE(value("5") == value("int8(5)"));
  EXPECT_FALSE(value("[1 2]") == value("[1; 2]"));
  EXPECT_FALSE(value("NaN") == value("NaN"));
  EXPECT_FALSE(value("{'a'}") == value("{'b'}"));
}

TEST_F(NumbersOrText, AValueHoldingNothingCannotBeCompared) {
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

}  // namespace
