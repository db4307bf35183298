// TextString: validation, lines, storage switches, data type and conversions.
#include "datatype/text/text_string.h"

#include <string>
#include <vector>

#include "arraylib/zxerror.h"
#include "arraylib/zxrethrow.h"
#include "datatype/conversion_definitions.h"
#include "datatype/data_type_definitions.h"
#include "datatype/errors.h"
#include "datatype/failures.h"
#include "datatype/value_block.h"
#include "foundationlib/i18n/unicode.h"
#include "guilib/auto_ptr.h"

namespace graphics::datatype {
namespace {

namespace ids = Korvax::orb::datatypes::TextStringDataType;
using Lines = std::vector<std::u16string>;

// Stores Id's failure; false, for the check that failed.
template <class Id>
bool refuse(boost::exception_ptr& failure) {
  failure = failureOf<Id>();
  return false;
}

bool isEmptyOrTwoD(const zxArray* array) { return zxIsEmpty(array) || zxGetNumberOfDimensions(array) == 2; }

// One line per row of a character matrix (stored column by column).
void appendRows(const zxArray* chars, Lines& lines) {
  const zxSize rows = zxGetM(chars);
  const zxSize width = zxGetN(chars);
  const zxChar* data = zxGetChars(chars);
  for (zxSize row = 0; row < rows; ++row) {
    std::u16string& line = lines.emplace_back(width, u' ');
    for (zxSize column = 0; column < width; ++column) line[column] = data[row + column * rows];
  }
}

void appendLines(const zxArray* array, Lines& lines) {
  if (zxIsChar(array)) {
    appendRows(array, lines);
    return;
  }
  if (!zxIsCell(array)) return;
  for (zxSize i = 0; i < zxGetNumberOfElements(array); ++i) {
    const zxArray* element = zxGetCell(array, i);
    if (element == nullptr || zxIsEmpty(element)) {
      lines.emplace_back();
    } else {
      appendLines(element, lines);
    }
  }
}

Lines linesOf(const zxArray* array) {
  Lines lines;
  if (array != nullptr) appendLines(array, lines);
  return lines;
}

std::vector<std::wstring> wideLines(const Lines& lines) {
  std::vector<std::wstring> wide;
  wide.reserve(lines.size());
  for (const std::u16string& line : lines) wide.push_back(fl::i18n::utf16ToWide(line));
  return wide;
}

}  // namespace

TextString::TextString(const char* text) {
  const gui_objects::ZxArrayPtr row(zxCreateString(text != nullptr ? text : ""));
  setPtr(row.get());
}

TextString::TextString(const zxArray* array) : ArrayBase(array) {
  boost::exception_ptr failure;
  if (!isValid(array, failure)) zxReThrowException(failure);
}

bool TextString::isValid(const zxArray* array, boost::exception_ptr& failure) const {
  if (array == nullptr) return refuse<ids::ArrayClass>(failure);
  if (zxIsChar(array)) return isEmptyOrTwoD(array) || refuse<ids::IncorrectShape>(failure);
  if (!zxIsCell(array)) return refuse<ids::ArrayClass>(failure);
  if (zxIsEmpty(array)) return true;
  if (zxGetNumberOfDimensions(array) != 2 || zxGetN(array) != 1) return refuse<ids::IncorrectShape>(failure);
  for (zxSize i = 0; i < zxGetNumberOfElements(array); ++i) {
    const zxArray* element = zxGetCell(array, i);
    if (element != nullptr && !(zxIsChar(element) && isEmptyOrTwoD(element))) {
      return refuse<ids::InvalidCellArray>(failure);
    }
  }
  return true;
}

bool TextString::operator==(const TextString& other) const { return getUString() == other.getUString(); }

std::vector<std::wstring> TextString::getUString() const { return wideLines(linesOf(getPtr())); }

std::vector<std::u16string> TextString::getUTF16String() const { return linesOf(getPtr()); }

std::vector<std::wstring> TextString::createUStringVectorFromArray(const zxArray* array) {
  return wideLines(linesOf(array));
}

void TextString::convertStorageFromCharToCell() {
  const zxArray* held = getPtr();
  if (held == nullptr || !zxIsChar(held)) return;
  const Lines lines = linesOf(held);
  const gui_objects::ZxArrayPtr cell(zxCreateCellMatrix(lines.size(), 1));
  for (zxSize i = 0; i < lines.size(); ++i) {
    const std::u16string& line = lines[i];
    const std::size_t end = line.find_last_not_of(u" \t");
    const zxSize kept = end == std::u16string::npos ? 0 : end + 1;
    zxSetCell(cell.get(), i, zxCreateStringFromUTF16(line.data(), kept));
  }
  replaceArray(cell.get());
}

void TextString::convertStorageFromCellToChar() {
  const zxArray* held = getPtr();
  if (held == nullptr || !zxIsCell(held)) return;
  std::vector<std::string> rows;
  for (const std::u16string& line : linesOf(held)) rows.push_back(fl::i18n::utf16ToUtf8(line));
  std::vector<const char*> rowTexts;
  for (const std::string& row : rows) rowTexts.push_back(row.c_str());
  const gui_objects::ZxArrayPtr chars(zxCreateCharMatrixFromStrings(rowTexts.size(), rowTexts.data()));
  replaceArray(chars.get());
}

void TextString::replaceArray(const zxArray* array) {
  ArrayBase replacement(array);
  swap(replacement);
}

struct TextStringRules {
  using Value = TextString;

  static TextString fromArray(const zxArray& array) { return TextString(&array); }
  // No array is empty text.
  static TextString fromNoArray() { return TextString(""); }
  static zxArray* toArray(const TextString& text) {
    if (text.getPtr() == nullptr) return noValueArray();
    return text.getSharedDataCopy().release();
  }
  static zxArray* noValueArray() { return zxCreateString(""); }

  static TextString fromText(const char* text) { return TextString(text); }
  static TextString fromNoText() { return TextString(""); }
  // Deliberately none: text values have no string form.
  static std::optional<std::string> toText(const TextString&) { return std::nullopt; }
};

}  // namespace graphics::datatype

ORB_DEFINE_DATA_TYPE(graphics::datatype::TextStringDataType)
ORB_DEFINE_CONVERSIONS(graphics::datatype::TextStringRules)
