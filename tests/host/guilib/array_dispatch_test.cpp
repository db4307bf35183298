// Tests of the class dispatch and of reading elements of every numeric and logical class as doubles.
#include "guilib/array_dispatch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <type_traits>

#include "guilib/array_exceptions.h"
#include "guilib/auto_ptr.h"

namespace gui_objects {
namespace {

template <class T>
ZxArrayPtr scalarOf(T value) {
  ZxArrayPtr array(classIDOf<T> == zxLOGICAL_CLASS ? zxCreateLogicalMatrix(1, 1)
                                                   : zxCreateNumericMatrix(1, 1, classIDOf<T>, zxREAL));
  *static_cast<T*>(zxGetWritableData(array.get())) = value;
  return array;
}

TEST(ArrayDispatchTest, DispatchesEachValueClassToTheElementTypeTheHostStoresAndRefusesTheRest) {
  for (int id = zxUNKNOWN_CLASS; id <= zxOBJECT_CLASS; ++id) {
    const auto classID = static_cast<zxClassID>(id);
    SCOPED_TRACE(testing::Message() << "class " << id);
    const bool holdsValues = zxIsNumericArrayType(classID) || classID == zxLOGICAL_CLASS;
    int calls = 0;
    EXPECT_EQ(dispatchNumericOrLogical(classID,
                                       [&](auto type) {
                                         using T = typename decltype(type)::type;
                                         ++calls;
                                         EXPECT_EQ(classIDOf<T>, classID);
                                         const ZxArrayPtr array = scalarOf(T{});
                                         EXPECT_EQ(sizeof(T), zxGetElementSize(array.get()));
                                       }),
              holdsValues);
    EXPECT_EQ(calls, holdsValues ? 1 : 0);
  }
  EXPECT_EQ(TL::detail::ArrayDispatcherBase::getClassID(nullptr), zxUNKNOWN_CLASS);
}

TEST(ReadElementAsDoubleTest, ReadsEveryClassByValue) {
  struct Case {
    const char* name;
    ZxArrayPtr (*make)();
    double expected;
  };
  static const Case kCases[] = {
      {"double", [] { return scalarOf(-2.5); }, -2.5},
      {"single widened", [] { return scalarOf(0.1f); }, static_cast<double>(0.1f)},
      {"int8 -1", [] { return scalarOf<std::int8_t>(-1); }, -1.0},
      {"uint8 max", [] { return scalarOf<std::uint8_t>(255); }, 255.0},
      {"int16 min", [] { return scalarOf<std::int16_t>(-32768); }, -32768.0},
      {"uint16 max", [] { return scalarOf<std::uint16_t>(65535); }, 65535.0},
      {"int32 min", [] { return scalarOf(std::numeric_limits<std::int32_t>::min()); }, -2147483648.0},
      {"uint32 max", [] { return scalarOf(std::numeric_limits<std::uint32_t>::max()); }, 4294967295.0},
      {"int64 min", [] { return scalarOf(std::numeric_limits<std::int64_t>::min()); }, -9223372036854775808.0},
      {"uint64 max", [] { return scalarOf(std::numeric_limits<std::uint64_t>::max()); }, 18446744073709551616.0},
      {"logical", [] { return scalarOf(true); }, 1.0},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(readElementAsDouble(c.make().get(), 0), c.expected);
  }
}

TEST(ReadElementAsDoubleTest, ReadsByStorageIndexTheRealPartOfComplexAndTheFullFormOfSparse) {
  const ZxArrayPtr complex(zxCreateNumericMatrix(1, 3, zxINT16_CLASS, zxCOMPLEX));
  auto* real = static_cast<std::int16_t*>(zxGetWritableData(complex.get()));
  real[0] = 4;
  real[2] = -6;
  static_cast<std::int16_t*>(zxGetWritableImagData(complex.get()))[2] = 99;
  EXPECT_EQ(readElementAsDouble(complex.get(), 2), -6.0);

  // 3-by-2 holding 4 at (2, 0), 5 at (0, 1) and 6 at (2, 1).
  const ZxArrayPtr sparse(zxCreateSparse(3, 2, 3, zxREAL));
  const zxSize rows[] = {2, 0, 2};
  const zxSize starts[] = {0, 1, 3};
  const double stored[] = {4, 5, 6};
  std::copy(std::begin(rows), std::end(rows), zxGetWritableIr(sparse.get()));
  std::copy(std::begin(starts), std::end(starts), zxGetWritableJc(sparse.get()));
  std::copy(std::begin(stored), std::end(stored), zxGetWritablePr(sparse.get()));
  const double full[] = {0, 0, 4, 5, 0, 6};
  for (zxSize i = 0; i < 6; ++i) EXPECT_EQ(readElementAsDouble(sparse.get(), i), full[i]) << i;
  const ZxArrayPtr noneStored(zxCreateSparse(2, 2, 0, zxREAL));
  EXPECT_EQ(readElementAsDouble(noneStored.get(), 3), 0.0);
}

TEST(ReadElementAsDoubleTest, RefusesNullOtherClassesAndIndicesPastTheEnd) {
  EXPECT_THROW(readElementAsDouble(nullptr, 0), NullArrayException);
  const ZxArrayPtr text(zxCreateString("ab"));
  EXPECT_THROW(readElementAsDouble(text.get(), 0), InvalidArrayClassException);
  const ZxArrayPtr cell(zxCreateCellMatrix(1, 1));
  EXPECT_THROW(readElementAsDouble(cell.get(), 0), InvalidArrayClassException);
  const ZxArrayPtr pair(zxCreateDoubleMatrix(1, 2, zxREAL));
  EXPECT_NO_THROW(readElementAsDouble(pair.get(), 1));
  EXPECT_THROW(readElementAsDouble(pair.get(), 2), InvalidArrayShapeException);
  const ZxArrayPtr empty(zxCreateNumericMatrix(0, 0, zxUINT8_CLASS, zxREAL));
  EXPECT_THROW(readElementAsDouble(empty.get(), 0), InvalidArrayShapeException);
}

TEST(ReadNumericElementsTest, ReadsEveryNumericClassWhateverTheShapeInStorageOrder) {
  for (int id = zxDOUBLE_CLASS; id <= zxUINT64_CLASS; ++id) {
    const auto classID = static_cast<zxClassID>(id);
    SCOPED_TRACE(testing::Message() << "class " << id);
    const zxSize dims[] = {1, 2, 2};
    const ZxArrayPtr array(zxCreateNumericArray(3, dims, classID, zxREAL));
    dispatchNumericOrLogical(classID, [&](auto type) {
      using T = typename decltype(type)::type;
      T* values = static_cast<T*>(zxGetWritableData(array.get()));
      for (int i = 0; i < 4; ++i) values[i] = static_cast<T>(std::numeric_limits<T>::max() - i);
      double read[4];
      readNumericElements(array.get(), read, 4);
      for (int i = 0; i < 4; ++i) EXPECT_EQ(read[i], static_cast<double>(values[i])) << "index " << i;
    });
  }
}

TEST(ReadNumericElementsTest, ReadsTheRealPartOfComplexAndTheFullFormOfSparse) {
  const ZxArrayPtr complex(zxCreateDoubleMatrix(3, 1, zxCOMPLEX));
  zxGetWritablePr(complex.get())[2] = 5;
  zxGetWritablePi(complex.get())[2] = 7;
  double read[3] = {};
  readNumericElements(complex.get(), read, 3);
  EXPECT_EQ(read[2], 5);

  const ZxArrayPtr sparse(zxCreateSparse(1, 3, 1, zxREAL));
  zxGetWritablePr(sparse.get())[0] = 4;
  zxGetWritableIr(sparse.get())[0] = 0;
  zxSize* columnStarts = zxGetWritableJc(sparse.get());
  columnStarts[0] = 0;
  columnStarts[1] = 0;
  columnStarts[2] = 1;
  columnStarts[3] = 1;
  readNumericElements(sparse.get(), read, 3);
  EXPECT_EQ(read[0], 0);
  EXPECT_EQ(read[1], 4);
  EXPECT_EQ(read[2], 0);
}

TEST(ReadNumericElementsTest, RefusesNullEmptyOtherClassesAndOtherCountsLeavingTheValues) {
  const ZxArrayPtr logical(zxCreateLogicalMatrix(1, 2));
  const ZxArrayPtr text(zxCreateString("ab"));
  const ZxArrayPtr cell(zxCreateCellMatrix(1, 2));
  const ZxArrayPtr empty(zxCreateDoubleMatrix(0, 2, zxREAL));
  const ZxArrayPtr emptyText(zxCreateString(""));
  const ZxArrayPtr three(zxCreateDoubleMatrix(1, 3, zxREAL));
  const ZxArrayPtr one(zxCreateNumericMatrix(1, 1, zxINT8_CLASS, zxREAL));
  double read[2] = {-1, -1};
  EXPECT_THROW(readNumericElements(nullptr, read, 2), NullArrayException);
  EXPECT_THROW(readNumericElements(empty.get(), read, 2), NullArrayException);
  for (const zxArray* array : {logical.get(), text.get(), cell.get(), emptyText.get()}) {
    EXPECT_THROW(readNumericElements(array, read, 2), InvalidArrayClassException) << zxGetClassName(array);
  }
  EXPECT_THROW(readNumericElements(three.get(), read, 2), InvalidArrayShapeException);
  EXPECT_THROW(readNumericElements(one.get(), read, 2), InvalidArrayShapeException);
  EXPECT_EQ(read[0], -1);
  EXPECT_EQ(read[1], -1);
}

}  // namespace
}  // namespace gui_objects
