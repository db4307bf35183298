// Tests of the host array: shapes, shared copies and copy on write, scope, sparse, text, containers.
#include "arraylib/zxarray.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "arraylib/zxerror.h"

namespace {

// Every test runs inside a call frame, so whatever it creates is reclaimed when it ends.
class ZxArrayTest : public ::testing::Test {
 protected:
  zx::CallFrame frame_;
};

std::vector<zxSize> dimsOf(const zxArray* a) {
  return {zxGetDimensions(a), zxGetDimensions(a) + zxGetNumberOfDimensions(a)};
}

TEST_F(ZxArrayTest, DimensionsDropTrailingSingletonsAndNCountsEverythingAfterTheFirst) {
  struct Case {
    std::vector<zxSize> given;
    std::vector<zxSize> kept;
    zxSize n;
    bool scalar, vector, vector2D, empty;
  };
  const Case cases[] = {
      {{3}, {3, 1}, 1, false, true, true, false},
      {{1, 1, 1, 1}, {1, 1}, 1, true, true, true, false},
      {{2, 3, 1, 1}, {2, 3}, 3, false, false, false, false},
      {{2, 3, 4, 1}, {2, 3, 4}, 12, false, false, false, false},
      {{1, 1, 5}, {1, 1, 5}, 5, false, true, false, false},
      {{1, 0}, {1, 0}, 0, false, true, true, true},
      {{0, 3, 2}, {0, 3, 2}, 6, false, false, false, true},
      {{4, 1}, {4, 1}, 1, false, true, true, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.given));
    zxArray* a = zxCreateNumericArray(c.given.size(), c.given.data(), zxINT16_CLASS, zxREAL);
    EXPECT_EQ(dimsOf(a), c.kept);
    EXPECT_EQ(zxGetN(a), c.n);
    EXPECT_EQ(zxIsScalar(a), c.scalar);
    EXPECT_EQ(zxIsVector(a), c.vector);
    EXPECT_EQ(zxIsVector2D(a), c.vector2D);
    EXPECT_EQ(zxIsEmpty(a), c.empty);
  }
}

TEST_F(ZxArrayTest, ClassIdsAndNamesFollowTheConversionContract) {
  struct Case {
    zxClassID id;
    int number;
    const char* name;
    zxSize elementSize;
  };
  const Case cases[] = {
      {zxLOGICAL_CLASS, 3, "logical", 1}, {zxCHAR_CLASS, 4, "char", 2},      {zxDOUBLE_CLASS, 6, "double", 8},
      {zxSINGLE_CLASS, 7, "single", 4},   {zxINT8_CLASS, 8, "int8", 1},      {zxUINT8_CLASS, 9, "uint8", 1},
      {zxINT16_CLASS, 10, "int16", 2},    {zxUINT16_CLASS, 11, "uint16", 2}, {zxINT32_CLASS, 12, "int32", 4},
      {zxUINT32_CLASS, 13, "uint32", 4},  {zxINT64_CLASS, 14, "int64", 8},   {zxUINT64_CLASS, 15, "uint64", 8},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const zxSize dims[] = {2, 2};
    zxArray* a = c.id == zxCHAR_CLASS ? zxCreateCharArray(2, dims) : zxCreateNumericArray(2, dims, c.id, zxREAL);
    EXPECT_EQ(static_cast<int>(zxGetClassID(a)), c.number);
    EXPECT_STREQ(zxGetClassName(a), c.name);
    EXPECT_EQ(zxGetElementSize(a), c.elementSize);
    EXPECT_EQ(zxIsNumeric(a), c.id != zxLOGICAL_CLASS && c.id != zxCHAR_CLASS);
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
  EXPECT_EQ(zxGetPr(copy)[0], 2.0);
  EXPECT_NE(zxGetPr(copy), zxGetPr(original));

  zxDestroyArray(original);
  EXPECT_EQ(zxGetPr(copy)[0], 2.0) << "the copy outlives the original";
}

TEST_F(ZxArrayTest, CellsAndStructsAreCopiedOnWriteToo) {
  zxArray* cell = zxCreateCellMatrix(1, 2);
  zxSetCell(cell, 0, zxCreateString("first"));
  zxArray* cellCopy = zxCreateSharedDataCopy(cell);
  zxSetCell(cellCopy, 0, zxCreateDoubleScalar(7));
  EXPECT_TRUE(zxIsChar(zxGetCell(cell, 0)));
  EXPECT_TRUE(zxIsDouble(zxGetCell(cellCopy, 0)));
  EXPECT_EQ(zxGetCell(cell, 1), nullptr);

  const char* fields[] = {"a"};
  zxArray* s = zxCreateStructMatrix(1, 1, 1, fields);
  zxSetField(s, 0, "a", zxCreateDoubleScalar(1));
  zxArray* sCopy = zxCreateSharedDataCopy(s);
  zxSetField(sCopy, 0, "b", zxCreateDoubleScalar(2));
  EXPECT_EQ(zxGetNumberOfFields(s), 1);
  EXPECT_EQ(zxGetNumberOfFields(sCopy), 2);
  EXPECT_EQ(zxGetScalar(zxGetField(sCopy, 0, "a")), 1.0);
  EXPECT_EQ(zxGetField(s, 0, "b"), nullptr);
  EXPECT_STREQ(zxGetFieldNameByNumber(sCopy, 1), "b");
}

TEST_F(ZxArrayTest, DuplicateIsDeepAndIndependent) {
  zxArray* cell = zxCreateCellMatrix(1, 1);
  zxSetCell(cell, 0, zxCreateDoubleScalar(3));
  zxArray* deep = zxDuplicateArray(cell);
  EXPECT_NE(zxGetPr(zxGetCell(deep, 0)), zxGetPr(zxGetCell(cell, 0)));
  EXPECT_EQ(zxGetScalar(zxGetCell(deep, 0)), 3.0);
}

TEST_F(ZxArrayTest, SparseBecomesFullWithValuesAtTheirRowsAndColumns) {
  // [0 2; 1 0; 0 3] as compressed columns.
  zxArray* sparse = zxCreateSparse(3, 2, 3, zxREAL);
  double* values = zxGetWritablePr(sparse);
  zxSize* ir = zxGetWritableIr(sparse);
  zxSize* jc = zxGetWritableJc(sparse);
  values[0] = 1, ir[0] = 1;
  values[1] = 2, ir[1] = 0;
  values[2] = 3, ir[2] = 2;
  jc[0] = 0, jc[1] = 1, jc[2] = 3;
  EXPECT_TRUE(zxIsSparse(sparse));
  EXPECT_EQ(zxGetScalar(sparse), 0.0) << "element (0,0) is not stored";

  zxArray* full = zxMustBeFull(sparse);
  EXPECT_FALSE(zxIsSparse(full));
  ASSERT_EQ(zxGetNumberOfElements(full), 6u);
  const std::vector<double> expected = {0, 1, 0, 2, 0, 3};
  EXPECT_EQ(std::vector<double>(zxGetPr(full), zxGetPr(full) + 6), expected);

  zxArray* logical = zxCreateSparseLogicalMatrix(2, 2, 1);
  zxGetWritableLogicals(logical)[0] = true;
  zxGetWritableIr(logical)[0] = 1;
  zxSize* ljc = zxGetWritableJc(logical);
  ljc[0] = 0, ljc[1] = 0, ljc[2] = 1;
  zxArray* logicalFull = zxMustBeFull(logical);
  EXPECT_TRUE(zxIsLogical(logicalFull));
  EXPECT_TRUE(zxGetLogicals(logicalFull)[3]);
  EXPECT_FALSE(zxGetLogicals(logicalFull)[1]);
}

TEST_F(ZxArrayTest, TextRoundTripsThroughUtf16) {
  const char* texts[] = {"plain", "caf\xc3\xa9", "\xe2\x82\xac 5", "\xf0\x9f\x98\x80 smile", ""};
  for (const char* text : texts) {
    SCOPED_TRACE(text);
    zxArray* a = zxCreateString(text);
    char* back = zxArrayToString(a);
    EXPECT_STREQ(back, text);
    zxFree(back);
  }
  zxArray* emoji = zxCreateString("\xf0\x9f\x98\x80");
  EXPECT_EQ(zxGetN(emoji), 2u) << "a character outside the basic plane takes two UTF-16 units";
  EXPECT_EQ(zxGetChars(emoji)[0], 0xD83D);
  EXPECT_EQ(zxGetM(zxCreateString("")), 0u);
  EXPECT_EQ(zxArrayToString(zxCreateDoubleScalar(1)), nullptr);
}

TEST_F(ZxArrayTest, CharMatrixRowsArePaddedAndStoredByColumn) {
  const char* rows[] = {"ab", "cde"};
  zxArray* m = zxCreateCharMatrixFromStrings(2, rows);
  EXPECT_EQ(dimsOf(m), (std::vector<zxSize>{2, 3}));
  char* text = zxArrayToString(m);
  EXPECT_STREQ(text, "acbd e");
  zxFree(text);
}

TEST_F(ZxArrayTest, ScalarIsReadByClass) {
  struct Case {
    zxClassID id;
    double stored;
  };
  const Case cases[] = {{zxINT8_CLASS, -1},
                        {zxUINT8_CLASS, 255},
                        {zxINT64_CLASS, -9e15},
                        {zxSINGLE_CLASS, 0.5},
                        {zxUINT32_CLASS, 4294967295.0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.id);
    zxArray* a = zxCreateNumericMatrix(1, 1, c.id, zxREAL);
    void* data = zxGetWritableData(a);
    switch (c.id) {
      case zxINT8_CLASS: *static_cast<std::int8_t*>(data) = static_cast<std::int8_t>(c.stored); break;
      case zxUINT8_CLASS: *static_cast<std::uint8_t*>(data) = static_cast<std::uint8_t>(c.stored); break;
      case zxINT64_CLASS: *static_cast<std::int64_t*>(data) = static_cast<std::int64_t>(c.stored); break;
      case zxSINGLE_CLASS: *static_cast<float*>(data) = static_cast<float>(c.stored); break;
      default: *static_cast<std::uint32_t*>(data) = static_cast<std::uint32_t>(c.stored); break;
    }
    EXPECT_EQ(zxGetScalar(a), c.stored);
  }
  EXPECT_EQ(zxGetScalar(zxCreateLogicalScalar(true)), 1.0);
  EXPECT_EQ(zxGetScalar(zxCreateDoubleMatrix(0, 0, zxREAL)), 0.0);
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
  EXPECT_STREQ(zxGetFunctionName(zxCreateFunctionHandle("plot")), "plot");
}

TEST_F(ZxArrayTest, StructFieldsKeepTheFirstOfRepeatedNamesInOrder) {
  struct Case {
    std::vector<const char*> given;
    std::vector<std::string> kept;
  };
  const Case cases[] = {
      {{}, {}},
      {{"a"}, {"a"}},
      {{"b", "a", "b", "c", "a"}, {"b", "a", "c"}},
      {{"x", "x", "x"}, {"x"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.kept));
    const zxArray* s = zxCreateStructMatrix(1, 2, static_cast<int>(c.given.size()), c.given.data());
    std::vector<std::string> kept;
    for (int f = 0; f < zxGetNumberOfFields(s); ++f) kept.emplace_back(zxGetFieldNameByNumber(s, f));
    EXPECT_EQ(kept, c.kept);
    for (std::size_t f = 0; f < c.kept.size(); ++f) {
      EXPECT_EQ(zxGetFieldNumber(s, c.kept[f].c_str()), static_cast<int>(f));
    }
  }
}

TEST_F(ZxArrayTest, OutOfRangeAccessIsRefusedWithTheArrayLibrarysError) {
  zxArray* cell = zxCreateCellMatrix(1, 1);
  try {
    zxGetCell(cell, 1);
    FAIL() << "no error";
  } catch (const zx::HostError& e) {
    EXPECT_STREQ(e.get_error_id(), "Korvax:arraylib:IndexOutOfRange");
  }
  EXPECT_THROW(zxGetCell(zxCreateDoubleScalar(1), 0), zx::HostError);
}

TEST(ZxArrayScope, FrameReclaimsItsTemporariesButNotPersistentOrContainedArrays) {
  zxArray* persistent = nullptr;
  {
    zx::CallFrame frame;
    zxCreateDoubleMatrix(10, 10, zxREAL);
    zxArray* destroyedEarly = zxCreateString("x");
    zxDestroyArray(destroyedEarly);
    zxArray* cell = zxCreateCellMatrix(1, 1);
    zxSetCell(cell, 0, zxCreateDoubleScalar(1));
    persistent = zxCreateSharedDataCopy(cell);
    zxSetArrayScope(persistent, zxPERSISTENT);
    EXPECT_EQ(frame.temporaryCount(), 2u) << "the matrix and the cell; the element belongs to the cell";
    {
      zx::CallFrame inner;
      zxCreateDoubleScalar(3);
      EXPECT_EQ(inner.temporaryCount(), 1u);
    }
  }
  ASSERT_NE(persistent, nullptr);
  EXPECT_EQ(zxGetScalar(zxGetCell(persistent, 0)), 1.0);
  zxDestroyArray(persistent);
}

TEST(ZxArrayScope, FrameEndedByAnErrorStillReclaims) {
  auto raise = [] {
    zx::CallFrame frame;
    zxCreateDoubleMatrix(1000, 1000, zxREAL);
    zxErrMsgIdAndTxt("Test:failed", "failed");
  };
  EXPECT_THROW(raise(), zx::HostError);
  EXPECT_FALSE(zx::inCallFrame());
}

TEST(ZxArrayScope, OutsideAnyFrameTheCreatorOwnsTheArray) {
  zxArray* owned = zxCreateDoubleScalar(2);
  {
    zx::CallFrame frame;
    EXPECT_EQ(frame.temporaryCount(), 0u);
    zxSetArrayScope(owned, zxTEMPORARY);
    EXPECT_EQ(frame.temporaryCount(), 1u) << "handing an array to a frame makes it a temporary";
  }
}

}  // namespace
