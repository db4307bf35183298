// The color value, the name table's lookup rule and the text rule shared by every color type.
#include "datatype/color/color_base.h"

#include <cstdint>
#include <string>
#include <variant>

#include "../support.h"
#include "guilib/value_types.h"
#include "utillib/ut.h"

namespace {

using namespace graphics::datatype;
using gui_objects::Color3d;
using gui_objects::Color4d;
using orbtest::RaisesId;

constexpr Color3d kRed{1, 0, 0}, kGreen{0, 1, 0}, kBlue{0, 0, 1}, kBlack{0, 0, 0}, kWhite{1, 1, 1}, kYellow{1, 1, 0};

class ColorNames : public orbtest::DataTypeTest {};

struct Missing {
  bool operator==(const Missing&) const = default;
};
struct Ambiguous {
  bool operator==(const Ambiguous&) const = default;
};
using Lookup = std::variant<Color3d, Missing, Ambiguous>;

Lookup lookUp(const char* name) {
  try {
    return ColorNameTable::getInstance().getColorValue(name);
  } catch (const MissingNameException&) {
    return Missing{};
  } catch (const AmbiguousNameException&) {
    return Ambiguous{};
  }
}

TEST_F(ColorNames, AUniquePrefixSelectsItsKeyAndAnExactKeyBreaksTies) {
  struct Case {
    const char* name;
    Lookup expected;
  };
  const Case cases[] = {
      {"y", kYellow},   {"gr", kGreen},      {"b", kBlue},        {"bl", kBlue},      {"blu", kBlue},
      {"bla", kBlack},  {"k", kBlack},       {"w", kWhite},       {"GREEN", kGreen},  {"Bla", kBlack},
      {"", Ambiguous{}}, {"x", Missing{}},   {"reds", Missing{}}, {" red", Missing{}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string("\"") + c.name + "\"");
    EXPECT_EQ(lookUp(c.name), c.expected);
    EXPECT_EQ(ColorNameTable::getInstance().isColorName(c.name), !std::holds_alternative<Missing>(c.expected));
  }
}

TEST_F(ColorNames, AnAmbiguousNameIsReportedAsGivenBeforeItIsRefused) {
  std::string printed;
  const ut::PrintCapture capture([&](std::string_view text) { printed += text; });
  EXPECT_TRUE(std::holds_alternative<Ambiguous>(lookUp("")));
  EXPECT_EQ(printed, "graphics::datatype::ColorNameTable::getColorValue ambiguous name: \n");
}

TEST_F(ColorNames, WithoutOverwriteANameThatBeginsAKeyIsRefused) {
  ColorNameTable& table = ColorNameTable::getInstance();
  const std::size_t before = table.entries().size();
  for (const char* name : {"bl", "gre", "RED", ""}) {
    SCOPED_TRACE(name);
    EXPECT_THAT([&] { table.addNamedColor(name, kRed, false); },
                RaisesId("Korvax:datatypes:colornametable:AddNameColor"));
  }
  EXPECT_EQ(table.entries().size(), before);
  // A key with capitals is kept as given, and no lookup (which lowercases) can reach it.
  table.addNamedColor("Vermilion", kRed, false);
  EXPECT_TRUE(std::holds_alternative<Missing>(lookUp("Vermilion")));
  EXPECT_EQ(table.entries().count("Vermilion"), 1u);
}

class ColorText : public orbtest::DataTypeTest {};

TEST_F(ColorText, NamesKeepAlphaNumbersSetItAndFailuresKeepWhatWasStored) {
  constexpr const char* kBadValue = "Korvax:orb:ColorBase:BadColorValue";
  struct Case {
    const char* text;
    Color4d after;
    const char* id;  // raised, or null
  };
  const Case cases[] = {
      {"Red", {1, 0, 0, 0.5}, nullptr},       {"1 0 0", {1, 0, 0, 1}, nullptr},
      {"[0 0 1]", {0, 0, 1, 1}, nullptr},     {"0 0 0 0.25", {0, 0, 0, 0.25}, nullptr},
      // Components are stored one by one: those before the failing one are already set.
      {"0 2 0", {0, 1, 1, 0.5}, kBadValue},   {"0 0 -0.0001", {0, 0, 1, 0.5}, kBadValue},
      {"0 0 0 nan", {0, 0, 0, 0.5}, kBadValue},
      {"1 0", {1, 1, 1, 0.5}, "Korvax:datatypes:RGBAColor:ParseError"},  // nothing stored
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string("\"") + c.text + "\"");
    ColorBase color;
    color.setColorFromString("1 1 1 0.5");
    if (c.id != nullptr) {
      EXPECT_THAT([&] { color.setColorFromString(c.text); }, RaisesId(c.id));
    } else {
      color.setColorFromString(c.text);
    }
    EXPECT_EQ(color.getAsColor4d(), c.after);
  }
}

TEST_F(ColorText, TheArrayFormIsAFourByOneByteColumn) {
  ColorBase color;
  color.setColorFromString("1 0.5 0 0.2");
  const gui_objects::ZxArrayPtr array = color.getColorAsArray();
  ASSERT_EQ(zxGetClassID(array.get()), zxUINT8_CLASS);
  ASSERT_EQ(zxGetM(array.get()), 4u);
  ASSERT_EQ(zxGetN(array.get()), 1u);
  const auto* bytes = static_cast<const std::uint8_t*>(zxGetData(array.get()));
  EXPECT_EQ((gui_objects::Color4b{bytes[0], bytes[1], bytes[2], bytes[3]}), (gui_objects::Color4b{255, 128, 0, 51}));
}

}  // namespace
