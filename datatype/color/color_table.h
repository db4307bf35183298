// ColorTable: the property that reads and extends the process-wide color name table. Its value
// refers to the one table; it is never a copy of it.
#pragma once

#include <cstddef>

#include "datatype/color/color_base.h"
#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/export.h"

namespace graphics::datatype {

// A reference to the color name table. Every value refers to the same table, so all are equal.
class ORB_EXPORT ColorTable {
 public:
  ColorTable() : table_(&ColorNameTable::getInstance()) {}
  ColorNameTable& getTable() const { return *table_; }
  bool operator==(const ColorTable& other) const { return table_ == other.table_; }

 private:
  ColorNameTable* table_;
};

// Reports a size of 0: the table lives outside the value block.
class ORB_EXPORT ColorTableDataType : public BasicDataType<ColorTableDataType, ColorTable> {
 public:
  static constexpr const char* kName = "ColorTable";
  static constexpr const char* kClassName = "ColorTableDataType";
  static constexpr std::size_t kValueSizeInBytes = 0;
  // The value refers to the process's one table, and every array is taken (a struct extends the table,
  // anything else leaves it as it is).
  static constexpr TypeFacts kFacts{.refusedArray = nullptr, .valueOutsideBlock = true, .growsProcessTable = true};
  static ColorTable makeDefaultValue() { return ColorTable(); }
};

// Arrays: each field of a struct's (or object's) first element names a color whose first three
// doubles are its red, green and blue, added to the table over any entry of that name; any other
// array adds nothing. Read back as a 1-by-1 struct with one 1-by-3 row per name, in name order.
// Text: entries "name = [r g b]" separated by ';', added alike, each name one a struct field could have
// (a letter, then letters, digits and underscores); written in the same form.
struct ORB_EXPORT ColorTableRules;
class ORB_EXPORT ColorTableMC final : public ArrayConversion<ColorTableRules> {};
class ORB_EXPORT ColorTableSC final : public TextConversion<ColorTableRules> {};

}  // namespace graphics::datatype
