// 4-by-4 transforms and bounding volumes to and from host arrays.
#include "guilib/obj_convert.h"

#include <algorithm>
#include <iterator>

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

gui_objects::BoundingVolume toBoundingVolume(const zxArray* array) {
  if (array == nullptr) throw gui_objects::NullArrayException();
  if (!zxIsNumericArrayType(TL::detail::ArrayDispatcherBase::getClassID(array))) {
    throw gui_objects::InvalidArrayClassException();
  }
  if (zxGetM(array) != 2 || zxGetN(array) != 3) throw gui_objects::InvalidArrayShapeException();
  double bounds[6];
  gui_objects::readNumericElements(array, bounds, 6);
  const gui_objects::Point3d minCorner{bounds[0], bounds[2], bounds[4]};
  const gui_objects::Point3d maxCorner{bounds[1], bounds[3], bounds[5]};
  if (minCorner.x > maxCorner.x || minCorner.y > maxCorner.y || minCorner.z > maxCorner.z) {
    throw gui_objects::InvalidArrayDataException();
  }
  return {minCorner, maxCorner};
}

gui_objects::AutoPtr<zxArray, gui_objects::ZxArrayDtor> toZxArray(const gui_objects::BoundingVolume& box) {
  gui_objects::AutoPtr<zxArray, gui_objects::ZxArrayDtor> array(zxCreateDoubleMatrix(2, 3, zxREAL));
  if (!array) throw fl::except::bad_alloc();
  double* values = zxGetWritablePr(array.get());
  const double bounds[] = {box.getXMin(), box.getXMax(), box.getYMin(), box.getYMax(), box.getZMin(), box.getZMax()};
  std::copy(std::begin(bounds), std::end(bounds), values);
  return array;
}

}  // namespace orb::objConvert
