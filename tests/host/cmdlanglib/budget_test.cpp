// Tests of memory budgets: what fits, what is refused and what the refusal says, and byte arithmetic
// that saturates instead of wrapping.
#include "cmdlanglib/budget.h"

#include <gtest/gtest.h>

#include <array>

namespace cmdlang::test {
namespace {

constexpr std::size_t kMax = ByteBudget::kUnlimited;

// A refused charge charges nothing and names what it needed, the limit and what is in use, in bytes and
// binary units; what still fits is charged.
TEST(ByteBudgetTest, RefusesChargesBeyondTheLimitSayingWhyAndChargingNothing) {
  struct Case {
    std::size_t used;
    std::size_t needed;
    std::size_t limit;
    const char* message;
  };
  static constexpr Case kCases[] = {
      {100, 5, 100, "x needs 5 bytes; the limit is 100 bytes, of which 100 bytes are already in use"},
      {0, 8000000000000, 268435456, "x needs 8000000000000 bytes (7.3 TiB); the limit is 268435456 bytes (256 MiB)"},
      {0, kMax, 1 << 20, "x needs more than 18446744073709551615 bytes (16 EiB); the limit is 1048576 bytes (1 MiB)"},
      {0, 1536, 1, "x needs 1536 bytes (1.5 KiB); the limit is 1 byte"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.message);
    ByteBudget budget(c.limit);
    budget.charge(c.used, "earlier steps");
    try {
      budget.charge(c.needed, "x");
      ADD_FAILURE() << "charged beyond the limit";
    } catch (const TooLargeError& error) {
      EXPECT_EQ(error.needed(), c.needed);
      EXPECT_EQ(error.limit(), c.limit);
      EXPECT_EQ(error.used(), c.used);
      EXPECT_STREQ(error.what(), c.message);
    }
    EXPECT_FALSE(budget.tryCharge(c.needed));
    EXPECT_EQ(budget.used(), c.used);
    EXPECT_TRUE(budget.tryCharge(c.limit - c.used));
    EXPECT_EQ(budget.used(), c.limit);
  }
}

TEST(ByteArithmeticTest, SaturatesAtSizeMax) {
  constexpr std::size_t k32 = std::size_t{1} << 32;
  // a, b, their sum and their product.
  const std::array<std::size_t, 4> kCases[] = {{3, 4, 7, 12},
                                               {kMax, 1, kMax, kMax},
                                               {kMax / 2 + 1, kMax / 2 + 1, kMax, kMax},
                                               {k32, k32, 2 * k32, kMax},
                                               {kMax, 0, kMax, 0}};
  for (const auto& [a, b, sum, product] : kCases) {
    EXPECT_EQ(saturatingAdd(a, b), sum) << a << " + " << b;
    EXPECT_EQ(saturatingMultiply(a, b), product) << a << " * " << b;
  }
}

}  // namespace
}  // namespace cmdlang::test
