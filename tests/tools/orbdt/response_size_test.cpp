// Tests that the read-back bound really bounds: for arrays of every class it is at least what the
// ARRAY object's JSON text and the literal take.
#include "orbdt/response_size.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "array_samples.h"
#include "cmdlanglib/literal.h"
#include "orbdt/json_array.h"

namespace orbdt::test {
namespace {

using gui_objects::ZxArrayPtr;

// The bound with one text copy against the longer of the two texts, and against the JSON values.
void expectBounds(const zxArray* array) {
  const std::size_t jsonText = arrayToJson(array).dump().size();
  const std::size_t literal = cmdlang::writeLiteral(array).size();
  const std::size_t bound = readBackBytes(array, 1);
  EXPECT_GE(bound, std::max(jsonText, literal));
  EXPECT_GE(readBackBytes(array, 4), 3 * std::max(jsonText, literal));
}

TEST(ReadBackBytesTest, BoundsTheTextsOfEverySample) {
  for (const cmdlang::test::Sample& sample : cmdlang::test::sampleArrays()) {
    SCOPED_TRACE(sample.name);
    expectBounds(sample.array.get());
  }
}

TEST(ReadBackBytesTest, BoundsTheLongestElementTexts) {
  static constexpr const char* kLiterals[] = {
      "[-2.2250738585072014e-308 -1.7976931348623157e308 0.1 1e15 -999999999999999]",
      "single([-1.17549435e-38 0.1 -3.4028235e38])",
      "int64([-9223372036854775808 9223372036854775807])",
      "uint64(18446744073709551615)",
      "[NaN -Inf Inf]",
      "complex([-0.1 2.5e-300], [NaN 1e300])",
      "['\x01\x02\x1f' ; '\"\\a']",
      "{struct('field_with_a_long_name', {-0.1}), 'x'}",
      "sparse([0 -0.125; 3e-300 0])",
  };
  for (const char* literal : kLiterals) {
    SCOPED_TRACE(literal);
    expectBounds(cmdlang::readLiteral(literal).get());
  }
}

TEST(ReadBackBytesTest, SaturatesInsteadOfWrapping) {
  EXPECT_EQ(readBackBytes(nullptr, 4), 0U);
  const ZxArrayPtr array(cmdlang::readLiteral("zeros(100, 100)"));
  EXPECT_EQ(readBackBytes(array.get(), std::numeric_limits<std::size_t>::max()),
            std::numeric_limits<std::size_t>::max());
}

}  // namespace
}  // namespace orbdt::test
