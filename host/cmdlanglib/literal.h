// The command language's literals: reading one literal ("[1 0 0]", "uint8(5)", "{'a', 2}",
// "struct('x', 1)", ...) into a new host array, writing an array back as a literal, and the helpers
// that other readers of arrays share with them.
//
// The grammar, blanks allowed around every token:
//   literal  = number | "true" | "false" | text | "[" rows "]" | "{" rows "}" | call | "@" name
//   number   = [ "+" | "-" ] ( digits [ "." [ digits ] ] | "." digits ) [ exponent ]
//            | [ "+" | "-" ] ( "NaN" | "Inf" )            (NaN and Inf in any case)
//   text     = "'" { any character but "'" | "''" } "'"      (UTF-8)
//            | '"' { any character but '"' | '""' } '"'      (the same text: "r" is 'r')
//   rows     = [ row { ";" row } ]
//   row      = literal { ( "," | blanks ) literal }
//   call     = name "(" [ literal { "," literal } ] ")"
// A sign belongs to the number only when nothing separates them, so "[1 -2]" has two elements and
// "[1-2]" is refused. Whole numbers written without a point or exponent inside an integer cast are
// read in that class directly, so int64 and uint64 values stay exact; numbers inside single(...) are
// read as singles. "@name" is a function handle naming the function. Error messages give positions as 1-based character
// columns.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "arraylib/zxarray.h"
#include "cmdlanglib/budget.h"
#include "guilib/auto_ptr.h"
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace cmdlang {

// A literal or an ARRAY object that cannot become an array; what() says what is wrong and where.
class LiteralError : public std::runtime_error {
 public:
  static constexpr std::size_t kNoOffset = static_cast<std::size_t>(-1);
  explicit LiteralError(const std::string& what, std::size_t offset = kNoOffset)
      : std::runtime_error(what), offset_(offset) {}
  // The byte offset in the text where the fault is, or kNoOffset.
  std::size_t offset() const noexcept { return offset_; }

 private:
  std::size_t offset_;
};

// How deeply brackets, braces and calls may nest in one literal.
inline constexpr int kMaxLiteralDepth = 256;

// The array written by one literal. The array belongs to the caller even inside a host call frame.
// Throws LiteralError for anything that is not exactly one well-formed literal. Every array the
// reader makes, the final one and those it is built from, is charged to budget before it is
// allocated; one that does not fit raises TooLargeError. Without a budget only arrays of more than
// 2^40 elements are refused for their size.
//
// Brackets concatenate numeric, logical and text elements: 0-by-0 elements are skipped, doubles and
// logicals give double, single wins over both, an integer class wins over all three, and text mixes
// only with text. Braces build a cell with one element per entry. Functions:
//   double(X) single(X) int8(X) ... uint64(X) logical(X)   casts (integers round half away from zero
//                                                          and saturate, NaN becomes 0; logical
//                                                          refuses NaN and complex values)
//   zeros(d1,...,['class']) ones(...) cell(d1,...)         one dimension d means d-by-d
//   reshape(X,d1,d2,...)  complex(X,Y)  sparse(X)  struct('name',V,...)
// complex(X,Y) keeps the class of X and Y when they share it and gives double otherwise. struct
// builds one element and stores every V as it is, a cell included.
gui_objects::ZxArrayPtr readLiteral(std::string_view text);
gui_objects::ZxArrayPtr readLiteral(std::string_view text, ByteBudget& budget);

// The array as a literal that readLiteral reads back to an equal array: same class, dimensions,
// complexity, sparsity and values bit for bit (NaN payloads aside). Two cases do not read back:
// absent cell elements and struct fields are written as "[]", and struct arrays other than 1-by-1
// and object arrays are written as a description such as "<1x2 struct>". Text
// holding unpaired UTF-16 surrogates comes back with U+FFFD in their place. A null array gives "[]".
std::string writeLiteral(const zxArray* array);

// The numeric or logical class called name ("double", "uint8", "logical", ...); nullopt otherwise.
std::optional<zxClassID> valueClassNamed(std::string_view name);

// A sparse copy of a full 2-D double or logical array that stores its nonzero elements only, charged
// to budget when one is given. Throws LiteralError for any other class or shape, or for an array that
// is already sparse.
gui_objects::ZxArrayPtr makeSparse(const zxArray* full);
gui_objects::ZxArrayPtr makeSparse(const zxArray* full, ByteBudget& budget);

// Whether name can name a struct field: a letter followed by letters, digits and underscores.
bool isFieldName(std::string_view name);

}  // namespace cmdlang

KX_HOST_API_END
