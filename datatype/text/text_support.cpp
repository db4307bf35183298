// What the text family's types share when they read host arrays.
#include "datatype/text/text_support.h"

#include "foundationlib/i18n/unicode.h"

namespace graphics::datatype {

bool isCharRow(const zxArray* array) {
  return array != nullptr && zxIsChar(array) && zxGetNumberOfDimensions(array) == 2 &&
         (zxIsEmpty(array) || zxGetM(array) == 1);
}

std::u16string unitsOf(const zxArray* charArray) {
  const zxChar* chars = zxGetChars(charArray);
  if (chars == nullptr) return {};
  return std::u16string(chars, chars + zxGetNumberOfElements(charArray));
}

std::string rowText(const zxArray* charMatrix, zxSize row) {
  const zxSize rows = zxGetM(charMatrix);
  const zxSize width = zxGetN(charMatrix);
  const zxChar* chars = zxGetChars(charMatrix);
  std::u16string line(width, u' ');
  for (zxSize column = 0; column < width; ++column) line[column] = chars[row + column * rows];
  return fl::i18n::utf16ToUtf8(line);
}

}  // namespace graphics::datatype
