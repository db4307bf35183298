// NLineStyles: reading style lists from arrays and text, and conversions.
#include "datatype/styles/n_line_styles.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "arraylib/zxarray.h"
#include "datatype/conversion_definitions.h"
#include "datatype/conversion_support.h"
#include "datatype/data_type_definitions.h"
#include "datatype/errors.h"

namespace graphics::datatype {
namespace {

namespace ids = Korvax::orbdatatypes;
using Styles = std::vector<LineStyleArrayStyle::value>;

LineStyleArrayStyle::value styleNamed(std::string_view name) {
  const std::optional<LineStyleArrayStyle::value> style = LineStyleArrayStyle::getEnumValue(std::string(name).c_str());
  if (!style) raise<ids::InvalidMarkerLineStyle>();
  return *style;
}

// Names separated by '|'; text holding nothing but blanks names no style.
Styles stylesOfText(std::string_view text) {
  Styles styles;
  if (text.find_first_not_of(" \t") == std::string_view::npos) return styles;
  for (std::size_t start = 0;;) {
    const std::size_t bar = text.find('|', start);
    styles.push_back(styleNamed(text.substr(start, bar - start)));
    if (bar == std::string_view::npos) return styles;
    start = bar + 1;
  }
}

bool isTextRow(const zxArray* array) {
  return array != nullptr && zxIsChar(array) && zxGetNumberOfDimensions(array) == 2 && zxGetM(array) <= 1;
}

std::string textOfRow(const zxArray& row) {
  if (holdsNul(&row)) raise<ids::InvalidMarkerLineStyle>();
  return textOfCharArray(&row).get();
}

Styles stylesOfArray(const zxArray& array) {
  if (isTextRow(&array)) return stylesOfText(textOfRow(array));
  if (!zxIsCell(&array) || !(zxIsEmpty(&array) || zxIsVector2D(&array))) raise<ids::InvalidInput>();
  Styles styles;
  for (zxSize i = 0; i < zxGetNumberOfElements(&array); ++i) {
    const zxArray* element = zxGetCell(&array, i);
    if (!isTextRow(element)) raise<ids::InvalidInput>();
    styles.push_back(styleNamed(textOfRow(*element)));
  }
  return styles;
}

}  // namespace

NLineStyles::NLineStyles(const LineStyleArray& styles) : count_(styles.getLength()), styles_(styles) {
  if (count_ == 0) raise<ids::NotEnoughStyles>();
}

struct NLineStylesRules {
  using Value = NLineStyles;

  static NLineStyles fromArray(const zxArray& array) { return NLineStyles(LineStyleArray(stylesOfArray(array))); }
  static zxArray* toArray(const NLineStyles& value) { return zxCreateString(toText(value)->c_str()); }
  static zxArray* noValueArray() { return zxCreateString(""); }

  static NLineStyles fromText(const char* text) { return NLineStyles(LineStyleArray(stylesOfText(text))); }
  static std::optional<std::string> toText(const NLineStyles& value) {
    std::string text;
    for (std::size_t i = 0; i < value.getCount(); ++i) {
      if (i > 0) text += '|';
      text += LineStyleArrayStyle::getEnumString(value.getStyles().getStyle(i));
    }
    return text;
  }
};

}  // namespace graphics::datatype

ORB_DEFINE_DATA_TYPE(graphics::datatype::NLineStylesDataType)
ORB_DEFINE_CONVERSIONS(graphics::datatype::NLineStylesRules)
