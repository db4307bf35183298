// NLineStyles: the line styles that successive lines cycle through, kept with their count, with its
// data type and conversions.
#pragma once

#include <cstddef>

#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/export.h"
#include "datatype/styles/style_arrays.h"

namespace graphics::datatype {

// A count N of at least one and a list of N line styles ("-", "--", ":", "-.", "none", matched as
// every enumeration matches names: "NONE", "no"). Arrays: a char row of names separated by '|'
// ("-|--|:"), or a vector cell of names ({'-', '--'}). Text: the same as a char row. Refused: no
// style at all (empty text, an empty cell) with "Korvax:orbdatatypes:NotEnoughStyles"; an entry that
// names no line style (a marker "o", an empty entry "-||:") with "Korvax:orbdatatypes:InvalidMarkerLineStyle";
// other classes, a cell that is not a vector or holds something other than a char row, with
// "Korvax:orbdatatypes:InvalidInput". Reads back as the names joined by '|', both as a char row and as
// text. Default: the solid style alone.
class ORB_EXPORT NLineStyles {
 public:
  // Refuses an empty list with NotEnoughStyles.
  explicit NLineStyles(const LineStyleArray& styles);
  std::size_t getCount() const { return count_; }
  const LineStyleArray& getStyles() const { return styles_; }
  // The style of the line at index, cycling through the list.
  LineStyleArrayStyle::value styleFor(std::size_t lineIndex) const { return styles_.getStyle(lineIndex % count_); }
  bool operator==(const NLineStyles& other) const { return styles_ == other.styles_; }

 private:
  std::size_t count_;
  LineStyleArray styles_;
};

class ORB_EXPORT NLineStylesDataType : public BasicDataType<NLineStylesDataType, NLineStyles> {
 public:
  static constexpr const char* kName = "NLineStyles";
  static constexpr const char* kClassName = "NLineStylesDataType";
  static constexpr std::size_t kValueSizeInBytes = 16;
  static NLineStyles makeDefaultValue() { return NLineStyles(LineStyleArray(LineStyleArrayStyle::solid)); }
};

struct ORB_EXPORT NLineStylesRules;
class ORB_EXPORT NLineStylesMC final : public ArrayConversion<NLineStylesRules> {};
class ORB_EXPORT NLineStylesSC final : public TextConversion<NLineStylesRules> {};

}  // namespace graphics::datatype
