// The color properties as users set them: from literals of every class and from text, with the
// identifiers each family raises (some borrowed from another family on purpose).
#include "datatype/color/styled_colors.h"

#include <string>

#include "../support.h"
#include "../user_view.h"

namespace {

using namespace graphics::datatype;
using userview::parsing;
using userview::setting;

class StyledColors : public orbtest::DataTypeTest {};

struct Case {
  const char* type;
  const char* input;  // a host literal, or a text when text is set
  const char* seen;   // "read-back literal | text", or "error: <identifier>"
  bool text = false;
};

constexpr const char* kRGBAParse = "error: Korvax:datatypes:RGBAColor:ParseError";
constexpr const char* kBadValue = "error: Korvax:orb:ColorBase:BadColorValue";
constexpr const char* kNot3Columns = "error: Korvax:datatypes:RGBMatrixFlatNoneColor:ValueMustBe3ColumnMatrix";

TEST_F(StyledColors, ArraysOfEveryClassAndTextsGiveColorsOrKeywords) {
  // clang-format off
  const Case cases[] = {
      {"RGBAColor", "uint8([255 0 0])", "[1 0 0] | [ 1 0 0 ]"},   {"RGBAColor", "logical([1 0 1])", "[1 0 1] | [ 1 0 1 ]"},
      {"RGBAColor", "int16([-32768 32767 -32768])", "[0 1 0] | [ 0 1 0 ]"},
      {"RGBAColor", "uint64([0 0 18446744073709551615])", "[0 0 1] | [ 0 0 1 ]"},
      {"RGBAColor", "[0 1; 0 1]", "[0 0 1] | [ 0 0 1 ]"},  // four elements in storage order
      {"RGBAColor", "'NO'", "'none' | none"},                        {"RGBAColor", "''", kRGBAParse},
      {"RGBAColor", "['re';'d ']", kRGBAParse},                      {"RGBAColor", "0 0 0 0.5", "[0 0 0] | [ 0 0 0 ]", true},
      {"RGBAColor", "  RED ", kRGBAParse, true},  // text names are not trimmed
      {"RGBAutoNoneColor", "'auto'", "'auto' | auto"},               {"RGBAutoNoneColor", "  AUTO ", "'auto' | auto", true},
      {"RGBAutoNoneColor", "''", "error: Korvax:datatypes:RGBAutoNoneColor:ParseError"},
      // Flat-or-none colors raise the auto-or-none identifiers.
      {"RGBFlatNoneColor", "'flat'", "'flat' | flat"},               {"RGBFlatNoneColor", "'auto'", kRGBAParse},
      {"RGBFlatNoneColor", "''", "error: Korvax:datatypes:RGBAutoNoneColor:ParseError"},
      {"MeshColor", "'texturemap'", "'texturemap' | texturemap"},    {"MeshColor", "purple", kRGBAParse, true},
      // Patch colors raise the mesh colors' identifiers, and have no texturemap.
      {"PatchColor", "'interp'", "'interp' | interp"},               {"PatchColor", "'texturemap'", kRGBAParse},
      {"PatchColor", "[0 0 1 1]", "error: Korvax:datatypes:MeshColor:ValueMustBe3ElementVector"},
      {"PatchColor", "''", "error: Korvax:datatypes:MeshColor:ParseError"},
      {"MarkerColor", "'auto'", "'auto' | auto"},                    {"MarkerColor", "'f'", "'flat' | flat"},
      {"RGBMatrixFlatNoneColor", "[1 0 0; 0 1 0]", "[1 0 0;0 1 0] | [ 1 0 0 ; 0 1 0 ; ]"},
      {"RGBMatrixFlatNoneColor", "[ 1 0 0 ; 0 1 0 ; ]", "[1 0 0;0 1 0] | [ 1 0 0 ; 0 1 0 ; ]", true},
      {"RGBMatrixFlatNoneColor", "zeros(0, 3)", "zeros(0,3) | [ ]"}, {"RGBMatrixFlatNoneColor", "[ ]", "zeros(0,3) | [ ]", true},
      // Integer classes are read by value, not scaled.
      {"RGBMatrixFlatNoneColor", "uint8([255 0 0])", kBadValue},     {"RGBMatrixFlatNoneColor", "1 0 0; 0 2 0", kBadValue, true},
      {"RGBMatrixFlatNoneColor", "zeros(2, 3, 2)", kNot3Columns},
      {"RGBMatrixFlatNoneColor", "''", "error: Korvax:datatypes:RGBMatrixFlatNoneColor:ParseError"},
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.type) + (c.text ? " text \"" : " ") + c.input + (c.text ? "\"" : ""));
    EXPECT_EQ(c.text ? parsing(c.type, c.input) : setting(c.type, c.input), c.seen);
  }
}

// A color's text is "[ r g b ]" with each component as %g writes it (six significant digits); a mode's
// alpha number is written as the stream writes it, which is the same.
TEST_F(StyledColors, NumbersInTextsAreWrittenWithSixSignificantDigits) {
  const Case cases[] = {
      {"RGBAColor", "[1e-7 0.123456789 1]", "[1e-07 0.123456789 1] | [ 1e-07 0.123457 1 ]"},
      {"MarkerColor", "[0.5 0.25 0]", "[0.5 0.25 0] | [ 0.5 0.25 0 ]"},
      {"RGBMatrixFlatNoneColor", "[1e-7 0.5 1; 0 0 0.123456789]",
       "[1e-07 0.5 1;0 0 0.123456789] | [ 1e-07 0.5 1 ; 0 0 0.123457 ; ]"},
      {"MeshAlpha", "1e-7", "1e-07 | 1e-07"},
      {"MeshAlpha", "0.123456789", "0.123456789 | 0.123457"},
  };
  for (const Case& c : cases) EXPECT_EQ(setting(c.type, c.input), c.seen) << c.type << " " << c.input;
}

TEST_F(StyledColors, EqualityLooksAtTheColorOnlyInTheColorStyle) {
  EXPECT_EQ(RGBAColor(1, 0, 0, 0.5), RGBAColor("1 0 0 0.5"));
  EXPECT_FALSE(RGBAColor(1, 0, 0, 0.5) == RGBAColor(1, 0, 0, 1));
  RGBAColor none(RGBAColorStyle::none);
  EXPECT_EQ(none, RGBAColor("none"));
  EXPECT_FALSE(none == RGBAColor());
  EXPECT_FALSE(none.isVisible());
  EXPECT_FALSE(RGBAColor(1, 1, 1, 0).isVisible());
  EXPECT_TRUE(RGBAColor(1, 1, 1, 0.01).isVisible());
  EXPECT_TRUE(MarkerColor(MarkerColorStyle::automatic).isVisible());
  EXPECT_EQ(RGBMatrixFlatNoneColor(), RGBMatrixFlatNoneColor("black"));
  EXPECT_FALSE(RGBMatrixFlatNoneColor() == RGBMatrixFlatNoneColor("[0 0 0; 0 0 0]"));
}

TEST_F(StyledColors, NoArrayIsRefusedWithTheKeywordsTheTypeTakes) {
  try {
    RGBAutoNoneColorMC().from(objsys::COSValue());
    ADD_FAILURE() << "no array was accepted";
  } catch (const fl::except::IMsgIDException& error) {
    EXPECT_STREQ(error.get_error_id(), "Korvax:datatypes:InvalidValue");
    EXPECT_THAT(error.get_message_text(), ::testing::HasSubstr("'auto' | 'none'"));
  }
}

}  // namespace
