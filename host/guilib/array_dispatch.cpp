// Class lookup and the element reader built on the class dispatch.
#include "guilib/array_dispatch.h"

#include <algorithm>
#include <optional>

#include "guilib/array_exceptions.h"

namespace TL::detail {

zxClassID ArrayDispatcherBase::getClassID(const zxArray* array) {
  return array != nullptr ? zxGetClassID(array) : zxUNKNOWN_CLASS;
}

}  // namespace TL::detail

namespace gui_objects {

namespace {

using Reader = double (*)(const void* data, zxSize position);

template <class T>
double readAs(const void* data, zxSize position) {
  return static_cast<double>(static_cast<const T*>(data)[position]);
}

// Where a sparse array stores element index, or nothing when the element is an implicit zero.
std::optional<zxSize> sparsePosition(const zxArray* array, zxSize index) {
  const zxSize rows = zxGetM(array);
  const zxSize row = index % rows;
  const zxSize col = index / rows;
  const zxSize* rowIndices = zxGetIr(array);
  const zxSize* columnStarts = zxGetJc(array);
  const zxSize* first = rowIndices + columnStarts[col];
  const zxSize* last = rowIndices + columnStarts[col + 1];
  const zxSize* found = std::lower_bound(first, last, row);
  if (found == last || *found != row) return std::nullopt;
  return static_cast<zxSize>(found - rowIndices);
}

}  // namespace

double readElementAsDouble(const zxArray* array, zxSize index) {
  if (array == nullptr) throw NullArrayException();
  Reader reader = nullptr;
  const bool readable = dispatchNumericOrLogical(TL::detail::ArrayDispatcherBase::getClassID(array),
                                                 [&](auto type) { reader = &readAs<typename decltype(type)::type>; });
  if (!readable) throw InvalidArrayClassException();
  if (index >= zxGetNumberOfElements(array)) throw InvalidArrayShapeException();
  zxSize position = index;
  if (zxIsSparse(array)) {
    // Checked before the data: a sparse array with no stored values may have no data block at all.
    const std::optional<zxSize> stored = sparsePosition(array, index);
    if (!stored) return 0.0;
    position = *stored;
  }
  const void* data = zxGetData(array);
  if (data == nullptr) throw NullArrayException();
  return reader(data, position);
}

void readNumericElements(const zxArray* array, double* values, zxSize count) {
  if (array == nullptr) throw NullArrayException();
  const zxClassID classID = TL::detail::ArrayDispatcherBase::getClassID(array);
  if (!zxIsNumericArrayType(classID)) throw InvalidArrayClassException();
  const zxSize elements = zxGetNumberOfElements(array);
  if (elements == 0) throw NullArrayException();
  if (elements != count) throw InvalidArrayShapeException();
  if (zxIsSparse(array)) {
    for (zxSize index = 0; index < count; ++index) values[index] = readElementAsDouble(array, index);
    return;
  }
  // Dense data is read in one pass per class; a complex array's data is its real part.
  const void* data = zxGetData(array);
  if (data == nullptr) throw NullArrayException();
  dispatchNumericOrLogical(classID, [&](auto type) {
    const auto* typed = static_cast<const typename decltype(type)::type*>(data);
    for (zxSize index = 0; index < count; ++index) values[index] = static_cast<double>(typed[index]);
  });
}

}  // namespace gui_objects
