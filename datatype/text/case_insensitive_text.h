// CaseInsensitiveString and FontName: one line of text kept as given and compared without regard to
// case, with their data types and conversions. The types are rows of case_insensitive_texts.def.
#pragma once

#include <cstddef>
#include <string>

#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/export.h"

namespace graphics::datatype {

// One line of UTF-8 text, kept with the case it was given in; two texts are equal when they differ
// only in case, folded character by character with the current locale's upper-case mapping.
class ORB_EXPORT CaseInsensitiveText {
 public:
  CaseInsensitiveText() = default;
  explicit CaseInsensitiveText(std::string text) : text_(std::move(text)) {}
  const std::string& getText() const { return text_; }
  bool operator==(const CaseInsensitiveText& other) const;

 private:
  std::string text_;
};

// Arrays: a char row (or empty char) only. Text: any one line. A char matrix, an N-D char array, text
// holding a line break or a NUL, and every other class are refused with
// "Korvax:orb:set_chck:ExpectedSingleLineString"; empty text (after trimming, where the row trims)
// with "Korvax:orb:set_chck:ExpectedNonEmptyString" unless the row takes it. Reads back as a char row
// and as the text itself. Defaults: CaseInsensitiveString "", FontName "Helvetica".
template <class T>
struct ORB_EXPORT CaseInsensitiveTextRules;

#define ORB_CASE_INSENSITIVE_TEXT(Type, TakesEmpty, Trims, Default)                            \
  class ORB_EXPORT Type : public CaseInsensitiveText {                                         \
   public:                                                                                     \
    using CaseInsensitiveText::CaseInsensitiveText;                                            \
    static constexpr bool kTakesEmpty = TakesEmpty;                                            \
    static constexpr bool kTrims = Trims;                                                      \
    static constexpr const char* kDefault = Default;                                           \
  };                                                                                           \
  class ORB_EXPORT Type##DataType : public BasicDataType<Type##DataType, Type> {               \
   public:                                                                                     \
    static constexpr const char* kName = #Type;                                                \
    static constexpr const char* kClassName = #Type "DataType";                                \
    /* The size these types report, deliberately not the size of the value they hold. */       \
    static constexpr std::size_t kValueSizeInBytes = 1;                                        \
    static Type makeDefaultValue() { return Type(Default); }                                   \
  };                                                                                           \
  class ORB_EXPORT Type##MC final : public ArrayConversion<CaseInsensitiveTextRules<Type>> {}; \
  class ORB_EXPORT Type##SC final : public TextConversion<CaseInsensitiveTextRules<Type>> {};
#include "datatype/text/case_insensitive_texts.def"

}  // namespace graphics::datatype
