// The color properties that hold a color or a keyword (RGBAColor, RGBAutoNoneColor,
// RGBFlatNoneColor, MeshColor, PatchColor, MarkerColor) and the list of colors
// RGBMatrixFlatNoneColor, each with its style enumeration, data type and conversions, made from the
// rows of styled_colors.def.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "datatype/color/color_base.h"
#include "datatype/conversions.h"
#include "datatype/enums/named_styles.h"
#include "datatype/enums/style_enumeration.h"
#include "datatype/export.h"

namespace graphics::datatype {

// Each type's styles: TypeStyle::value names them, and the enumeration matches text against them.
#define ORB_COLOR_STYLE(enumerator, name, number, status) enumerator = (number),
#define ORB_COLOR_STYLE_CLASS(Type, ...)                                     \
  class ORB_EXPORT Type##Style {                                             \
   public:                                                                   \
    enum value : int { __VA_ARGS__ };                                        \
    static const StyleEnumeration& enumeration();                            \
    /* The style the text names (trimmed, any case, unique abbreviation). */ \
    static std::optional<value> fromName(std::string_view text);             \
    static const char* nameOf(value style);                                  \
  };
#define ORB_STYLED_COLOR(Type, Ids, CountId, MaxElements, ...) ORB_COLOR_STYLE_CLASS(Type, __VA_ARGS__)
#define ORB_COLOR_LIST(Type, Ids, CountId, ...) ORB_COLOR_STYLE_CLASS(Type, __VA_ARGS__)
#include "datatype/color/styled_colors.def"
#undef ORB_COLOR_STYLE_CLASS

// A color and a style; the color part means something only in the style color, and holds opaque
// black otherwise. The default is opaque black in the style color.
template <class StyleClass>
class ORB_EXPORT StyledColor : public ColorBase {
 public:
  using Style = StyleClass;
  using StyleValue = typename Style::value;

  StyledColor() = default;
  // All four components checked before any is stored; the style color.
  StyledColor(double red, double green, double blue, double alpha = 1.0) : ColorBase(red, green, blue, alpha) {}
  explicit StyledColor(StyleValue style) : style_(style) {}
  // A style name that is not also the beginning of a color name gives that style; any other text is
  // a color name or numbers (ColorBase::setColorFromString) in the style color. A style name that
  // begins a color name too is refused as ambiguous.
  explicit StyledColor(std::string_view text);

  // Styles must match; colors compare all four components.
  bool operator==(const StyledColor& other) const {
    return style_ == other.style_ && (style_ != Style::color || ColorBase::operator==(other));
  }

  StyleValue getStyle() const { return style_; }
  void setStyle(StyleValue style) { style_ = style; }
  bool isNone() const { return style_ == Style::none; }
  // Not for none; a color is visible unless it is fully transparent.
  bool isVisible() const { return style_ != Style::none && (style_ != Style::color || getAlpha() > 0.0); }

 private:
  StyleValue style_ = Style::color;
};

// A list of opaque colors and a style; the list is empty for any style but color. The default is
// one opaque black color.
class ORB_EXPORT RGBMatrixFlatNoneColor {
 public:
  using Style = RGBMatrixFlatNoneColorStyle;

  RGBMatrixFlatNoneColor();
  // count colors from the components red[i], green[i], blue[i], each checked.
  RGBMatrixFlatNoneColor(const double* red, const double* green, const double* blue, std::size_t count);
  explicit RGBMatrixFlatNoneColor(Style::value style) : style_(style) {}
  // A style name, a color name, an m-by-3 matrix of components, or four numbers for one color.
  explicit RGBMatrixFlatNoneColor(std::string_view text);

  bool operator==(const RGBMatrixFlatNoneColor& other) const;

  Style::value getStyle() const { return style_; }
  bool isNone() const { return style_ == Style::none; }
  const std::vector<ColorBase>& getColors() const { return colors_; }
  std::size_t getLength() const { return colors_.size(); }

 private:
  std::vector<ColorBase> colors_;
  Style::value style_ = Style::color;
};

// The value classes of the one-color rows.
#define ORB_STYLED_COLOR(Type, Ids, CountId, MaxElements, ...)    \
  class ORB_EXPORT Type final : public StyledColor<Type##Style> { \
   public:                                                        \
    using StyledColor::StyledColor;                               \
  };
#include "datatype/color/styled_colors.def"

// Data types and conversions of every row. Arrays: a style name, a color name or numbers as text, or
// a numeric or logical array of components (integer classes scaled to [0, 1]); read back as the
// style's name or a row (a matrix for the list) of doubles. Text: the same text rule; written as the
// style's name or "[ r g b ]" ("[ r g b ; ... ]" for the list), without alpha; the numbers as %g
// writes them, as the color rule fixes. A one-color value crosses to Java as an OrbColor with its alpha.
// A type offers its names only where some style is offered (RGBAColor accepts "none" and "color" but
// offers neither).
#define ORB_COLOR_TYPE(Type, SizeInBytes, Peer, OffersNames, ...)                                        \
  class ORB_EXPORT Type##DataType : public NamedStylesDataType<Type##DataType, Type, Type##Style> {      \
   public:                                                                                               \
    static constexpr const char* kName = #Type;                                                          \
    static constexpr const char* kClassName = #Type "DataType";                                          \
    static constexpr std::size_t kValueSizeInBytes = SizeInBytes;                                        \
    static constexpr TypeFacts kFacts{                                                                   \
        .text = TextForm::fixed, .javaPeer = Peer, .takesColorNames = true, .offersNames = OffersNames}; \
    static Type makeDefaultValue() { return Type(); }                                                    \
    __VA_ARGS__                                                                                          \
  };                                                                                                     \
  struct ORB_EXPORT Type##Rules;                                                                         \
  class ORB_EXPORT Type##MC final : public ArrayConversion<Type##Rules> {};                              \
  class ORB_EXPORT Type##SC final : public TextConversion<Type##Rules> {};
#define ORB_COLOR_STYLE(enumerator, name, number, status) || EnumStatus::status == EnumStatus::offered
// The color with its alpha, which the array form leaves out; nothing for a style.
#define ORB_JAVA_NUMBERS static std::optional<std::array<double, 4>> javaNumbers(objsys::COSValue value);
#define ORB_STYLED_COLOR(Type, Ids, CountId, MaxElements, ...) \
  ORB_COLOR_TYPE(Type, 40, &java_peers::OrbColor, (false __VA_ARGS__), ORB_JAVA_NUMBERS)
#define ORB_COLOR_LIST(Type, Ids, CountId, ...) ORB_COLOR_TYPE(Type, 16, nullptr, (false __VA_ARGS__))
#include "datatype/color/styled_colors.def"
#undef ORB_COLOR_TYPE
#undef ORB_JAVA_NUMBERS

}  // namespace graphics::datatype
