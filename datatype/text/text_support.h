// What the text family's types share when they read host arrays: one row of characters and its units.
// Internal to the library.
#pragma once

#include <string>

#include "arraylib/zxarray.h"

namespace graphics::datatype {

// A char array that holds at most one line: empty, or 1-by-N.
bool isCharRow(const zxArray* array);
// The UTF-16 units of a char array in storage order (a row's text as it stands).
std::u16string unitsOf(const zxArray* charArray);
// The text of row `row` of a char matrix, as UTF-8.
std::string rowText(const zxArray* charMatrix, zxSize row);

}  // namespace graphics::datatype
