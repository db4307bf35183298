// Arrays of every class for round-trip tests, and the comparison those tests use; shared by the
// tests of literals and of the JSON form of arrays.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "arraylib/zxarray.h"
#include "guilib/auto_ptr.h"

namespace cmdlang::test {

struct Sample {
  std::string name;
  gui_objects::ZxArrayPtr array;
  bool hasAbsent = false;  // absent cell elements or struct fields, which literals cannot express
};

// Arrays of every class; the numeric edge cases are built directly so that the reader is not
// needed to make them.
std::vector<Sample> sampleArrays();

// Class, dimensions, complexity, sparsity and contents equal; floating values compared bit for bit
// except that any NaN equals any NaN.
::testing::AssertionResult sameArray(const zxArray* a, const zxArray* b);

}  // namespace cmdlang::test
