// Running code templated on the element type of a host array's class: the one dispatch by class
// that the host and the data types share.
//
//   zx::dispatchNumericOrLogical(zxGetClassID(array), [&](auto type) {
//     using T = typename decltype(type)::type;
//     const T* values = static_cast<const T*>(zxGetData(array));
//     ...
//   });
#pragma once

#include <cstdint>
#include <type_traits>

#include "arraylib/zxarray.h"
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace zx {

// Calls fn(std::type_identity<T>{}) with the element type T of a numeric class (double, float and
// the eight fixed-width integers) or of logical (bool) and returns true; returns false without
// calling fn for any other class.
template <class Fn>
bool dispatchNumericOrLogical(zxClassID classID, Fn&& fn) {
  switch (classID) {
    case zxDOUBLE_CLASS: fn(std::type_identity<double>{}); return true;
    case zxSINGLE_CLASS: fn(std::type_identity<float>{}); return true;
    case zxINT8_CLASS: fn(std::type_identity<std::int8_t>{}); return true;
    case zxUINT8_CLASS: fn(std::type_identity<std::uint8_t>{}); return true;
    case zxINT16_CLASS: fn(std::type_identity<std::int16_t>{}); return true;
    case zxUINT16_CLASS: fn(std::type_identity<std::uint16_t>{}); return true;
    case zxINT32_CLASS: fn(std::type_identity<std::int32_t>{}); return true;
    case zxUINT32_CLASS: fn(std::type_identity<std::uint32_t>{}); return true;
    case zxINT64_CLASS: fn(std::type_identity<std::int64_t>{}); return true;
    case zxUINT64_CLASS: fn(std::type_identity<std::uint64_t>{}); return true;
    case zxLOGICAL_CLASS: fn(std::type_identity<zxLogical>{}); return true;
    case zxUNKNOWN_CLASS:
    case zxCELL_CLASS:
    case zxSTRUCT_CLASS:
    case zxCHAR_CLASS:
    case zxVOID_CLASS:
    case zxFUNCTION_CLASS:
    case zxOBJECT_CLASS: return false;
  }
  return false;
}

namespace detail {
template <class>
inline constexpr bool kNoHostClass = false;

template <class T>
constexpr zxClassID classIDFor() {
  if constexpr (std::is_same_v<T, double>)
    return zxDOUBLE_CLASS;
  else if constexpr (std::is_same_v<T, float>)
    return zxSINGLE_CLASS;
  else if constexpr (std::is_same_v<T, std::int8_t>)
    return zxINT8_CLASS;
  else if constexpr (std::is_same_v<T, std::uint8_t>)
    return zxUINT8_CLASS;
  else if constexpr (std::is_same_v<T, std::int16_t>)
    return zxINT16_CLASS;
  else if constexpr (std::is_same_v<T, std::uint16_t>)
    return zxUINT16_CLASS;
  else if constexpr (std::is_same_v<T, std::int32_t>)
    return zxINT32_CLASS;
  else if constexpr (std::is_same_v<T, std::uint32_t>)
    return zxUINT32_CLASS;
  else if constexpr (std::is_same_v<T, std::int64_t>)
    return zxINT64_CLASS;
  else if constexpr (std::is_same_v<T, std::uint64_t>)
    return zxUINT64_CLASS;
  else if constexpr (std::is_same_v<T, zxLogical>)
    return zxLOGICAL_CLASS;
  else if constexpr (std::is_same_v<T, zxChar>)
    return zxCHAR_CLASS;
  else
    static_assert(kNoHostClass<T>, "no host array class stores this element type");
}
}  // namespace detail

// The class whose arrays store elements of type T; a compile error for any other type.
template <class T>
inline constexpr zxClassID classIDOf = detail::classIDFor<T>();

}  // namespace zx

KX_HOST_API_END
