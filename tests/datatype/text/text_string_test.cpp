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

// The identifier that constructing the text raises, or "" when it is accepted.
std::string outcome(const zxArray* array) {
  try {
    TextString text(array);
  } catch (const fl::except::IMsgIDException& error) {
    return error.get_error_id();
  }
  return "";
}

class TextStrings : public orbtest::DataTypeTest {};

TEST_F(TextStrings, AcceptCharMatricesAndColumnCellsOfText) {
  struct Case {
    const char* literal;
    const char* key;  // after "Korvax:orb:datatypes:TextStringDataType:"; "" when accepted
  };
  const Case cases[] = {
      {"''", ""},
      {"['ab';'cd']", ""},
      {"reshape('abcdefgh',2,2,2)", "IncorrectShape"},
      {"{'a'; 'b'}", ""},
      {"{'a', 'b'}", "IncorrectShape"},
      {"cell(1,0)", ""},
      {"cell(2,1)", ""},
      {"{'a'; 5}", "InvalidCellArray"},
      {"{{'a'}}", "InvalidCellArray"},
      {"{reshape('abcdefgh',2,2,2)}", "InvalidCellArray"},
      {"[1 2]", "ArrayClass"},
  };
  for (const Case& c : cases) {
    const std::string expected = *c.key ? std::string("Korvax:orb:datatypes:TextStringDataType:") + c.key : "";
    EXPECT_EQ(outcome(cmdlang::readLiteral(c.literal).get()), expected) << c.literal;
  }
  EXPECT_EQ(outcome(nullptr), "Korvax:orb:datatypes:TextStringDataType:ArrayClass");
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
      {zxCreateCellMatrix(0, 1), {}},
      {zxCreateString("h\xC3\xA9llo"), {L"h\u00E9llo"}},
      {zxCreateCharMatrixFromStrings(2, rows), {L"bc", L"de"}},
      {cell, {L"a", L"", L"bc", L"de", L""}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(TextString(c.array).getUString(), c.lines);
    EXPECT_EQ(TextString::createUStringVectorFromArray(c.array), c.lines);
    EXPECT_EQ(TextString(c.array).getUTF16String().size(), c.lines.size());
  }
}

TEST_F(TextStrings, CompareByLinesWhateverTheStorage) {
  EXPECT_EQ(textOf("['hello';'world']"), textOf("{'hello'; 'world'}"));
  EXPECT_EQ(textOf("''"), textOf("{}"));
  EXPECT_EQ(TextString("ab"), textOf("{'ab'}"));
  EXPECT_FALSE(textOf("['hello';'world']") == textOf("{'hello'; 'World'}"));
  EXPECT_FALSE(textOf("'ab'") == textOf("{'ab'; ''}"));
}

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

TEST_F(TextStrings, ConvertToAndFromArraysAndText) {
  TextStringMC arrays;
  TextStringSC texts;
  TextStringDataType& type = *TextStringDataType::getType();
  const gui_objects::ZxArrayPtr input = cmdlang::readLiteral("{'Results'; 'run 3'}");
  const COSValue value = arrays.from(COSValue(input.get()));
  const gui_objects::ZxArrayPtr readBack(arrays.to(value).as<zxArray>());
  EXPECT_EQ(zxGetCell(readBack.get(), 1), zxGetCell(input.get(), 1));
  EXPECT_TRUE(texts.to(value).isEmpty());
  const COSValue row = texts.from(COSValue("a b"));
  EXPECT_EQ(row.as<const TextString>()->getUString(), Lines{L"a b"});
  for (const COSValue empty : {arrays.from(COSValue()), texts.from(COSValue("")), type.copy(type.getDefaultValue())}) {
    EXPECT_EQ(cmdlang::writeLiteral(empty.as<const TextString>()->getPtr()), "''");
    type.destroy(empty);
  }
  const gui_objects::ZxArrayPtr noValue(arrays.to(COSValue()).as<zxArray>());
  EXPECT_EQ(cmdlang::writeLiteral(noValue.get()), "''");
  type.destroy(value);
  type.destroy(row);
}

}  // namespace
