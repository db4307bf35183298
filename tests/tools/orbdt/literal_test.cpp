// Tests of host literals: what each form reads as, what is refused and why, the written forms, and
// that every written literal reads back to an equal array. Also defines the array comparison and
// the sample arrays that the JSON tests share.
#include "orbdt/literal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "arraylib/zxdispatch.h"
#include "arraylib/zxerror.h"

namespace orbdt::test {

using gui_objects::ZxArrayPtr;

// Class, dimensions, complexity, sparsity and contents equal; floating values compared bit for bit
// except that any NaN equals any NaN.
::testing::AssertionResult sameArray(const zxArray* a, const zxArray* b) {
  if (a == nullptr || b == nullptr) {
    return a == b ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << "one element is absent";
  }
  if (std::string(zxGetClassName(a)) != zxGetClassName(b)) {
    return ::testing::AssertionFailure() << zxGetClassName(a) << " vs " << zxGetClassName(b);
  }
  const std::vector<zxSize> dimsA(zxGetDimensions(a), zxGetDimensions(a) + zxGetNumberOfDimensions(a));
  const std::vector<zxSize> dimsB(zxGetDimensions(b), zxGetDimensions(b) + zxGetNumberOfDimensions(b));
  if (dimsA != dimsB) return ::testing::AssertionFailure() << "dims differ";
  if (zxIsComplex(a) != zxIsComplex(b) || zxIsSparse(a) != zxIsSparse(b)) {
    return ::testing::AssertionFailure() << "complexity or sparsity differs";
  }
  const zxSize count = zxGetNumberOfElements(a);
  if (zxIsChar(a) && count > 0 && std::memcmp(zxGetChars(a), zxGetChars(b), count * sizeof(zxChar)) != 0) {
    return ::testing::AssertionFailure() << "characters differ";
  }
  const ZxArrayPtr fullA(zxMustBeFull(a));
  const ZxArrayPtr fullB(zxMustBeFull(b));
  bool same = true;
  zx::dispatchNumericOrLogical(zxGetClassID(a), [&](auto type) {
    using T = typename decltype(type)::type;
    for (const bool imag : {false, true}) {
      if (imag && !zxIsComplex(a)) break;
      const T* x = static_cast<const T*>(imag ? zxGetImagData(fullA.get()) : zxGetData(fullA.get()));
      const T* y = static_cast<const T*>(imag ? zxGetImagData(fullB.get()) : zxGetData(fullB.get()));
      for (zxSize i = 0; i < count; ++i) {
        bool bothNaN = false;
        if constexpr (std::is_floating_point_v<T>) bothNaN = std::isnan(x[i]) && std::isnan(y[i]);
        same = same && (bothNaN || std::memcmp(&x[i], &y[i], sizeof(T)) == 0);
      }
    }
  });
  if (!same) return ::testing::AssertionFailure() << "values differ";
  if (zxIsCell(a)) {
    for (zxSize i = 0; i < count; ++i) {
      auto inner = sameArray(zxGetCell(a, i), zxGetCell(b, i));
      if (!inner) return inner << " in cell " << i;
    }
  }
  if (zxIsStruct(a)) {
    if (zxGetNumberOfFields(a) != zxGetNumberOfFields(b)) return ::testing::AssertionFailure() << "fields differ";
    for (int f = 0; f < zxGetNumberOfFields(a); ++f) {
      if (std::string(zxGetFieldNameByNumber(a, f)) != zxGetFieldNameByNumber(b, f)) {
        return ::testing::AssertionFailure() << "field names differ";
      }
      for (zxSize i = 0; i < count; ++i) {
        auto inner = sameArray(zxGetFieldByNumber(a, i, f), zxGetFieldByNumber(b, i, f));
        if (!inner) return inner << " in field " << zxGetFieldNameByNumber(a, f);
      }
    }
  }
  return ::testing::AssertionSuccess();
}

template <class T>
ZxArrayPtr matrixOf(zxSize m, zxSize n, const std::vector<T>& re, const std::vector<T>& im = {}) {
  ZxArrayPtr array(zxCreateNumericMatrix(m, n, zx::classIDOf<T>, im.empty() ? zxREAL : zxCOMPLEX));
  std::memcpy(zxGetWritableData(array.get()), re.data(), re.size() * sizeof(T));
  if (!im.empty()) std::memcpy(zxGetWritableImagData(array.get()), im.data(), im.size() * sizeof(T));
  return array;
}

struct Sample {
  std::string name;
  ZxArrayPtr array;
  bool hasAbsent = false;  // absent cell elements or struct fields, which literals cannot express
};

// Arrays of every class; the numeric edge cases are built directly so that the reader is not
// needed to make them.
std::vector<Sample> sampleArrays() {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInf = std::numeric_limits<double>::infinity();
  using I64 = std::numeric_limits<std::int64_t>;
  std::vector<Sample> samples;
  samples.push_back({"doubles", matrixOf<double>(2, 3, {-0.0, 5e-324, 1.7976931348623157e308, kNaN, -kInf, 0.1})});
  samples.push_back({"singles", matrixOf<float>(1, 4, {0.1F, -0.0F, 1e-45F, std::numeric_limits<float>::infinity()})});
  samples.push_back({"int64", matrixOf<std::int64_t>(1, 3, {I64::min(), 9007199254740993, I64::max()})});
  samples.push_back({"uint64", matrixOf<std::uint64_t>(1, 2, {0, std::numeric_limits<std::uint64_t>::max()})});
  samples.push_back({"int8", matrixOf<std::int8_t>(2, 1, {-128, 127})});
  samples.push_back({"uint32", matrixOf<std::uint32_t>(1, 1, {4294967295U})});
  samples.push_back({"complex", matrixOf<double>(1, 2, {1, kNaN}, {-0.0, 2.5})});
  samples.push_back({"complex int16", matrixOf<std::int16_t>(1, 2, {-32768, 1}, {32767, 0})});
  samples.push_back({"complex single", matrixOf<float>(1, 1, {0.1F}, {0.2F})});
  ZxArrayPtr sparse(zxCreateSparse(3, 2, 1, zxCOMPLEX));
  zxGetWritableIr(sparse.get())[0] = 2;
  zxGetWritableJc(sparse.get())[1] = 1;
  zxGetWritableJc(sparse.get())[2] = 1;
  zxGetWritablePr(sparse.get())[0] = 0.5;
  zxGetWritablePi(sparse.get())[0] = -1;
  samples.push_back({"sparse complex", std::move(sparse)});
  ZxArrayPtr cell(zxCreateCellMatrix(1, 2));
  zxSetCell(cell.get(), 1, zxCreateDoubleScalar(1));
  samples.push_back({"absent cell", std::move(cell), true});
  const char* field = "f";
  ZxArrayPtr record(zxCreateStructMatrix(1, 1, 1, &field));
  samples.push_back({"absent field", std::move(record), true});
  samples.push_back({"struct array", ZxArrayPtr(zxCreateStructMatrix(1, 2, 1, &field)), true});
  for (const char* text : {"sparse([0 2; 3 0])",
                           "sparse(logical([0 1; 1 0]))",
                           "sparse(zeros(0, 3))",
                           "logical([1 0; 0 1])",
                           "true",
                           "reshape(int8([1 2 3 4 5 6 7 8]), 2, 2, 2)",
                           "ones(2, 1, 2, 'logical')",
                           "zeros(0, 3, 'uint16')",
                           "zeros(3, 0, 2)",
                           "complex(zeros(0, 2), zeros(0, 2))",
                           "[]",
                           "''",
                           "{}",
                           "cell(2, 0)",
                           "reshape('', 1, 0)",
                           "'it''s'",
                           "['h\xC3\xA9' ; 'ab']",
                           "'\xF0\x9F\x98\x80!'",
                           "reshape('abcdefgh', 2, 2, 2)",
                           "reshape({1, 'a', {}, true}, 1, 2, 2)",
                           "{'a', {int8(1); struct('x', {2})}; [1 2], struct()}",
                           "struct('a', [1 2], 'b', struct('c', 'd'))"}) {
    samples.push_back({text, readLiteral(text)});
  }
  return samples;
}

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
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
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.text);
    try {
      readLiteral(c.text);
      ADD_FAILURE() << "accepted";
    } catch (const LiteralError& error) {
      EXPECT_THAT(error.what(), ::testing::HasSubstr(c.message));
    }
  }
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
  EXPECT_EQ(writeLiteral(handle.get()), "<1x1 function_handle>");
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
}  // namespace orbdt::test
