// The styled colors and the color list: style enumerations, the text rule, the array rules by
// class, and the conversions, from the rows of styled_colors.def.
#include "datatype/color/styled_colors.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <type_traits>

#include "arraylib/zxdispatch.h"
#include "datatype/conversion_definitions.h"
#include "datatype/conversion_support.h"
#include "datatype/data_type_definitions.h"
#include "datatype/errors.h"
#include "guilib/array_dispatch.h"
#include "guilib/convert_from_string_utils.h"

namespace graphics::datatype {
namespace {

// The identifiers each row raises under its own namespace, and how many elements a numeric array
// may give (4 when the fourth is alpha; 0 for the list, which takes m-by-3 matrices).
template <class Style>
struct ColorIds;
#define ORB_COLOR_IDS(Type, Ids, CountId, MaxElements)           \
  template <>                                                    \
  struct ColorIds<Type##Style> {                                 \
    using AmbiguousName = Korvax::datatypes::Ids::AmbiguousName; \
    using ParseError = Korvax::datatypes::Ids::ParseError;       \
    using WrongSize = Korvax::datatypes::Ids::CountId;           \
    static constexpr zxSize kMaxElements = MaxElements;          \
  };
#define ORB_STYLED_COLOR(Type, Ids, CountId, MaxElements, ...) ORB_COLOR_IDS(Type, Ids, CountId, MaxElements)
#define ORB_COLOR_LIST(Type, Ids, CountId, ...) ORB_COLOR_IDS(Type, Ids, CountId, 0)
#include "datatype/color/styled_colors.def"
#undef ORB_COLOR_IDS

#define ORB_COLOR_STYLE(enumerator, name, number, status) StyleEntry{number, name, EnumStatus::status},
#define ORB_STYLED_COLOR(Type, Ids, CountId, MaxElements, ...) constexpr StyleEntry k##Type##Styles[] = {__VA_ARGS__};
#define ORB_COLOR_LIST(Type, Ids, CountId, ...) constexpr StyleEntry k##Type##Styles[] = {__VA_ARGS__};
#include "datatype/color/styled_colors.def"

// The keyword a text names, when it names a style other than color. A keyword that also begins a
// color name could mean either, and is refused.
template <class Style>
std::optional<typename Style::value> keywordNamed(std::string_view text) {
  const std::optional<typename Style::value> style = Style::fromName(text);
  if (!style || *style == Style::color) return std::nullopt;
  if (ColorNameTable::getInstance().isColorName(text)) raise<typename ColorIds<Style>::AmbiguousName>();
  return style;
}

// A component of class T brought to [0, 1]: floating classes as they are (checked later), logical as
// 0 or 1, unsigned N-bit integers divided by 2^N - 1, signed ones shifted up by 2^(N-1) first.
template <class T>
double scaledComponent(double raw) {
  if constexpr (std::is_floating_point_v<T> || std::is_same_v<T, zxLogical>) {
    return raw;
  } else {
    constexpr double kRange = static_cast<double>(std::numeric_limits<std::make_unsigned_t<T>>::max());
    constexpr double kShift = -static_cast<double>(std::numeric_limits<T>::min());
    return (raw + kShift) / kRange;
  }
}

// The count elements of a numeric or logical array in storage order, scaled by class; alpha stays 1
// unless a fourth element gives it. Complex arrays give their real parts, sparse ones their full form.
std::array<double, 4> scaledComponents(const zxArray& array, zxClassID classID, zxSize count) {
  std::array<double, 4> components{0.0, 0.0, 0.0, 1.0};
  zx::dispatchNumericOrLogical(classID, [&](auto type) {
    using T = typename decltype(type)::type;
    const auto* data = static_cast<const T*>(zxGetData(&array));
    const bool direct = data != nullptr && !zxIsSparse(&array);
    for (zxSize i = 0; i < count; ++i) {
      const double raw = direct ? static_cast<double>(data[i]) : gui_objects::readElementAsDouble(&array, i);
      components[i] = scaledComponent<T>(raw);
    }
  });
  return components;
}

bool isNumericOrLogical(zxClassID classID) { return classID == zxLOGICAL_CLASS || zxIsNumericArrayType(classID); }
bool isNumericOrLogical(const zxArray& array) { return isNumericOrLogical(zxGetClassID(&array)); }

// The text of a char array that may name a color: one row without NUL. Anything else, and empty
// text, is refused with the type's parse error.
template <class Style>
ArrayText colorTextOf(const zxArray& array) {
  if (zxIsEmpty(&array) || zxGetM(&array) != 1 || zxGetNumberOfDimensions(&array) > 2 || holdsNul(&array)) {
    raise<typename ColorIds<Style>::ParseError>();
  }
  return textOfCharArray(&array);
}

// No array at all is refused with the names the type takes besides colors.
template <class Style>
[[noreturn]] void refuseNoArray() {
  const OrbEnumerationType& styles = Style::enumeration().enumeration();
  std::string names;
  for (int i = 0; i < styles.getEnumLength(); ++i) {
    if (styles.elementValue(i, false).word() == Style::color) continue;
    if (!names.empty()) names += " | ";
    names += std::string("'") + styles.elementName(i) + "'";
  }
  raise<Korvax::datatypes::InvalidValue>(names);
}

std::string componentsText(const ColorBase& color) {
  char text[96];
  std::snprintf(text, sizeof text, "%g %g %g", color.getRed(), color.getGreen(), color.getBlue());
  return text;
}

zxArray* newStyleName(const char* name) {
  zxArray* array = zxCreateString(name);
  if (array == nullptr) throw fl::except::bad_alloc();
  return array;
}

}  // namespace

// The rules of the one-color rows (outside the anonymous namespace: each row's rules derive from them).
template <class Color>
struct StyledColorRules {
  using Value = Color;
  using Style = typename Color::Style;
  using Ids = ColorIds<Style>;

  static Color fromNoArray() { refuseNoArray<Style>(); }
  static Color fromArray(const zxArray& array) {
    const zxClassID classID = zxGetClassID(&array);
    if (classID == zxCHAR_CLASS) return Color(std::string_view(colorTextOf<Style>(array).get()));
    const zxSize count = zxGetNumberOfElements(&array);
    if (!isNumericOrLogical(classID) || count < 3 || count > Ids::kMaxElements) raise<typename Ids::WrongSize>();
    const std::array<double, 4> c = scaledComponents(array, classID, count);
    return Color(c[0], c[1], c[2], c[3]);
  }
  static zxArray* toArray(const Color& color) {
    if (color.getStyle() != Style::color) return newStyleName(Style::nameOf(color.getStyle()));
    zxArray* row = zxCreateDoubleMatrix(1, 3, zxREAL);
    if (row == nullptr) throw fl::except::bad_alloc();
    double* values = zxGetWritablePr(row);
    values[0] = color.getRed();
    values[1] = color.getGreen();
    values[2] = color.getBlue();
    return row;
  }
  static zxArray* noValueArray() { return zxCreateDoubleMatrix(0, 0, zxREAL); }

  static Color fromText(const char* text) { return Color(std::string_view(text)); }
  // Alpha is not written, deliberately.
  static std::optional<std::string> toText(const Color& color) {
    if (color.getStyle() != Style::color) return Style::nameOf(color.getStyle());
    return "[ " + componentsText(color) + " ]";
  }
};

#define ORB_COLOR_STYLE_MEMBERS(Type)                                              \
  const StyleEnumeration& Type##Style::enumeration() {                             \
    static const auto* const styles = new StyleEnumeration(k##Type##Styles);       \
    return *styles;                                                                \
  }                                                                                \
  std::optional<Type##Style::value> Type##Style::fromName(std::string_view text) { \
    const std::optional<int> style = enumeration().find(text);                     \
    if (!style) return std::nullopt;                                               \
    return static_cast<value>(*style);                                             \
  }                                                                                \
  const char* Type##Style::nameOf(value style) { return enumeration().nameOf(style); }
#define ORB_STYLED_COLOR(Type, ...) ORB_COLOR_STYLE_MEMBERS(Type)
#define ORB_COLOR_LIST(Type, ...) ORB_COLOR_STYLE_MEMBERS(Type)
#include "datatype/color/styled_colors.def"
#undef ORB_COLOR_STYLE_MEMBERS

template <class StyleClass>
StyledColor<StyleClass>::StyledColor(std::string_view text) {
  if (const std::optional<StyleValue> keyword = keywordNamed<Style>(text)) {
    style_ = *keyword;
    return;
  }
  setColorFromString(text);
}

#define ORB_STYLED_COLOR(Type, ...) template class StyledColor<Type##Style>;
#include "datatype/color/styled_colors.def"

#define ORB_STYLED_COLOR(Type, ...)                                                                    \
  std::optional<std::array<double, 4>> Type##DataType::javaNumbers(objsys::COSValue value) {           \
    const Type& color = *value.as<const Type>();                                                       \
    if (color.getStyle() != Type##Style::color) return std::nullopt;                                   \
    return std::array<double, 4>{color.getRed(), color.getGreen(), color.getBlue(), color.getAlpha()}; \
  }
#include "datatype/color/styled_colors.def"

RGBMatrixFlatNoneColor::RGBMatrixFlatNoneColor() : colors_(1) {}

RGBMatrixFlatNoneColor::RGBMatrixFlatNoneColor(const double* red, const double* green, const double* blue,
                                               std::size_t count) {
  colors_.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    colors_[i].setRed(red[i]);
    colors_[i].setGreen(green[i]);
    colors_[i].setBlue(blue[i]);
  }
}

RGBMatrixFlatNoneColor::RGBMatrixFlatNoneColor(std::string_view text) {
  if (const std::optional<Style::value> keyword = keywordNamed<Style>(text)) {
    style_ = *keyword;
    return;
  }
  namespace parse = gui_objects::convert_from_string_utils;
  // Matrix text of three columns gives one color per row; a color name, or anything else, goes
  // through the one-color rule (which also takes four numbers) as a list of one.
  const std::string copy(text);
  if (!ColorNameTable::getInstance().isColorName(text)) {
    zxSize rows = 0;
    zxSize cols = 0;
    bool matrix = false;
    try {
      parse::parse_array_dimensions(copy.c_str(), rows, cols);
      matrix = cols == 3 || (rows == 0 && cols == 0);
    } catch (const parse::ParseException&) {
    }
    if (matrix) {
      const gui_objects::ZxArrayPtr values(parse::parse_mxn(copy.c_str(), rows, 3, zxDOUBLE_CLASS));
      const double* column = zxGetPr(values.get());
      *this = RGBMatrixFlatNoneColor(column, column + rows, column + 2 * rows, rows);
      return;
    }
  }
  colors_.resize(1);
  colors_[0].setColorFromString(text);
}

bool RGBMatrixFlatNoneColor::operator==(const RGBMatrixFlatNoneColor& other) const {
  if (style_ != other.style_) return false;
  if (style_ != Style::color) return true;
  return std::equal(colors_.begin(), colors_.end(), other.colors_.begin(), other.colors_.end(),
                    [](const ColorBase& a, const ColorBase& b) { return a.getAsColor4d() == b.getAsColor4d(); });
}

// The list's rules: m-by-3 numeric or logical matrices converted to double by value (no scaling by
// class), read back as m-by-3 doubles.
struct ColorListRules {
  using Value = RGBMatrixFlatNoneColor;
  using Style = RGBMatrixFlatNoneColorStyle;
  using Ids = ColorIds<Style>;

  static Value fromNoArray() { refuseNoArray<Style>(); }
  static Value fromArray(const zxArray& array) {
    if (zxIsChar(&array)) return Value(std::string_view(colorTextOf<Style>(array).get()));
    if (!isNumericOrLogical(array) || zxGetNumberOfDimensions(&array) != 2 || zxGetN(&array) != 3) {
      raise<Ids::WrongSize>();
    }
    const gui_objects::ZxArrayPtr doubles(zxIsDouble(&array) && !zxIsSparse(&array) ? nullptr : asDoubles(array));
    const double* column = zxGetPr(doubles ? doubles.get() : &array);
    const zxSize rows = zxGetM(&array);
    if (column == nullptr) return Value(nullptr, nullptr, nullptr, 0);
    return Value(column, column + rows, column + 2 * rows, rows);
  }
  static zxArray* toArray(const Value& value) {
    if (value.getStyle() != Style::color) return newStyleName(Style::nameOf(value.getStyle()));
    const std::vector<ColorBase>& colors = value.getColors();
    const zxSize rows = colors.size();
    zxArray* matrix = zxCreateDoubleMatrix(rows, 3, zxREAL);
    if (matrix == nullptr) throw fl::except::bad_alloc();
    double* values = zxGetWritablePr(matrix);
    for (zxSize i = 0; i < rows; ++i) {
      values[i] = colors[i].getRed();
      values[i + rows] = colors[i].getGreen();
      values[i + 2 * rows] = colors[i].getBlue();
    }
    return matrix;
  }
  static zxArray* noValueArray() { return zxCreateDoubleMatrix(0, 0, zxREAL); }

  static Value fromText(const char* text) { return Value(std::string_view(text)); }
  // Each color as " r g b ;" inside brackets, which reads back as the same list.
  static std::optional<std::string> toText(const Value& value) {
    if (value.getStyle() != Style::color) return Style::nameOf(value.getStyle());
    std::string text = "[";
    for (const ColorBase& color : value.getColors()) text += " " + componentsText(color) + " ;";
    return text + " ]";
  }

 private:
  // A full double copy of the array's real parts, elements read by value.
  static zxArray* asDoubles(const zxArray& array) {
    const zxSize count = zxGetNumberOfElements(&array);
    zxArray* copy = zxCreateDoubleMatrix(zxGetM(&array), zxGetN(&array), zxREAL);
    if (copy == nullptr) throw fl::except::bad_alloc();
    double* values = zxGetWritablePr(copy);
    for (zxSize i = 0; i < count; ++i) values[i] = gui_objects::readElementAsDouble(&array, i);
    return copy;
  }
};

#define ORB_STYLED_COLOR(Type, ...) \
  struct Type##Rules : StyledColorRules<Type> {};
#define ORB_COLOR_LIST(Type, ...) \
  struct Type##Rules : ColorListRules {};
#include "datatype/color/styled_colors.def"

}  // namespace graphics::datatype

#define ORB_STYLED_COLOR(Type, ...)                        \
  ORB_DEFINE_DATA_TYPE(graphics::datatype::Type##DataType) \
  ORB_DEFINE_CONVERSIONS(graphics::datatype::Type##Rules)
#define ORB_COLOR_LIST(Type, ...) ORB_STYLED_COLOR(Type)
#include "datatype/color/styled_colors.def"
