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

TEST_F(TextStrings, AcceptCharMatricesAndColumnCellsOfText) {
  for (const char* accepted : {"['ab';'cd']", "{'a'; 'b'}", "cell(1,0)", "cell(2,1)"}) {
    EXPECT_NO_THROW(textOf(accepted)) << accepted;
  }
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

TEST_F(TextStrings, GiveOneLinePerRowAndPerEmptyCellElement) {
  zxArray* cell = zxCreateCellMatrix(4, 1);  // 'a', '', ['bc';'de'] and an absent element
  const char* rows[] = {"bc", "de"};
  zxSetCell(cell, 0, zxCreateString("a"));
  zxSetCell(cell, 1, zxCreateString(""));
  zxSetCell(cell, 2, zxCreateCharMatrixFromStrings(2, rows));
  struct Case {
    const zxArray* array;
    Lines lines;
  };
  const Case cases[] = {
      {zxCreateString(""), {}},
      {zxCreateString("h\xC3\xA9llo"), {L"h\u00E9llo"}},
      {zxCreateCharMatrixFromStrings(2, rows), {L"bc", L"de"}},
      {cell, {L"a", L"", L"bc", L"de", L""}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(TextString(c.array).getUString(), c.lines);
    EXPECT_EQ(TextString::createUStringVectorFromArray(c.array), c.lines);
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
  EXPECT_TRUE(zxIsCell(text.getPtr()));
  EXPECT_EQ(text.getUString(), (Lines{L" a", L"b"}));
  text.convertStorageFromCharToCell();
  EXPECT_EQ(text.getUString(), (Lines{L" a", L"b"}));

  TextString cells = textOf("{'one'; ['two';'six']; ''}");
  cells.convertStorageFromCellToChar();
  EXPECT_TRUE(zxIsChar(cells.getPtr()));
  EXPECT_EQ(cells.getUString(), (Lines{L"one", L"two", L"six", L"   "}));
  cells.convertStorageFromCellToChar();
  EXPECT_EQ(zxGetM(cells.getPtr()), 4u);
}

// Arrays are shared, not copied; text has no string form; no array and no value are ''.
TEST_F(TextStrings, ConvertToAndFromArraysAndText) {
  TextStringMC arrays;
  TextStringDataType& type = *TextStringDataType::getType();
  const gui_objects::ZxArrayPtr input = cmdlang::readLiteral("{'Results'; 'run 3'}");
  const COSValue value = arrays.from(COSValue(input.get()));
  const gui_objects::ZxArrayPtr readBack(arrays.to(value).as<zxArray>());
  EXPECT_EQ(zxGetCell(readBack.get(), 1), zxGetCell(input.get(), 1));
  EXPECT_TRUE(TextStringSC().to(value).isEmpty());
  const COSValue none = arrays.from(COSValue());
  EXPECT_EQ(cmdlang::writeLiteral(none.as<const TextString>()->getPtr()), "''");
  const gui_objects::ZxArrayPtr noValue(arrays.to(COSValue()).as<zxArray>());
  EXPECT_EQ(cmdlang::writeLiteral(noValue.get()), "''");
  type.destroy(value);
  type.destroy(none);
}

}  // namespace
