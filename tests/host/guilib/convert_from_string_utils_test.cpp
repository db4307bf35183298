// Tests of the matrix text parsers: accepted and refused forms, shapes, number conversion per class.
#include "guilib/convert_from_string_utils.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "guilib/array_dispatch.h"
#include "guilib/array_exceptions.h"
#include "guilib/auto_ptr.h"

namespace gui_objects::convert_from_string_utils {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

// The parsers share one scanner, so the whole syntax is tabled once, through parse_array_dimensions and
// parse_mxn, which takes text at the shape read and no other.
TEST(ParseArrayDimensionsTest, AcceptsTheMatrixSyntax) {
  // clang-format off
  const std::tuple<const char*, zxSize, zxSize> kCases[] = {
      {"", 0, 0}, {" [\r\n] ", 0, 0}, {"5", 1, 1}, {"\t1\t2\t3\t", 1, 3}, {"[1, 2 ,3]", 1, 3}, {"1\r\n2\r3", 3, 1},
      {"[1 2 ;\n 3 4]", 2, 2}, {"[\n1 2\n3 4\n]", 2, 2}, {"[1 2;]", 1, 2}, {"1 2 3;\n\n", 1, 3},
      {"+1 -2 .5 5. 1e3 1E-3 -2.5e+3 007", 1, 8}, {"NaN nan NAN Inf -inf +INF", 1, 6}};
  // clang-format on
  for (const auto& [text, m, n] : kCases) {
    SCOPED_TRACE(testing::Message() << '"' << text << '"');
    zxSize rows = 99;
    zxSize cols = 99;
    parse_array_dimensions(text, rows, cols);
    EXPECT_EQ(rows, m);
    EXPECT_EQ(cols, n);
    EXPECT_NE(ZxArrayPtr(parse_mxn(text, m, n, zxDOUBLE_CLASS)), nullptr);
    if (m > 0) {
      EXPECT_THROW(parse_mxn(text, m + 1, n, zxDOUBLE_CLASS), ParseException);
      EXPECT_THROW(parse_mxn(text, m, n - 1, zxDOUBLE_CLASS), ParseException);
    }
  }
}

TEST(ParseArrayDimensionsTest, RefusesEverythingElseLeavingTheDimensions) {
  // clang-format off
  const char* const kRefused[] = {
      "[", "]", "[1 2", "1 2]", "[[1 2]]", "[1 2] 3",                                // brackets
      "1;;2", "1\n\n2", "1,,2", ",1", "[;]", "1,", "[1 2,]", "1,;2", "1;;", "1\v2",  // separators, empty rows
      "1 2;3", "[1 2;3 4 5]",                                                        // unequal rows
      "1-2", "1x", "1..2", "1e+", "e5", "-.", "- 1", "+-1", "infinity", "In", "0x10", "'1'"};  // numbers
  // clang-format on
  for (const char* text : kRefused) {
    SCOPED_TRACE(testing::Message() << '"' << text << '"');
    zxSize rows = 99;
    zxSize cols = 99;
    EXPECT_THROW(parse_array_dimensions(text, rows, cols), ParseException);
    EXPECT_EQ(rows, 99u);
    EXPECT_EQ(cols, 99u);
    EXPECT_THROW(parse_mxn(text, 1, 1, zxDOUBLE_CLASS), ParseException);
  }
  zxSize rows = 0;
  zxSize cols = 0;
  EXPECT_THROW(parse_array_dimensions(nullptr, rows, cols), ParseException);
}

TEST(ParseDoubleScalarTest, ReadsOneNumberExactlyWithOverflowAndUnderflow) {
  const std::string hugeInteger = "1" + std::string(400, '0');
  const std::string tinyFraction = "0." + std::string(400, '0') + "1";
  // clang-format off
  const std::pair<std::string, double> kCases[] = {
      {"[5]", 5.0}, {" -7.25 ", -7.25}, {"0.1", 0.1}, {"-0", -0.0}, {"+0.0", 0.0}, {".5", 0.5},
      {"9007199254740993", 9007199254740992.0}, {"1.7976931348623157e308", std::numeric_limits<double>::max()},
      {"4.9406564584124654e-324", std::numeric_limits<double>::denorm_min()}, {"1e400", kInf},
      {"-1e-400", -0.0}, {"1e99999999999999999999", kInf}, {hugeInteger, kInf}, {"-" + hugeInteger + "e-800", -0.0},
      {tinyFraction, 0.0}, {tinyFraction + "e800", kInf}, {"-INF", -kInf}};
  // clang-format on
  for (const auto& [text, value] : kCases) {
    // Compared bit for bit, so that the sign of zero counts.
    EXPECT_EQ(std::bit_cast<std::uint64_t>(parse_double_scalar(text.c_str())), std::bit_cast<std::uint64_t>(value))
        << text.substr(0, 40);
  }
  EXPECT_TRUE(std::isnan(parse_double_scalar("NaN")));
  for (const char* text : {"", "1 2", static_cast<const char*>(nullptr)}) {
    EXPECT_THROW(parse_double_scalar(text), ParseException);
  }
}

// parse(text) gives expected when accepted is set and raises ParseException otherwise.
template <class Parse, class P>
void expectParsed(Parse parse, const char* text, bool accepted, const P& expected) {
  if (accepted) {
    EXPECT_EQ(parse(text), expected);
  } else {
    EXPECT_THROW(parse(text), ParseException);
  }
}

// Each fixed-shape parser takes its one shape and no other, reading the numbers row by row.
TEST(ParseFixedShapeTest, EachTakesExactlyItsShape) {
  Matrix4x4d counting;
  for (int i = 0; i < 16; ++i) counting(i / 4, i % 4) = i + 1;
  // clang-format off
  const std::pair<const char*, std::string_view> kCases[] = {  // text, the shape that takes it
      {"[1 2]", "1x2"}, {"1 2 3;", "1x3"}, {"[1,2,3,4]", "1x4"}, {"1 2 3 4\n", "1x4"}, {"1 2 3\n4 5 6", "2x3"},
      {"[1 2 3 4; 5 6 7 8; 9 10 11 12; 13 14 15 16]", "4x4"}, {"1", ""}, {"", ""}, {"[1;2]", ""}, {"1 2 3 x", ""},
      {"[1 2 3 4 5]", ""}, {"[1 2;3 4;5 6]", ""}, {"[1 2 3;4 5]", ""}, {"[1 2 3;4 5 6;7 8 9]", ""},
      {"[1 2 3 4;5 6 7 8;9 10 11 12]", ""}, {"1 2 3 4;5 6 7 8;9 10 11 12;13 14 15 16;1 2 3 4", ""}};
  // clang-format on
  for (const auto& [text, shape] : kCases) {
    SCOPED_TRACE(text);
    expectParsed(parse_1x2_double, text, shape == "1x2", Point2d{1, 2});
    expectParsed(parse_1x3_double, text, shape == "1x3", Point3d{1, 2, 3});
    expectParsed(parse_1x4_double, text, shape == "1x4", Point4d{1, 2, 3, 4});
    expectParsed(parse_2x3_double, text, shape == "2x3", BoundingVolume({1, 2, 3}, {4, 5, 6}));
    expectParsed(parse_4x4_double, text, shape == "4x4", counting);
    // The try-parsers accept exactly what the throwing ones accept, with the same numbers.
    EXPECT_EQ(try_parse_1x3_double(text), shape == "1x3" ? std::optional<Point3d>({1, 2, 3}) : std::nullopt);
    EXPECT_EQ(try_parse_1x4_double(text), shape == "1x4" ? std::optional<Point4d>({1, 2, 3, 4}) : std::nullopt);
  }
  EXPECT_FALSE(try_parse_1x3_double(nullptr).has_value());
}

// Parses each text as a 1-by-1 array of T's class and compares the stored element bit for bit.
template <class T>
void expectElements(std::initializer_list<std::pair<const char*, T>> cases) {
  for (const auto& [text, value] : cases) {
    SCOPED_TRACE(testing::Message() << '"' << text << "\" as class " << classIDOf<T>);
    const ZxArrayPtr array(parse_mxn(text, 1, 1, classIDOf<T>));
    ASSERT_EQ(zxGetClassID(array.get()), classIDOf<T>);
    const T stored = *static_cast<const T*>(zxGetData(array.get()));
    EXPECT_EQ(std::memcmp(&stored, &value, sizeof(T)), 0) << +stored << " vs " << +value;
  }
}

TEST(ParseMxnTest, ConvertsEachNumberToTheClass) {
  using F = std::numeric_limits<float>;
  using I64 = std::numeric_limits<std::int64_t>;
  constexpr std::uint64_t kUint64Max = std::numeric_limits<std::uint64_t>::max();
  // clang-format off
  expectElements<double>({{"-1e400", -kInf}});
  // Values beyond each class saturate, others round half away from zero. The last single is just above
  // the midpoint between 1 and the next single; read through a double it would tie to 1.
  expectElements<float>({{"3.5e38", F::infinity()}, {"1e-46", 0.0f},
                         {"1.00000005960464477550", 1.00000011920928955078125f}});
  expectElements<std::int8_t>({{"2.5", 3}, {"-2.5", -3}, {"0.49999999999999994", 0}, {"127.5", 127}, {"300", 127},
                               {"-129", -128}, {"-1e3", -128}, {"NaN", 0}, {"Inf", 127}, {"-Inf", -128}});
  expectElements<std::uint8_t>({{"256", 255}, {"254.5", 255}, {"-1", 0}, {"-0.4", 0}});
  expectElements<std::int16_t>({{"-32769", -32768}});
  expectElements<std::uint16_t>({{"1e5", 65535}});
  expectElements<std::int32_t>({{"2147483647.5", 2147483647}, {"-2147483647.5", -2147483647 - 1}});
  expectElements<std::uint32_t>({{"4294967296", 4294967295u}});
  expectElements<std::int64_t>({{"9223372036854775808", I64::max()}, {"-9223372036854775809", I64::min()},
                                {"-99999999999999999999999", I64::min()}, {"9.3e18", I64::max()}});
  expectElements<std::uint64_t>({{"18446744073709551616", kUint64Max}, {"1.8446744073709552e19", kUint64Max},
                                 {"-5", 0}});
  expectElements<bool>({{"-0", false}, {"2", true}, {"0.1", true}, {"-Inf", true}, {"1e-400", false}});
  // clang-format on
  EXPECT_THROW(parse_mxn("[1 NaN]", 1, 2, zxLOGICAL_CLASS), ParseException);
}

TEST(ParseMxnTest, FillsInColumnMajorOrderAndTakesTextWithoutNumbersAtAnyEmptyShape) {
  const ZxArrayPtr array(parse_mxn("[1 2 3;4 5 6]", 2, 3, zxUINT16_CLASS));
  const auto* values = static_cast<const std::uint16_t*>(zxGetData(array.get()));
  EXPECT_EQ(std::vector<std::uint16_t>(values, values + 6), (std::vector<std::uint16_t>{1, 4, 2, 5, 3, 6}));
  const ZxArrayPtr empty(parse_mxn("[ ]", 5, 0, zxINT8_CLASS));
  EXPECT_EQ(zxGetM(empty.get()), 5u);
  EXPECT_THROW(parse_mxn("", 1, 1, zxDOUBLE_CLASS), ParseException);
  EXPECT_THROW(parse_mxn(nullptr, 1, 1, zxDOUBLE_CLASS), ParseException);
  for (const zxClassID classID : {zxCHAR_CLASS, zxCELL_CLASS, zxSTRUCT_CLASS, zxUNKNOWN_CLASS}) {
    EXPECT_THROW(parse_mxn("1", 1, 1, classID), InvalidArrayClassException) << classID;
  }
}

}  // namespace
}  // namespace gui_objects::convert_from_string_utils
