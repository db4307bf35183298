// NumericOrString and UINumericOrString: checks, comparison and conversions.
#include "datatype/text/numeric_or_string.h"

#include <optional>
#include <string>

#include "arraylib/zxarray.h"
#include "arraylib/zxcompare.h"
#include "arraylib/zxformat.h"
#include "datatype/conversion_definitions.h"
#include "datatype/data_type_definitions.h"
#include "datatype/errors.h"
#include "guilib/array_dispatch.h"
#include "guilib/auto_ptr.h"
#include "guilib/convert_from_string_utils.h"

namespace graphics::datatype {
namespace {

namespace ids = Korvax::orb::datatypes::NumericOrStringDataType;

bool isNumberOrText(const zxArray* array, bool takesLogical) {
  if (zxIsChar(array)) return true;
  const bool number = zxIsNumeric(array) || (takesLogical && zxIsLogical(array));
  return number && !zxIsComplex(array) && !zxIsSparse(array);
}

void check(const zxArray& array, bool takesLogical) {
  if (isNumberOrText(&array, takesLogical)) return;
  if (!zxIsCell(&array)) raise<ids::ArrayClass>();
  for (zxSize i = 0; i < zxGetNumberOfElements(&array); ++i) {
    const zxArray* element = zxGetCell(&array, i);
    if (element != nullptr && !isNumberOrText(element, takesLogical)) raise<ids::InvalidCellArray>();
  }
}

}  // namespace

bool NumericOrText::sameAs(const NumericOrText& other, const char* isEqualId) const {
  if (getPtr() == nullptr || other.getPtr() == nullptr) {
    raiseWithText(isEqualId, "A value that holds nothing cannot be compared.");
  }
  // Numbers compare as the processor compares them (NaN never equal), text unit by unit, cells element
  // by element.
  return zx::arraysEqual(getPtr(), other.getPtr(), {.numbers = zx::NumberEquality::ieee});
}

template <class T>
struct NumericOrStringRules {
  using Value = T;

  static T fromArray(const zxArray& array) {
    check(array, T::kTakesLogical);
    return T(&array);
  }
  static zxArray* toArray(const T& value) { return value.getSharedDataCopy().release(); }
  static zxArray* noValueArray() { return zxCreateDoubleMatrix(0, 0, zxREAL); }

  static T fromText(const char* text) {
    gui_objects::ZxArrayPtr array;
    try {
      array.reset(zxCreateDoubleScalar(gui_objects::convert_from_string_utils::parse_double_scalar(text)));
    } catch (const gui_objects::convert_from_string_utils::ParseException&) {
      array.reset(zxCreateString(text));
    }
    return T(array.get());
  }
  static std::optional<std::string> toText(const T& value) { return zx::canonicalText(value.getPtr()); }
};

}  // namespace graphics::datatype

#define ORB_NUMERIC_OR_STRING(Type, ...)                                                  \
  bool graphics::datatype::Type::operator==(const Type& other) const {                    \
    return sameAs(other, ::Korvax::graphics::datatype::Type##DataType::isEqual::text_id); \
  }                                                                                       \
  graphics::datatype::Type graphics::datatype::Type##DataType::makeDefaultValue() {       \
    const gui_objects::ZxArrayPtr empty(zxCreateString(""));                              \
    return Type(empty.get());                                                             \
  }                                                                                       \
  ORB_DEFINE_DATA_TYPE(graphics::datatype::Type##DataType)                                \
  ORB_DEFINE_CONVERSIONS(graphics::datatype::NumericOrStringRules<graphics::datatype::Type>)
#include "datatype/text/numeric_or_strings.def"
