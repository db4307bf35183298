// The comparison walker: one pass that stops at the first difference and names it only when asked.
#include "arraylib/zxcompare.h"

#include <cmath>
#include <cstring>
#include <memory>
#include <type_traits>

#include "arraylib/zxdispatch.h"

namespace zx {
namespace {

// Records why two arrays differ when the caller asked; false either way, for the caller to return.
bool differ(std::string* why, const std::string& reason) {
  if (why != nullptr) *why = reason;
  return false;
}

bool sameShape(const zxArray* a, const zxArray* b, ShapeEquality shape) {
  const zxSize dimensions = zxGetNumberOfDimensions(a);
  if (dimensions != zxGetNumberOfDimensions(b)) return false;
  switch (shape) {
    case ShapeEquality::allDimensions:
      return std::memcmp(zxGetDimensions(a), zxGetDimensions(b), dimensions * sizeof(zxSize)) == 0;
    case ShapeEquality::rowsAndColumns: return zxGetM(a) == zxGetM(b) && zxGetN(a) == zxGetN(b);
  }
  return false;
}

template <class T>
bool sameNumber(T x, T y, NumberEquality numbers) {
  if constexpr (std::is_floating_point_v<T>) {
    switch (numbers) {
      case NumberEquality::ieee: return x == y;
      case NumberEquality::sameBits: return (std::isnan(x) && std::isnan(y)) || std::memcmp(&x, &y, sizeof(T)) == 0;
    }
    return false;
  } else {
    return x == y;
  }
}

// The elements of two numeric or logical arrays of one class, shape and complexity.
bool sameNumbers(const zxArray* a, const zxArray* b, const ComparePolicy& policy, std::string* why) {
  using Full = std::unique_ptr<zxArray, decltype(&zxDestroyArray)>;
  const Full fullA(zxIsSparse(a) ? zxMustBeFull(a) : nullptr, &zxDestroyArray);
  const Full fullB(zxIsSparse(b) ? zxMustBeFull(b) : nullptr, &zxDestroyArray);
  const zxArray* x = fullA ? fullA.get() : a;
  const zxArray* y = fullB ? fullB.get() : b;
  const zxSize count = zxGetNumberOfElements(a);
  zxSize differing = count;
  dispatchNumericOrLogical(zxGetClassID(a), [&](auto type) {
    using T = typename decltype(type)::type;
    const bool withImaginary = !policy.realPartsOnly && zxIsComplex(a);
    for (const bool imaginary : {false, true}) {
      if (imaginary && !withImaginary) break;
      const T* p = static_cast<const T*>(imaginary ? zxGetImagData(x) : zxGetData(x));
      const T* q = static_cast<const T*>(imaginary ? zxGetImagData(y) : zxGetData(y));
      for (zxSize i = 0; i < count && differing == count; ++i) {
        if (!sameNumber(p[i], q[i], policy.numbers)) differing = i;
      }
    }
  });
  return differing == count || differ(why, "element " + std::to_string(differing) + " differs");
}

bool walk(const zxArray* a, const zxArray* b, const ComparePolicy& policy, std::string* why) {
  if (a == nullptr || b == nullptr) return a == b || differ(why, "one array is absent");
  const zxClassID classID = zxGetClassID(a);
  const bool numeric = zxIsNumericArrayType(classID) || classID == zxLOGICAL_CLASS;
  if (policy.numbersOnly && !numeric) return true;
  if (classID != zxGetClassID(b) || std::strcmp(zxGetClassName(a), zxGetClassName(b)) != 0) {
    return differ(why, std::string("class ") + zxGetClassName(a) + " vs " + zxGetClassName(b));
  }
  if (!sameShape(a, b, policy.shape)) return differ(why, "dimensions differ");
  const zxSize count = zxGetNumberOfElements(a);
  if (count > policy.maxElements) return differ(why, "too many elements to compare");
  if (!policy.realPartsOnly && zxIsComplex(a) != zxIsComplex(b)) return differ(why, "complexity differs");
  if (zxIsSparse(a) != zxIsSparse(b)) return differ(why, "sparsity differs");
  if (numeric) return sameNumbers(a, b, policy, why);
  switch (classID) {
    case zxCHAR_CLASS:
      return count == 0 || std::memcmp(zxGetChars(a), zxGetChars(b), count * sizeof(zxChar)) == 0 ||
             differ(why, "characters differ");
    case zxFUNCTION_CLASS:
      return std::strcmp(zxGetFunctionName(a), zxGetFunctionName(b)) == 0 || differ(why, "function names differ");
    case zxOBJECT_CLASS:
      for (zxSize i = 0; i < count; ++i) {
        if (zxGetObjectElement(a, i) != zxGetObjectElement(b, i)) {
          return differ(why, "object " + std::to_string(i) + " differs");
        }
      }
      return true;
    case zxCELL_CLASS:
      for (zxSize i = 0; i < count; ++i) {
        if (!walk(zxGetCell(a, i), zxGetCell(b, i), policy, why)) {
          return differ(why, (why != nullptr ? *why : "") + " in cell " + std::to_string(i));
        }
      }
      return true;
    case zxSTRUCT_CLASS: {
      const int fields = zxGetNumberOfFields(a);
      if (fields != zxGetNumberOfFields(b)) return differ(why, "numbers of fields differ");
      for (int f = 0; f < fields; ++f) {
        const char* name = zxGetFieldNameByNumber(a, f);
        if (std::strcmp(name, zxGetFieldNameByNumber(b, f)) != 0) return differ(why, "field names differ");
        for (zxSize i = 0; i < count; ++i) {
          if (!walk(zxGetFieldByNumber(a, i, f), zxGetFieldByNumber(b, i, f), policy, why)) {
            return differ(why, (why != nullptr ? *why : "") + " in field " + name);
          }
        }
      }
      return true;
    }
    case zxUNKNOWN_CLASS:
    case zxVOID_CLASS:
    case zxLOGICAL_CLASS:
    case zxDOUBLE_CLASS:
    case zxSINGLE_CLASS:
    case zxINT8_CLASS:
    case zxUINT8_CLASS:
    case zxINT16_CLASS:
    case zxUINT16_CLASS:
    case zxINT32_CLASS:
    case zxUINT32_CLASS:
    case zxINT64_CLASS:
    case zxUINT64_CLASS: return true;
  }
  return true;
}

}  // namespace

bool arraysEqual(const zxArray* a, const zxArray* b, const ComparePolicy& policy) {
  return walk(a, b, policy, nullptr);
}

std::string arrayDifference(const zxArray* a, const zxArray* b, const ComparePolicy& policy) {
  std::string why;
  walk(a, b, policy, &why);
  return why;
}

}  // namespace zx
