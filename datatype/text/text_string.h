// TextString: the multi-line text of titles, labels and text objects, kept in the array form the user
// gave (a character matrix or a column cell of character arrays), with its data type and conversions.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "datatype/arrays/array_base.h"
#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/exception_slot.h"
#include "datatype/export.h"

namespace graphics::datatype {

// Text as one host array: a character array that is empty or 2-D (one line per row), or a cell that
// is empty or a single 2-D column whose elements are absent or empty or 2-D character arrays.
// Constructing it from any other array raises "Korvax:orb:datatypes:TextStringDataType:" ArrayClass,
// IncorrectShape or InvalidCellArray. Values compare by their lines, whatever the storage.
class ORB_EXPORT TextString : public ArrayBase {
 public:
  TextString() = default;
  // One row of text; null or empty text gives an empty character array.
  explicit TextString(const char* text);
  explicit TextString(const zxArray* array);

  bool isValid(const zxArray* array, boost::exception_ptr& failure) const override;
  bool operator==(const TextString& other) const;

  // The lines: none for an empty array with no rows, one per row of a character matrix, and for a
  // cell the lines of each element in turn (an absent or empty element gives one empty line).
  std::vector<std::wstring> getUString() const;
  std::vector<std::u16string> getUTF16String() const;
  static std::vector<std::wstring> createUStringVectorFromArray(const zxArray* array);

  // Character storage becomes a column cell of lines without trailing blanks and tabs; other storage
  // is left as it is.
  void convertStorageFromCharToCell();
  // Cell storage becomes a character matrix, one row per line padded with blanks; other storage is
  // left as it is.
  void convertStorageFromCellToChar();

 private:
  void replaceArray(const zxArray* array);
};

class ORB_EXPORT TextStringDataType : public BasicDataType<TextStringDataType, TextString> {
 public:
  static constexpr const char* kName = "TextString";
  static constexpr const char* kClassName = "TextStringDataType";
  static constexpr std::size_t kValueSizeInBytes = 8;
  // Text makes a value, but a value has no text: it is lines, not one string.
  static constexpr TypeFacts kFacts{.text = TextForm::none};
  static TextString makeDefaultValue() { return TextString(""); }
};

// Arrays in are validated; a null array gives empty text. Out: a shared-data copy of the held array,
// or an empty character array. Text in becomes one row; text out is always nothing, deliberately:
// text values have no string form.
struct ORB_EXPORT TextStringRules;
class ORB_EXPORT TextStringMC final : public ArrayConversion<TextStringRules> {};
class ORB_EXPORT TextStringSC final : public TextConversion<TextStringRules> {};

}  // namespace graphics::datatype
