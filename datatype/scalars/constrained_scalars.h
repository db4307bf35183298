// The constrained numeric scalars: Positive, PositiveInteger, PositiveWithZero, ZeroToOne, NoNaN and
// LightingStrength, each with its value class T, data type TDataType, array conversion TMC and string
// conversion TSC. The types are rows of constrained_scalars.def; the templates here give their classes.
//
//   ErrorMessage            the identifier and text of a failed check
//   ScalarRule, TextCheck,  the tests a row lists and what a failure reports
//   SlotCheck
//   ScalarRow<T>            a row's data: default, checks and refusals
//   ConstrainedScalar<T>    the value: one double, checked when made
//   ScalarRules<T>          the conversion rules of TMC and TSC
#pragma once

#include <boost/exception_ptr.hpp>
#include <concepts>
#include <cstddef>
#include <string>
#include <type_traits>

#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/errors.h"
#include "datatype/export.h"

namespace graphics::datatype {

// The identifier and text of the first check a value failed; both empty until a check fails.
struct ORB_EXPORT ErrorMessage {
  std::string id;
  std::string text;
};

// The tests a constrained scalar can list. "finite" looks at the exponent bits only, so NaN and both
// infinities fail it; every comparison treats -0.0 as 0.
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

// The exception of identifier Id, ready for an exception slot.
template <class Id>
boost::exception_ptr exceptionOf() {
  return boost::copy_exception(fl::except::Exception<Id>());
}

// An identifier raised with a text of the library's own.
struct TextRefusal {
  const char* id;
  const char* text;
};

// A row of constrained_scalars.def, specialised for each type below.
template <class T>
struct ScalarRow;

template <class T>
concept ReportsWithText = std::same_as<typename ScalarRow<T>::Check, TextCheck>;

// The value of a constrained scalar: one double that passed the row's checks when it was made. A
// refused number raises the failed check's error (ErrorMessage rows: valueOutsideValidRange with the
// check's text; slot rows: the check's identifier).
template <class T>
class ORB_EXPORT ConstrainedScalar {
 public:
  explicit ConstrainedScalar(double value);
  double getValue() const { return value_; }
  // Plain floating-point equality: -0.0 equals 0.
  bool operator==(const ConstrainedScalar&) const = default;

 protected:
  // Each type makes these public, or private where its row says so.
  // Runs the checks in order; on the first failure fills err (when not null) and returns false.
  static bool isValid(double value, ErrorMessage* err) requires ReportsWithText<T>;
  // Runs the checks in order; on the first failure stores its exception in slot and returns false.
  static bool isValid(double value, boost::exception_ptr& slot) requires(!ReportsWithText<T>);

 private:
  double value_;
};

// The conversion rules of a constrained scalar. Arrays: a numeric scalar of any class (not logical or
// char); anything else is refused with the row's not-a-numeric-scalar identifier, a refused number
// with its check's error; an empty slot reads back as the default, never as an empty array. Text: one
// number as matrix text ("2", "[0.5]", "Inf"), written back as the shortest text that reads back the
// same; anything else is refused with the row's bad-text identifier.
template <class T>
struct ORB_EXPORT ScalarRules;

// The classes of one row. The bodies are the templates' and are instantiated in the source file.
#define ORB_SCALAR_CLASSES(Name, IsValidAccess)                                        \
  extern template class ConstrainedScalar<Name>;                                       \
  class ORB_EXPORT Name : public ConstrainedScalar<Name> {                             \
   public:                                                                             \
    using ConstrainedScalar::ConstrainedScalar;                                        \
                                                                                       \
    IsValidAccess : using ConstrainedScalar::isValid;                                  \
  };                                                                                   \
  static_assert(sizeof(Name) == sizeof(double) && std::is_trivially_copyable_v<Name>); \
  class ORB_EXPORT Name##DataType : public BasicDataType<Name##DataType, Name> {       \
   public:                                                                             \
    static constexpr const char* kName = #Name;                                        \
    static constexpr const char* kClassName = #Name "DataType";                        \
    static constexpr std::size_t kValueSizeInBytes = sizeof(Name);                     \
    static Name makeDefaultValue() { return Name(ScalarRow<Name>::kDefault); }         \
  };                                                                                   \
  class ORB_EXPORT Name##MC final : public ArrayConversion<ScalarRules<Name>> {};      \
  class ORB_EXPORT Name##SC final : public TextConversion<ScalarRules<Name>> {};

#define ORB_SCALAR_WITH_TEXTS(Name, Default, IsValidAccess, BadTextId, BadTextText, ...)                        \
  class Name;                                                                                                   \
  template <>                                                                                                   \
  struct ScalarRow<Name> {                                                                                      \
    using enum ScalarRule;                                                                                      \
    using Check = TextCheck;                                                                                    \
    static constexpr double kDefault = Default;                                                                 \
    static constexpr TextRefusal kNotScalar = {"Korvax:datatypes:invalid" #Name, "Value not a numeric scalar"}; \
    static constexpr TextRefusal kBadText = {BadTextId, BadTextText};                                           \
    static constexpr TextCheck kChecks[] = {__VA_ARGS__};                                                       \
  };                                                                                                            \
  ORB_SCALAR_CLASSES(Name, IsValidAccess)

#define ORB_SCALAR_WITH_SLOT(Name, Default, NotScalarId, BadTextId, ...) \
  class Name;                                                            \
  template <>                                                            \
  struct ScalarRow<Name> {                                               \
    using enum ScalarRule;                                               \
    using Check = SlotCheck;                                             \
    using NotScalar = NotScalarId;                                       \
    using BadText = BadTextId;                                           \
    static constexpr double kDefault = Default;                          \
    static constexpr SlotCheck kChecks[] = {__VA_ARGS__};                \
  };                                                                     \
  ORB_SCALAR_CLASSES(Name, public)

#include "datatype/scalars/constrained_scalars.def"
#undef ORB_SCALAR_CLASSES

}  // namespace graphics::datatype
