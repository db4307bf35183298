// The properties that hold an ordered list of line or marker styles (LineStyleArray,
// MarkerStyleArray), each with its nested style enumeration, data type and conversions, made from the
// rows of style_arrays.def.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "datatype/conversions.h"
#include "datatype/enums/named_styles.h"
#include "datatype/enums/style_enumeration.h"
#include "datatype/export.h"

namespace graphics::datatype {

// The accessors of a nested style class, forwarded to its enumeration (Derived::enumeration()). Names
// match as every enumeration matches them: trimmed, any case, an exact name before a unique
// abbreviation.
template <class Derived>
class NestedStyle {
 public:
  // The style's enumeration type object, made on first use and kept for the process.
  static const OrbEnumerationType& getInstance() { return Derived::enumeration().enumeration(); }
  static int getEnumLength() { return getInstance().getEnumLength(); }
  // The style's name, or null for a number that is no style.
  static const char* getEnumString(int style) { return Derived::enumeration().nameOf(style); }
  static std::vector<std::string> getEnumStrings() {
    std::vector<std::string> names;
    for (int i = 0; i < getEnumLength(); ++i) names.emplace_back(getInstance().elementName(i));
    return names;
  }
  // The style the name selects, or nothing.
  static auto getEnumValue(const char* name) {
    using Value = typename Derived::value;
    const std::optional<int> style = Derived::enumeration().find(name != nullptr ? name : "");
    return style ? std::optional<Value>(static_cast<Value>(*style)) : std::nullopt;
  }
  // The selected style's status (0 for every style of a list); -1 when the name selects none.
  static EnumerationStatus getEnumVisibility(const char* name) { return getInstance().getEnumVisibility(name); }
  // The offered styles, in order.
  static auto getVisibleValues() {
    using Value = typename Derived::value;
    std::vector<Value> styles;
    for (int i = 0; i < getEnumLength(); ++i) {
      if (getInstance().elementStatus(i) == 0)
        styles.push_back(static_cast<Value>(getInstance().elementValue(i, false).word()));
    }
    return styles;
  }
  // True for every name that selects no style, also one that matches nothing at all.
  static bool isEnumNameAmbiguous(const char* name) { return getInstance().isEnumNameAmbiguous(name); }
  static bool isValidEnumName(const char* name) { return getInstance().isValidEnumName(name); }
};

// Each type's styles: TypeStyle::value names them, with ordinals in table order.
#define ORB_STYLE(enumerator, name) enumerator,
#define ORB_STYLE_ARRAY(Type, DefaultStyle, ...)                   \
  class ORB_EXPORT Type##Style : public NestedStyle<Type##Style> { \
   public:                                                         \
    enum value : int { __VA_ARGS__ };                              \
    static const StyleEnumeration& enumeration();                  \
  };
#include "datatype/styles/style_arrays.def"

// An ordered list of styles; equal when the same styles come in the same order. The list may be
// empty. Indices out of range raise std::out_of_range.
template <class StyleClass>
class StyleArray {
 public:
  using Style = StyleClass;
  using StyleValue = typename Style::value;

  StyleArray() = default;
  explicit StyleArray(StyleValue style) : styles_{style} {}
  explicit StyleArray(std::vector<StyleValue> styles) : styles_(std::move(styles)) {}

  bool operator==(const StyleArray& other) const = default;

  std::size_t getLength() const { return styles_.size(); }
  // Styles added by lengthening are the first style of the enumeration.
  void setLength(std::size_t length) { styles_.resize(length); }
  StyleValue getStyle(std::size_t index) const { return styles_.at(index); }
  void setStyle(StyleValue style, std::size_t index) { styles_.at(index) = style; }

 private:
  std::vector<StyleValue> styles_;
};

// The value classes, data types and conversions of every row. Arrays: one style name as a char row,
// or a vector cell of such names; read back as a char row for one style and as a 1-by-N cell of
// names otherwise. Text: one name, or several separated by '|' or blanks; written as the names
// joined by '|'. The default is the list of the row's default style alone.
#define ORB_STYLE_ARRAY(Type, DefaultStyle, ...)                                                     \
  class ORB_EXPORT Type final : public StyleArray<Type##Style> {                                     \
   public:                                                                                           \
    using StyleArray::StyleArray;                                                                    \
  };                                                                                                 \
  class ORB_EXPORT Type##DataType : public NamedStylesDataType<Type##DataType, Type, Type##Style> {  \
   public:                                                                                           \
    static constexpr const char* kName = #Type;                                                      \
    static constexpr const char* kClassName = #Type "DataType";                                      \
    static constexpr std::size_t kValueSizeInBytes = 12;                                             \
    /* Text the lists cannot take, a failed allocation included, is the out-of-memory identifier. */ \
    static constexpr TypeFacts kFacts{.failuresBecome = "Korvax:orb:datatypes:OutOfMemory"};         \
    static Type makeDefaultValue() { return Type(Type##Style::DefaultStyle); }                       \
  };                                                                                                 \
  struct ORB_EXPORT Type##Rules;                                                                     \
  class ORB_EXPORT Type##MC final : public ArrayConversion<Type##Rules> {};                          \
  class ORB_EXPORT Type##SC final : public TextConversion<Type##Rules> {};
#include "datatype/styles/style_arrays.def"

}  // namespace graphics::datatype
