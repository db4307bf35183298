// MeshAlpha: its style enumeration, value, data type and conversions.
#include "datatype/color/mesh_alpha.h"

#include <array>
#include <cmath>
#include <sstream>
#include <vector>

#include "datatype/conversion_definitions.h"
#include "datatype/conversion_support.h"
#include "datatype/data_type_definitions.h"
#include "datatype/errors.h"
#include "guilib/array_exceptions.h"
#include "utillib/ut.h"

namespace graphics::datatype {
namespace {

// "alpha" is accepted by matching but never offered.
constexpr StyleEntry kStyles[] = {{MeshAlphaStyle::alpha, "alpha", EnumStatus::hidden},
                                  {MeshAlphaStyle::flat, "flat"},
                                  {MeshAlphaStyle::interp, "interp"},
                                  {MeshAlphaStyle::texturemap, "texturemap"}};

}  // namespace

const StyleEnumeration& MeshAlphaStyle::enumeration() {
  static const auto* const styles = new StyleEnumeration(kStyles);
  return *styles;
}

std::optional<MeshAlphaStyle::value> MeshAlphaStyle::fromName(std::string_view text) {
  const std::optional<int> style = enumeration().find(text);
  if (!style) return std::nullopt;
  return static_cast<value>(*style);
}

MeshAlpha::MeshAlpha(double alphaValue) : alpha_(checkAlpha(alphaValue)) {}

MeshAlpha::MeshAlpha(MeshAlphaStyle::value style, double alphaValue) : style_(style), alpha_(checkAlpha(alphaValue)) {}

double MeshAlpha::checkAlpha(double alphaValue) {
  if (!std::isfinite(alphaValue) || alphaValue < 0.0 || alphaValue > 1.0) {
    raise<Korvax::orb::dt_conv::Matrix_to_Real::ValueOutsideRange>();
  }
  return alphaValue;
}

MeshAlpha MeshAlpha::fromText(const char* text) {
  const std::optional<MeshAlphaStyle::value> style = MeshAlphaStyle::fromName(text);
  if (style && *style != MeshAlphaStyle::alpha) return MeshAlpha(*style, 1.0);
  std::istringstream in{std::string(text)};
  // A stream swallows what its reading raises; out of memory must not read as "no number".
  in.exceptions(std::ios::badbit);
  double number = 0.0;
  if (!(in >> number)) raise<Korvax::orb::dt_conv::Matrix_to_Real::ExpectedNumeric1>();
  return MeshAlpha(number);
}

bool MeshAlpha::operator==(const MeshAlpha& other) const {
  if (style_ != other.style_) return false;
  return style_ != MeshAlphaStyle::alpha || alpha_ == other.alpha_;
}

void* MeshAlpha::operator new(std::size_t size) { return allocateValueBlock(size); }

void MeshAlpha::operator delete(void* block) { utFree(block); }

struct MeshAlphaRules {
  using Value = MeshAlpha;

  static MeshAlpha fromArray(const zxArray& array) {
    if (zxIsChar(&array)) {
      // Any char array is read as the host's text of it, in storage order, deliberately. Only a NUL,
      // which would cut the text short, is refused.
      if (holdsNul(&array)) raise<Korvax::orb::dt_conv::Matrix_to_Real::ExpectedNumeric1>();
      return MeshAlpha::fromText(textOfCharArray(&array).get());
    }
    if (!zxIsScalar(&array)) raise<Korvax::orb::dt_conv::Matrix_to_Real::ExpectedNumeric>();
    double number = 0.0;
    try {
      number = readScalarAsDouble(&array);
    } catch (const gui_objects::InvalidArrayClassException&) {
      raise<Korvax::orb::dt_conv::Matrix_to_Real::ExpectedNumeric>();
    }
    return MeshAlpha(number);
  }
  static zxArray* toArray(const MeshAlpha& alpha) {
    if (alpha.getStyle() != MeshAlphaStyle::alpha) return zxCreateString(MeshAlphaStyle::nameOf(alpha.getStyle()));
    return zxCreateDoubleScalar(alpha.getAlpha());
  }
  static zxArray* noValueArray() { return zxCreateDoubleMatrix(0, 0, zxREAL); }

  static MeshAlpha fromText(const char* text) { return MeshAlpha::fromText(text); }
  static std::optional<std::string> toText(const MeshAlpha& alpha) {
    if (alpha.getStyle() != MeshAlphaStyle::alpha) return MeshAlphaStyle::nameOf(alpha.getStyle());
    return streamInserted(alpha.getAlpha());
  }
};

}  // namespace graphics::datatype

ORB_DEFINE_DATA_TYPE(graphics::datatype::MeshAlphaDataType)
ORB_DEFINE_CONVERSIONS(graphics::datatype::MeshAlphaRules)
