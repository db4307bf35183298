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
  const char* input;
  const char* seen;  // "read-back literal | text", or "error: <identifier>"
};

TEST_F(StyledColors, ArraysOfEveryClassGiveColorsOrKeywords) {
  // clang-format off
  const Case cases[] = {
      {"RGBAColor", "'red'", "[1 0 0] | [ 1 0 0 ]"},
      {"RGBAColor", "'r'", "[1 0 0] | [ 1 0 0 ]"},
      {"RGBAColor", "[1 0 0]", "[1 0 0] | [ 1 0 0 ]"},
      {"RGBAColor", "uint8([255 0 0])", "[1 0 0] | [ 1 0 0 ]"},
      {"RGBAColor", "uint16([0 65535 0])", "[0 1 0] | [ 0 1 0 ]"},
      {"RGBAColor", "int16([-32768 32767 -32768])", "[0 1 0] | [ 0 1 0 ]"},
      {"RGBAColor", "int8([-128 127 -128])", "[0 1 0] | [ 0 1 0 ]"},
      {"RGBAColor", "uint64([0 0 18446744073709551615])", "[0 0 1] | [ 0 0 1 ]"},
      {"RGBAColor", "single([0.5 0.25 1])", "[0.5 0.25 1] | [ 0.5 0.25 1 ]"},
      {"RGBAColor", "logical([1 0 1])", "[1 0 1] | [ 1 0 1 ]"},
      {"RGBAColor", "[0 1; 0 1]", "[0 0 1] | [ 0 0 1 ]"},  // four elements in storage order
      {"RGBAColor", "'none'", "'none' | none"},
      {"RGBAColor", "'NO'", "'none' | none"},
      {"RGBAColor", "[1 2 3 4 5]", "error: Korvax:datatypes:RGBAColor:ValueMustBe3or4ElementVector"},
      {"RGBAColor", "[1 0]", "error: Korvax:datatypes:RGBAColor:ValueMustBe3or4ElementVector"},
      {"RGBAColor", "{1, 0, 0}", "error: Korvax:datatypes:RGBAColor:ValueMustBe3or4ElementVector"},
      {"RGBAColor", "''", "error: Korvax:datatypes:RGBAColor:ParseError"},
      {"RGBAColor", "['re';'d ']", "error: Korvax:datatypes:RGBAColor:ParseError"},
      {"RGBAColor", "'color'", "error: Korvax:datatypes:RGBAColor:ParseError"},
      {"RGBAColor", "[2 0 0]", "error: Korvax:orb:ColorBase:BadColorValue"},
      {"RGBAColor", "[0 0 NaN]", "error: Korvax:orb:ColorBase:BadColorValue"},
      {"RGBAutoNoneColor", "'auto'", "'auto' | auto"},
      {"RGBAutoNoneColor", "[1 0 0 1]", "error: Korvax:datatypes:RGBAutoNoneColor:ValueMustBe3ElementVector"},
      {"RGBAutoNoneColor", "''", "error: Korvax:datatypes:RGBAutoNoneColor:ParseError"},
      // Flat-or-none colors raise the auto-or-none identifiers.
      {"RGBFlatNoneColor", "'flat'", "'flat' | flat"},
      {"RGBFlatNoneColor", "[1 0 0 1]", "error: Korvax:datatypes:RGBAutoNoneColor:ValueMustBe3ElementVector"},
      {"RGBFlatNoneColor", "''", "error: Korvax:datatypes:RGBAutoNoneColor:ParseError"},
      {"RGBFlatNoneColor", "'auto'", "error: Korvax:datatypes:RGBAColor:ParseError"},
      {"MeshColor", "'texturemap'", "'texturemap' | texturemap"},
      {"MeshColor", "uint8([0 0 255])", "[0 0 1] | [ 0 0 1 ]"},
      {"MeshColor", "[0 0 1 1]", "error: Korvax:datatypes:MeshColor:ValueMustBe3ElementVector"},
      // Patch colors raise the mesh colors' identifiers, and have no texturemap.
      {"PatchColor", "'interp'", "'interp' | interp"},
      {"PatchColor", "[0 0 1 1]", "error: Korvax:datatypes:MeshColor:ValueMustBe3ElementVector"},
      {"PatchColor", "''", "error: Korvax:datatypes:MeshColor:ParseError"},
      {"PatchColor", "'texturemap'", "error: Korvax:datatypes:RGBAColor:ParseError"},
      {"MarkerColor", "'auto'", "'auto' | auto"},
      {"MarkerColor", "'f'", "'flat' | flat"},
      {"MarkerColor", "[0 0 1 1]", "error: Korvax:datatypes:MarkerColor:ValueMustBe3ElementVector"},
      {"RGBMatrixFlatNoneColor", "[1 0 0; 0 1 0]", "[1 0 0;0 1 0] | [ 1 0 0 ; 0 1 0 ; ]"},
      {"RGBMatrixFlatNoneColor", "zeros(0, 3)", "zeros(0,3) | [ ]"},
      {"RGBMatrixFlatNoneColor", "'blue'", "[0 0 1] | [ 0 0 1 ; ]"},
      {"RGBMatrixFlatNoneColor", "'none'", "'none' | none"},
      // Integer classes are read by value, not scaled.
      {"RGBMatrixFlatNoneColor", "uint8([255 0 0])", "error: Korvax:orb:ColorBase:BadColorValue"},
      {"RGBMatrixFlatNoneColor", "logical([1 0 1])", "[1 0 1] | [ 1 0 1 ; ]"},
      {"RGBMatrixFlatNoneColor", "[1 0 0 1]", "error: Korvax:datatypes:RGBMatrixFlatNoneColor:ValueMustBe3ColumnMatrix"},
      {"RGBMatrixFlatNoneColor", "zeros(2, 3, 2)", "error: Korvax:datatypes:RGBMatrixFlatNoneColor:ValueMustBe3ColumnMatrix"},
      {"RGBMatrixFlatNoneColor", "''", "error: Korvax:datatypes:RGBMatrixFlatNoneColor:ParseError"},
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.type) + " " + c.input);
    EXPECT_EQ(setting(c.type, c.input), c.seen);
  }
}

TEST_F(StyledColors, TextsFollowTheSameRulesAndTheirTextFormsReadBack) {
  // clang-format off
  const Case cases[] = {
      {"RGBAColor", "0 0 0 0.5", "[0 0 0] | [ 0 0 0 ]"},
      {"RGBAColor", "[ 0.25 0.5 1 ]", "[0.25 0.5 1] | [ 0.25 0.5 1 ]"},
      {"RGBAColor", "  RED ", "error: Korvax:datatypes:RGBAColor:ParseError"},
      {"RGBAColor", "", "error: Korvax:datatypes:RGBAColor:AmbiguousName"},
      {"RGBAutoNoneColor", "  AUTO ", "'auto' | auto"},
      {"MeshColor", "purple", "error: Korvax:datatypes:RGBAColor:ParseError"},
      {"RGBMatrixFlatNoneColor", "[ 1 0 0 ; 0 1 0 ; ]", "[1 0 0;0 1 0] | [ 1 0 0 ; 0 1 0 ; ]"},
      {"RGBMatrixFlatNoneColor", "[ ]", "zeros(0,3) | [ ]"},
      {"RGBMatrixFlatNoneColor", "1 0 0 0.5", "[1 0 0] | [ 1 0 0 ; ]"},
      {"RGBMatrixFlatNoneColor", "1 0 0; 0 2 0", "error: Korvax:orb:ColorBase:BadColorValue"},
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.type) + " \"" + c.input + "\"");
    EXPECT_EQ(parsing(c.type, c.input), c.seen);
  }
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
