// Object arrays of the class system: host arrays whose elements are class-system objects, each
// element holding one reference to its object.
#pragma once

#include <vector>

#include "arraylib/zxarray.h"
#include "foundationlib/visibility.h"
#include "objsys/cos_interface.h"

namespace objsys {

// The class of the empty object array that stands for "no object".
inline constexpr const char* kPlaceholderClassName = "korvax.graphics.GraphicsPlaceholder";

// A new 1-by-1 object array of the object's class holding object; null gives an empty placeholder
// array.
KX_HOST_API zxArray* omCreateOBJSYSScalar(COSInterface* object);
// A new 0-by-0 object array of the class (the placeholder class for null).
KX_HOST_API zxArray* omCreateOBJSYSEmpty(const char* className);
// Whether the array is an object array made by the class system (false for null).
KX_HOST_API bool omIsOBJSYS(const zxArray* array);
// The element at index of a class-system object array; null for an index past the end, an absent
// element or an array that is not one.
KX_HOST_API COSInterfacePtr omGetArrayElement(const zxArray* array, zxSize index);
// A new shared-data copy of the array for someone outside the class system (null for null).
KX_HOST_API zxArray* objsysConvertArrayToExternal(const zxArray* array);
// Every class-system object the array refers to, in storage order, also inside cells and struct
// fields; an object referred to twice is listed twice.
KX_HOST_API std::vector<COSInterfacePtr> interfacesIn(const zxArray* array);

}  // namespace objsys
