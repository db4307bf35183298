// RangedScalar: the finite range, the conversion rules and the registered instantiation.
#include "datatype/scalars/ranged_scalar.h"

#include <optional>
#include <string>

#include "arraylib/zxarray.h"
#include "arraylib/zxformat.h"
#include "datatype/conversion_definitions.h"
#include "datatype/conversion_support.h"
#include "datatype/data_type_definitions.h"
#include "datatype/errors.h"
#include "guilib/convert_from_string_utils.h"

namespace graphics::datatype {

void FiniteRange::refuse() { raise<Korvax::datatypes::InvalidFiniteValue>(); }

template <class T, class Range>
struct RangedScalarRules {
  using Value = RangedScalar<T, Range>;

  static Value fromArray(const zxArray& array) {
    // The host's own numeric test: logical and char are not numbers here.
    if (!zxIsNumeric(&array) || !zxIsScalar(&array) || zxIsComplex(&array)) {
      raise<Korvax::orb::dt_conv::Matrix_to_Real::ExpectedNumeric>();
    }
    return Value(static_cast<T>(readScalarAsDouble(&array)));
  }
  static zxArray* toArray(const Value& value) { return zxCreateDoubleScalar(static_cast<double>(value.getValue())); }
  // An empty slot reads back as the default, as the constrained scalars do.
  static zxArray* noValueArray() { return zxCreateDoubleScalar(Range::kDefault); }

  static Value fromText(const char* text) {
    double number = 0.0;
    try {
      number = gui_objects::convert_from_string_utils::parse_double_scalar(text);
    } catch (const gui_objects::convert_from_string_utils::ParseException&) {
      raise<Korvax::orb::dt_conv::Matrix_to_Real::ExpectedNumeric>();
    }
    return Value(static_cast<T>(number));
  }
  static std::optional<std::string> toText(const Value& value) {
    std::string text;
    zx::appendElementText(text, static_cast<double>(value.getValue()));
    return text;
  }
};

}  // namespace graphics::datatype

ORB_DEFINE_DATA_TYPE(graphics::datatype::FiniteRangedScalarDataType)
ORB_DEFINE_CONVERSIONS(graphics::datatype::FiniteRangedScalarRules)
