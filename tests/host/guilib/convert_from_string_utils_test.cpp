// Tests of the matrix text parsers on what the text parsers fuzzer leaves open: null text, classes that
// hold no values, and the overflow, underflow and rounding rules of number conversion.
#include "guilib/convert_from_string_utils.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <string>
#include <utility>

#include "guilib/array_dispatch.h"
#include "guilib/array_exceptions.h"
#include "guilib/auto_ptr.h"

namespace gui_objects::convert_from_string_utils {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(ParsersTest, RefuseNullTextAndClassesThatHoldNoValues) {
  zxSize rows = 0;
  zxSize cols = 0;
  EXPECT_THROW(parse_array_dimensions(nullptr, rows, cols), ParseException);
  EXPECT_THROW(parse_double_scalar(nullptr), ParseException);
  EXPECT_THROW(parse_mxn(nullptr, 1, 1, zxDOUBLE_CLASS), ParseException);
  EXPECT_FALSE(try_parse_1x3_double(nullptr).has_value());
  for (const zxClassID classID : {zxCHAR_CLASS, zxCELL_CLASS, zxSTRUCT_CLASS, zxUNKNOWN_CLASS}) {
    EXPECT_THROW(parse_mxn("1", 1, 1, classID), InvalidArrayClassException) << classID;
  }
}

// Compared bit for bit, so that the sign of zero counts; exponents and digit runs too long for any
// double still saturate rather than wrap.
TEST(ParseDoubleScalarTest, OverflowsToInfinityUnderflowsToSignedZeroAndRoundsToNearest) {
  const std::string huge = "1" + std::string(400, '0');
  const std::string tiny = "0." + std::string(400, '0') + "1";
  // clang-format off
  const std::pair<std::string, double> kCases[] = {
      {"-0", -0.0}, {"9007199254740993", 9007199254740992.0}, {"1e400", kInf}, {"-1e-400", -0.0},
      {"4.9406564584124654e-324", std::numeric_limits<double>::denorm_min()}, {"1e99999999999999999999", kInf},
      {huge, kInf}, {"-" + huge + "e-800", -0.0}, {tiny, 0.0}, {tiny + "e800", kInf}};
  // clang-format on
  for (const auto& [text, value] : kCases) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(parse_double_scalar(text.c_str())), std::bit_cast<std::uint64_t>(value))
        << text.substr(0, 40);
  }
}

// Parses each text as a 1-by-1 array of T's class and compares the stored element bit for bit.
template <class T>
void expectElements(std::initializer_list<std::pair<const char*, T>> cases) {
  for (const auto& [text, value] : cases) {
    const ZxArrayPtr array(parse_mxn(text, 1, 1, classIDOf<T>));
    const T stored = *static_cast<const T*>(zxGetData(array.get()));
    EXPECT_EQ(std::memcmp(&stored, &value, sizeof(T)), 0) << text << " as " << classIDOf<T> << ": " << +stored;
  }
}

// Values beyond each class saturate, others round half away from zero. The single is just above the
// midpoint between 1 and the next single; read through a double it would tie to 1.
TEST(ParseMxnTest, SaturatesAndRoundsHalfAwayFromZeroPerClass) {
  using I64 = std::numeric_limits<std::int64_t>;
  constexpr std::uint64_t kUint64Max = std::numeric_limits<std::uint64_t>::max();
  constexpr float kSingleInf = std::numeric_limits<float>::infinity();
  expectElements<float>(
      {{"3.5e38", kSingleInf}, {"1e-46", 0.0f}, {"1.00000005960464477550", 1.00000011920928955078125f}});
  expectElements<std::int8_t>(
      {{"2.5", 3}, {"-2.5", -3}, {"0.49999999999999994", 0}, {"127.5", 127}, {"-1e3", -128}, {"NaN", 0}, {"Inf", 127}});
  expectElements<std::uint8_t>({{"254.5", 255}, {"-1", 0}, {"-0.4", 0}});
  expectElements<std::int32_t>({{"2147483647.5", 2147483647}, {"-2147483647.5", -2147483647 - 1}});
  expectElements<std::int64_t>(
      {{"9223372036854775808", I64::max()}, {"-99999999999999999999999", I64::min()}, {"9.3e18", I64::max()}});
  expectElements<std::uint64_t>({{"18446744073709551616", kUint64Max}, {"1.8446744073709552e19", kUint64Max}});
  expectElements<bool>({{"-0", false}, {"0.1", true}, {"1e-400", false}});
  EXPECT_THROW(parse_mxn("[1 NaN]", 1, 2, zxLOGICAL_CLASS), ParseException);
}

}  // namespace
}  // namespace gui_objects::convert_from_string_utils
