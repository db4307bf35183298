// The constrained numeric scalars: their checks, conversions and registration.
#include "datatype/scalars/constrained_scalars.h"

#include <bit>
#include <boost/exception_ptr.hpp>
#include <cmath>
#include <cstdint>
#include <span>
#include <string>
#include <utility>

#include "arraylib/zxarray.h"
#include "arraylib/zxrethrow.h"
#include "datatype/conversion_definitions.h"
#include "datatype/conversion_support.h"
#include "datatype/data_type_definitions.h"
#include "datatype/errors.h"
#include "datatype/failures.h"
#include "guilib/convert_from_string_utils.h"

namespace graphics::datatype {
namespace {

// The tests a row can list. "finite" looks at the exponent bits only, so NaN and both infinities fail
// it; every comparison treats -0.0 as 0.
enum class ScalarRule { finite, notNaN, aboveZero, notNegative, finiteZeroToOne, whole };

// A check whose failure is "Korvax:datatypes:valueOutsideValidRange" with this text.
struct TextCheck {
  ScalarRule rule;
  const char* text;
};

// A check whose failure is an identifier's exception, stored in an exception slot.
struct SlotCheck {
  ScalarRule rule;
  boost::exception_ptr (*exception)();
};

// A row of constrained_scalars.def: what a type refuses and how.
template <class T>
struct ScalarRow;

#define ORB_SCALAR_WITH_TEXTS(Name, Default, IsValidAccess, BadTextId, BadTextText, ...) \
  template <>                                                                            \
  struct ScalarRow<Name> {                                                               \
    using enum ScalarRule;                                                               \
    static constexpr bool kReportsWithText = true;                                       \
    using NotScalar = Korvax::datatypes::invalid##Name;                                  \
    static constexpr const char* kNotScalarText = "Value not a numeric scalar";          \
    using BadText = BadTextId;                                                           \
    static constexpr const char* kBadTextText = BadTextText;                             \
    static constexpr TextCheck kChecks[] = {__VA_ARGS__};                                \
  };
#define ORB_SCALAR_WITH_SLOT(Name, Default, NotScalarId, BadTextId, ...) \
  template <>                                                            \
  struct ScalarRow<Name> {                                               \
    using enum ScalarRule;                                               \
    static constexpr bool kReportsWithText = false;                      \
    using NotScalar = NotScalarId;                                       \
    using BadText = BadTextId;                                           \
    static constexpr SlotCheck kChecks[] = {__VA_ARGS__};                \
  };
#include "datatype/scalars/constrained_scalars.def"

// Finite when the exponent bits of the high word are not all set.
bool hasFiniteExponent(double value) {
  constexpr std::uint32_t kExponentBits = 0x7ff00000;
  const auto highWord = static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(value) >> 32);
  return (highWord & kExponentBits) != kExponentBits;
}

// Inlined into each row's loop, where the rule is a constant, so that a check costs a comparison.
[[gnu::always_inline]] inline bool passes(ScalarRule rule, double value) {
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

bool passesChecks(std::span<const TextCheck> checks, double value, ErrorMessage* err) {
  for (const TextCheck& check : checks) {
    if (passes(check.rule, value)) continue;
    if (err != nullptr) *err = {Korvax::datatypes::valueOutsideValidRange::text_id, check.text};
    return false;
  }
  return true;
}

bool passesChecks(std::span<const SlotCheck> checks, double value, boost::exception_ptr& slot) {
  for (const SlotCheck& check : checks) {
    if (passes(check.rule, value)) continue;
    slot = check.exception();
    return false;
  }
  return true;
}

// Whether value passes every check of T's row. Each check's rule is a constant here, so accepting a
// value costs its comparisons and nothing else; finding which check failed is left to isValid.
template <class T, std::size_t... I>
bool passesAllOf(double value, std::index_sequence<I...>) {
  return (passes(ScalarRow<T>::kChecks[I].rule, value) && ...);
}
template <class T>
bool passesAll(double value) {
  return passesAllOf<T>(value, std::make_index_sequence<std::size(ScalarRow<T>::kChecks)>());
}

template <class T>
[[noreturn]] void refuseArray() {
  using Row = ScalarRow<T>;
  if constexpr (Row::kReportsWithText) {
    raiseWithText<typename Row::NotScalar>(Row::kNotScalarText);
  } else {
    raise<typename Row::NotScalar>();
  }
}

template <class T>
[[noreturn]] void refuseText() {
  using Row = ScalarRow<T>;
  if constexpr (Row::kReportsWithText) {
    raiseWithText<typename Row::BadText>(Row::kBadTextText);
  } else {
    raise<typename Row::BadText>();
  }
}

}  // namespace

#define ORB_SCALAR_IS_VALID_texts(Name) \
  bool Name::isValid(double value, ErrorMessage* err) { return passesChecks(ScalarRow<Name>::kChecks, value, err); }
#define ORB_SCALAR_IS_VALID_slot(Name)                           \
  bool Name::isValid(double value, boost::exception_ptr& slot) { \
    return passesChecks(ScalarRow<Name>::kChecks, value, slot);  \
  }
#define ORB_CONSTRAINED_SCALAR(Name, Default, Report, IsValidAccess) ORB_SCALAR_IS_VALID_##Report(Name)
#include "datatype/scalars/constrained_scalars.def"

template <class T>
ConstrainedScalar<T>::ConstrainedScalar(double value) : value_(value) {
  if (!passesAll<T>(value)) [[unlikely]]
    refuse(value);
}

template <class T>
void ConstrainedScalar<T>::refuse(double value) {
  if constexpr (ScalarRow<T>::kReportsWithText) {
    ErrorMessage failure;
    T::isValid(value, &failure);
    raiseWithText(failure.id.c_str(), failure.text);
  } else {
    boost::exception_ptr failure;
    T::isValid(value, failure);
    zxReThrowException(failure);
  }
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
  static zxArray* noValueArray() { return zxCreateDoubleScalar(T::kDefault); }

  static T fromText(const char* text) {
    double number = 0.0;
    try {
      number = gui_objects::convert_from_string_utils::parse_double_scalar(text);
    } catch (const gui_objects::convert_from_string_utils::ParseException&) {
      refuseText<T>();
    }
    return T(number);
  }
  // The number as the stream writes it: six significant digits, so text may round ("1.23457e+08").
  static std::optional<std::string> toText(const T& value) { return streamInserted(value.getValue()); }
};

#define ORB_CONSTRAINED_SCALAR(Name, ...) template class ConstrainedScalar<Name>;
#include "datatype/scalars/constrained_scalars.def"

}  // namespace graphics::datatype

#define ORB_CONSTRAINED_SCALAR(Name, ...)                  \
  ORB_DEFINE_DATA_TYPE(graphics::datatype::Name##DataType) \
  ORB_DEFINE_CONVERSIONS(graphics::datatype::ScalarRules<graphics::datatype::Name>)
#include "datatype/scalars/constrained_scalars.def"
