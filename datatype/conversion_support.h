// What the array and string conversions of every type share: reading a numeric element by class,
// taking the text of a char array, and handing out text.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "arraylib/zxarray.h"
#include "objsys/cos_value.h"

namespace graphics::datatype {

// The first element of a numeric or logical array as a double, read by its class (single widened,
// integers by value). Raises guilib's array exceptions for a null array or another class.
double readScalarAsDouble(const zxArray* array);

// The text of a char array as UTF-8, released with zxFree when the holder goes.
struct ZxFreeDeleter {
  void operator()(char* text) const { zxFree(text); }
};
using ArrayText = std::unique_ptr<char, ZxFreeDeleter>;
ArrayText textOfCharArray(const zxArray* array);
// Whether a char array holds a NUL character, which would end its text early.
bool holdsNul(const zxArray* charArray);
// The text of a char array as a message shows it, each NUL written as \0.
std::string textWithVisibleNuls(const zxArray* charArray);

// A number as the standard stream insertion writes it (six significant digits): "0.5", "1.23457e+08",
// "-inf", "nan". The texts that the types' rules fix are written this way, not in the shortest form.
std::string streamInserted(double value);

// A slot holding a new C-heap copy of text (the caller frees it with utFree); out of memory raises.
objsys::COSValue newTextValue(std::string_view text);

}  // namespace graphics::datatype
