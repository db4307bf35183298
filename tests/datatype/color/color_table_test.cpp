// Extending the color name table through the ColorTable property, and what every later color
// conversion makes of the new names. These tests change the process-wide table, so they run in a
// program of their own.
#include "datatype/color/color_table.h"

#include <string>

#include "../support.h"
#include "../user_view.h"
#include "utillib/ut.h"

namespace {

using namespace graphics::datatype;
using userview::parsing;
using userview::setting;

class ColorTables : public orbtest::DataTypeTest {};

TEST_F(ColorTables, AStructAddsItsFieldsAndEveryColorTypeSeesThem) {
  EXPECT_EQ(setting("RGBAColor", "'or'"), "error: Korvax:datatypes:RGBAColor:ParseError");
  const std::string table = setting("ColorTable", "struct('orange', [1 0.5 0])");
  EXPECT_NE(table.find("'orange',[1 0.5 0]"), std::string::npos) << table;
  for (const char* type : {"RGBAColor", "MeshColor", "MarkerColor", "RGBMatrixFlatNoneColor"}) {
    EXPECT_EQ(setting(type, "'or'").substr(0, 11), "[1 0.5 0] |") << type;
  }
  // The table is one object: the one the library's conversions extended is the one a caller reaches.
  EXPECT_EQ(ColorNameTable::getInstance().getColorValue("orange"), (gui_objects::Color3d{1, 0.5, 0}));
}

TEST_F(ColorTables, FieldsReplaceEntriesOfTheSameNameAndArraysOfOtherClassesAreIgnored) {
  const std::size_t before = ColorNameTable::getInstance().entries().size();
  setting("ColorTable", "[1 2 3]");
  setting("ColorTable", "{'g', [1 1 1]}");
  EXPECT_EQ(ColorNameTable::getInstance().entries().size(), before);
  // The field's data is taken as doubles unchecked; a field shorter than three doubles reads zeros.
  setting("ColorTable", "struct('g', [0 0.5 0])");
  EXPECT_EQ(setting("RGBAColor", "'g'"), "[0 0.5 0] | [ 0 0.5 0 ]");
  setting("ColorTable", "struct('g', 0.25)");
  EXPECT_EQ(setting("RGBAColor", "'g'"), "[0.25 0 0] | [ 0.25 0 0 ]");
  setting("ColorTable", "struct('g', [0 1 0])");
  EXPECT_EQ(setting("RGBAColor", "'g'"), "[0 1 0] | [ 0 1 0 ]");
  // A sparse field's data is its stored elements only: one here, read without going past it.
  setting("ColorTable", "struct('g', sparse([0.75 0 0]))");
  EXPECT_EQ(setting("RGBAColor", "'g'"), "[0.75 0 0] | [ 0.75 0 0 ]");
  setting("ColorTable", "struct('g', [0 1 0])");
}

TEST_F(ColorTables, TheTextFormAddsEntriesAndAMalformedTextAddsNone) {
  const std::string added = parsing("ColorTable", "teal = [0 0.5 0.5]; navy=0 0 0.5;");
  EXPECT_NE(added.find("navy = [0 0 0.5]; "), std::string::npos) << added;
  EXPECT_EQ(setting("PatchColor", "'tea'"), "[0 0.5 0.5] | [ 0 0.5 0.5 ]");
  const std::size_t before = ColorNameTable::getInstance().entries().size();
  for (const char* bad : {"sand = [1 1]", "= [1 1 1]", "sand [1 1 1]", "olive = [0.5 0.5 0]; rust = x"}) {
    SCOPED_TRACE(bad);
    EXPECT_EQ(parsing("ColorTable", bad), "error: Korvax:datatypes:RGBAColor:ParseError");
  }
  EXPECT_EQ(ColorNameTable::getInstance().entries().size(), before);
  // The text written reads back as the same table.
  const std::string text = added.substr(added.find(" | ") + 3);
  EXPECT_EQ(parsing("ColorTable", text.c_str()), added.substr(0, added.find(" | ") + 3) + text);
}

TEST_F(ColorTables, AKeywordThatBeginsAColorNameIsAmbiguousInTheTypesRaisingIt) {
  setting("ColorTable", "struct('nonesuch', [0.1 0.2 0.3], 'flatland', [0.3 0.2 0.1])");
  const struct {
    const char* type;
    const char* text;
    const char* id;
  } cases[] = {
      {"RGBAColor", "'none'", "Korvax:datatypes:RGBAColor:AmbiguousName"},
      {"RGBFlatNoneColor", "'flat'", "Korvax:datatypes:RGBAutoNoneColor:AmbiguousName"},
      {"PatchColor", "'none'", "Korvax:datatypes:MeshColor:AmbiguousName"},
      {"MarkerColor", "'flat'", "Korvax:datatypes:MarkerColor:AmbiguousName"},
      {"RGBMatrixFlatNoneColor", "'none'", "Korvax:datatypes:RGBMatrixFlatNoneColor:AmbiguousName"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.type) + " " + c.text);
    EXPECT_EQ(setting(c.type, c.text), std::string("error: ") + c.id);
  }
  // A name that selects the new key alone is a color again.
  EXPECT_EQ(setting("RGBAColor", "'nonesuch'"), "[0.1 0.2 0.3] | [ 0.1 0.2 0.3 ]");
}

// Extending the color table is all or nothing: a failure while it adds entries leaves it as it was.
// (One that strikes after the table is extended, in allocating the value's block, leaves it extended
// in full.) This program routes operator new through utillib, so C++ allocations fail too.
TEST_F(ColorTables, IsExtendedInFullOrNotAtAllWhenAnAllocationFails) {
  const gui_objects::ZxArrayPtr entries = cmdlang::readLiteral("struct('teal', [0 0.5 0.5], 'g', [0 0.75 0])");
  const ColorTableMC conversion;
  const std::string before = setting("ColorTable", "[]");
  std::string extended;
  for (std::size_t failing = 1; failing < 10000; ++failing) {
    zx::CallFrame frame;
    utFailNthAllocation(failing);
    try {
      ColorTableDataType::getType()->destroy(conversion.from(objsys::COSValue(entries.get())));
    } catch (const fl::except::bad_alloc_impl&) {
    }
    utFailNthAllocation(0);
    const std::string now = setting("ColorTable", "[]");
    if (!utInjectedFailureHappened()) {
      EXPECT_NE(now, before);
      if (!extended.empty()) {
        EXPECT_EQ(now, extended);
      }
      return;
    }
    if (now == before) continue;
    if (extended.empty()) extended = now;
    EXPECT_EQ(now, extended) << "allocation " << failing << " failing left the table partly extended";
  }
}

}  // namespace
