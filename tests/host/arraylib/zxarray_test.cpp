// Tests of the host array library: shapes, shared copies and copy on write, scope, sparse, text and
// containers, the error and warning path, and the canonical text of arrays (that numbers read back bit for bit).
#include "arraylib/zxarray.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <random>
#include <span>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "../../raises_id.h"
#include "arraylib/zxerror.h"
#include "arraylib/zxformat.h"
#include "arraylib/zxrethrow.h"
#include "guilib/array_dispatch.h"
#include "guilib/auto_ptr.h"
#include "guilib/convert_from_string_utils.h"

FL_DECLARE_MSG_ID(Korvax::datatypes, InvalidEnumValue)

namespace {

using gui_objects::classIDOf;
using gui_objects::ZxArrayPtr;
using zx::canonicalText;
using EnumError = fl::except::Exception<Korvax::datatypes::InvalidEnumValue>;
using PackageError = fl::except::Exception<
    fl::except::key<"OBJSYSPackageNotFound", fl::except::catalog<"orb", fl::except::component<"Korvax">>>>;

// Every test runs inside a call frame, so whatever it creates is reclaimed when it ends.
class ZxArrayTest : public ::testing::Test {
 protected:
  zx::CallFrame frame_;
};

template <class T>
ZxArrayPtr matrixOf(zxSize m, zxSize n, const std::vector<T>& columnMajor) {
  ZxArrayPtr array(classIDOf<T> == zxLOGICAL_CLASS ? zxCreateLogicalMatrix(m, n)
                                                   : zxCreateNumericMatrix(m, n, classIDOf<T>, zxREAL));
  std::copy(columnMajor.begin(), columnMajor.end(), static_cast<T*>(zxGetWritableData(array.get())));
  return array;
}

TEST_F(ZxArrayTest, DimensionsDropTrailingSingletonsAndNCountsEverythingAfterTheFirst) {
  struct Case {
    std::vector<zxSize> given, kept;
    zxSize n;
    bool scalar, vector, vector2D, empty;
  };
  const Case cases[] = {{{3}, {3, 1}, 1, false, true, true, false},
                        {{1, 1, 1, 1}, {1, 1}, 1, true, true, true, false},
                        {{2, 3, 4, 1}, {2, 3, 4}, 12, false, false, false, false},
                        {{1, 1, 5}, {1, 1, 5}, 5, false, true, false, false},
                        {{1, 0}, {1, 0}, 0, false, true, true, true},
                        {{0, 3, 2}, {0, 3, 2}, 6, false, false, false, true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.given));
    zxArray* a = zxCreateNumericArray(c.given.size(), c.given.data(), zxINT16_CLASS, zxREAL);
    EXPECT_EQ(std::vector<zxSize>(zxGetDimensions(a), zxGetDimensions(a) + zxGetNumberOfDimensions(a)), c.kept);
    EXPECT_EQ(zxGetN(a), c.n);
    EXPECT_EQ((std::vector{zxIsScalar(a), zxIsVector(a), zxIsVector2D(a), zxIsEmpty(a)}),
              (std::vector{c.scalar, c.vector, c.vector2D, c.empty}));
  }
}

// Identifiers 3 to 15 are fixed by the conversion contract; 5 (void) makes no array.
TEST_F(ZxArrayTest, ClassIdsFollowTheConversionContractAndNameTheirClass) {
  const char* const names[] = {"logical", "char",   nullptr, "double", "single", "int8",  "uint8",
                               "int16",   "uint16", "int32", "uint32", "int64",  "uint64"};
  const zxSize dims[] = {2, 2};
  for (int id = 3; id <= 15; ++id) {
    if (names[id - 3] == nullptr) continue;
    zxArray* a =
        id == 4 ? zxCreateCharArray(2, dims) : zxCreateNumericArray(2, dims, static_cast<zxClassID>(id), zxREAL);
    EXPECT_STREQ(zxGetClassName(a), names[id - 3]);
    EXPECT_EQ(zxIsNumeric(a), id >= 6) << names[id - 3];
  }
  EXPECT_THROW(zxCreateNumericMatrix(1, 1, zxCELL_CLASS, zxREAL), zx::HostError);
}

TEST_F(ZxArrayTest, WritesThroughTheApiNeverShowInASharedCopy) {
  zxArray* original = zxCreateDoubleMatrix(1, 3, zxCOMPLEX);
  zxGetWritablePr(original)[0] = 1.0;
  zxArray* copy = zxCreateSharedDataCopy(original);
  EXPECT_EQ(zxGetPr(copy), zxGetPr(original)) << "a shared copy must not copy elements";
  zxGetWritablePr(copy)[0] = 2.0;
  zxGetWritablePi(copy)[1] = 5.0;
  EXPECT_EQ(zxGetPr(original)[0], 1.0);
  EXPECT_EQ(zxGetPi(original)[1], 0.0);
  zxDestroyArray(original);
  EXPECT_EQ(zxGetPr(copy)[0], 2.0) << "the copy outlives the original";
}

TEST_F(ZxArrayTest, CellsAndStructsAreCopiedOnWriteDuplicatedDeeplyAndRangeChecked) {
  zxArray* cell = zxCreateCellMatrix(1, 2);
  zxSetCell(cell, 0, zxCreateString("first"));
  zxArray* cellCopy = zxCreateSharedDataCopy(cell);
  zxSetCell(cellCopy, 0, zxCreateDoubleScalar(7));
  EXPECT_TRUE(zxIsChar(zxGetCell(cell, 0)));
  const zxArray* deep = zxDuplicateArray(cellCopy);
  EXPECT_NE(zxGetPr(zxGetCell(deep, 0)), zxGetPr(zxGetCell(cellCopy, 0)));
  EXPECT_EQ(zxGetScalar(zxGetCell(deep, 0)), 7.0);
  EXPECT_THAT([&] { zxGetCell(cell, 2); }, orbtest::RaisesId("Korvax:arraylib:IndexOutOfRange"));
  EXPECT_THROW(zxGetCell(zxCreateDoubleScalar(1), 0), zx::HostError);

  const char* fields[] = {"a", "b", "a"};  // a name given twice makes one field, where it first came
  zxArray* s = zxCreateStructMatrix(1, 1, 3, fields);
  EXPECT_STREQ(zxGetFieldNameByNumber(s, 1), "b");
  EXPECT_EQ(zxGetFieldNumber(s, "c"), -1);
  zxSetField(s, 0, "a", zxCreateDoubleScalar(1));
  zxArray* sCopy = zxCreateSharedDataCopy(s);
  zxSetField(sCopy, 0, "c", zxCreateDoubleScalar(2));
  EXPECT_EQ(zxGetNumberOfFields(s), 2);
  EXPECT_EQ(zxGetNumberOfFields(sCopy), 3);
  EXPECT_EQ(zxGetScalar(zxGetField(sCopy, 0, "a")), 1.0);
}

TEST_F(ZxArrayTest, SparseBecomesFullWithValuesAtTheirRowsAndColumns) {
  zxArray* sparse = zxCreateSparse(3, 2, 3, zxREAL);  // [0 2; 1 0; 0 3] as compressed columns
  const double values[] = {1, 2, 3};
  const zxSize ir[] = {1, 0, 2}, jc[] = {0, 1, 3};
  std::memcpy(zxGetWritablePr(sparse), values, sizeof values);
  std::memcpy(zxGetWritableIr(sparse), ir, sizeof ir);
  std::memcpy(zxGetWritableJc(sparse), jc, sizeof jc);
  EXPECT_EQ(zxGetScalar(sparse), 0.0) << "element (0,0) is not stored";
  zxArray* full = zxMustBeFull(sparse);
  EXPECT_FALSE(zxIsSparse(full));
  ASSERT_EQ(zxGetNumberOfElements(full), 6u);
  EXPECT_EQ(std::vector<double>(zxGetPr(full), zxGetPr(full) + 6), (std::vector<double>{0, 1, 0, 2, 0, 3}));
}

TEST_F(ZxArrayTest, ScalarIsReadByClass) {
  const struct {
    ZxArrayPtr array;
    double value;
  } cases[] = {{matrixOf<std::int8_t>(1, 1, {-1}), -1},
               {matrixOf<std::uint8_t>(1, 1, {255}), 255},
               {matrixOf<std::int64_t>(1, 1, {-9000000000000000}), -9e15},
               {matrixOf<float>(1, 1, {0.5f}), 0.5},
               {matrixOf<bool>(1, 1, {true}), 1},
               {ZxArrayPtr(zxCreateString("A")), 65},
               {matrixOf<double>(0, 0, {}), 0}};
  for (const auto& c : cases) EXPECT_EQ(zxGetScalar(c.array.get()), c.value) << zxGetClassName(c.array.get());
}

TEST_F(ZxArrayTest, ObjectElementsAreRetainedWhileAnyArrayHoldsThem) {
  static int references = 0;
  static const zxObjectOps ops = {[](void*) { ++references; }, [](void*) { --references; }};
  int object = 0;
  const zxSize dims[] = {1, 1};
  zxArray* objects = zxCreateObjectArray("korvax.graphics.Line", 2, dims, &ops);
  EXPECT_STREQ(zxGetClassName(objects), "korvax.graphics.Line");
  zxSetObjectElement(objects, 0, &object);
  EXPECT_EQ(references, 1);
  zxArray* shared = zxCreateSharedDataCopy(objects);
  EXPECT_EQ(references, 1) << "sharing storage takes no new reference";
  zxSetObjectElement(shared, 0, &object);
  EXPECT_EQ(references, 2) << "the write gave the copy storage of its own, holding its own reference";
  zxArray* deep = zxDuplicateArray(objects);
  EXPECT_EQ(references, 3);
  zxDestroyArray(deep);
  zxDestroyArray(objects);
  EXPECT_EQ(references, 1);
  zxDestroyArray(shared);
  EXPECT_EQ(references, 0);
}

TEST(ZxArrayScope, FramesReclaimTheirTemporariesAndEndOnErrors) {
  zxArray* persistent = nullptr;
  {
    zx::CallFrame frame;
    zxCreateDoubleMatrix(10, 10, zxREAL);
    zxDestroyArray(zxCreateString("x"));
    zxArray* cell = zxCreateCellMatrix(1, 1);
    zxSetCell(cell, 0, zxCreateDoubleScalar(1));
    persistent = zxCreateSharedDataCopy(cell);
    zxSetArrayScope(persistent, zxPERSISTENT);
    EXPECT_EQ(frame.temporaryCount(), 2u) << "the matrix and the cell; the element belongs to the cell";
    zx::CallFrame inner;
    zxCreateDoubleScalar(3);
    EXPECT_EQ(inner.temporaryCount(), 1u);
  }
  EXPECT_EQ(zxGetScalar(zxGetCell(persistent, 0)), 1.0);
  zxDestroyArray(persistent);

  // An error ends its frame; an array made outside frames joins one only when handed over.
  EXPECT_THROW(
      [] {
        zx::CallFrame frame;
        zxCreateDoubleMatrix(1000, 1000, zxREAL);
        zxErrMsgIdAndTxt("Test:failed", "failed");
      }(),
      zx::HostError);
  EXPECT_FALSE(zx::inCallFrame());
  zxArray* owned = zxCreateDoubleScalar(2);
  zx::CallFrame frame;
  EXPECT_EQ(frame.temporaryCount(), 0u);
  zxSetArrayScope(owned, zxTEMPORARY);
  EXPECT_EQ(frame.temporaryCount(), 1u) << "handing an array to a frame makes it a temporary";
}

// Outside a frame the legacy call returns, so the raiser throws its own exception; inside one the
// host raises its own error with the catalog's text and the arguments.
TEST(ErrorPath, TheLegacyCallRaisesAHostErrorOnlyInsideAFrame) {
  const EnumError error("bogus", "'on' | 'off'");
  ASSERT_FALSE(zx::inCallFrame());
  EXPECT_NO_THROW(matrix::detail::do_legacy_zx_error(error));
  zx::CallFrame frame;
  try {
    matrix::detail::do_legacy_zx_error(error);
    FAIL() << "the host did not raise";
  } catch (const zx::HostError& caught) {
    EXPECT_STREQ(caught.get_error_id(), "Korvax:datatypes:InvalidEnumValue");
    EXPECT_EQ(caught.get_message_text(), "'bogus' is not a valid value. Use one of these values: 'on' | 'off'.");
    EXPECT_THAT(caught.get_arguments(), ::testing::ElementsAre("bogus", "'on' | 'off'"));
  }
}

TEST(ErrorPath, RaisingCallsCarryTheirIdentifierAndText) {
  const struct {
    void (*raise)();
    const char* id;
    const char* text;
  } cases[] = {
      {[] { zxErrMsgIdAndTxt("Korvax:orb:set_chck:Expected3ElementVector", "Value must be a %d element vector.", 3); },
       "Korvax:orb:set_chck:Expected3ElementVector", "Value must be a 3 element vector."},
      {[] { zxErrMsg(zxINDEX_OUT_OF_RANGE); }, "Korvax:arraylib:IndexOutOfRange",
       "Index exceeds the number of array elements."},
      {[] { zxErrMsgWrapper(fl::i18n::BaseMsgID("Korvax:orb:shaped_arrays:Complex", {"ColorMap"})); },
       "Korvax:orb:shaped_arrays:Complex", nullptr},
      {[] { zxReThrowException(boost::copy_exception(PackageError())); }, "Korvax:orb:OBJSYSPackageNotFound", nullptr}};
  for (bool framed : {false, true}) {
    for (const auto& c : cases) {
      SCOPED_TRACE(std::string(c.id) + (framed ? " in a frame" : " outside frames"));
      std::optional<zx::CallFrame> frame;
      if (framed) frame.emplace();
      try {
        c.raise();
        FAIL() << "returned";
      } catch (const fl::except::IMsgIDException& caught) {
        EXPECT_STREQ(caught.get_error_id(), c.id);
        if (c.text != nullptr) {
          EXPECT_EQ(caught.get_message_text(), c.text);
        }
        EXPECT_EQ(caught.get_message_text().find('{'), std::string::npos) << caught.get_message_text();
      }
    }
  }
}

TEST(ErrorPath, RethrowKeepsTheTypeOutsideAFrameAndOfForeignExceptions) {
  EXPECT_THROW(zxReThrowException(boost::copy_exception(EnumError("x", "y"))), EnumError);
  zx::CallFrame frame;
  EXPECT_THROW(zxReThrowException(boost::copy_exception(std::out_of_range("x"))), std::out_of_range);
}

TEST(WarningLog, WarningsAreRecordedInOrderAndExecutionGoesOn) {
  zx::clearWarnings();
  zxWarningMsgId(fl::i18n::BaseMsgID("Korvax:orb:shaped_arrays:NaN", {"Tick"}));
  zxWarningMsgId(fl::i18n::BaseMsgID("Test:unknownWarning", {"a"}));
  ASSERT_EQ(zx::warnings().size(), 2u);
  EXPECT_EQ(zx::warnings()[0].id, "Korvax:orb:shaped_arrays:NaN");
  EXPECT_NE(zx::warnings()[0].text.find("Tick"), std::string::npos);
  EXPECT_EQ(zx::warnings()[1].text, "Test:unknownWarning a") << "an identifier the catalog lacks keeps its arguments";
  zx::clearWarnings();
}

TEST(CanonicalTextTest, WritesEachClassInItsForm) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  const zxSize cube[] = {2, 2, 2}, block[] = {2, 2, 3}, row[] = {1, 2};
  const char* const fields[] = {"a"};
  const char* const rows[] = {"ab", "c'd"};
  ZxArrayPtr cubeArray(zxCreateNumericArray(3, cube, zxDOUBLE_CLASS, zxREAL));
  for (int i = 0; i < 8; ++i) zxGetWritablePr(cubeArray.get())[i] = i + 1;
  ZxArrayPtr complexRow(zxCreateDoubleMatrix(1, 2, zxCOMPLEX));
  zxGetWritablePr(complexRow.get())[1] = 2, zxGetWritablePi(complexRow.get())[1] = 6;
  const struct {
    ZxArrayPtr array;
    const char* text;
  } cases[] = {{matrixOf<double>(2, 3, {0, 1, 0, 1, 0, 1}), "[0 0 0;1 1 1]"},
               {matrixOf<double>(1, 1, {5}), "5"},
               {matrixOf<double>(0, 0, {}), "[]"},
               {matrixOf<double>(1, 5, {kInf, -kInf, -0.0, 0.1, std::nan("")}), "[Inf -Inf -0 0.1 NaN]"},
               {matrixOf<float>(1, 2, {0.1f, 3.4028235e38f}), "[0.1 3.4028235e+38]"},
               {matrixOf(1, 1, std::vector{std::numeric_limits<std::uint64_t>::max()}), "18446744073709551615"},
               {matrixOf<bool>(2, 2, {true, false, false, true}), "[1 0;0 1]"},
               {std::move(cubeArray), "[1 3 5 7;2 4 6 8]"},
               {std::move(complexRow), "[0 2]"},
               {ZxArrayPtr(zxCreateSparse(2, 1, 0, zxREAL)), "[0;0]"},
               {ZxArrayPtr(zxCreateString("it's gr\xC3\xBC\xC3\x9F")), "it's gr\xC3\xBC\xC3\x9F"},
               {ZxArrayPtr(zxCreateCharMatrixFromStrings(2, rows)), "['ab ';'c''d']"},
               {ZxArrayPtr(zxCreateStructArray(3, block, 1, fields)), "<2x2x3 struct>"},
               {ZxArrayPtr(zxCreateObjectArray("Widget", 2, row, nullptr)), "<1x2 Widget>"}};
  for (const auto& c : cases) EXPECT_EQ(canonicalText(c.array.get()), c.text);
  EXPECT_EQ(canonicalText(nullptr), "[]");
}

TEST(CanonicalTextTest, MatrixLayoutSetsRowSeparatorBracketsAndOrder) {
  using Order = zx::MatrixLayout::Order;
  constexpr double kSix[] = {1, 2, 3, 4, 5, 6};
  constexpr double kHalf[] = {0.5};
  const struct {
    std::span<const double> values;
    zxSize rows, cols;
    zx::MatrixLayout layout;
    const char* text;
  } cases[] = {{kSix, 2, 3, {}, "[1 3 5;2 4 6]"},
               {kSix, 2, 3, {.order = Order::RowMajor}, "[1 2 3;4 5 6]"},
               {kSix, 3, 2, {.rowSeparator = "; ", .order = Order::RowMajor}, "[1 2; 3 4; 5 6]"},
               {kSix, 1, 3, {.bareScalar = false, .order = Order::RowMajor}, "[1 2 3]"},
               {kHalf, 1, 1, {}, "0.5"},
               {kHalf, 1, 1, {.bareScalar = false}, "[0.5]"},
               {{}, 0, 3, {}, "[]"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    std::string out = "x=";
    zx::appendMatrixText(out, c.values, c.rows, c.cols, c.layout);
    EXPECT_EQ(out, std::string("x=") + c.text);
  }
}

template <class T>
std::vector<T> extremes() {
  using L = std::numeric_limits<T>;
  if constexpr (std::is_floating_point_v<T>) {
    return {L::lowest(), L::max(), L::min(),       L::denorm_min(), -T(0),          T(0.1),
            T(1) / T(3), T(1e22),  L::quiet_NaN(), L::infinity(),   -L::infinity(), T(1) + L::epsilon()};
  } else {
    return {L::min(), L::max(), static_cast<T>(L::max() - 1), T(0), T(1)};
  }
}

template <class T>
void expectRoundTrip(zxSize m, zxSize n, const std::vector<T>& columnMajor) {
  const std::string text = canonicalText(matrixOf<T>(m, n, columnMajor).get());
  SCOPED_TRACE(testing::Message() << m << 'x' << n << ' ' << text.substr(0, 200));
  const ZxArrayPtr reread(gui_objects::convert_from_string_utils::parse_mxn(text.c_str(), m, n, classIDOf<T>));
  ASSERT_NE(reread, nullptr);
  for (zxSize i = 0; i < m * n; ++i) {
    const T a = static_cast<const T*>(zxGetData(reread.get()))[i], b = columnMajor[i];
    if constexpr (std::is_floating_point_v<T>) {
      if (std::isnan(a) && std::isnan(b)) continue;
    }
    EXPECT_EQ(std::memcmp(&a, &b, sizeof(T)), 0) << "element " << i << ": " << +a << " vs " << +b;
  }
}

template <class T>
class CanonicalTextRoundTripTest : public ::testing::Test {};

using ElementTypes = ::testing::Types<double, float, std::int8_t, std::uint8_t, std::int16_t, std::uint16_t,
                                      std::int32_t, std::uint32_t, std::int64_t, std::uint64_t, bool>;
TYPED_TEST_SUITE(CanonicalTextRoundTripTest, ElementTypes);

// The type's extremes alone and in a row, then with a seeded run of random bit patterns in two rows.
TYPED_TEST(CanonicalTextRoundTripTest, ExtremesAndRandomBitPatternsReadBackExactly) {
  std::vector<TypeParam> values = extremes<TypeParam>();
  for (const TypeParam value : values) expectRoundTrip<TypeParam>(1, 1, {value});
  expectRoundTrip<TypeParam>(0, 3, {});
  std::mt19937_64 bits(20240607);
  while (values.size() < 3000) {
    const std::uint64_t pattern = bits();
    TypeParam value{};
    if constexpr (std::is_same_v<TypeParam, bool>) {
      value = (pattern & 1) != 0;
    } else {
      std::memcpy(&value, &pattern, sizeof(TypeParam));
    }
    values.push_back(value);
  }
  expectRoundTrip<TypeParam>(2, values.size() / 2, values);
}

}  // namespace
