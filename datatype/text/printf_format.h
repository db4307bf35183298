// PrintfFormat: the printf-style format with which a numeric display (tick labels, data tips) writes
// one number, with its data type and conversions.
#pragma once

#include <cstddef>
#include <string>

#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/export.h"

namespace graphics::datatype {

// Text around exactly one conversion that writes a number: %[flags][width][.precision]type with flags
// from "-+ 0#", type one of d i u o x X f F e E g G, width and precision at most 100; "%%" writes a
// percent sign. Refused, in the order the text is read: a width or precision taken from an argument
// ("%*d", "%.*f") with "Korvax:datatypes:PrintfFormatDataType:DynamicNumber"; a width or precision
// above 100 with "...:NumberTooLarge"; a C conversion that does not write a number (c s p n a A) with
// "...:UnsupportedType"; anything else that is not such a format (no conversion, two conversions, a
// length modifier, a lone "%", empty text, an array that is not a char row) with "...:InvalidFormat".
// Reads back as its text. Default "%g".
class ORB_EXPORT PrintfFormat {
 public:
  static constexpr int kLargestFieldNumber = 100;

  // Refuses text that is not such a format, with the identifiers above.
  explicit PrintfFormat(std::string text);
  const std::string& getText() const { return text_; }
  // The number written with the format. The integer conversions write it rounded to the nearest whole
  // number (a negative number through u, o, x or X as a signed decimal); NaN and infinities are
  // written by the f conversion with the format's flags and width.
  std::string format(double number) const;
  bool operator==(const PrintfFormat&) const = default;

 private:
  std::string text_;
};

class ORB_EXPORT PrintfFormatDataType : public BasicDataType<PrintfFormatDataType, PrintfFormat> {
 public:
  static constexpr const char* kName = "PrintfFormat";
  static constexpr const char* kClassName = "PrintfFormatDataType";
  static constexpr std::size_t kValueSizeInBytes = 24;
  static PrintfFormat makeDefaultValue() { return PrintfFormat("%g"); }
};

struct ORB_EXPORT PrintfFormatRules;
class ORB_EXPORT PrintfFormatMC final : public ArrayConversion<PrintfFormatRules> {};
class ORB_EXPORT PrintfFormatSC final : public TextConversion<PrintfFormatRules> {};

}  // namespace graphics::datatype
