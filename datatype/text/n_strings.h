// NStrings: a list of strings (the labels of a list, the items of a menu), with its data type and
// conversions.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/export.h"

namespace graphics::datatype {

// Any number of UTF-8 strings, in order. Arrays: a 2-D char matrix gives one string per row without
// the blanks that pad it on the right (an empty char array gives none); a vector cell (or an empty
// cell) gives one string per element, each a char row or empty, kept as it is. It reuses the text
// identifiers on purpose, the rules being the same: a class other than char or cell is refused with
// "Korvax:orb:datatypes:TextStringDataType:ArrayClass", an N-D char array or a cell that is not a
// vector with "...:IncorrectShape", a cell element that is not a char row with "...:InvalidCellArray".
// Reads back as a column cell of char rows. Text: the strings joined by "|" ("a|b|c"; empty text is
// no strings), so a string holding "|" does not survive the text form. Default: no strings.
class ORB_EXPORT NStrings {
 public:
  NStrings() = default;
  explicit NStrings(std::vector<std::string> strings) : strings_(std::move(strings)) {}
  const std::vector<std::string>& getStrings() const { return strings_; }
  std::size_t size() const { return strings_.size(); }
  bool operator==(const NStrings&) const = default;

 private:
  std::vector<std::string> strings_;
};

class ORB_EXPORT NStringsDataType : public BasicDataType<NStringsDataType, NStrings> {
 public:
  static constexpr const char* kName = "NStrings";
  static constexpr const char* kClassName = "NStringsDataType";
  static constexpr std::size_t kValueSizeInBytes = 12;
  static NStrings makeDefaultValue() { return NStrings(); }
};

struct ORB_EXPORT NStringsRules;
class ORB_EXPORT NStringsMC final : public ArrayConversion<NStringsRules> {};
class ORB_EXPORT NStringsSC final : public TextConversion<NStringsRules> {};

}  // namespace graphics::datatype
