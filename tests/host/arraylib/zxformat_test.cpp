// Tests of the canonical text of arrays: its forms per class, and that the text of every numeric
// array reads back bit for bit through the matrix text parser.
#include "arraylib/zxformat.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "guilib/array_dispatch.h"
#include "guilib/auto_ptr.h"
#include "guilib/convert_from_string_utils.h"

namespace zx {
namespace {

using gui_objects::classIDOf;
using gui_objects::ZxArrayPtr;

template <class T>
ZxArrayPtr matrixOf(zxSize m, zxSize n, const std::vector<T>& columnMajor) {
  ZxArrayPtr array(classIDOf<T> == zxLOGICAL_CLASS ? zxCreateLogicalMatrix(m, n)
                                                   : zxCreateNumericMatrix(m, n, classIDOf<T>, zxREAL));
  T* values = static_cast<T*>(zxGetWritableData(array.get()));
  for (zxSize i = 0; i < m * n; ++i) values[i] = columnMajor[i];
  return array;
}

ZxArrayPtr sparseWithOne(zxSize m, zxSize n, zxSize row, zxSize col, double value) {
  ZxArrayPtr array(zxCreateSparse(m, n, 1, zxREAL));
  zxGetWritableIr(array.get())[0] = row;
  zxSize* starts = zxGetWritableJc(array.get());
  for (zxSize j = 0; j <= n; ++j) starts[j] = j > col ? 1 : 0;
  zxGetWritablePr(array.get())[0] = value;
  return array;
}

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(CanonicalTextTest, WritesEachClassInItsForm) {
  struct Case {
    const char* name;
    ZxArrayPtr (*make)();
    const char* text;
  };
  static const Case kCases[] = {
      {"row",
       [] {
         return matrixOf<double>(1, 3, {0, 1, 1});
       },
       "[0 1 1]"},
      {"rows",
       [] {
         return matrixOf<double>(2, 3, {0, 1, 0, 1, 0, 1});
       },
       "[0 0 0;1 1 1]"},
      {"scalar", [] { return matrixOf<double>(1, 1, {5}); }, "5"},
      {"empty", [] { return matrixOf<double>(0, 0, {}); }, "[]"},
      {"empty 0x3 logical", [] { return matrixOf<bool>(0, 3, {}); }, "[]"},
      {"NaN scalar", [] { return matrixOf<double>(1, 1, {kNaN}); }, "NaN"},
      {"non-finite and signed zero",
       [] {
         return matrixOf<double>(1, 4, {kInf, -kInf, -0.0, 0.1});
       },
       "[Inf -Inf -0 0.1]"},
      {"single as single",
       [] {
         return matrixOf<float>(1, 2, {0.1f, 3.4028235e38f});
       },
       "[0.1 3.4028235e+38]"},
      {"int8",
       [] {
         return matrixOf<std::int8_t>(1, 2, {-128, 127});
       },
       "[-128 127]"},
      {"int64 min", [] { return matrixOf(1, 1, std::vector{std::numeric_limits<std::int64_t>::min()}); },
       "-9223372036854775808"},
      {"uint64 max", [] { return matrixOf(1, 1, std::vector{std::numeric_limits<std::uint64_t>::max()}); },
       "18446744073709551615"},
      {"logical",
       [] {
         return matrixOf<bool>(2, 2, {true, false, false, true});
       },
       "[1 0;0 1]"},
      {"N-D as its 2-D view",
       [] {
         const zxSize dims[] = {2, 2, 2};
         ZxArrayPtr array(zxCreateNumericArray(3, dims, zxDOUBLE_CLASS, zxREAL));
         for (int i = 0; i < 8; ++i) zxGetWritablePr(array.get())[i] = i + 1;
         return array;
       },
       "[1 3 5 7;2 4 6 8]"},
      {"complex gives its real part",
       [] {
         ZxArrayPtr array(zxCreateDoubleMatrix(1, 2, zxCOMPLEX));
         zxGetWritablePr(array.get())[1] = 2;
         zxGetWritablePi(array.get())[1] = 6;
         return array;
       },
       "[0 2]"},
      {"sparse as full", [] { return sparseWithOne(2, 2, 1, 0, 5); }, "[0 0;5 0]"},
      {"sparse nothing stored", [] { return ZxArrayPtr(zxCreateSparse(2, 1, 0, zxREAL)); }, "[0;0]"},
      {"char row",
       [] {
         return ZxArrayPtr(
             zxCreateString("it's gr\xC3\xBC\xC3\x9F"
                            "e"));
       },
       "it's gr\xC3\xBC\xC3\x9F"
       "e"},
      {"empty char", [] { return ZxArrayPtr(zxCreateString("")); }, ""},
      {"char rows",
       [] {
         const char* const rows[] = {"ab", "c'd"};
         return ZxArrayPtr(zxCreateCharMatrixFromStrings(2, rows));
       },
       "['ab ';'c''d']"},
      {"struct",
       [] {
         const zxSize dims[] = {2, 2, 3};
         const char* const fields[] = {"a"};
         return ZxArrayPtr(zxCreateStructArray(3, dims, 1, fields));
       },
       "<2x2x3 struct>"},
      {"object",
       [] {
         const zxSize dims[] = {1, 2};
         return ZxArrayPtr(zxCreateObjectArray("Widget", 2, dims, nullptr));
       },
       "<1x2 Widget>"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(canonicalText(c.make().get()), c.text);
  }
  EXPECT_EQ(canonicalText(nullptr), "[]");
}

template <class T>
std::vector<T> extremes() {
  using L = std::numeric_limits<T>;
  if constexpr (std::is_same_v<T, bool>) {
    return {true, false};
  } else if constexpr (std::is_floating_point_v<T>) {
    return {L::lowest(),
            L::max(),
            L::min(),
            -L::min(),
            L::denorm_min(),
            -L::denorm_min(),
            T(0),
            -T(0),
            T(1),
            T(-1),
            T(0.1),
            T(1) / T(3),
            L::epsilon(),
            T(1) + L::epsilon(),
            T(1e22),
            T(123456789),
            T(2) / T(3) * T(1e-30),
            L::quiet_NaN(),
            L::infinity(),
            -L::infinity()};
  } else if constexpr (std::is_signed_v<T>) {
    return {L::min(), static_cast<T>(L::min() + 1), L::max(), static_cast<T>(L::max() - 1), T(0), T(1),
            T(-1),    static_cast<T>(L::max() / 3)};
  } else {
    return {L::max(), static_cast<T>(L::max() - 1), T(0), T(1), static_cast<T>(L::max() / 3)};
  }
}

template <class T>
T fromBits(std::uint64_t bits) {
  if constexpr (std::is_same_v<T, bool>) {
    return (bits & 1) != 0;
  } else {
    T value;
    std::memcpy(&value, &bits, sizeof(T));
    return value;
  }
}

template <class T>
bool sameElement(T a, T b) {
  if constexpr (std::is_floating_point_v<T>) {
    if (std::isnan(a)) return std::isnan(b);
  }
  return std::memcmp(&a, &b, sizeof(T)) == 0;
}

template <class T>
void expectRoundTrip(zxSize m, zxSize n, const std::vector<T>& columnMajor) {
  const ZxArrayPtr original = matrixOf<T>(m, n, columnMajor);
  const std::string text = canonicalText(original.get());
  SCOPED_TRACE(testing::Message() << m << 'x' << n << ' ' << text.substr(0, 200));
  const ZxArrayPtr reread(gui_objects::convert_from_string_utils::parse_mxn(text.c_str(), m, n, classIDOf<T>));
  ASSERT_NE(reread, nullptr);
  const T* values = static_cast<const T*>(zxGetData(reread.get()));
  for (zxSize i = 0; i < m * n; ++i) {
    EXPECT_TRUE(sameElement(values[i], columnMajor[i]))
        << "element " << i << ": " << +values[i] << " vs " << +columnMajor[i];
  }
}

template <class T>
class CanonicalTextRoundTripTest : public ::testing::Test {};

using ElementTypes = ::testing::Types<double, float, std::int8_t, std::uint8_t, std::int16_t, std::uint16_t,
                                      std::int32_t, std::uint32_t, std::int64_t, std::uint64_t, bool>;
TYPED_TEST_SUITE(CanonicalTextRoundTripTest, ElementTypes);

TYPED_TEST(CanonicalTextRoundTripTest, ExtremesReadBackExactlyInEveryShape) {
  const std::vector<TypeParam> values = extremes<TypeParam>();
  const zxSize count = values.size();
  expectRoundTrip<TypeParam>(1, count, values);
  expectRoundTrip<TypeParam>(count, 1, values);
  for (const TypeParam value : values) expectRoundTrip<TypeParam>(1, 1, {value});
  std::vector<TypeParam> even = values;
  if (even.size() % 2 != 0) even.push_back(values.front());
  expectRoundTrip<TypeParam>(2, even.size() / 2, even);
  expectRoundTrip<TypeParam>(0, 3, {});
}

TYPED_TEST(CanonicalTextRoundTripTest, RandomBitPatternsReadBackExactly) {
  std::mt19937_64 bits(20240607);
  constexpr zxSize kRows = 60;
  constexpr zxSize kCols = 50;
  std::vector<TypeParam> values;
  values.reserve(kRows * kCols);
  for (zxSize i = 0; i < kRows * kCols; ++i) values.push_back(fromBits<TypeParam>(bits()));
  expectRoundTrip<TypeParam>(kRows, kCols, values);
}

}  // namespace
}  // namespace zx
