// Parsers from matrix text ("[1 2 3]", "0 0 0; 1 1 1", "[NaN, Inf]") to numbers, points, boxes,
// 4-by-4 transforms and host arrays.
//
// Every parser reads the same syntax and refuses anything else with ParseException:
//   - An optional pair of enclosing brackets; blanks, tabs and line breaks around it and inside it.
//   - Numbers in a row are separated by blanks or tabs, or by one comma with optional blanks or tabs.
//   - Rows are separated by one ';' or one line break or both (";" then a line break), with optional
//     blanks or tabs. One ';' may also follow the last row. Empty rows between rows ("1;;2") are refused.
//   - A number is an optional '+' or '-', then decimal digits with an optional point and an optional
//     exponent ("1", "-2.5e3", ".5", "5.", "1E-7"), or NaN or Inf in any case. Two numbers need a
//     separator between them ("1-2" is refused). Decimals beyond the range of the target overflow to an
//     infinity and those below it underflow to zero, with the sign written.
//   - Every row has the same number of numbers. No numbers at all ("", "[]", "[ ]") is the 0-by-0 matrix.
// Conversion to double and single is correctly rounded. Fixed-shape parsers (the scalar, 1xN, 2x3 and
// 4x4 forms) do not allocate.
#pragma once

#include <exception>
#include <optional>

#include "arraylib/zxarray.h"
#include "foundationlib/visibility.h"
#include "guilib/value_types.h"

KX_HOST_API_BEGIN

namespace gui_objects::convert_from_string_utils {

// Raised for text that is not matrix text of the shape asked for; what() names the fault.
class KX_HOST_API ParseException : public std::exception {
 public:
  // reason must have static storage duration (a string literal).
  explicit ParseException(const char* reason) noexcept : reason_(reason) {}
  const char* what() const noexcept override;

 private:
  const char* reason_;
};

// Exactly one number ("5", "[5]").
double parse_double_scalar(const char* text);
// Exactly one row of two, three or four numbers, as x, y(, z(, w)).
Point2d parse_1x2_double(const char* text);
Point3d parse_1x3_double(const char* text);
Point4d parse_1x4_double(const char* text);
// The same row readers without raising: nullopt where the throwing ones raise ParseException. They
// let a caller try one shape after another without paying for an exception.
std::optional<Point3d> try_parse_1x3_double(const char* text) noexcept;
std::optional<Point4d> try_parse_1x4_double(const char* text) noexcept;
// Two rows of three: the minimum corner x y z, then the maximum corner. The corners are not checked
// against each other.
BoundingVolume parse_2x3_double(const char* text);
// Four rows of four, row by row into (row, col).
Matrix4x4d parse_4x4_double(const char* text);

// The number of rows and of numbers per row; 0 and 0 for text without numbers. rows and cols are
// left unchanged when the text is refused.
void parse_array_dimensions(const char* text, zxSize& rows, zxSize& cols);

// A new m-by-n real array of a numeric class or logical holding the text's numbers, owned by the
// caller (a temporary inside a host call frame). Text without numbers matches every shape with no
// elements. Integer classes take written integers exactly and round other numbers to nearest with
// halves away from zero, saturating at the class's limits, NaN giving 0. Logical takes nonzero as 1
// and refuses NaN. Raises ParseException for malformed text or a shape other than m-by-n, and
// InvalidArrayClassException for a class that is neither numeric nor logical.
zxArray* parse_mxn(const char* text, zxSize m, zxSize n, zxClassID classID);

}  // namespace gui_objects::convert_from_string_utils

KX_HOST_API_END
