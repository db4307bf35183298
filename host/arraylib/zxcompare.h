// Comparing two host arrays: one walker over class, shape, complexity, sparsity and elements (cells and
// struct fields nested), with a policy for how elements compare and what counts.
#pragma once

#include <cstdint>
#include <limits>
#include <string>

#include "arraylib/zxarray.h"
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace zx {

// How two numbers of the same class compare.
enum class NumberEquality : std::uint8_t {
  ieee,      // as the processor compares them: NaN equals nothing, -0 equals 0
  sameBits,  // bit for bit, except that any NaN equals any NaN: a value equals its own copy
};

// Which dimensions must agree.
enum class ShapeEquality : std::uint8_t {
  allDimensions,
  rowsAndColumns,  // the number of dimensions, the rows, and the columns counted as zxGetN does
};

struct ComparePolicy {
  NumberEquality numbers = NumberEquality::sameBits;
  ShapeEquality shape = ShapeEquality::allDimensions;
  // Imaginary parts, and whether there are any, are not compared.
  bool realPartsOnly = false;
  // Arrays of a class that is neither numeric nor logical (text, cells, structs, objects, function
  // handles) count as equal to anything.
  bool numbersOnly = false;
  // Arrays of more elements than this count as different without being compared.
  zxSize maxElements = std::numeric_limits<zxSize>::max();
};

// Whether a and b are equal under the policy. Two absent arrays are equal; an absent and a present one
// are not. Sparse arrays compare by their full form; struct fields must have the same names in the same
// order; object arrays hold the same objects of the same class; function handles name the same function.
bool arraysEqual(const zxArray* a, const zxArray* b, const ComparePolicy& policy = {});

// Where a and b first differ under the policy, for people ("element 3 differs in cell 2"); empty when
// they are equal.
std::string arrayDifference(const zxArray* a, const zxArray* b, const ComparePolicy& policy = {});

}  // namespace zx

KX_HOST_API_END
