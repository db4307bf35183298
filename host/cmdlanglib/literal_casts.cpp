// The value classes by name, and the casts such as uint8(X) that convert arrays between them.
#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>
#include <type_traits>
#include <vector>

#include "cmdlanglib/literal.h"
#include "cmdlanglib/literal_internal.h"

namespace cmdlang {
namespace {

struct NamedClass {
  std::string_view name;
  zxClassID classID;
};

constexpr NamedClass kValueClasses[] = {
    {"double", zxDOUBLE_CLASS}, {"single", zxSINGLE_CLASS}, {"int8", zxINT8_CLASS},       {"uint8", zxUINT8_CLASS},
    {"int16", zxINT16_CLASS},   {"uint16", zxUINT16_CLASS}, {"int32", zxINT32_CLASS},     {"uint32", zxUINT32_CLASS},
    {"int64", zxINT64_CLASS},   {"uint64", zxUINT64_CLASS}, {"logical", zxLOGICAL_CLASS},
};

}  // namespace

namespace literal_detail {
namespace {

// Copies every element of source into target, converting its class; the imaginary part goes along
// when both are complex.
template <class Where>
void convertInto(const zxArray* source, zxArray* target, Where where) {
  const zxSize count = zxGetNumberOfElements(source);
  const zxClassID fromClass = zxGetClassID(source);
  const zxClassID toClass = zxGetClassID(target);
  convertValues(fromClass, zxGetData(source), toClass, zxGetWritableData(target), count, where);
  if (zxIsComplex(source) && zxIsComplex(target)) {
    convertValues(fromClass, zxGetImagData(source), toClass, zxGetWritableImagData(target), count, where);
  }
}

// A full numeric or logical array converted to another class, dimensions and complexity kept.
ZxArrayPtr castArray(const zxArray* source, zxClassID classID) {
  const std::vector<zxSize> dims = dimsOf(source);
  ZxArrayPtr result(zxCreateNumericArray(dims.size(), dims.data(), classID, zxIsComplex(source) ? zxCOMPLEX : zxREAL));
  convertInto(source, result.get(), kSamePlace);
  return result;
}

bool hasNaN(const zxArray* array) {
  bool found = false;
  zx::dispatchNumericOrLogical(zxGetClassID(array), [&](auto type) {
    using T = typename decltype(type)::type;
    if constexpr (std::is_floating_point_v<T>) {
      const T* values = static_cast<const T*>(zxGetData(array));
      found = std::any_of(values, values + zxGetNumberOfElements(array), [](T v) { return std::isnan(v); });
    }
  });
  return found;
}

}  // namespace

std::string_view valueClassName(zxClassID classID) {
  for (const NamedClass& entry : kValueClasses) {
    if (entry.classID == classID) return entry.name;
  }
  return classID == zxCHAR_CLASS ? "char" : "unknown";
}

bool isIntegerClass(zxClassID classID) {
  return zxIsNumericArrayType(classID) && classID != zxDOUBLE_CLASS && classID != zxSINGLE_CLASS;
}

std::size_t classBytes(zxClassID classID) {
  std::size_t bytes = 0;
  zx::dispatchNumericOrLogical(classID, [&](auto type) { bytes = sizeof(typename decltype(type)::type); });
  return bytes;
}

ZxArrayPtr buildCast(const Call& call, zxClassID classID) {
  call.requireCount(1, 1);
  const zxArray* x = call.arg(0);
  if (!isValueArray(x) || zxIsSparse(x)) call.fail("needs a full numeric or logical argument", call.args[0].column);
  if (classID == zxLOGICAL_CLASS) {
    if (zxIsComplex(x)) call.fail("complex values cannot become logical", call.args[0].column);
    if (hasNaN(x)) call.fail("NaN cannot become logical", call.args[0].column);
  }
  const std::size_t parts = zxIsComplex(x) && classID != zxLOGICAL_CLASS ? 2 : 1;
  call.chargeArray(dimsOf(x), classBytes(classID) * parts, valueClassName(classID));
  return castArray(x, classID);
}

}  // namespace literal_detail

std::optional<zxClassID> valueClassNamed(std::string_view name) {
  for (const NamedClass& entry : kValueClasses) {
    if (entry.name == name) return entry.classID;
  }
  return std::nullopt;
}

}  // namespace cmdlang
