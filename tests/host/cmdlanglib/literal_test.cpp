// Tests of literals: what each form reads as, what is refused and why, the written forms, and that
// every written literal reads back to an equal array.
#include "cmdlanglib/literal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "array_samples.h"
#include "arraylib/zxdispatch.h"
#include "arraylib/zxerror.h"

namespace cmdlang::test {

using gui_objects::ZxArrayPtr;

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

// The elements of a numeric, logical or char array (full form) as doubles.
std::vector<double> valuesOf(const zxArray* array, bool imag) {
  const ZxArrayPtr full(zxMustBeFull(array));
  const zxSize count = zxGetNumberOfElements(array);
  std::vector<double> values;
  if (zxIsChar(array)) {
    for (zxSize i = 0; i < (imag ? 0 : count); ++i) values.push_back(zxGetChars(array)[i]);
    return values;
  }
  zx::dispatchNumericOrLogical(zxGetClassID(array), [&](auto type) {
    using T = typename decltype(type)::type;
    const void* data = imag ? zxGetImagData(full.get()) : zxGetData(full.get());
    if (data == nullptr) return;
    for (zxSize i = 0; i < count; ++i) values.push_back(static_cast<double>(static_cast<const T*>(data)[i]));
  });
  return values;
}

void expectRefused(const std::string& text, const char* message) {
  SCOPED_TRACE(text);
  try {
    readLiteral(text);
    ADD_FAILURE() << "accepted";
  } catch (const LiteralError& error) {
    EXPECT_THAT(error.what(), ::testing::HasSubstr(message));
  }
}

bool sameValues(const std::vector<double>& a, const std::vector<double>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](double x, double y) { return x == y || (std::isnan(x) && std::isnan(y)); });
}

TEST(ReadLiteralTest, ReadsEachFormAsItsClassDimsAndValues) {
  struct Case {
    const char* text;
    zxClassID classID;
    std::vector<zxSize> dims;
    std::vector<double> re;
    std::vector<double> im = {};
    bool sparse = false;
  };
  static const Case kCases[] = {
      {" -2.5e3 ", zxDOUBLE_CLASS, {1, 1}, {-2500}},
      {".5", zxDOUBLE_CLASS, {1, 1}, {0.5}},
      {"+5.", zxDOUBLE_CLASS, {1, 1}, {5}},
      {"-iNf", zxDOUBLE_CLASS, {1, 1}, {-kInf}},
      {"false", zxLOGICAL_CLASS, {1, 1}, {0}},
      {"[1, 0 0]", zxDOUBLE_CLASS, {1, 3}, {1, 0, 0}},
      {"[0 0 0; 1 1 1]", zxDOUBLE_CLASS, {2, 3}, {0, 1, 0, 1, 0, 1}},
      {"[1 -2 , +3]", zxDOUBLE_CLASS, {1, 3}, {1, -2, 3}},
      {"[[1;2] [3;4]; 5 6]", zxDOUBLE_CLASS, {3, 2}, {1, 2, 5, 3, 4, 6}},
      {"[[] 1 zeros(0,0)]", zxDOUBLE_CLASS, {1, 1}, {1}},
      {"[]", zxDOUBLE_CLASS, {0, 0}, {}},
      {"[true false]", zxLOGICAL_CLASS, {1, 2}, {1, 0}},
      {"[single(0.5) 2]", zxSINGLE_CLASS, {1, 2}, {0.5, 2}},
      {"[int8(100) 200.7 true]", zxINT8_CLASS, {1, 3}, {100, 127, 1}},
      {"[complex(1, 2) 3]", zxDOUBLE_CLASS, {1, 2}, {1, 3}, {2, 0}},
      {"'it''s'", zxCHAR_CLASS, {1, 4}, {'i', 't', '\'', 's'}},
      {"''", zxCHAR_CLASS, {0, 0}, {}},
      {"['ab';'cd']", zxCHAR_CLASS, {2, 2}, {'a', 'c', 'b', 'd'}},
      {"['ab' 'c']", zxCHAR_CLASS, {1, 3}, {'a', 'b', 'c'}},
      {"'h\xC3\xA9\xF0\x9F\x98\x80'", zxCHAR_CLASS, {1, 4}, {'h', 0xE9, 0xD83D, 0xDE00}},
      {"int8([1.5 -2.5 300 -300 NaN Inf])", zxINT8_CLASS, {1, 6}, {2, -3, 127, -128, 0, 127}},
      {"uint8([-1 255.5 0.49 -0])", zxUINT8_CLASS, {1, 4}, {0, 255, 0, 0}},
      {"uint64(-Inf)", zxUINT64_CLASS, {1, 1}, {0}},
      {"logical([2 0 -0.5])", zxLOGICAL_CLASS, {1, 3}, {1, 0, 1}},
      {"single(0.1)", zxSINGLE_CLASS, {1, 1}, {static_cast<double>(0.1F)}},
      {"single(1e39)", zxSINGLE_CLASS, {1, 1}, {kInf}},
      {"double(int8(-7))", zxDOUBLE_CLASS, {1, 1}, {-7}},
      {"int16(complex(1.6, -2.5))", zxINT16_CLASS, {1, 1}, {2}, {-3}},
      {"zeros(2)", zxDOUBLE_CLASS, {2, 2}, {0, 0, 0, 0}},
      {"zeros(0, 3, 'uint8')", zxUINT8_CLASS, {0, 3}, {}},
      {"ones ( 2 , 2 , 'logical' )", zxLOGICAL_CLASS, {2, 2}, {1, 1, 1, 1}},
      {"ones(1, 2, 2, 'int8')", zxINT8_CLASS, {1, 2, 2}, {1, 1, 1, 1}},
      {"reshape([1 2 3 4 5 6], 3, 2)", zxDOUBLE_CLASS, {3, 2}, {1, 2, 3, 4, 5, 6}},
      {"reshape('abcd', 2, 1, 2)", zxCHAR_CLASS, {2, 1, 2}, {'a', 'b', 'c', 'd'}},
      {"complex([1 2], [3 4])", zxDOUBLE_CLASS, {1, 2}, {1, 2}, {3, 4}},
      {"complex(single(1), single(2))", zxSINGLE_CLASS, {1, 1}, {1}, {2}},
      {"complex(single(1), 2)", zxDOUBLE_CLASS, {1, 1}, {1}, {2}},
      {"sparse([0 2; 3 0])", zxDOUBLE_CLASS, {2, 2}, {0, 3, 2, 0}, {}, true},
      {"sparse([true false])", zxLOGICAL_CLASS, {1, 2}, {1, 0}, {}, true},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.text);
    const ZxArrayPtr array = readLiteral(c.text);
    EXPECT_EQ(zxGetClassID(array.get()), c.classID);
    EXPECT_EQ(std::vector<zxSize>(zxGetDimensions(array.get()),
                                  zxGetDimensions(array.get()) + zxGetNumberOfDimensions(array.get())),
              c.dims);
    EXPECT_TRUE(sameValues(valuesOf(array.get(), false), c.re));
    EXPECT_EQ(zxIsComplex(array.get()), !c.im.empty());
    EXPECT_TRUE(sameValues(valuesOf(array.get(), true), c.im));
    EXPECT_EQ(zxIsSparse(array.get()), c.sparse);
  }
}

TEST(ReadLiteralTest, KeepsWholeNumbersExactInsideIntegerCasts) {
  const ZxArrayPtr array = readLiteral("int64([-9223372036854775808 9007199254740993 99999999999999999999])");
  const auto* values = static_cast<const std::int64_t*>(zxGetData(array.get()));
  EXPECT_EQ(values[0], std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(values[1], 9007199254740993);
  EXPECT_EQ(values[2], std::numeric_limits<std::int64_t>::max());
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

TEST(ReadLiteralTest, RefusesMalformedLiteralsSayingWhatAndWhere) {
  struct Case {
    std::string text;
    const char* message;
  };
  static const Case kCases[] = {
      {"", "expected a literal at column 1"},
      {"[1 2", "unbalanced '[' at column 1"},
      {" {1, 2", "unbalanced '{' at column 2"},
      {"zeros(2", "unbalanced '(' at column 6"},
      {"[1 2}", "'}' does not close '['"},
      {"]", "unexpected ']' at column 1"},
      {"[1 2; 3]", "ragged rows at column 7"},
      {"['ab';'c']", "ragged rows"},
      {"[[1;2] 3]", "differ in height"},
      {"foo(1)", "unknown function 'foo' at column 1"},
      {"zeros", "expected '(' after 'zeros'"},
      {"1 2", "unexpected text after literal at column 3"},
      {"[1-2]", "expected ',' or a blank between elements at column 3"},
      {"- 1", "expected a number at column 1"},
      {"'abc", "unterminated text at column 1"},
      {"reshape([1 2 3], 2, 2)", "cannot reshape 3 elements into 2x2"},
      {"reshape([1 2], 2)", "takes at least 3 argument(s)"},
      {"logical([1 NaN])", "NaN cannot become logical"},
      {"logical(complex(1, 0))", "complex values cannot become logical"},
      {"int8(1, 2)", "takes 1 argument(s), not 2"},
      {"int8('a')", "needs a full numeric or logical argument"},
      {"struct('a', 1, 'a', 2)", "duplicate field 'a'"},
      {"struct('1a', 1)", "invalid field name '1a'"},
      {"zeros(-1)", "non-negative whole number"},
      {"zeros(1e6, 1e6, 1e6)", "too many elements"},
      {"zeros(2, 'quad')", "unknown class 'quad'"},
      {"complex([1 2], 3)", "the parts differ in size"},
      {"complex(true, 1)", "needs full real numeric parts"},
      {"sparse(int8(1))", "needs a 2-D double or logical argument"},
      {"[{1} 2]", "brackets hold numbers, logicals and text only"},
      {"[sparse(1) 2]", "sparse arrays cannot be concatenated"},
      {"['a' 1]", "text and numbers cannot be mixed"},
      {"[int8(1) uint8(1)]", "different integer classes cannot be mixed"},
      {std::string(1000, '['), "nested too deeply"},
      {"zeros(0, 1e12, 1e12)", "zeros: too many elements at column 1"},
      {"reshape([], 0, 1e12, 1e12)", "reshape: too many elements at column 1"},
      {"zeros(1e20)", "a dimension must be a non-negative whole number"},
  };
  for (const Case& c : kCases) expectRefused(c.text, c.message);
}

TEST(ReadLiteralTest, NestsUpToItsDepthAndNoFurther) {
  const auto brackets = [](std::size_t depth) { return std::string(depth, '[') + "1" + std::string(depth, ']'); };
  const std::size_t kDepth = kMaxLiteralDepth;
  EXPECT_EQ(zxGetScalar(readLiteral(brackets(kDepth - 1)).get()), 1.0);
  EXPECT_THROW(readLiteral(brackets(kDepth)), LiteralError);
  EXPECT_THROW(readLiteral(std::string(60000, '{') + std::string(60000, '}')), LiteralError);
  EXPECT_THROW(readLiteral(std::string(60000, '[') + std::string(60000, ']')), LiteralError);
}

TEST(ReadLiteralTest, GivesColumnsInCharactersAndShowsCharactersWhole) {
  struct Case {
    const char* text;
    const char* message;
  };
  static constexpr Case kCases[] = {
      {"'\xC3\xA9\xC3\xA9' x", "unexpected text after literal at column 6"},
      {"[1 \xE2\x82\xAC]", "unexpected '\xE2\x82\xAC' at column 4"},
      {"{'\xF0\x9F\x98\x80', \xF0\x9F\x98\x80}", "unexpected '\xF0\x9F\x98\x80' at column 7"},
      {"[1 \xFF]", "unexpected byte 0xFF at column 4"},
      {"['\xE6\x97\xA5' 1}", "'}' does not close '[' from column 1 at column 7"},
      {"'\xE6\x97\xA5\xE6\x9C\xAC", "unterminated text at column 1"},
      {"['\xE6\x97\xA5'; 1 2]", "text and numbers cannot be mixed at column 7"},
  };
  for (const Case& c : kCases) expectRefused(c.text, c.message);
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
      {"ones(4611686018427387904, 2)", kMiB, SIZE_MAX, "ones at column 1: a 4611686018427387904x2 double array"},
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

TEST(ReadLiteralTest, ChargesWhatItMakesAndReadsTheSameWithinABudget) {
  for (const Sample& sample : sampleArrays()) {
    if (sample.hasAbsent) continue;
    SCOPED_TRACE(sample.name);
    const std::string text = writeLiteral(sample.array.get());
    ByteBudget budget(1 << 20);
    EXPECT_TRUE(sameArray(readLiteral(text, budget).get(), sample.array.get()));
    EXPECT_GE(budget.used(), zxGetNumberOfElements(sample.array.get()) * zxGetElementSize(sample.array.get()));
  }
  ByteBudget budget(1 << 20);
  readLiteral("zeros(100, 100)", budget);
  EXPECT_GE(budget.used(), 80000U);
}

TEST(WriteLiteralTest, WritesEachClassInItsForm) {
  static const struct {
    const char* text;
    const char* written;
  } kCases[] = {
      {"-2.5", "-2.5"},
      {"[-Inf NaN; 0.1 1e300]", "[-Inf NaN;0.1 1e+300]"},
      {"zeros(0, 3)", "zeros(0,3)"},
      {"uint8([0 255])", "uint8([0 255])"},
      {"single(0.1)", "single(0.1)"},
      {"[true false]", "logical([1 0])"},
      {"ones(2, 1, 2)", "reshape([1 1;1 1],2,1,2)"},
      {"'it''s'", "'it''s'"},
      {"['ab';'cd']", "['ab';'cd']"},
      {"reshape('', 0, 3)", "reshape('',0,3)"},
      {"{'-', '--'}", "{'-','--'}"},
      {"{'a'; [1 2]}", "{'a';[1 2]}"},
      {"cell(1, 2)", "{[],[]}"},
      {"cell(2, 0)", "cell(2,0)"},
      {"complex(int8(1), int8(-2))", "complex(int8(1),int8(-2))"},
      {"sparse([0 2; 3 0])", "sparse([0 2;3 0])"},
      {"struct('b', 1, 'a', {'x'})", "struct('b',1,'a',{'x'})"},
      {"struct()", "struct()"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(writeLiteral(readLiteral(c.text).get()), c.written);
  }
}

TEST(WriteLiteralTest, DescribesWhatNoLiteralCanWrite) {
  const char* field = "a";
  const ZxArrayPtr records(zxCreateStructMatrix(1, 2, 1, &field));
  const ZxArrayPtr handle(zxCreateFunctionHandle("sin"));
  EXPECT_EQ(writeLiteral(records.get()), "<1x2 struct>");
  // A function handle has a literal of its own.
  EXPECT_EQ(writeLiteral(handle.get()), "@sin");
  EXPECT_EQ(writeLiteral(nullptr), "[]");
}

TEST(WriteLiteralTest, EveryWrittenLiteralReadsBackEqual) {
  for (const Sample& sample : sampleArrays()) {
    if (sample.hasAbsent) continue;
    SCOPED_TRACE(sample.name);
    const std::string text = writeLiteral(sample.array.get());
    SCOPED_TRACE(text);
    EXPECT_TRUE(sameArray(readLiteral(text).get(), sample.array.get()));
  }
}

}  // namespace
}  // namespace cmdlang::test
