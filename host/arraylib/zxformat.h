// The host's canonical text form of an array, used wherever an array is shown or converted to text.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "arraylib/zxarray.h"
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace zx {

// The text of an array:
//   - numeric and logical arrays: a scalar as its number ("5"); anything else in brackets, columns
//     separated by one blank and rows by ';' ("[0 0 0;1 1 1]"); an empty array as "[]". An N-D
//     array is written as its 2-D view, zxGetM rows by zxGetN columns. Numbers take the shortest form
//     that reads back exactly in their own class (singles as singles), integers all their digits,
//     logicals 0 or 1, NaN as "NaN" and infinities as "Inf" and "-Inf". Complex arrays give their real
//     part and sparse arrays their full form.
//   - char arrays: the text itself (UTF-8) for one row or none; several rows as
//     "['first';'second']", each row quoted with its quotes doubled.
//   - other classes: a short description such as "<1x2 cell>" or "<2x2x3 struct>".
// A null array gives "[]"; an empty char array gives the empty text.
std::string canonicalText(const zxArray* array);

// Appends one element as canonicalText writes it: the shortest text that reads back as the same
// value of its class, NaN, Inf and -Inf, a logical as 0 or 1. Defined for every numeric element type
// and bool.
template <class T>
KX_HOST_API void appendElementText(std::string& out, T value);

// How appendMatrixText lays a matrix out. The defaults give canonicalText's form.
struct MatrixLayout {
  enum class Order { ColumnMajor, RowMajor };

  std::string_view rowSeparator = ";";
  // A 1-by-1 matrix as its number alone, without brackets.
  bool bareScalar = true;
  Order order = Order::ColumnMajor;
};

// Appends a rows-by-cols matrix in brackets, columns separated by one blank and rows by the layout's
// separator, each number as appendElementText writes it ("[0 0 0;1 1 1]"). values holds rows * cols
// elements. Defined for the same element types as appendElementText.
template <class T>
KX_HOST_API void appendMatrixText(std::string& out, std::span<const T> values, zxSize rows, zxSize cols,
                      const MatrixLayout& layout = {});

// Appends each row of a column-major rows-by-cols char matrix as UTF-8 text in single quotes, its
// quotes doubled, the rows separated by ';' and in brackets when there is more than one ("'it''s'",
// "['ab';'cd']").
void appendQuotedRows(std::string& out, std::span<const zxChar> chars, zxSize rows, zxSize cols);

}  // namespace zx

KX_HOST_API_END
