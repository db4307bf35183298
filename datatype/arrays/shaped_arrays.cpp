// The shaped array types generated from shaped_arrays.def: constructors, rows, acceptance and
// conversion rules.
#include "datatype/arrays/shaped_arrays.h"

#include <boost/exception_ptr.hpp>
#include <memory>
#include <optional>
#include <string>

#include "datatype/arrays/shaped_array_ids.h"
#include "datatype/conversion_definitions.h"
#include "datatype/data_type_definitions.h"
#include "datatype/errors.h"
#include "datatype/failures.h"

namespace graphics::datatype {
namespace {

// Text that does not read as the type's array; the catalog text names the fault and the type.
template <class Id, fl::except::fixed_string TypeName>
boost::exception_ptr textFailure() {
  return failureOf<Id>("Invalid String", TypeName.chars);
}

}  // namespace

template <class T>
struct ShapedArrayRules {
  using Value = T;

  static T fromArray(const zxArray& array) { return T(&array); }
  static zxArray* toArray(const T& value) { return shaped::arrayForValue(&value, T::row()); }
  static zxArray* noValueArray() { return shaped::arrayForValue(nullptr, T::row()); }

  // Text without numbers gives a value that holds nothing; text that builds nothing stores nothing.
  static std::optional<T> fromText(const char* text) {
    const shaped::ParsedText parsed = shaped::parseText(text, T::row());
    if (!parsed.produced) return std::nullopt;
    return parsed.array ? T(parsed.array.get()) : T();
  }
  static std::optional<std::string> toText(const T& value) {
    const std::unique_ptr<char, decltype(&utFree)> text(value.convert_to_string(), &utFree);
    if (text == nullptr) return std::nullopt;
    return std::string(text.get());
  }
};

template <class Derived, class T>
objsys::COSValue ShapedArrayDataType<Derived, T>::getDefaultValue() const {
  static objsys::COSValue cached;
  if (cached.isEmpty()) cached = TextConversion<ShapedArrayRules<T>>().from(objsys::COSValue(T::row().defaultText));
  return cached;
}

#define ORB_SHAPED_ARRAY_VALUE_FAILURE_Range(T) &failureOf<Korvax::orb::shaped_arrays::T##Range>
#define ORB_SHAPED_ARRAY_VALUE_FAILURE_Predicate(T) &failureOf<Korvax::orb::shaped_arrays::T##Predicate>
#define ORB_SHAPED_ARRAY_VALUE_FAILURE_NoLeaf(T) nullptr
// isValid tries the predicates in table order; the first that accepts wins.
#define ORB_PREDICATE(name, shape, classes, rule) || name(array, failure)
#define ORB_SHAPED_ARRAY(T, Checks, Empty, DefaultText, ParseClass, EmptyReadBack, ValueLeaf, Members) \
  T::T(const zxArray* array) : ArrayBase(array) { shaped::requireValid(*this, array); }                \
  const shaped::Row& T::row() {                                                                        \
    static constexpr shaped::Row kRow = {#T,                                                           \
                                         shaped::Checks,                                               \
                                         shaped::Empty,                                                \
                                         DefaultText,                                                  \
                                         ParseClass,                                                   \
                                         shaped::EmptyReadBack,                                        \
                                         &failureOf<Korvax::orb::shaped_arrays::T##Size>,              \
                                         &failureOf<Korvax::orb::shaped_arrays::T##Type>,              \
                                         ORB_SHAPED_ARRAY_VALUE_FAILURE_##ValueLeaf(T),                \
                                         &textFailure<datatypes::T::ParseException, #T>};              \
    return kRow;                                                                                       \
  }                                                                                                    \
  bool T::isValid(const zxArray* array, boost::exception_ptr& failure) const {                         \
    return shaped::acceptsAsEmpty(row(), array) Members;                                               \
  }                                                                                                    \
  unsigned T::getMaxNumberOfValuesToCompare() const { return shaped::kMaxNumberOfValuesToCompare; }
#include "datatype/arrays/shaped_arrays.def"
#undef ORB_SHAPED_ARRAY_VALUE_FAILURE_Range
#undef ORB_SHAPED_ARRAY_VALUE_FAILURE_Predicate
#undef ORB_SHAPED_ARRAY_VALUE_FAILURE_NoLeaf

}  // namespace graphics::datatype

#define ORB_SHAPED_ARRAY(T, ...)                                                                                  \
  template class graphics::datatype::ShapedArrayDataType<graphics::datatype::T##DataType, graphics::datatype::T>; \
  ORB_DEFINE_DATA_TYPE(graphics::datatype::T##DataType)                                                           \
  ORB_DEFINE_CONVERSIONS(graphics::datatype::ShapedArrayRules<graphics::datatype::T>)
#include "datatype/arrays/shaped_arrays.def"
