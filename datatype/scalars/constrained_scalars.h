// The constrained numeric scalars: Positive, PositiveInteger, PositiveWithZero, ZeroToOne, NoNaN and
// LightingStrength, each with its value class T, data type TDataType, array conversion TMC and string
// conversion TSC. The types are rows of constrained_scalars.def; their checks live with the rows.
//
//   ErrorMessage            the identifier and text of a failed check
//   ConstrainedScalar<T>    the value: one double, checked when made
//   ScalarRules<T>          the conversion rules of TMC and TSC
#pragma once

#include <cstddef>
#include <string>
#include <type_traits>

#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/exception_slot.h"
#include "datatype/export.h"

namespace graphics::datatype {

// The identifier and text of the first check a value failed; both empty until a check fails.
struct ORB_EXPORT ErrorMessage {
  std::string id;
  std::string text;
};

// The value of a constrained scalar: one double that passed its type's checks when it was made. A
// refused number raises the failed check's error: "Korvax:datatypes:valueOutsideValidRange" with the
// check's text, or for PositiveWithZero the check's own identifier.
template <class T>
class ORB_EXPORT ConstrainedScalar {
 public:
  explicit ConstrainedScalar(double value);
  double getValue() const { return value_; }
  // Plain floating-point equality: -0.0 equals 0.
  bool operator==(const ConstrainedScalar&) const = default;

 private:
  // Raises the error of the first check that value fails.
  [[noreturn]] static void refuse(double value);

  double value_;
};

// The conversion rules of a constrained scalar. Arrays: a numeric scalar of any class (not logical or
// char); anything else is refused with the type's not-a-numeric-scalar identifier, a refused number
// with its check's error; an empty slot reads back as the default, never as an empty array. Text: one
// number as matrix text ("2", "[0.5]", "Inf"), written back as the standard stream insertion writes it
// ("1.23457e+08", "-inf"); anything else is refused with the type's bad-text identifier.
template <class T>
struct ORB_EXPORT ScalarRules;

// isValid runs the type's checks in order and reports the first failure: into err (when not null) for
// the types that report with texts, into slot for PositiveWithZero.
#define ORB_SCALAR_IS_VALID_texts static bool isValid(double value, ErrorMessage* err);
#define ORB_SCALAR_IS_VALID_slot static bool isValid(double value, boost::exception_ptr& slot);
#define ORB_CONSTRAINED_SCALAR(Name, Default, Report, IsValidAccess)                                \
  class ORB_EXPORT Name : public ConstrainedScalar<Name> {                                          \
   public:                                                                                          \
    using ConstrainedScalar::ConstrainedScalar;                                                     \
    static constexpr double kDefault = Default;                                                     \
                                                                                                    \
    IsValidAccess : ORB_SCALAR_IS_VALID_##Report friend class ConstrainedScalar<Name>;              \
  };                                                                                                \
  static_assert(sizeof(Name) == sizeof(double) && std::is_trivially_copyable_v<Name>);              \
  class ORB_EXPORT Name##DataType : public BasicDataType<Name##DataType, Name> {                    \
   public:                                                                                          \
    static constexpr const char* kName = #Name;                                                     \
    static constexpr const char* kClassName = #Name "DataType";                                     \
    static constexpr std::size_t kValueSizeInBytes = sizeof(Name);                                  \
    /* Six significant digits, as the stream writes a number; shown as a number. */                 \
    static constexpr TypeFacts kFacts{.text = TextForm::fixed, .javaPeer = &java_peers::OrbDouble}; \
    static Name makeDefaultValue() { return Name(Name::kDefault); }                                 \
  };                                                                                                \
  class ORB_EXPORT Name##MC final : public ArrayConversion<ScalarRules<Name>> {};                   \
  class ORB_EXPORT Name##SC final : public TextConversion<ScalarRules<Name>> {};
#include "datatype/scalars/constrained_scalars.def"
#undef ORB_SCALAR_IS_VALID_texts
#undef ORB_SCALAR_IS_VALID_slot

}  // namespace graphics::datatype
