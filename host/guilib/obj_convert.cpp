// 4-by-4 transforms to and from host arrays.
#include "guilib/obj_convert.h"

#include "foundationlib/except.h"
#include "guilib/array_dispatch.h"
#include "guilib/array_exceptions.h"

namespace orb::objConvert {

namespace {
constexpr zxSize kOrder = 4;
}  // namespace

gui_objects::Matrix4x4d toMatrix4x4d(const zxArray* array) {
  if (array == nullptr) throw gui_objects::NullArrayException();
  if (!zxIsNumericArrayType(TL::detail::ArrayDispatcherBase::getClassID(array))) {
    throw gui_objects::InvalidArrayClassException();
  }
  if (zxGetNumberOfDimensions(array) != 2 || zxGetM(array) != kOrder || zxGetN(array) != kOrder) {
    throw gui_objects::InvalidArrayShapeException();
  }
  gui_objects::Matrix4x4d matrix;
  for (zxSize index = 0; index < kOrder * kOrder; ++index) {
    matrix(static_cast<int>(index % kOrder), static_cast<int>(index / kOrder)) =
        gui_objects::readElementAsDouble(array, index);
  }
  return matrix;
}

gui_objects::AutoPtr<zxArray, gui_objects::ZxArrayDtor> toZxArray(const gui_objects::Matrix4x4d& matrix) {
  gui_objects::AutoPtr<zxArray, gui_objects::ZxArrayDtor> array(zxCreateDoubleMatrix(kOrder, kOrder, zxREAL));
  if (!array) throw fl::except::bad_alloc();
  double* values = zxGetWritablePr(array.get());
  for (int col = 0; col < 4; ++col) {
    for (int row = 0; row < 4; ++row) *values++ = matrix(row, col);
  }
  return array;
}

}  // namespace orb::objConvert
