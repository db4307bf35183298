// The memory a value's read-back takes, bounded before it is made, so that a response too large for
// its request's budget is refused instead of written.
#pragma once

#include <cstddef>

#include "arraylib/zxarray.h"

namespace orbdt {

// At most the bytes of reading the array back: its ARRAY object, and textCopies texts as long as the
// longest of its JSON text and its literal (the JSON text itself, the literal, the type's own text
// form and the copies the response makes of them). Element texts are bounded from their values
// without writing them; counts saturate at SIZE_MAX. A null array costs nothing.
std::size_t readBackBytes(const zxArray* array, std::size_t textCopies);

// At most the memory a value made of the array holds, and what converting the array into one
// allocates: the array's own storage (elements, cells and fields, each with its header) and a native
// form of kNativeBytesPerElement per element beside it. A null array costs nothing.
std::size_t valueBytes(const zxArray* array);
inline constexpr std::size_t kNativeBytesPerElement = 16;

}  // namespace orbdt
