// The shared sample arrays and array comparison.
#include "array_samples.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

#include "arraylib/zxcompare.h"
#include "arraylib/zxdispatch.h"
#include "cmdlanglib/literal.h"

namespace cmdlang::test {

using gui_objects::ZxArrayPtr;

::testing::AssertionResult sameArray(const zxArray* a, const zxArray* b) {
  const std::string difference = zx::arrayDifference(a, b);
  if (difference.empty()) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << difference;
}

namespace {

template <class T>
ZxArrayPtr matrixOf(zxSize m, zxSize n, const std::vector<T>& re, const std::vector<T>& im = {}) {
  ZxArrayPtr array(zxCreateNumericMatrix(m, n, zx::classIDOf<T>, im.empty() ? zxREAL : zxCOMPLEX));
  std::memcpy(zxGetWritableData(array.get()), re.data(), re.size() * sizeof(T));
  if (!im.empty()) std::memcpy(zxGetWritableImagData(array.get()), im.data(), im.size() * sizeof(T));
  return array;
}

}  // namespace

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
  samples.push_back({"absent field", ZxArrayPtr(zxCreateStructMatrix(1, 1, 1, &field)), true});
  samples.push_back({"struct array", ZxArrayPtr(zxCreateStructMatrix(1, 2, 1, &field)), true});
  // clang-format off
  const char* const kLiterals[] = {
      "sparse([0 2; 3 0])", "sparse(logical([0 1; 1 0]))", "sparse(zeros(0, 3))", "logical([1 0; 0 1])", "true",
      "reshape(int8([1 2 3 4 5 6 7 8]), 2, 2, 2)", "ones(2, 1, 2, 'logical')", "zeros(0, 3, 'uint16')",
      "zeros(3, 0, 2)", "complex(zeros(0, 2), zeros(0, 2))", "[]", "''", "{}", "cell(2, 0)", "reshape('', 1, 0)",
      "'it''s'", "['h\xC3\xA9' ; 'ab']", "'\xF0\x9F\x98\x80!'", "reshape('abcdefgh', 2, 2, 2)",
      "reshape({1, 'a', {}, true}, 1, 2, 2)", "{'a', {int8(1); struct('x', {2})}; [1 2], struct()}",
      "struct('a', [1 2], 'b', struct('c', 'd'))"};
  // clang-format on
  for (const char* text : kLiterals) samples.push_back({text, readLiteral(text)});
  return samples;
}

}  // namespace cmdlang::test
