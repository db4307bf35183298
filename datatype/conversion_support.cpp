// What the array and string conversions of every type share.
#include "datatype/conversion_support.h"

#include <algorithm>
#include <cstring>
#include <sstream>

#include "foundationlib/except.h"
#include "foundationlib/i18n/unicode.h"
#include "guilib/array_dispatch.h"
#include "utillib/ut.h"

namespace graphics::datatype {

double readScalarAsDouble(const zxArray* array) { return gui_objects::readElementAsDouble(array, 0); }

ArrayText textOfCharArray(const zxArray* array) { return ArrayText(zxArrayToString(array)); }

bool holdsNul(const zxArray* charArray) {
  const zxChar* chars = zxGetChars(charArray);
  if (chars == nullptr) return false;
  const zxChar* end = chars + zxGetNumberOfElements(charArray);
  return std::find(chars, end, u'\0') != end;
}

std::string textWithVisibleNuls(const zxArray* charArray) {
  const zxChar* chars = zxGetChars(charArray);
  std::u16string shown;
  for (zxSize i = 0; i < zxGetNumberOfElements(charArray); ++i) {
    if (chars[i] == u'\0') {
      shown += u"\\0";
    } else {
      shown += chars[i];
    }
  }
  return fl::i18n::utf16ToUtf8(shown);
}

std::string streamInserted(double value) {
  std::ostringstream out;
  out << value;
  return std::move(out).str();
}

objsys::COSValue newTextValue(std::string_view text) {
  auto* copy = static_cast<char*>(utMalloc(text.size() + 1));
  if (copy == nullptr) throw fl::except::bad_alloc();
  std::memcpy(copy, text.data(), text.size());
  copy[text.size()] = '\0';
  return objsys::COSValue(copy);
}

}  // namespace graphics::datatype
