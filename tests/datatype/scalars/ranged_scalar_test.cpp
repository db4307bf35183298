// RangedScalar: the finite range, construction from another range, and the conversions.
#include "datatype/scalars/ranged_scalar.h"

#include <limits>

#include "../support.h"
#include "../user_view.h"

namespace {

using namespace graphics::datatype;
using orbtest::RaisesId;

class RangedScalars : public orbtest::DataTypeTest {};

// Every number, so that a value of this range can be checked again against the finite one. A range
// that only values are made of needs no names or default.
struct AnyNumber {
  static bool contains(double) { return true; }
  [[noreturn]] static void refuse() { throw 0; }
};

constexpr const char* kNotFinite = "error: Korvax:datatypes:InvalidFiniteValue";
constexpr const char* kNotNumber = "error: Korvax:orb:dt_conv:Matrix_to_Real:ExpectedNumeric";

TEST_F(RangedScalars, ArraysAndTextsMustBeOneFiniteRealNumber) {
  const struct {
    const char* input;  // a host literal, or a text when text is set
    const char* seen;
    bool text = false;
  } cases[] = {
      {"-1e300", "-1e+300 | -1e+300"}, {"single(0.5)", "0.5 | 0.5"}, {"-0", "-0 | -0", true}, {"-Inf", kNotFinite},
      {"Inf", kNotFinite, true},       {"complex(1,2)", kNotNumber},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.text ? userview::parsing("RangedScalar", c.input) : userview::setting("RangedScalar", c.input), c.seen)
        << (c.text ? "text " : "") << c.input;
  }
}

TEST_F(RangedScalars, AValueOfAnotherRangeIsCheckedAgain) {
  const RangedScalar<double, AnyNumber> anything(std::numeric_limits<double>::infinity());
  EXPECT_THAT([&] { FiniteRangedScalar finite(anything); }, RaisesId("Korvax:datatypes:InvalidFiniteValue"));
  EXPECT_EQ(FiniteRangedScalar(RangedScalar<double, AnyNumber>(4.0)).getValue(), 4.0);
}

}  // namespace
