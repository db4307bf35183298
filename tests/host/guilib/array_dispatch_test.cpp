// Tests of the class dispatch and of reading elements of every numeric and logical class as doubles.
#include "guilib/array_dispatch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <vector>

#include "guilib/array_exceptions.h"
#include "guilib/auto_ptr.h"

namespace gui_objects {
namespace {

// Each value class is dispatched to its element type; a 1x2x2 array of it holding the type's lowest
// and highest values, 1 and 0 reads back by value in storage order (signed as signed, unsigned as
// unsigned) through both readers.
TEST(ArrayDispatchTest, EachValueClassDispatchesToItsElementTypeAndReadsBackByValue) {
  for (int id = zxUNKNOWN_CLASS; id <= zxOBJECT_CLASS; ++id) {
    const auto classID = static_cast<zxClassID>(id);
    SCOPED_TRACE(testing::Message() << "class " << id);
    const bool holdsValues = zxIsNumericArrayType(classID) || classID == zxLOGICAL_CLASS;
    const bool dispatched = dispatchNumericOrLogical(classID, [&](auto type) {
      using T = typename decltype(type)::type;
      EXPECT_EQ(classIDOf<T>, classID);
      const zxSize dims[] = {1, 2, 2};
      const ZxArrayPtr array(classID == zxLOGICAL_CLASS ? zxCreateLogicalArray(3, dims)
                                                        : zxCreateNumericArray(3, dims, classID, zxREAL));
      ASSERT_EQ(sizeof(T), zxGetElementSize(array.get()));
      const T stored[] = {std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max(), T(1), T(0)};
      std::copy(std::begin(stored), std::end(stored), static_cast<T*>(zxGetWritableData(array.get())));
      const bool whole = classID != zxLOGICAL_CLASS;  // the whole-array reader takes numeric classes only
      double read[4] = {};
      if (whole) readNumericElements(array.get(), read, 4);
      for (zxSize i = 0; i < 4; ++i) {
        const double expected = static_cast<double>(stored[i]);
        EXPECT_EQ(readElementAsDouble(array.get(), i), expected) << "index " << i;
        EXPECT_EQ(whole ? read[i] : expected, expected) << "index " << i;
      }
    });
    EXPECT_EQ(dispatched, holdsValues);
  }
  EXPECT_EQ(TL::detail::ArrayDispatcherBase::getClassID(nullptr), zxUNKNOWN_CLASS);
}

TEST(ReadElementsTest, ReadTheRealPartOfComplexAndTheFullFormOfSparse) {
  const ZxArrayPtr complex(zxCreateNumericMatrix(1, 3, zxINT16_CLASS, zxCOMPLEX));
  static_cast<std::int16_t*>(zxGetWritableData(complex.get()))[2] = -6;
  static_cast<std::int16_t*>(zxGetWritableImagData(complex.get()))[2] = 99;
  double read[6] = {};
  readNumericElements(complex.get(), read, 3);
  EXPECT_EQ(read[2], -6.0);
  EXPECT_EQ(readElementAsDouble(complex.get(), 2), -6.0);

  // 3-by-2 holding 4 at (2, 0), 5 at (0, 1) and 6 at (2, 1).
  const ZxArrayPtr sparse(zxCreateSparse(3, 2, 3, zxREAL));
  for (zxSize k = 0; k < 3; ++k) {
    zxGetWritableIr(sparse.get())[k] = k == 1 ? 0 : 2;
    zxGetWritableJc(sparse.get())[k] = k == 2 ? 3 : k;
    zxGetWritablePr(sparse.get())[k] = 4.0 + k;
  }
  readNumericElements(sparse.get(), read, 6);
  const std::vector<double> full = {0, 0, 4, 5, 0, 6};
  EXPECT_EQ(std::vector<double>(read, read + 6), full);
  for (zxSize i = 0; i < 6; ++i) EXPECT_EQ(readElementAsDouble(sparse.get(), i), full[i]) << i;
  const ZxArrayPtr noneStored(zxCreateSparse(2, 2, 0, zxREAL));
  EXPECT_EQ(readElementAsDouble(noneStored.get(), 3), 0.0);
}

TEST(ReadElementsTest, RefuseNullOtherClassesAndOtherCountsLeavingTheValues) {
  const ZxArrayPtr emptyText(zxCreateString("")), logical(zxCreateLogicalMatrix(1, 2));
  const ZxArrayPtr cell(zxCreateCellMatrix(1, 2)), pair(zxCreateDoubleMatrix(1, 2, zxREAL));
  const ZxArrayPtr empty(zxCreateDoubleMatrix(0, 2, zxREAL));
  EXPECT_THROW(readElementAsDouble(nullptr, 0), NullArrayException);
  EXPECT_THROW(readElementAsDouble(emptyText.get(), 0), InvalidArrayClassException);
  EXPECT_THROW(readElementAsDouble(cell.get(), 0), InvalidArrayClassException);
  EXPECT_THROW(readElementAsDouble(pair.get(), 2), InvalidArrayShapeException);
  EXPECT_THROW(readElementAsDouble(empty.get(), 0), InvalidArrayShapeException);
  double read[2] = {-1, -1};
  EXPECT_THROW(readNumericElements(nullptr, read, 2), NullArrayException);
  EXPECT_THROW(readNumericElements(empty.get(), read, 2), NullArrayException);
  EXPECT_THROW(readNumericElements(emptyText.get(), read, 2), InvalidArrayClassException);
  EXPECT_THROW(readNumericElements(logical.get(), read, 2), InvalidArrayClassException);
  EXPECT_THROW(readNumericElements(pair.get(), read, 3), InvalidArrayShapeException);
  EXPECT_EQ(std::vector<double>(read, read + 2), std::vector<double>(2, -1));
}

}  // namespace
}  // namespace gui_objects
