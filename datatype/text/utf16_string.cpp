// UTF16String: conversions.
#include "datatype/text/utf16_string.h"

#include <optional>

#include "arraylib/zxarray.h"
#include "datatype/conversion_definitions.h"
#include "datatype/data_type_definitions.h"
#include "datatype/errors.h"
#include "datatype/text/text_support.h"
#include "foundationlib/i18n/unicode.h"

namespace graphics::datatype {

struct UTF16StringRules {
  using Value = UTF16String;

  static UTF16String fromArray(const zxArray& array) {
    namespace ids = Korvax::datatypes::UTF16StringDataType;
    const zxArray* text = &array;
    if (zxIsCell(&array)) {
      if (zxGetNumberOfElements(&array) != 1) raise<ids::NumberOfStrings>();
      text = zxGetCell(&array, 0);
    }
    if (text == nullptr || !zxIsChar(text) || zxGetNumberOfDimensions(text) != 2) raise<ids::ArrayClass>();
    if (!isCharRow(text)) raise<ids::NumberOfStrings>();
    return UTF16String(unitsOf(text));
  }
  static zxArray* toArray(const UTF16String& value) {
    return zxCreateStringFromUTF16(value.getUnits().data(), value.getUnits().size());
  }
  static zxArray* noValueArray() { return zxCreateString(""); }

  static UTF16String fromText(const char* text) { return UTF16String(fl::i18n::utf8ToUtf16(text)); }
  static std::optional<std::string> toText(const UTF16String& value) { return fl::i18n::utf16ToUtf8(value.getUnits()); }
};

}  // namespace graphics::datatype

ORB_DEFINE_DATA_TYPE(graphics::datatype::UTF16StringDataType)
ORB_DEFINE_CONVERSIONS(graphics::datatype::UTF16StringRules)
