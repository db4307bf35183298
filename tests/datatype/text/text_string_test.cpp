// TextString: accepted shapes, lines, equality across storage forms, storage switches, conversions.
#include "datatype/text/text_string.h"

#include <string>
#include <vector>

#include "../support.h"
#include "cmdlanglib/literal.h"

namespace {

using namespace graphics::datatype;
using objsys::COSValue;
using Lines = std::vector<std::wstring>;

TextString textOf(const char* literal) { return TextString(cmdlang::readLiteral(literal).get()); }

class TextStrings : public orbtest::DataTypeTest {};

TEST_F(TextStrings, RefuseAnythingButCharMatricesAndColumnCellsOfText) {
  const char* const refused[][2] = {{"reshape('abcdefgh',2,2,2)", "IncorrectShape"},
                                    {"{'a', 'b'}", "IncorrectShape"},
                                    {"{'a'; 5}", "InvalidCellArray"},
                                    {"{reshape('abcdefgh',2,2,2)}", "InvalidCellArray"},
                                    {"[1 2]", "ArrayClass"},
                                    {nullptr, "ArrayClass"}};
  for (const auto& c : refused) {
    EXPECT_THAT([&] { TextString text(c[0] != nullptr ? cmdlang::readLiteral(c[0]).get() : nullptr); },
                orbtest::RaisesId(std::string("Korvax:orb:datatypes:TextStringDataType:") + c[1]))
        << (c[0] != nullptr ? c[0] : "no array");
  }
}

// One line per row and per empty or absent cell element.
TEST_F(TextStrings, GiveOneLinePerRowAndPerEmptyCellElement) {
  const struct {
    const char* literal;
    std::wstring lines;  // each line followed by '|'
  } cases[] = {{"''", L""},
               {"'h\xC3\xA9llo'", L"h\u00E9llo|"},
               {"['bc';'de']", L"bc|de|"},
               {"cell(2,1)", L"||"},
               {"{'a'; ''; ['bc';'de']}", L"a||bc|de|"}};
  for (const auto& c : cases) {
    const gui_objects::ZxArrayPtr array = cmdlang::readLiteral(c.literal);
    std::wstring joined;
    for (const std::wstring& line : TextString(array.get()).getUString()) joined += line + L"|";
    EXPECT_EQ(joined, c.lines) << c.literal;
    EXPECT_EQ(TextString::createUStringVectorFromArray(array.get()), TextString(array.get()).getUString()) << c.literal;
  }
}

TEST_F(TextStrings, CompareByLinesWhateverTheStorage) {
  EXPECT_EQ(textOf("['hello';'world']"), textOf("{'hello'; 'world'}"));
  EXPECT_EQ(textOf("''"), textOf("{}"));
  EXPECT_EQ(TextString("ab"), textOf("{'ab'}"));
  EXPECT_FALSE(textOf("['hello';'world']") == textOf("{'hello'; 'World'}"));
  EXPECT_FALSE(textOf("'ab'") == textOf("{'ab'; ''}"));
}

// To cells, trailing blanks and tabs are cut; to a char matrix, rows are padded. Repeating either
// changes nothing.
TEST_F(TextStrings, SwitchStorageBetweenCharAndCell) {
  TextString text = textOf("[' a  ';'b\t \t']");
  text.convertStorageFromCharToCell();
  text.convertStorageFromCharToCell();
  EXPECT_TRUE(zxIsCell(text.getPtr()));
  EXPECT_EQ(text.getUString(), (Lines{L" a", L"b"}));
  TextString cells = textOf("{'one'; ['two';'six']; ''}");
  cells.convertStorageFromCellToChar();
  cells.convertStorageFromCellToChar();
  EXPECT_TRUE(zxIsChar(cells.getPtr()));
  EXPECT_EQ(cells.getUString(), (Lines{L"one", L"two", L"six", L"   "}));
}

// Arrays are shared, not copied; text has no string form; no array and no value are ''.
TEST_F(TextStrings, ConvertToAndFromArraysAndText) {
  TextStringMC arrays;
  const gui_objects::ZxArrayPtr input = cmdlang::readLiteral("{'Results'; 'run 3'}");
  const COSValue value = arrays.from(COSValue(input.get()));
  const gui_objects::ZxArrayPtr readBack(arrays.to(value).as<zxArray>());
  EXPECT_EQ(zxGetCell(readBack.get(), 1), zxGetCell(input.get(), 1));
  EXPECT_TRUE(TextStringSC().to(value).isEmpty());
  const COSValue none = arrays.from(COSValue());
  EXPECT_EQ(cmdlang::writeLiteral(none.as<const TextString>()->getPtr()), "''");
  const gui_objects::ZxArrayPtr noValue(arrays.to(COSValue()).as<zxArray>());
  EXPECT_EQ(cmdlang::writeLiteral(noValue.get()), "''");
  for (const COSValue v : {value, none}) TextStringDataType::getType()->destroy(v);
}

}  // namespace
