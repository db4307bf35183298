// LineStyleArray and MarkerStyleArray: their style enumerations, the reading of style lists from
// arrays and text and their writing back, and their data types and conversions.
#include "datatype/styles/style_arrays.h"

#include <algorithm>
#include <locale>
#include <new>
#include <string>
#include <string_view>

#include "arraylib/zxarray.h"
#include "datatype/conversion_definitions.h"
#include "datatype/conversion_support.h"
#include "datatype/data_type_definitions.h"
#include "datatype/errors.h"
#include "guilib/auto_ptr.h"

namespace graphics::datatype {

#define ORB_STYLE(enumerator, name) StyleEntry{enumerator, name},
#define ORB_STYLE_ARRAY(Type, DefaultStyle, ...)                     \
  const StyleEnumeration& Type##Style::enumeration() {               \
    static const StyleEntry entries[] = {__VA_ARGS__};               \
    static const auto* const styles = new StyleEnumeration(entries); \
    return *styles;                                                  \
  }
#include "datatype/styles/style_arrays.def"

namespace {

using Ordinals = std::vector<int>;

// Anything but text where a style name belongs.
[[noreturn]] void refuseNonText(const StyleEnumeration& styles) {
  raise<Korvax::datatypes::InvalidEnumValueFor>(styles.validValues());
}

// Text that names no style, or names several by abbreviation.
[[noreturn]] void refuseName(std::string_view text, const StyleEnumeration& styles) {
  raise<Korvax::datatypes::InvalidEnumValue>(std::string(text), styles.validValues());
}

int ordinalNamed(std::string_view name, const StyleEnumeration& styles) {
  const std::optional<int> style = styles.find(name);
  if (!style) refuseName(name, styles);
  return *style;
}

// The text of a char array; text that cannot be had is refused as out of memory.
ArrayText textOf(const zxArray& chars) {
  try {
    if (ArrayText text = textOfCharArray(&chars)) return text;
  } catch (const std::bad_alloc&) {
  }
  raise<Korvax::orb::datatypes::OutOfMemory>();
}

// The style that one row of characters names. Char matrices and N-D text are refused, not read
// column by column; a NUL would cut the name short and select a style by what precedes it, so text
// holding one names nothing.
int ordinalOfName(const zxArray& chars, const StyleEnumeration& styles) {
  if (!zxIsChar(&chars) || zxGetM(&chars) > 1 || zxGetNumberOfDimensions(&chars) > 2) refuseNonText(styles);
  if (holdsNul(&chars)) refuseName(textWithVisibleNuls(&chars), styles);
  return ordinalNamed(textOf(chars).get(), styles);
}

// One style name (non-empty text), or a vector cell of names giving one style per element in element
// order; a 1-by-0 or 0-by-1 cell gives the empty list.
Ordinals ordinalsOfArray(const zxArray& array, const StyleEnumeration& styles, void (*refuseNonVectorCell)()) {
  if (!zxIsCell(&array)) {
    if (zxIsEmpty(&array)) refuseNonText(styles);
    return Ordinals{ordinalOfName(array, styles)};
  }
  if (!zxIsVector2D(&array)) refuseNonVectorCell();
  Ordinals ordinals;
  ordinals.reserve(zxGetNumberOfElements(&array));
  for (zxSize i = 0; i < zxGetNumberOfElements(&array); ++i) {
    const zxArray* element = zxGetCell(&array, i);
    if (element == nullptr) refuseNonText(styles);
    ordinals.push_back(ordinalOfName(*element, styles));
  }
  return ordinals;
}

// The text rule: one name, or several separated by '|' or white space ("-|--|:", "- -- :"); white
// space around a '|' is ignored. White space is the current locale's, as name matching trims it.
// Blank text is the empty list, so that the empty list's text reads back. An empty entry (two '|' in
// a row, or one at either end) is refused with the whole text.
Ordinals ordinalsOfText(std::string_view text, const StyleEnumeration& styles) {
  const std::locale locale;
  const auto isBlank = [&locale](char c) { return std::isspace(c, locale); };
  Ordinals ordinals;
  if (std::all_of(text.begin(), text.end(), isBlank)) return ordinals;
  for (std::string_view rest = text;;) {
    const std::size_t bar = rest.find('|');
    const std::string_view entry = rest.substr(0, bar);
    const std::size_t before = ordinals.size();
    for (auto at = entry.begin(); at != entry.end();) {
      const auto start = std::find_if_not(at, entry.end(), isBlank);
      at = std::find_if(start, entry.end(), isBlank);
      if (start != at) ordinals.push_back(ordinalNamed(std::string_view(start, at), styles));
    }
    if (ordinals.size() == before) refuseName(text, styles);
    if (bar == std::string_view::npos) return ordinals;
    rest.remove_prefix(bar + 1);
  }
}

// A char row for one style; otherwise a 1-by-N cell of char rows (1-by-0 for the empty list).
zxArray* arrayOfNames(const std::vector<const char*>& names) {
  if (names.size() == 1) return zxCreateString(names.front());
  gui_objects::ZxArrayPtr cell(zxCreateCellMatrix(1, names.size()));
  for (std::size_t i = 0; i < names.size(); ++i) zxSetCell(cell.get(), i, zxCreateString(names[i]));
  return cell.release();
}

// The names joined by '|': the one name for one style, the empty text for the empty list.
std::string textOfNames(const std::vector<const char*>& names) {
  std::string text;
  for (const char* name : names) {
    if (!text.empty()) text += '|';
    text += name;
  }
  return text;
}

}  // namespace

// The rules of a style list type T; NonVectorCellId is T's own identifier for a cell that is not a
// vector. (Outside the anonymous namespace: each row's rules derive from them.)
template <class T, class NonVectorCellId>
struct StyleArrayRules {
  using Value = T;
  using Style = typename T::Style;

  static T fromNoArray() { refuseNonText(Style::enumeration()); }
  static T fromArray(const zxArray& array) {
    return valueOf(ordinalsOfArray(array, Style::enumeration(), [] { raise<NonVectorCellId>(); }));
  }
  static zxArray* toArray(const T& value) { return arrayOfNames(namesOf(value)); }
  static zxArray* noValueArray() { return zxCreateDoubleMatrix(0, 0, zxREAL); }

  static T fromText(const char* text) { return valueOf(ordinalsOfText(text, Style::enumeration())); }
  static std::optional<std::string> toText(const T& value) { return textOfNames(namesOf(value)); }

 private:
  static T valueOf(const Ordinals& ordinals) {
    std::vector<typename T::StyleValue> styles;
    styles.reserve(ordinals.size());
    for (const int ordinal : ordinals) styles.push_back(static_cast<typename T::StyleValue>(ordinal));
    return T(std::move(styles));
  }
  // A number that is no style (only a cast makes one) is written as the empty name.
  static std::vector<const char*> namesOf(const T& value) {
    std::vector<const char*> names;
    names.reserve(value.getLength());
    for (std::size_t i = 0; i < value.getLength(); ++i) {
      const char* name = Style::getEnumString(value.getStyle(i));
      names.push_back(name != nullptr ? name : "");
    }
    return names;
  }
};

#define ORB_STYLE_ARRAY(Type, DefaultStyle, ...) \
  struct Type##Rules : StyleArrayRules<Type, ::Korvax::datatypes::Type::NonVectorCellArray> {};
#include "datatype/styles/style_arrays.def"

}  // namespace graphics::datatype

#define ORB_STYLE_ARRAY(Type, DefaultStyle, ...)           \
  ORB_DEFINE_DATA_TYPE(graphics::datatype::Type##DataType) \
  ORB_DEFINE_CONVERSIONS(graphics::datatype::Type##Rules)
#include "datatype/styles/style_arrays.def"
