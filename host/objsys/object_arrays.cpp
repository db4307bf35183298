// Object arrays of the class system.
#include "objsys/object_arrays.h"

namespace objsys {
namespace {

void retain(void* object) { static_cast<COSInterface*>(object)->addReference(); }
void release(void* object) { static_cast<COSInterface*>(object)->releaseReference(); }

// Arrays are recognised as the class system's by these operations.
constexpr zxObjectOps kObjectOps{&retain, &release};

zxArray* newObjectArray(const char* className, zxSize count) {
  const zxSize dims[2] = {count, count};
  return zxCreateObjectArray(className, 2, dims, &kObjectOps);
}

void collect(const zxArray* array, std::vector<COSInterfacePtr>& found) {
  if (array == nullptr) return;
  if (omIsOBJSYS(array)) {
    for (zxSize i = 0; i < zxGetNumberOfElements(array); ++i) {
      if (COSInterfacePtr object = omGetArrayElement(array, i)) found.push_back(std::move(object));
    }
  } else if (zxIsCell(array)) {
    for (zxSize i = 0; i < zxGetNumberOfElements(array); ++i) collect(zxGetCell(array, i), found);
  } else if (zxIsStruct(array)) {
    for (zxSize i = 0; i < zxGetNumberOfElements(array); ++i) {
      for (int field = 0; field < zxGetNumberOfFields(array); ++field) {
        collect(zxGetFieldByNumber(array, i, field), found);
      }
    }
  }
}

}  // namespace

zxArray* omCreateOBJSYSScalar(COSInterface* object) {
  if (object == nullptr) return omCreateOBJSYSEmpty(nullptr);
  zxArray* array = newObjectArray(object->getClassName(), 1);
  zxSetObjectElement(array, 0, object);
  return array;
}

zxArray* omCreateOBJSYSEmpty(const char* className) {
  return newObjectArray(className != nullptr ? className : kPlaceholderClassName, 0);
}

bool omIsOBJSYS(const zxArray* array) {
  // An object array made elsewhere has other operations (or none) and is not the class system's.
  return array != nullptr && zxIsObject(array) && zxGetObjectOps(array) == &kObjectOps;
}

COSInterfacePtr omGetArrayElement(const zxArray* array, zxSize index) {
  if (!omIsOBJSYS(array) || index >= zxGetNumberOfElements(array)) return COSInterfacePtr();
  return COSInterfacePtr(static_cast<COSInterface*>(zxGetObjectElement(array, index)));
}

zxArray* objsysConvertArrayToExternal(const zxArray* array) { return zxCreateSharedDataCopy(array); }

std::vector<COSInterfacePtr> interfacesIn(const zxArray* array) {
  std::vector<COSInterfacePtr> found;
  collect(array, found);
  return found;
}

}  // namespace objsys
