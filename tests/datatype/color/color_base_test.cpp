// The color value, the name table's lookup rule and the text rule shared by every color type.
#include "datatype/color/color_base.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <variant>
#include <vector>

#include "../support.h"
#include "guilib/value_types.h"
#include "utillib/ut.h"

namespace {

using namespace graphics::datatype;
using gui_objects::Color3d;
using gui_objects::Color4d;
using orbtest::RaisesId;

constexpr Color3d kRed{1, 0, 0}, kGreen{0, 1, 0}, kBlue{0, 0, 1}, kBlack{0, 0, 0}, kWhite{1, 1, 1};
constexpr Color3d kYellow{1, 1, 0}, kCyan{0, 1, 1}, kMagenta{1, 0, 1};

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
      {"y", kYellow},   {"ye", kYellow},     {"yellow", kYellow},   {"r", kRed},         {"c", kCyan},
      {"m", kMagenta},  {"g", kGreen},       {"gr", kGreen},        {"b", kBlue},        {"bl", kBlue},
      {"blu", kBlue},   {"blue", kBlue},     {"bla", kBlack},       {"black", kBlack},   {"k", kBlack},
      {"w", kWhite},    {"wh", kWhite},      {"GREEN", kGreen},     {"Bla", kBlack},     {"", Ambiguous{}},
      {"x", Missing{}}, {"reds", Missing{}}, {"blacks", Missing{}}, {" red", Missing{}},
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

TEST_F(ColorNames, KeysAreWalkedInByteOrder) {
  std::vector<std::string> keys;
  for (const auto& entry : ColorNameTable::getInstance().entries()) keys.push_back(entry.first);
  const std::vector<std::string> initial = {"b", "bl",      "black", "blue", "cyan",  "g",     "green",
                                            "k", "magenta", "red",   "w",    "white", "yellow"};
  // Other tests of this program may have added names; the initial ones keep their order.
  std::vector<std::string> kept;
  for (const std::string& key : keys) {
    if (std::find(initial.begin(), initial.end(), key) != initial.end()) kept.push_back(key);
  }
  EXPECT_EQ(kept, initial);
}

TEST_F(ColorNames, WithoutOverwriteANameThatBeginsAKeyIsRefused) {
  ColorNameTable& table = ColorNameTable::getInstance();
  const std::size_t before = table.entries().size();
  for (const char* name : {"bl", "gre", "red", "RED", ""}) {
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

Color4d colorAfter(const Color4d& start, const char* text, const char* expectedId = nullptr) {
  ColorBase color;
  color.setRed(start.r);
  color.setGreen(start.g);
  color.setBlue(start.b);
  color.setAlpha(start.a);
  if (expectedId != nullptr) {
    EXPECT_THAT([&] { color.setColorFromString(text); }, RaisesId(expectedId));
  } else {
    color.setColorFromString(text);
  }
  return color.getAsColor4d();
}

TEST_F(ColorText, NamesKeepAlphaNumbersSetItAndFailuresKeepWhatWasStored) {
  constexpr Color4d kHalfWhite{1, 1, 1, 0.5};
  struct Case {
    const char* text;
    Color4d after;
    const char* id;  // raised, or null
  };
  const Case cases[] = {
      {"Red", {1, 0, 0, 0.5}, nullptr},
      {"RED", {1, 0, 0, 0.5}, nullptr},
      {"r", {1, 0, 0, 0.5}, nullptr},
      {"1 0 0", {1, 0, 0, 1}, nullptr},
      {"[0 0 1]", {0, 0, 1, 1}, nullptr},
      {"0 0 0 0.25", {0, 0, 0, 0.25}, nullptr},
      // Components are stored one by one: red is already 0 when green fails.
      {"0 2 0", {0, 1, 1, 0.5}, "Korvax:orb:ColorBase:BadColorValue"},
      {"1.5 0 0 1", kHalfWhite, "Korvax:orb:ColorBase:BadColorValue"},
      {"0 0 0 nan", {0, 0, 0, 0.5}, "Korvax:orb:ColorBase:BadColorValue"},
      {"purple", kHalfWhite, "Korvax:datatypes:RGBAColor:ParseError"},
      {"1 0", kHalfWhite, "Korvax:datatypes:RGBAColor:ParseError"},
      {" red", kHalfWhite, "Korvax:datatypes:RGBAColor:ParseError"},
      {"", kHalfWhite, "Korvax:datatypes:RGBAColor:AmbiguousName"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string("\"") + c.text + "\"");
    EXPECT_EQ(colorAfter(kHalfWhite, c.text, c.id), c.after);
  }
}

TEST_F(ColorText, ComponentsOutsideTheUnitRangeAreNeverStored) {
  ColorBase color;
  for (const double bad : {-0.0001, 1.0001, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_THAT([&] { color.setGreen(bad); }, RaisesId("Korvax:orb:ColorBase:BadColorValue"));
  }
  EXPECT_EQ(color.getAsColor4d(), (Color4d{0, 0, 0, 1}));
}

TEST_F(ColorText, TheArrayFormIsAFourByOneByteColumn) {
  ColorBase color;
  color.setColorFromString("1 0.5 0 0.2");
  const gui_objects::ZxArrayPtr array = color.getColorAsArray();
  ASSERT_EQ(zxGetClassID(array.get()), zxUINT8_CLASS);
  ASSERT_EQ(zxGetM(array.get()), 4u);
  ASSERT_EQ(zxGetN(array.get()), 1u);
  const auto* bytes = static_cast<const std::uint8_t*>(zxGetData(array.get()));
  const gui_objects::Color4b expected = color.getAsColor4b();
  EXPECT_EQ((gui_objects::Color4b{bytes[0], bytes[1], bytes[2], bytes[3]}), expected);
  EXPECT_EQ(expected, (gui_objects::Color4b{255, 128, 0, 51}));
}

}  // namespace
