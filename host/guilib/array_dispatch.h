// The class of a host array for the graphics objects, the dispatch by class (shared with the array
// library), and reading one element of any numeric or logical array as a double.
#pragma once

#include "arraylib/zxarray.h"
#include "arraylib/zxdispatch.h"
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace TL::detail {

struct ArrayDispatcherBase {
  // The array's class; zxUNKNOWN_CLASS for a null array.
  static zxClassID getClassID(const zxArray* array);
};

}  // namespace TL::detail

namespace gui_objects {

using zx::classIDOf;
using zx::dispatchNumericOrLogical;

// Element index (storage order) of a numeric or logical array read as a double: signed integers as
// signed, unsigned as unsigned, single widened, logical as 0 or 1, complex arrays by their real part,
// sparse arrays as their full form. Raises NullArrayException for a null array or one without data,
// InvalidArrayClassException for other classes and InvalidArrayShapeException for an index past the
// last element.
double readElementAsDouble(const zxArray* array, zxSize index);

// Every element of a numeric array (double, single or an integer class; not logical or char), in
// storage order, into values[0] to values[count - 1] as readElementAsDouble reads each; the array's
// shape is not looked at, only its element count. Raises NullArrayException for a null array or an
// empty one (it holds no data), InvalidArrayClassException for other classes and
// InvalidArrayShapeException for an element count other than count. values is untouched on failure.
void readNumericElements(const zxArray* array, double* values, zxSize count);

}  // namespace gui_objects

KX_HOST_API_END
