// Tests of literals: what each form reads as, what is refused and why, the written forms, and that
// every written literal reads back to an equal array.
#include "cmdlanglib/literal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "array_samples.h"
#include "arraylib/zxerror.h"

namespace cmdlang::test {

using gui_objects::ZxArrayPtr;

namespace {

// Each literal is read, then written in the writer's one form for that class, dimensions, complexity,
// sparsity and values.
TEST(LiteralTest, ReadsEachFormAsTheArrayItWritesAs) {
  // clang-format off
  const std::pair<const char*, const char*> kCases[] = {
      {" -2.5e3 ", "-2500"}, {"-iNf", "-Inf"}, {"false", "false"},
      {"[-Inf NaN; 0.1 1e300]", "[-Inf NaN;0.1 1e+300]"}, {"[1 -2 , +3]", "[1 -2 3]"},
      {"[[1;2] [3;4]; 5 6]", "[1 3;2 4;5 6]"}, {"[[] 1 zeros(0,0)]", "1"}, {"[]", "[]"},
      {"[single(0.5) 2]", "single([0.5 2])"}, {"[int8(100) 200.7 true]", "int8([100 127 1])"},
      {"[complex(1, 2) 3]", "complex([1 3],[2 0])"}, {"'it''s'", "'it''s'"}, {"['ab';'cd']", "['ab';'cd']"},
      {"'h\xC3\xA9\xF0\x9F\x98\x80'", "'h\xC3\xA9\xF0\x9F\x98\x80'"}, {"reshape('', 0, 3)", "reshape('',0,3)"},
      {"int8([1.5 -2.5 300 -300 NaN Inf])", "int8([2 -3 127 -128 0 127])"},
      {"uint8([-1 255.5 0.49 -0])", "uint8([0 255 0 0])"},
      {"int64([-1e30 99999999999999999999])", "int64([-9223372036854775808 9223372036854775807])"},
      {"logical([2 0 -0.5])", "logical([1 0 1])"}, {"single(0.1)", "single(0.1)"}, {"single(1e39)", "single(Inf)"},
      {"int16(complex(1.6, -2.5))", "complex(int16(2),int16(-3))"}, {"zeros(2)", "[0 0;0 0]"},
      {"ones ( 2 , 2 , 'logical' )", "logical([1 1;1 1])"},
      {"ones(1, 2, 2, 'int8')", "reshape(int8([1 1 1 1]),1,2,2)"},
      {"reshape([1 2 3 4 5 6], 3, 2)", "[1 4;2 5;3 6]"},
      {"complex(single(1), single(2))", "complex(single(1),single(2))"}, {"complex(single(1), 2)", "complex(1,2)"},
      {"sparse([0 2; 3 0])", "sparse([0 2;3 0])"}, {"sparse([true false])", "sparse(logical([1 0]))"},
      {"{'a'; [1 2]}", "{'a';[1 2]}"}, {"cell(1, 2)", "{[],[]}"}, {"cell(2, 0)", "cell(2,0)"},
      {"struct('b', 1, 'a', {'x'})", "struct('b',1,'a',{'x'})"}, {"struct()", "struct()"}, {"@disp", "@disp"},
      {"{@f, 1}", "{@f,1}"}};
  // clang-format on
  for (const auto& [text, written] : kCases) {
    EXPECT_EQ(writeLiteral(readLiteral(text).get()), written) << text;
  }
}

TEST(ReadLiteralTest, SparseStoresOnlyNonzeros) {
  const ZxArrayPtr array = readLiteral("sparse([0 2; 3 0; 0 -0])");
  const zxSize* columnStart = zxGetJc(array.get());
  EXPECT_EQ(columnStart[2], 2U);
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
  static const std::pair<std::string, const char*> kCases[] = {
      {"", "expected a literal at column 1"},
      {"[1 2", "unbalanced '[' at column 1"},
      {" {1, 2", "unbalanced '{' at column 2"},
      {"zeros(2", "unbalanced '(' at column 6"},
      {"]", "unexpected ']' at column 1"},
      {"[1 2; 3]", "ragged rows at column 7"},
      {"[[1;2] 3]", "differ in height"},
      {"foo(1)", "unknown function 'foo' at column 1"},
      {"1 2", "unexpected text after literal at column 3"},
      {"[1-2]", "expected ',' or a blank between elements at column 3"},
      {"- 1", "expected a number at column 1"},
      {"'abc", "unterminated text at column 1"},
      {"@1", "expected a function name after '@'"},
      {"[@f]", "brackets hold numbers, logicals and text only"},
      {"reshape([1 2 3], 2, 2)", "cannot reshape 3 elements into 2x2"},
      {"reshape([1 2], 2)", "takes at least 3 argument(s)"},
      {"logical([1 NaN])", "NaN cannot become logical"},
      {"logical(complex(1, 0))", "complex values cannot become logical"},
      {"int8('a')", "needs a full numeric or logical argument"},
      {"struct('a', 1, 'a', 2)", "duplicate field 'a'"},
      {"struct('1a', 1)", "invalid field name '1a'"},
      {"zeros(1e20)", "a dimension must be a non-negative whole number"},
      {"zeros(0, 1e12, 1e12)", "zeros: too many elements at column 1"},
      {"zeros(2, 'quad')", "unknown class 'quad'"},
      {"complex([1 2], 3)", "the parts differ in size"},
      {"complex(true, 1)", "needs full real numeric parts"},
      {"sparse(int8(1))", "needs a 2-D double or logical argument"},
      {"[sparse(1) 2]", "sparse arrays cannot be concatenated"},
      {"['a' 1]", "text and numbers cannot be mixed"},
      {"[int8(1) uint8(1)]", "different integer classes cannot be mixed"},
      {std::string(1000, '['), "nested too deeply"},
      {"'\xC3\xA9\xC3\xA9' x", "unexpected text after literal at column 6"},
      {"[1 \xE2\x82\xAC]", "unexpected '\xE2\x82\xAC' at column 4"},
      {"[1 \xFF]", "unexpected byte 0xFF at column 4"},
      {"['\xE6\x97\xA5' 1}", "'}' does not close '[' from column 1 at column 7"},
  };
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
  const std::size_t kDepth = kMaxLiteralDepth;
  EXPECT_EQ(zxGetScalar(readLiteral(brackets(kDepth - 1)).get()), 1.0);
  EXPECT_THROW(readLiteral(brackets(kDepth)), LiteralError);
  EXPECT_THROW(readLiteral(std::string(60000, '{') + std::string(60000, '}')), LiteralError);
}

TEST(ReadLiteralTest, RefusesArraysBeyondTheBudgetBeforeMakingThem) {
  struct Case {
    const char* text;
    std::size_t limit;
    std::size_t needed;  // at least; SIZE_MAX: more than any count
    const char* message;
  };
  constexpr std::size_t kMiB = 1 << 20;
  static constexpr Case kCases[] = {
      {"zeros(1e6, 1e6)", kMiB, 8000000000000,
       "zeros at column 1: a 1000000x1000000 double array needs 8000000000000 bytes (7.3 TiB); the limit is 1048576 "
       "bytes (1 MiB)"},
      {"zeros(1e9, 1e9, 1e9)", kMiB, SIZE_MAX, "a 1000000000x1000000000x1000000000 double array needs more than"},
      {"cell(1e5)", kMiB, 80000000000, "cell at column 1: a 100000x100000 cell array"},
      {"{1, uint8(zeros(2e4))}", kMiB, 3200000000, "zeros at column 11: a 20000x20000 double array"},
      {"int16(ones(1000))", 9 * kMiB, 2000000, "int16 at column 1: a 1000x1000 int16 array"},
      {"reshape(zeros(1, 1e6), 1e3, 1e3)", 10 * kMiB, 8000000, "reshape at column 1: a 1000x1000 double array"},
      {"[zeros(1, 1e6) zeros(1, 1e6)]", 20 * kMiB, 16000000, "brackets at column 1: a 1x2000000 double array"},
      {"complex(zeros(1e3), zeros(1e3))", 20 * kMiB, 16000000, "complex at column 1: a 1000x1000 double array"},
      {"sparse(ones(1000))", 10 * kMiB, 16000000, "a 1000x1000 sparse array with 1000000 nonzero elements"},
      {"'\xE6\x97\xA5\xE6\x97\xA5\xE6\x97\xA5'", 100, 9, "text at column 1 needs"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.text);
    ByteBudget budget(c.limit);
    try {
      readLiteral(c.text, budget);
      ADD_FAILURE() << "accepted";
    } catch (const TooLargeError& error) {
      EXPECT_GE(error.needed(), c.needed);
      EXPECT_EQ(error.limit(), c.limit);
      EXPECT_THAT(error.what(), ::testing::HasSubstr(c.message));
    }
  }
}

TEST(WriteLiteralTest, DescribesWhatNoLiteralCanWrite) {
  const char* field = "a";
  const ZxArrayPtr records(zxCreateStructMatrix(1, 2, 1, &field));
  EXPECT_EQ(writeLiteral(records.get()), "<1x2 struct>");
  EXPECT_EQ(writeLiteral(nullptr), "[]");
}

// Read within a budget, each array is charged at least its elements' bytes.
TEST(WriteLiteralTest, EveryWrittenLiteralReadsBackEqualAndIsChargedWhatItMakes) {
  for (const Sample& sample : sampleArrays()) {
    if (sample.hasAbsent) continue;
    const std::string text = writeLiteral(sample.array.get());
    SCOPED_TRACE(sample.name + " as " + text);
    EXPECT_TRUE(sameArray(readLiteral(text).get(), sample.array.get()));
    ByteBudget budget(1 << 20);
    EXPECT_TRUE(sameArray(readLiteral(text, budget).get(), sample.array.get()));
    EXPECT_GE(budget.used(), zxGetNumberOfElements(sample.array.get()) * zxGetElementSize(sample.array.get()));
  }
}

}  // namespace
}  // namespace cmdlang::test
