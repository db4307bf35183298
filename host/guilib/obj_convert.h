// Conversions between host arrays and 4-by-4 transforms and bounding volumes.
#pragma once

#include "arraylib/zxarray.h"
#include "guilib/auto_ptr.h"
#include "guilib/value_types.h"
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace orb::objConvert {

// A 4-by-4 array of any numeric class, read in storage (column-major) order into (row, col); a complex
// array gives its real part. Raises gui_objects::NullArrayException for null,
// InvalidArrayClassException for a non-numeric class (logical and char included) and
// InvalidArrayShapeException for anything but exactly two dimensions of 4.
gui_objects::Matrix4x4d toMatrix4x4d(const zxArray* array);

// A new 4-by-4 double array holding the matrix, owned by the result until released.
gui_objects::AutoPtr<zxArray, gui_objects::ZxArrayDtor> toZxArray(const gui_objects::Matrix4x4d& matrix);

// A 2-by-3 array of any numeric class, minimums in the first row and maximums in the second (storage
// order xmin, xmax, ymin, ymax, zmin, zmax); a complex array gives its real part. Raises
// gui_objects::NullArrayException for null, InvalidArrayClassException for a non-numeric class,
// InvalidArrayShapeException unless the first dimension is 2 and zxGetN is 3, and
// InvalidArrayDataException when a minimum is greater than its maximum. The test is min > max, so a
// NaN bound passes.
gui_objects::BoundingVolume toBoundingVolume(const zxArray* array);

// A new 2-by-3 double array holding the box in the form toBoundingVolume reads.
gui_objects::AutoPtr<zxArray, gui_objects::ZxArrayDtor> toZxArray(const gui_objects::BoundingVolume& box);

}  // namespace orb::objConvert

KX_HOST_API_END
