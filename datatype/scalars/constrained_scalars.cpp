// The constrained numeric scalars: their checks, conversions and registration.
#include "datatype/scalars/constrained_scalars.h"

#include <bit>
#include <cmath>
#include <cstdint>

#include "arraylib/zxarray.h"
#include "arraylib/zxformat.h"
#include "datatype/conversion_definitions.h"
#include "datatype/conversion_support.h"
#include "datatype/data_type_definitions.h"
#include "guilib/convert_from_string_utils.h"

namespace graphics::datatype {
namespace {

constexpr const char* kOutsideValidRange = "Korvax:datatypes:valueOutsideValidRange";

// Finite when the exponent bits of the high word are not all set.
bool hasFiniteExponent(double value) {
  constexpr std::uint32_t kExponentBits = 0x7ff00000;
  const auto highWord = static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(value) >> 32);
  return (highWord & kExponentBits) != kExponentBits;
}

bool passes(ScalarRule rule, double value) {
  switch (rule) {
    case ScalarRule::finite: return hasFiniteExponent(value);
    case ScalarRule::notNaN: return !std::isnan(value);
    case ScalarRule::aboveZero: return value > 0.0;
    case ScalarRule::notNegative: return value >= 0.0;
    case ScalarRule::finiteZeroToOne: return hasFiniteExponent(value) && value >= 0.0 && value <= 1.0;
    case ScalarRule::whole: return value == std::round(value);
  }
  return false;
}

template <class T>
[[noreturn]] void refuseArray() {
  using Row = ScalarRow<T>;
  if constexpr (ReportsWithText<T>) {
    raiseWithText(Row::kNotScalar.id, Row::kNotScalar.text);
  } else {
    raise<typename Row::NotScalar>();
  }
}

template <class T>
[[noreturn]] void refuseText() {
  using Row = ScalarRow<T>;
  if constexpr (ReportsWithText<T>) {
    raiseWithText(Row::kBadText.id, Row::kBadText.text);
  } else {
    raise<typename Row::BadText>();
  }
}

}  // namespace

template <class T>
ConstrainedScalar<T>::ConstrainedScalar(double value) : value_(value) {
  if constexpr (ReportsWithText<T>) {
    if (isValid(value, nullptr)) return;
    ErrorMessage failure;
    isValid(value, &failure);
    raiseWithText(failure.id.c_str(), failure.text);
  } else {
    boost::exception_ptr failure;
    if (!isValid(value, failure)) zxReThrowException(failure);
  }
}

template <class T>
bool ConstrainedScalar<T>::isValid(double value, ErrorMessage* err) requires ReportsWithText<T> {
  for (const TextCheck& check : ScalarRow<T>::kChecks) {
    if (passes(check.rule, value)) continue;
    if (err != nullptr) *err = {kOutsideValidRange, check.text};
    return false;
  }
  return true;
}

template <class T>
bool ConstrainedScalar<T>::isValid(double value, boost::exception_ptr& slot) requires(!ReportsWithText<T>) {
  for (const SlotCheck& check : ScalarRow<T>::kChecks) {
    if (passes(check.rule, value)) continue;
    slot = check.exception();
    return false;
  }
  return true;
}

template <class T>
struct ScalarRules {
  using Value = T;

  static T fromArray(const zxArray& array) {
    // The host's own numeric test: double, single and the integer classes, not logical or char.
    if (!zxIsNumeric(&array) || !zxIsScalar(&array)) refuseArray<T>();
    return T(zxGetScalar(&array));
  }
  static zxArray* toArray(const T& value) { return zxCreateDoubleScalar(value.getValue()); }
  // An empty slot reads back as the default, deliberately, never as an empty array.
  static zxArray* noValueArray() { return zxCreateDoubleScalar(ScalarRow<T>::kDefault); }

  static T fromText(const char* text) {
    double number = 0.0;
    try {
      number = gui_objects::convert_from_string_utils::parse_double_scalar(text);
    } catch (const gui_objects::convert_from_string_utils::ParseException&) {
      refuseText<T>();
    }
    return T(number);
  }
  // The shortest text that reads back as the same number ("0.1", "1e+300", "Inf").
  static std::optional<std::string> toText(const T& value) {
    std::string text;
    zx::appendElementText(text, value.getValue());
    return text;
  }
};

#define ORB_CONSTRAINED_SCALAR(Name) template class ConstrainedScalar<Name>;
#include "datatype/scalars/constrained_scalars.def"

}  // namespace graphics::datatype

#define ORB_CONSTRAINED_SCALAR(Name)                       \
  ORB_DEFINE_DATA_TYPE(graphics::datatype::Name##DataType) \
  ORB_DEFINE_CONVERSIONS(graphics::datatype::ScalarRules<graphics::datatype::Name>)
#include "datatype/scalars/constrained_scalars.def"
