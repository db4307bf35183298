// Tests of literals: what each form reads as, what is refused and why, the written forms, and that
// every sample array is written as a literal that reads back equal; and of the memory budgets and
// UTF-8 helpers behind reading them and their refusals, and of splitting at top-level separators.
#include "cmdlanglib/literal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <initializer_list>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "array_samples.h"
#include "arraylib/zxerror.h"
#include "cmdlanglib/budget.h"
#include "cmdlanglib/evaluator.h"
#include "cmdlanglib/utf8.h"

namespace cmdlang::test {

using gui_objects::ZxArrayPtr;

namespace {

// Each literal is read, then written in the writer's one form for that class, dimensions, complexity,
// sparsity and values.
TEST(LiteralTest, ReadsEachFormAsTheArrayItWritesAs) {
  // clang-format off
  const std::pair<const char*, const char*> kCases[] = {
      {" -2.5e3 ", "-2500"}, {"-iNf", "-Inf"}, {"false", "false"}, {"[-Inf NaN; 0.1 1e300]", "[-Inf NaN;0.1 1e+300]"},
      {"[1 -2 , +3]", "[1 -2 3]"}, {"[[1;2] [3;4]; 5 6]", "[1 3;2 4;5 6]"}, {"[[] 1 zeros(0,0)]", "1"},
      {"[single(0.5) 2]", "single([0.5 2])"}, {"[int8(100) 200.7 true]", "int8([100 127 1])"}, {"'it''s'", "'it''s'"},
      {"\"say \"\"hi\"\"\"", "'say \"hi\"'"}, {"[\"it's\" 'a']", "'it''sa'"},
      {"[complex(1, 2) 3]", "complex([1 3],[2 0])"}, {"reshape('', 0, 3)", "reshape('',0,3)"},
      {"int8([1.5 -2.5 300 -300 NaN Inf])", "int8([2 -3 127 -128 0 127])"}, {"logical([2 0 -0.5])", "logical([1 0 1])"},
      {"uint8([-1 255.5 0.49 -0])", "uint8([0 255 0 0])"}, {"single(0.1)", "single(0.1)"},
      {"single(1e39)", "single(Inf)"}, {"zeros(2)", "[0 0;0 0]"},
      {"int64([-1e30 99999999999999999999])", "int64([-9223372036854775808 9223372036854775807])"},
      {"int16(complex(1.6, -2.5))", "complex(int16(2),int16(-3))"},
      {"ones ( 2 , 2 , 'logical' )", "logical([1 1;1 1])"}, {"ones(1, 2, 2, 'int8')", "reshape(int8([1 1 1 1]),1,2,2)"},
      {"reshape([1 2 3 4 5 6], 3, 2)", "[1 4;2 5;3 6]"}, {"complex(single(1), 2)", "complex(1,2)"},
      {"sparse([0 2; 3 0])", "sparse([0 2;3 0])"}, {"sparse([true false])", "sparse(logical([1 0]))"},
      {"{'a'; [1 2]}", "{'a';[1 2]}"}, {"cell(1, 2)", "{[],[]}"}, {"{@f, 1}", "{@f,1}"},
      {"struct('b', 1, 'a', {'x'})", "struct('b',1,'a',{'x'})"}};
  // clang-format on
  for (const auto& [text, written] : kCases) {
    EXPECT_EQ(writeLiteral(readLiteral(text).get()), written) << text;
  }
}

TEST(ReadLiteralTest, SparseStoresOnlyNonzeros) {
  const ZxArrayPtr array = readLiteral("sparse([0 2; 3 0; 0 -0])");
  EXPECT_EQ(zxGetJc(array.get())[2], 2U);
  EXPECT_EQ(zxGetIr(array.get())[0], 1U);
  EXPECT_EQ(zxGetPr(array.get())[1], 2.0);
}

TEST(ReadLiteralTest, ResultOutlivesTheCallFrame) {
  ZxArrayPtr array;
  {
    zx::CallFrame frame;
    array = readLiteral("{1, 'a'; struct('x', 2), []}");
    EXPECT_EQ(frame.temporaryCount(), 0U);
  }
  EXPECT_EQ(writeLiteral(array.get()), "{1,'a';struct('x',2),[]}");
}

// Columns count characters, and a character shown in a message is shown whole.
TEST(ReadLiteralTest, RefusesMalformedLiteralsSayingWhatAndWhere) {
  // clang-format off
  static const std::pair<std::string, const char*> kCases[] = {
      {"", "expected a literal at column 1"}, {" {1, 2", "unbalanced '{' at column 2"},
      {"zeros(2", "unbalanced '(' at column 6"}, {"[1 2; 3]", "ragged rows at column 7"},
      {"[[1;2] 3]", "differ in height"}, {"foo(1)", "unknown function 'foo' at column 1"},
      {"[1-2]", "expected ',' or a blank between elements at column 3"}, {"- 1", "expected a number at column 1"},
      {"'abc", "unterminated text at column 1"}, {"@1", "expected a function name after '@'"},
      {"[@f]", "brackets hold numbers, logicals and text only"},
      {"reshape([1 2 3], 2, 2)", "cannot reshape 3 elements into 2x2"},
      {"reshape([1 2], 2)", "takes at least 3 argument(s)"}, {"logical([1 NaN])", "NaN cannot become logical"},
      {"logical(complex(1, 0))", "complex values cannot become logical"},
      {"int8('a')", "needs a full numeric or logical argument"}, {"struct('a', 1, 'a', 2)", "duplicate field 'a'"},
      {"struct('1a', 1)", "invalid field name '1a'"},
      {"zeros(1e20)", "a dimension must be a non-negative whole number"},
      {"zeros(0, 1e12, 1e12)", "zeros: too many elements at column 1"}, {"zeros(2, 'quad')", "unknown class 'quad'"},
      {"complex([1 2], 3)", "the parts differ in size"}, {"complex(true, 1)", "needs full real numeric parts"},
      {"sparse(int8(1))", "needs a 2-D double or logical argument"},
      {"[sparse(1) 2]", "sparse arrays cannot be concatenated"}, {"['a' 1]", "text and numbers cannot be mixed"},
      {"[int8(1) uint8(1)]", "different integer classes cannot be mixed"},
      {std::string(1000, '['), "nested too deeply"},
      {"'\xC3\xA9\xC3\xA9' x", "unexpected text after literal at column 6"},
      {"[1 \xE2\x82\xAC]", "unexpected '\xE2\x82\xAC' at column 4"}, {"[1 \xFF]", "unexpected byte 0xFF at column 4"},
      {"['\xE6\x97\xA5' 1}", "'}' does not close '[' from column 1 at column 7"}};
  // clang-format on
  for (const auto& [text, message] : kCases) {
    SCOPED_TRACE(text);
    try {
      readLiteral(text);
      ADD_FAILURE() << "accepted";
    } catch (const LiteralError& error) {
      EXPECT_THAT(error.what(), ::testing::HasSubstr(message));
    }
  }
}

TEST(ReadLiteralTest, NestsUpToItsDepthAndNoFurther) {
  const auto brackets = [](std::size_t depth) { return std::string(depth, '[') + "1" + std::string(depth, ']'); };
  EXPECT_EQ(zxGetScalar(readLiteral(brackets(kMaxLiteralDepth - 1)).get()), 1.0);
  EXPECT_THROW(readLiteral(brackets(kMaxLiteralDepth)), LiteralError);
  EXPECT_THROW(readLiteral(std::string(60000, '{') + std::string(60000, '}')), LiteralError);
}

// Each step that makes an array charges it before making it; needed is a lower bound, SIZE_MAX meaning
// more than any count.
TEST(ReadLiteralTest, RefusesArraysBeyondTheBudgetBeforeMakingThem) {
  constexpr std::size_t kMiB = 1 << 20;
  // clang-format off
  static constexpr std::tuple<const char*, std::size_t, std::size_t, const char*> kCases[] = {  // limit, needed
      {"zeros(1e6, 1e6)", kMiB, 8000000000000, "zeros at column 1: a 1000000x1000000 double array needs 8000000000000"},
      {"zeros(1e9, 1e9, 1e9)", kMiB, SIZE_MAX, "a 1000000000x1000000000x1000000000 double array needs more than"},
      {"cell(1e5)", kMiB, 80000000000, "cell at column 1: a 100000x100000 cell array"},
      {"{1, uint8(zeros(2e4))}", kMiB, 3200000000, "zeros at column 11: a 20000x20000 double array"},
      {"int16(ones(1000))", 9 * kMiB, 2000000, "int16 at column 1: a 1000x1000 int16 array"},
      {"reshape(zeros(1, 1e6), 1e3, 1e3)", 10 * kMiB, 8000000, "reshape at column 1: a 1000x1000 double array"},
      {"[zeros(1, 1e6) zeros(1, 1e6)]", 20 * kMiB, 16000000, "brackets at column 1: a 1x2000000 double array"},
      {"complex(zeros(1e3), zeros(1e3))", 20 * kMiB, 16000000, "complex at column 1: a 1000x1000 double array"},
      {"sparse(ones(1000))", 10 * kMiB, 16000000, "a 1000x1000 sparse array with 1000000 nonzero elements"},
      {"'\xE6\x97\xA5\xE6\x97\xA5\xE6\x97\xA5'", 100, 9, "text at column 1 needs"}};
  // clang-format on
  for (const auto& [text, limit, needed, message] : kCases) {
    SCOPED_TRACE(text);
    ByteBudget budget(limit);
    try {
      readLiteral(text, budget);
      ADD_FAILURE() << "accepted";
    } catch (const TooLargeError& error) {
      EXPECT_GE(error.needed(), needed);
      EXPECT_EQ(error.limit(), limit);
      EXPECT_THAT(error.what(), ::testing::HasSubstr(message));
    }
  }
}

TEST(WriteLiteralTest, DescribesWhatNoLiteralCanWrite) {
  const char* field = "a";
  EXPECT_EQ(writeLiteral(ZxArrayPtr(zxCreateStructMatrix(1, 2, 1, &field)).get()), "<1x2 struct>");
  EXPECT_EQ(writeLiteral(nullptr), "[]");
}

// The samples include arrays built without the reader; read within a budget, each is charged at least
// its elements' bytes.
TEST(WriteLiteralTest, EverySampleIsWrittenAsALiteralThatReadsBackEqualAndIsChargedWhatItMakes) {
  for (const Sample& sample : sampleArrays()) {
    if (sample.hasAbsent) continue;
    const std::string text = writeLiteral(sample.array.get());
    SCOPED_TRACE(sample.name + " as " + text);
    ByteBudget budget(1 << 20);
    EXPECT_TRUE(sameArray(readLiteral(text, budget).get(), sample.array.get()));
    EXPECT_GE(budget.used(), zxGetNumberOfElements(sample.array.get()) * zxGetElementSize(sample.array.get()));
  }
}

constexpr std::size_t kMax = ByteBudget::kUnlimited;

// A refused charge charges nothing and names what it needed, the limit and what is in use, in bytes and
// binary units; what still fits is charged.
TEST(ByteBudgetTest, RefusesChargesBeyondTheLimitSayingWhyAndChargingNothing) {
  // Used, needed, limit and the refusal's message.
  static constexpr std::tuple<std::size_t, std::size_t, std::size_t, const char*> kCases[] = {
      {100, 5, 100, "x needs 5 bytes; the limit is 100 bytes, of which 100 bytes are already in use"},
      {0, 8000000000000, 268435456, "x needs 8000000000000 bytes (7.3 TiB); the limit is 268435456 bytes (256 MiB)"},
      {0, kMax, 1 << 20, "x needs more than 18446744073709551615 bytes (16 EiB); the limit is 1048576 bytes (1 MiB)"},
      {0, 1536, 1, "x needs 1536 bytes (1.5 KiB); the limit is 1 byte"},
  };
  for (const auto& [used, needed, limit, message] : kCases) {
    SCOPED_TRACE(message);
    ByteBudget budget(limit);
    budget.charge(used, "earlier steps");
    try {
      budget.charge(needed, "x");
      ADD_FAILURE() << "charged beyond the limit";
    } catch (const TooLargeError& error) {
      EXPECT_EQ(error.needed(), needed);
      EXPECT_EQ(error.limit(), limit);
      EXPECT_EQ(error.used(), used);
      EXPECT_STREQ(error.what(), message);
    }
    EXPECT_FALSE(budget.tryCharge(needed));
    EXPECT_EQ(budget.used(), used);
    EXPECT_TRUE(budget.tryCharge(limit - used));
    EXPECT_EQ(budget.used(), limit);
  }
}

TEST(ByteArithmeticTest, SaturatesAtSizeMax) {
  constexpr std::size_t k32 = std::size_t{1} << 32;
  // a, b, their sum and their product.
  // clang-format off
  const std::array<std::size_t, 4> kCases[] = {{3, 4, 7, 12}, {kMax, 1, kMax, kMax}, {k32, k32, 2 * k32, kMax},
                                               {kMax / 2 + 1, kMax / 2 + 1, kMax, kMax}, {kMax, 0, kMax, 0}};
  // clang-format on
  for (const auto& [a, b, sum, product] : kCases) {
    EXPECT_EQ(saturatingAdd(a, b), sum) << a << " + " << b;
    EXPECT_EQ(saturatingMultiply(a, b), product) << a << " * " << b;
  }
}

TEST(Utf8Test, CharacterLengthAcceptsWellFormedCharactersOnly) {
  for (const auto& [text, length] : std::initializer_list<std::pair<std::string_view, std::size_t>>{
           {"a", 1},
           {"\xC3\xA9", 2},
           {"\xE2\x82\xAC", 3},
           {"\xF0\x9F\x98\x80", 4},  // one to four bytes
           {"\xC3", 0},
           {"\xC0\xAF", 0},
           {"\xE0\x80\xAF", 0},  // cut short; overlong in two and three
           {"\xED\xA0\x80", 0},
           {"\xF4\x90\x80\x80", 0},
           {"\x80", 0},  // surrogate; above U+10FFFF; stray
       }) {
    SCOPED_TRACE(testing::PrintToString(text));
    EXPECT_EQ(utf8CharacterLength(text, 0), length);
    EXPECT_EQ(isValidUtf8(text), length == text.size());
  }
}

TEST(Utf8Test, ColumnsCountCharactersAndInvalidBytesOneEach) {
  for (const auto& [text, at, column] : std::initializer_list<std::tuple<std::string_view, std::size_t, std::size_t>>{
           {"abc", 2, 3}, {"\xF0\x9F\x98\x80\xF0\x9F\x98\x80x", 8, 3}, {"\xFF\xFEx", 2, 3}, {"ab", 9, 3}}) {
    EXPECT_EQ(utf8Column(text, at), column) << testing::PrintToString(text);
  }
}

TEST(Utf8Test, ShortenedTextNeverSplitsACharacter) {
  for (const auto& [text, maxBytes, shortened] :
       std::initializer_list<std::tuple<std::string_view, std::size_t, std::string_view>>{
           {"abc", 3, "abc"},
           {"a\xE2\x82\xAC", 3, "a... (4 bytes in all)"},
           {"a\xE2\x82\xAC", 4, "a\xE2\x82\xAC"},
           {"\xFF\xFF\xFF", 2, "\xFF\xFF... (3 bytes in all)"}}) {
    EXPECT_EQ(utf8Shortened(text, maxBytes), shortened) << testing::PrintToString(text);
  }
}

TEST(Utf8Test, PrintableTextEscapesControlCharactersAndInvalidBytesOnly) {
  for (const auto& [text, shown] : std::initializer_list<std::pair<std::string_view, std::string_view>>{
           {"caf\xC3\xA9 'r'", "caf\xC3\xA9 'r'"},
           {"a\x01" "b\x7F", "a\\x01b\\x7F"},
           {"\xFFx\xE2\x82", "\\xFFx\\xE2\\x82"},
           {std::string_view("\0\t", 2), "\\x00\\x09"}}) {
    EXPECT_EQ(utf8Printable(text), shown) << testing::PrintToString(text);
  }
}

TEST(SplitTopLevel, SeparatorsInsideQuotesAndBracketsDoNotSplit) {
  // clang-format off
  const std::pair<const char*, std::vector<std::string_view>> kCases[] = {
      {"a, b", {"a", "b"}}, {"f(1, 2), g", {"f(1, 2)", "g"}}, {"", {""}}, {"a,,b", {"a", "", "b"}},
      {"'a,b', [1, 2], {3, 4}", {"'a,b'", "[1, 2]", "{3, 4}"}}, {"'it''s, here', x", {"'it''s, here'", "x"}},
      {"\"a, \"\"b\"\"\", 1", {"\"a, \"\"b\"\"\"", "1"}},
      {"x) , y", {"x)", "y"}}};
  // clang-format on
  for (const auto& [text, parts] : kCases) {
    EXPECT_EQ(splitTopLevel(text, ","), parts) << text;
  }
}

}  // namespace
}  // namespace cmdlang::test
