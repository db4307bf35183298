// UTF16String: one string kept as UTF-16 code units, with its data type and conversions.
#pragma once

#include <cstddef>
#include <string>

#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/export.h"

namespace graphics::datatype {

// One string of UTF-16 code units, taken from a char array unit for unit, so any text (surrogate pairs
// included) reads back exactly as given. Arrays: a char row or empty char, or a cell holding exactly
// one of them. A char matrix of several rows, and a cell of any other number of elements, are refused
// with "Korvax:datatypes:UTF16StringDataType:NumberOfStrings"; every other array (numbers, a cell
// holding a number, an N-D char array) with "Korvax:datatypes:UTF16StringDataType:ArrayClass". Text
// is UTF-8 both ways (malformed UTF-8 becomes U+FFFD). Reads back as a char row. Default: empty.
class ORB_EXPORT UTF16String {
 public:
  UTF16String() = default;
  explicit UTF16String(std::u16string units) : units_(std::move(units)) {}
  const std::u16string& getUnits() const { return units_; }
  bool operator==(const UTF16String&) const = default;

 private:
  std::u16string units_;
};

class ORB_EXPORT UTF16StringDataType : public BasicDataType<UTF16StringDataType, UTF16String> {
 public:
  static constexpr const char* kName = "UTF16String";
  static constexpr const char* kClassName = "UTF16StringDataType";
  static constexpr std::size_t kValueSizeInBytes = 24;
  static UTF16String makeDefaultValue() { return UTF16String(); }
};

struct ORB_EXPORT UTF16StringRules;
class ORB_EXPORT UTF16StringMC final : public ArrayConversion<UTF16StringRules> {};
class ORB_EXPORT UTF16StringSC final : public TextConversion<UTF16StringRules> {};

}  // namespace graphics::datatype
