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
#include <vector>

#include "guilib/array_dispatch.h"
#include "guilib/array_exceptions.h"
#include "guilib/auto_ptr.h"

namespace gui_objects::convert_from_string_utils {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kDenormMin = std::numeric_limits<double>::denorm_min();

struct Dims {
  zxSize rows;
  zxSize cols;
};

// The parsers share one scanner, so the whole syntax is tabled once, through parse_array_dimensions.
TEST(ParseArrayDimensionsTest, AcceptsTheMatrixSyntaxAndRefusesEverythingElse) {
  struct Case {
    const char* text;
    std::optional<Dims> dims;  // none when refused
  };
  constexpr std::nullopt_t kRefused = std::nullopt;
  // clang-format off
  static const Case kCases[] = {
      {"", Dims{0, 0}}, {"[]", Dims{0, 0}}, {"[ ]", Dims{0, 0}}, {" \t\n", Dims{0, 0}}, {" [\r\n] ", Dims{0, 0}},
      {"5", Dims{1, 1}}, {"[5]", Dims{1, 1}}, {"[1 2 3]", Dims{1, 3}}, {"\t1\t2\t3\t", Dims{1, 3}},
      {"[ 1  2   3 ]", Dims{1, 3}}, {"1,2,3", Dims{1, 3}}, {"[1, 2 ,3]", Dims{1, 3}}, {"1 ,\t2", Dims{1, 2}},
      {"[1;2;3]", Dims{3, 1}}, {"1\n2\n3", Dims{3, 1}}, {"1\r\n2\r3", Dims{3, 1}}, {"[1 2;3 4;5 6]", Dims{3, 2}},
      {"[1 2 ;\n 3 4]", Dims{2, 2}}, {"[1 2;\r\n3 4]", Dims{2, 2}}, {"[\n1 2\n3 4\n]", Dims{2, 2}},
      {"[1 2;]", Dims{1, 2}}, {"1 2 3\n", Dims{1, 3}}, {"1 2 3;\n\n", Dims{1, 3}},
      {"+1 -2 .5 5. 1e3 1E-3 -2.5e+3 007", Dims{1, 8}}, {"NaN nan NAN Inf -inf +INF", Dims{1, 6}},
      {"[-Inf,NaN;1,2]", Dims{2, 2}},
      // Brackets.
      {"[", kRefused}, {"]", kRefused}, {"[1 2", kRefused}, {"1 2]", kRefused}, {"[[1 2]]", kRefused},
      {"[1 2]]", kRefused}, {"[1 2] 3", kRefused}, {"[1] [2]", kRefused}, {"1 [2]", kRefused},
      // Separators and empty rows.
      {"1;;2", kRefused}, {"1 ; ; 2", kRefused}, {"1\n\n2", kRefused}, {"1;\n\n2", kRefused}, {"1,,2", kRefused},
      {"1, ,2", kRefused}, {",1", kRefused}, {"[,1]", kRefused}, {"1,", kRefused}, {"[1 2,]", kRefused},
      {"1,;2", kRefused}, {"1;,2", kRefused}, {";", kRefused}, {"[;]", kRefused}, {";1", kRefused},
      {"1;;", kRefused}, {"1\v2", kRefused},
      // Rows of unequal length.
      {"1 2;3", kRefused}, {"[1 2;3 4 5]", kRefused}, {"1\n2 3", kRefused},
      // Numbers.
      {"1-2", kRefused}, {"1+2", kRefused}, {"1x", kRefused}, {"abc", kRefused}, {"1..2", kRefused},
      {"1.2.3", kRefused}, {"1e", kRefused}, {"1e+", kRefused}, {"e5", kRefused}, {".", kRefused}, {"-.", kRefused},
      {"+", kRefused}, {"- 1", kRefused}, {"+-1", kRefused}, {"1 +", kRefused}, {"infinity", kRefused},
      {"nan(1)", kRefused}, {"NaNa", kRefused}, {"In", kRefused}, {"0x10", kRefused}, {"1i", kRefused},
      {"1'000", kRefused}, {"'1'", kRefused}};
  // clang-format on
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::Message() << '"' << c.text << '"');
    zxSize rows = 99;
    zxSize cols = 99;
    if (c.dims) {
      ASSERT_NO_THROW(parse_array_dimensions(c.text, rows, cols));
      EXPECT_EQ(rows, c.dims->rows);
      EXPECT_EQ(cols, c.dims->cols);
    } else {
      EXPECT_THROW(parse_array_dimensions(c.text, rows, cols), ParseException);
      EXPECT_EQ(rows, 99u);
      EXPECT_EQ(cols, 99u);
    }
  }
  zxSize rows = 0;
  zxSize cols = 0;
  EXPECT_THROW(parse_array_dimensions(nullptr, rows, cols), ParseException);
}

bool sameDouble(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || (std::isnan(a) && std::isnan(b));
}

TEST(ParseDoubleScalarTest, ReadsOneNumberExactlyWithOverflowAndUnderflow) {
  const std::string hugeInteger = "1" + std::string(400, '0');
  const std::string tinyFraction = "0." + std::string(400, '0') + "1";
  struct Case {
    std::string text;
    std::optional<double> value;
  };
  // clang-format off
  const Case cases[] = {
      {"5", 5.0}, {"[5]", 5.0}, {" -7.25 ", -7.25}, {"0.1", 0.1}, {"-0", -0.0}, {"+0.0", 0.0}, {".5", 0.5},
      {"5.", 5.0}, {"-2.5e3", -2500.0}, {"1E-3", 0.001}, {"9007199254740993", 9007199254740992.0},
      {"1.7976931348623157e308", std::numeric_limits<double>::max()}, {"4.9406564584124654e-324", kDenormMin},
      {"2.2250738585072014e-308", std::numeric_limits<double>::min()}, {"1e400", kInf}, {"-1e400", -kInf},
      {"1e-400", 0.0}, {"-1e-400", -0.0}, {"2e-324", 0.0}, {"1e99999999999999999999", kInf},
      {"1e-99999999999999999999", 0.0}, {"0.0001e310", 1e306}, {hugeInteger, kInf},
      {"-" + hugeInteger + "e-800", -0.0}, {tinyFraction, 0.0}, {tinyFraction + "e800", kInf}, {"inf", kInf},
      {"-INF", -kInf}, {"NaN", std::numeric_limits<double>::quiet_NaN()}, {"", std::nullopt}, {"[]", std::nullopt},
      {"1 2", std::nullopt}, {"1;2", std::nullopt}, {"[[5]]", std::nullopt}};
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << '"' << c.text.substr(0, 40) << '"');
    if (c.value) {
      const double parsed = parse_double_scalar(c.text.c_str());
      EXPECT_TRUE(sameDouble(parsed, *c.value)) << parsed << " vs " << *c.value;
    } else {
      EXPECT_THROW(parse_double_scalar(c.text.c_str()), ParseException);
    }
  }
  EXPECT_THROW(parse_double_scalar(nullptr), ParseException);
}

TEST(ParseRowTest, OneByTwoThreeAndFourNeedExactlyOneRowOfThatLength) {
  struct Case {
    const char* text;
    int length;  // of the row read, 0 when refused by every row parser
  };
  // clang-format off
  static constexpr Case kCases[] = {
      {"[1 2]", 2}, {"1,2", 2}, {"[1 2 3]", 3}, {"0.1 0.2 0.3", 3}, {"[1,2,3,4]", 4}, {"1 2 3 4\n", 4},
      {"[1 2 3;]", 3}, {"1", 0}, {"[1;2]", 0}, {"[1;2;3]", 0}, {"[1 2;3 4]", 0}, {"[1 2 3 4 5]", 0}, {"", 0},
      {"[]", 0}, {"1 2 3 x", 0}};
  // clang-format on
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::Message() << '"' << c.text << '"');
    if (c.length == 2) {
      EXPECT_EQ(parse_1x2_double(c.text), (Point2d{1, 2}));
    } else {
      EXPECT_THROW(parse_1x2_double(c.text), ParseException);
    }
    // The try-parsers accept exactly what the throwing ones accept, with the same numbers.
    const std::optional<Point3d> tried3 = try_parse_1x3_double(c.text);
    const std::optional<Point4d> tried4 = try_parse_1x4_double(c.text);
    EXPECT_EQ(tried3.has_value(), c.length == 3);
    EXPECT_EQ(tried4.has_value(), c.length == 4);
    if (c.length == 3) {
      const Point3d p = parse_1x3_double(c.text);
      EXPECT_TRUE(p == (Point3d{1, 2, 3}) || p == (Point3d{0.1, 0.2, 0.3}));
      EXPECT_EQ(tried3, p);
    } else {
      EXPECT_THROW(parse_1x3_double(c.text), ParseException);
    }
    if (c.length == 4) {
      EXPECT_EQ(parse_1x4_double(c.text), (Point4d{1, 2, 3, 4}));
      EXPECT_EQ(tried4, (Point4d{1, 2, 3, 4}));
    } else {
      EXPECT_THROW(parse_1x4_double(c.text), ParseException);
    }
  }
  const Point4d unusual = parse_1x4_double("[NaN -Inf 1e-400 -0]");
  EXPECT_TRUE(std::isnan(unusual.x));
  EXPECT_FALSE(try_parse_1x3_double(nullptr).has_value());
  EXPECT_EQ(unusual.y, -kInf);
  EXPECT_EQ(unusual.z, 0.0);
  EXPECT_TRUE(std::signbit(unusual.w));
}

TEST(Parse2x3Test, FirstRowIsTheMinimumCornerAndSecondTheMaximum) {
  const BoundingVolume box = parse_2x3_double("[1 2 3; 4 5 6]");
  EXPECT_EQ(box.getMin(), (Point3d{1, 2, 3}));
  EXPECT_EQ(box.getMax(), (Point3d{4, 5, 6}));
  EXPECT_EQ(parse_2x3_double("0 0 0\n1 1 1\n"), BoundingVolume({0, 0, 0}, {1, 1, 1}));
  EXPECT_EQ(parse_2x3_double("[ 9 9 9 ; -1 -1 -1 ]").getXWidth(), -10);

  static constexpr const char* kRefused[] = {"[0 1 0 1 0 1]", "[0 0;1 1;2 2]",     "[1 2 3]", "[1 2 3;4 5 6;7 8 9]",
                                             "[1 2 3;4 5]",   "[1 2 3 4;5 6 7 8]", "[]"};
  for (const char* text : kRefused) {
    SCOPED_TRACE(text);
    EXPECT_THROW(parse_2x3_double(text), ParseException);
  }
}

TEST(Parse4x4Test, ReadsRowsInOrder) {
  const Matrix4x4d m = parse_4x4_double("[1 2 3 4; 5 6 7 8; 9 10 11 12; 13 14 15 16]");
  for (int row = 0; row < 4; ++row) {
    for (int col = 0; col < 4; ++col) EXPECT_EQ(m(row, col), row * 4 + col + 1) << row << ',' << col;
  }
  EXPECT_EQ(parse_4x4_double("1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1"), Matrix4x4d());

  static constexpr const char* kRefused[] = {"[1 2 3 4;5 6 7 8;9 10 11 12]",
                                             "[1 2 3;4 5 6;7 8 9;10 11 12]",
                                             "[1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16]",
                                             "1",
                                             "[1 2 3 4;5 6 7 8;9 10 11 12;13 14 15 16;17 18 19 20]",
                                             "[1 2 3 4;5 6 7 8;9 10 11 12;13 14 15]"};
  for (const char* text : kRefused) {
    SCOPED_TRACE(text);
    EXPECT_THROW(parse_4x4_double(text), ParseException);
  }
}

template <class T>
struct Expected {
  const char* text;
  T value;
};

// Parses each text as a 1-by-1 array of T's class and compares the stored element bit for bit.
template <class T>
void expectElements(std::initializer_list<Expected<T>> cases) {
  for (const Expected<T>& c : cases) {
    SCOPED_TRACE(testing::Message() << '"' << c.text << "\" as class " << classIDOf<T>);
    const ZxArrayPtr array(parse_mxn(c.text, 1, 1, classIDOf<T>));
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(zxGetClassID(array.get()), classIDOf<T>);
    const T stored = *static_cast<const T*>(zxGetData(array.get()));
    EXPECT_EQ(std::memcmp(&stored, &c.value, sizeof(T)), 0) << +stored << " vs " << +c.value;
  }
}

TEST(ParseMxnTest, ConvertsEachNumberToTheClass) {
  using F = std::numeric_limits<float>;
  expectElements<double>({{"0.1", 0.1}, {"-0", -0.0}, {"-1e400", -kInf}});
  expectElements<float>({{"0.1", 0.1f},
                         {"-0", -0.0f},
                         {"3.4028235e38", F::max()},
                         {"3.5e38", F::infinity()},
                         {"1e-46", 0.0f},
                         {"1e-45", F::denorm_min()},
                         // Just above the midpoint between 1 and the next single; through a double it would tie to 1.
                         {"1.00000005960464477550", 1.00000011920928955078125f}});
  expectElements<std::int8_t>({{"-1.5", -2},
                               {"2.5", 3},
                               {"-2.5", -3},
                               {"0.49999999999999994", 0},
                               {"127.4", 127},
                               {"127.5", 127},
                               {"300", 127},
                               {"-128", -128},
                               {"-129", -128},
                               {"-1e3", -128},
                               {"NaN", 0},
                               {"Inf", 127},
                               {"-Inf", -128},
                               {"-0", 0}});
  expectElements<std::uint8_t>({{"255", 255}, {"256", 255}, {"254.5", 255}, {"-1", 0}, {"-0.4", 0}});
  expectElements<std::int16_t>({{"-32769", -32768}, {"32767", 32767}});
  expectElements<std::uint16_t>({{"65535.49", 65535}, {"1e5", 65535}});
  expectElements<std::int32_t>(
      {{"-2147483648", -2147483647 - 1}, {"2147483647.5", 2147483647}, {"-2147483647.5", -2147483647 - 1}});
  expectElements<std::uint32_t>({{"4294967295", 4294967295u}, {"4294967296", 4294967295u}});
  constexpr std::int64_t kInt64Max = std::numeric_limits<std::int64_t>::max();
  constexpr std::int64_t kInt64Min = std::numeric_limits<std::int64_t>::min();
  expectElements<std::int64_t>({{"9223372036854775807", kInt64Max},
                                {"9223372036854775806", kInt64Max - 1},
                                {"9223372036854775808", kInt64Max},
                                {"-9223372036854775808", kInt64Min},
                                {"-9223372036854775807", kInt64Min + 1},
                                {"-9223372036854775809", kInt64Min},
                                {"9007199254740993", 9007199254740993},
                                {"-99999999999999999999999", kInt64Min},
                                {"9.3e18", kInt64Max}});
  constexpr std::uint64_t kUint64Max = std::numeric_limits<std::uint64_t>::max();
  expectElements<std::uint64_t>({{"18446744073709551615", kUint64Max},
                                 {"18446744073709551614", kUint64Max - 1},
                                 {"18446744073709551616", kUint64Max},
                                 {"1.8446744073709552e19", kUint64Max},
                                 {"-5", 0}});
  expectElements<bool>({{"0", false}, {"-0", false}, {"2", true}, {"0.1", true}, {"-Inf", true}, {"1e-400", false}});
  EXPECT_THROW(parse_mxn("NaN", 1, 1, zxLOGICAL_CLASS), ParseException);
  EXPECT_THROW(parse_mxn("[1 NaN]", 1, 2, zxLOGICAL_CLASS), ParseException);
}

TEST(ParseMxnTest, FillsInColumnMajorOrder) {
  const ZxArrayPtr array(parse_mxn("[1 2 3;4 5 6]", 2, 3, zxUINT16_CLASS));
  EXPECT_EQ(zxGetM(array.get()), 2u);
  EXPECT_EQ(zxGetN(array.get()), 3u);
  const auto* values = static_cast<const std::uint16_t*>(zxGetData(array.get()));
  EXPECT_EQ(std::vector<std::uint16_t>(values, values + 6), (std::vector<std::uint16_t>{1, 4, 2, 5, 3, 6}));
}

TEST(ParseMxnTest, ShapeMustMatchExactly) {
  struct Case {
    const char* text;
    zxSize m;
    zxSize n;
    bool accepted;
  };
  // clang-format off
  static constexpr Case kCases[] = {
      {"[1 2 3]", 1, 3, true}, {"[1;2;3]", 3, 1, true}, {"[]", 0, 0, true}, {"", 0, 3, true}, {"[ ]", 5, 0, true},
      {"[1 2 3]", 3, 1, false}, {"[1 2 3]", 1, 2, false}, {"[1 2 3]", 1, 4, false}, {"[1 2;3 4]", 2, 3, false},
      {"[1 2;3 4]", 3, 2, false}, {"[1 2;3 4]", 1, 4, false}, {"[]", 1, 1, false}, {"[1]", 0, 0, false},
      {"1;;2", 2, 1, false}};
  // clang-format on
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::Message() << '"' << c.text << "\" as " << c.m << 'x' << c.n);
    if (c.accepted) {
      const ZxArrayPtr array(parse_mxn(c.text, c.m, c.n, zxDOUBLE_CLASS));
      ASSERT_NE(array, nullptr);
      EXPECT_EQ(zxGetM(array.get()), c.m);
      EXPECT_EQ(zxGetN(array.get()), c.n);
    } else {
      EXPECT_THROW(parse_mxn(c.text, c.m, c.n, zxDOUBLE_CLASS), ParseException);
    }
  }
  EXPECT_THROW(parse_mxn(nullptr, 1, 1, zxDOUBLE_CLASS), ParseException);
}

TEST(ParseMxnTest, RefusesClassesWithoutNumbers) {
  for (const zxClassID classID : {zxCHAR_CLASS, zxCELL_CLASS, zxSTRUCT_CLASS, zxUNKNOWN_CLASS, zxOBJECT_CLASS}) {
    SCOPED_TRACE(testing::Message() << "class " << classID);
    EXPECT_THROW(parse_mxn("1", 1, 1, classID), InvalidArrayClassException);
  }
}

}  // namespace
}  // namespace gui_objects::convert_from_string_utils
