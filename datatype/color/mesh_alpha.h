// MeshAlpha: the face alpha of surface-like objects, a number in [0, 1] or a drawing mode, with its
// style enumeration, data type and array and string conversions.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "datatype/conversions.h"
#include "datatype/enums/named_styles.h"
#include "datatype/enums/style_enumeration.h"
#include "datatype/export.h"

namespace graphics::datatype {

// The drawing modes of a mesh alpha; alpha (-1) marks an explicit number and is never offered.
class ORB_EXPORT MeshAlphaStyle {
 public:
  enum value : int { alpha = -1, flat = 0, interp = 1, texturemap = 2 };
  // The style's enumeration, made on first use.
  static const StyleEnumeration& enumeration();
  // The style that the text names (trimmed, any case, exact name before unique abbreviation).
  static std::optional<value> fromName(std::string_view text);
  static const char* nameOf(value style) { return enumeration().nameOf(style); }
};

// A number in [0, 1] (style alpha) or a drawing mode. Construction refuses NaN, infinities and
// numbers outside [0, 1] with "Korvax:orb:dt_conv:Matrix_to_Real:ValueOutsideRange".
class ORB_EXPORT MeshAlpha {
 public:
  MeshAlpha() = default;
  explicit MeshAlpha(double alphaValue);
  MeshAlpha(MeshAlphaStyle::value style, double alphaValue);
  // The text rule: a drawing-mode name, or a number read as a stream reads one, so whatever follows
  // the number ("0.5abc", "0.5 0.7") is ignored, deliberately.
  static MeshAlpha fromText(const char* text);

  bool operator==(const MeshAlpha& other) const;
  MeshAlphaStyle::value getStyle() const { return static_cast<MeshAlphaStyle::value>(style_); }
  double getAlpha() const { return alpha_; }

  static void* operator new(std::size_t size);
  static void operator delete(void* block);

 private:
  static double checkAlpha(double alphaValue);

  int style_ = MeshAlphaStyle::alpha;
  double alpha_ = 1.0;
};

class ORB_EXPORT MeshAlphaDataType : public NamedStylesDataType<MeshAlphaDataType, MeshAlpha, MeshAlphaStyle> {
 public:
  static constexpr const char* kName = "MeshAlpha";
  static constexpr const char* kClassName = "MeshAlphaDataType";
  static constexpr std::size_t kValueSizeInBytes = 16;
  // A mode's name, or the number as the stream writes it; shown as a number.
  static constexpr TypeFacts kFacts{.text = TextForm::fixed, .javaPeer = &java_peers::OrbDouble};
  static MeshAlpha makeDefaultValue() { return MeshAlpha(); }
};

// Arrays: a drawing-mode name, or a numeric scalar of any class read by value; an empty slot reads
// back as a 0-by-0 double. Text: a drawing-mode name or a leading number; a number is written as a
// stream writes it.
struct ORB_EXPORT MeshAlphaRules;
class ORB_EXPORT MeshAlphaMC final : public ArrayConversion<MeshAlphaRules> {};
class ORB_EXPORT MeshAlphaSC final : public TextConversion<MeshAlphaRules> {};

}  // namespace graphics::datatype
