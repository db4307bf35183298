// NumericOrString and UINumericOrString: a property that holds a number or text (a label given as 5
// or as 'five'), with their data types and conversions. The types are rows of numeric_or_strings.def.
#pragma once

#include <cstddef>

#include "datatype/arrays/array_base.h"
#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/export.h"

namespace graphics::datatype {

// The array as given: real numbers of any class and shape, a char array, or a cell whose elements are
// such numbers or text; logicals count as numbers where the row says so. A number given as text ("5",
// "-2.5e3", "Inf") is kept as the double it reads as, any other text as a char row. Refused: complex
// or sparse numbers and other classes (logicals where the row does not take them) with
// "Korvax:orb:datatypes:NumericOrStringDataType:ArrayClass"; a cell element that is none of these
// (a cell, a struct, complex numbers) with "...:InvalidCellArray". Equal when class, shape and
// elements are equal, so the number 5 and the text '5' differ. A value made by the default constructor
// holds nothing and is a value to assign to: comparing it raises the type's isEqual identifier
// ("Korvax:graphics::datatype::NumericOrStringDataType::isEqual" or the UI one). Reads back as the
// array; as text, a number or a row of text as it stands, anything else as matrix text. Default: ''.
class ORB_EXPORT NumericOrText : public ArrayBase {
 public:
  NumericOrText() = default;
  // A null array gives a value that holds nothing; nothing is validated (the conversions validate).
  explicit NumericOrText(const zxArray* array) : ArrayBase(array) {}

 protected:
  // Whether the two arrays agree in class, shape and elements; either holding nothing raises isEqualId.
  bool sameAs(const NumericOrText& other, const char* isEqualId) const;
};

template <class T>
struct ORB_EXPORT NumericOrStringRules;

#define ORB_NUMERIC_OR_STRING(Type, SizeInBytes, TakesLogical)                             \
  class ORB_EXPORT Type : public NumericOrText {                                           \
   public:                                                                                 \
    using NumericOrText::NumericOrText;                                                    \
    static constexpr bool kTakesLogical = TakesLogical;                                    \
    bool operator==(const Type& other) const;                                              \
  };                                                                                       \
  class ORB_EXPORT Type##DataType : public BasicDataType<Type##DataType, Type> {           \
   public:                                                                                 \
    static constexpr const char* kName = #Type;                                            \
    static constexpr const char* kClassName = #Type "DataType";                            \
    static constexpr std::size_t kValueSizeInBytes = SizeInBytes;                          \
    static Type makeDefaultValue();                                                        \
  };                                                                                       \
  class ORB_EXPORT Type##MC final : public ArrayConversion<NumericOrStringRules<Type>> {}; \
  class ORB_EXPORT Type##SC final : public TextConversion<NumericOrStringRules<Type>> {};
#include "datatype/text/numeric_or_strings.def"

}  // namespace graphics::datatype
