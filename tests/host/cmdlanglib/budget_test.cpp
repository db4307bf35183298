// Tests of memory budgets: what fits, what is refused and what the refusal says, and byte arithmetic
// that saturates instead of wrapping.
#include "cmdlanglib/budget.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace cmdlang::test {
namespace {

using ::testing::HasSubstr;
constexpr std::size_t kMax = ByteBudget::kUnlimited;

TEST(ByteBudgetTest, ChargesUpToTheLimitAndRefusesBeyondItChargingNothing) {
  ByteBudget budget(100);
  budget.charge(60, "first");
  EXPECT_TRUE(budget.tryCharge(40));
  EXPECT_EQ(budget.used(), 100U);
  EXPECT_FALSE(budget.tryCharge(1));
  try {
    budget.charge(5, "the third step");
    ADD_FAILURE() << "charged beyond the limit";
  } catch (const TooLargeError& error) {
    EXPECT_EQ(error.needed(), 5U);
    EXPECT_EQ(error.limit(), 100U);
    EXPECT_EQ(error.used(), 100U);
    EXPECT_STREQ(error.what(),
                 "the third step needs 5 bytes; the limit is 100 bytes, of which 100 bytes are already in use");
  }
  EXPECT_EQ(budget.used(), 100U);
}

TEST(ByteBudgetTest, RefusalNamesNeedAndLimitInBytesAndBinaryUnits) {
  struct Case {
    std::size_t needed;
    std::size_t limit;
    const char* message;
  };
  static constexpr Case kCases[] = {
      {8000000000000, 268435456, "x needs 8000000000000 bytes (7.3 TiB); the limit is 268435456 bytes (256 MiB)"},
      {kMax, 1 << 20, "x needs more than 18446744073709551615 bytes (16 EiB); the limit is 1048576 bytes (1 MiB)"},
      {1536, 1, "x needs 1536 bytes (1.5 KiB); the limit is 1 byte"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.message);
    ByteBudget budget(c.limit);
    try {
      budget.charge(c.needed, "x");
      ADD_FAILURE() << "charged beyond the limit";
    } catch (const TooLargeError& error) {
      EXPECT_STREQ(error.what(), c.message);
    }
  }
}

TEST(ByteArithmeticTest, SaturatesAtSizeMax) {
  struct Case {
    std::size_t a, b, sum, product;
  };
  static constexpr Case kCases[] = {
      {3, 4, 7, 12},
      {kMax, 1, kMax, kMax},
      {kMax / 2 + 1, kMax / 2 + 1, kMax, kMax},
      {std::size_t{1} << 32, std::size_t{1} << 32, std::size_t{1} << 33, kMax},
      {kMax, 0, kMax, 0},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::Message() << c.a << ", " << c.b);
    EXPECT_EQ(saturatingAdd(c.a, c.b), c.sum);
    EXPECT_EQ(saturatingMultiply(c.a, c.b), c.product);
  }
}

}  // namespace
}  // namespace cmdlang::test
