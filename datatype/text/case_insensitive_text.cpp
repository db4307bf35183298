// CaseInsensitiveString and FontName: comparison, checks and conversions.
#include "datatype/text/case_insensitive_text.h"

#include <locale>
#include <optional>
#include <string_view>

#include "arraylib/zxarray.h"
#include "datatype/conversion_definitions.h"
#include "datatype/conversion_support.h"
#include "datatype/data_type_definitions.h"
#include "datatype/errors.h"
#include "datatype/text/text_support.h"
#include "foundationlib/i18n/unicode.h"

namespace graphics::datatype {
namespace {

std::wstring folded(const std::string& text) {
  std::wstring wide = fl::i18n::utf16ToWide(fl::i18n::utf8ToUtf16(text));
  std::use_facet<std::ctype<wchar_t>>(std::locale()).toupper(wide.data(), wide.data() + wide.size());
  return wide;
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\v\f";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace

bool CaseInsensitiveText::operator==(const CaseInsensitiveText& other) const {
  return text_ == other.text_ || folded(text_) == folded(other.text_);
}

template <class T>
struct CaseInsensitiveTextRules {
  using Value = T;

  static T fromArray(const zxArray& array) {
    if (!isCharRow(&array) || holdsNul(&array)) raise<Korvax::orb::set_chck::ExpectedSingleLineString>();
    return fromText(fl::i18n::utf16ToUtf8(unitsOf(&array)).c_str());
  }
  static zxArray* toArray(const T& value) { return zxCreateString(value.getText().c_str()); }
  static zxArray* noValueArray() { return zxCreateString(""); }

  static T fromText(const char* text) {
    std::string_view kept(text);
    if (kept.find_first_of("\r\n") != std::string_view::npos) {
      raise<Korvax::orb::set_chck::ExpectedSingleLineString>();
    }
    if (T::kTrims) kept = trimmed(kept);
    if (!T::kTakesEmpty && kept.empty()) raise<Korvax::orb::set_chck::ExpectedNonEmptyString>();
    return T(std::string(kept));
  }
  static std::optional<std::string> toText(const T& value) { return value.getText(); }
};

}  // namespace graphics::datatype

#define ORB_CASE_INSENSITIVE_TEXT(Type, ...)               \
  ORB_DEFINE_DATA_TYPE(graphics::datatype::Type##DataType) \
  ORB_DEFINE_CONVERSIONS(graphics::datatype::CaseInsensitiveTextRules<graphics::datatype::Type>)
#include "datatype/text/case_insensitive_texts.def"
