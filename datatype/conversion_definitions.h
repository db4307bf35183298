// The members of the conversion adaptors. Only the library's own sources include this file; each
// type's rules are instantiated in one of them (ORB_DEFINE_CONVERSIONS).
#pragma once

#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "arraylib/zxarray.h"
#include "datatype/conversion_support.h"
#include "datatype/conversions.h"
#include "datatype/value_block.h"

namespace graphics::datatype {
namespace detail {

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<std::optional<T>> = true;

// A block holding what the rules made: a value, or for an optional one, nothing at all.
template <class Value, class Made>
objsys::COSValue blockOf(Made&& made) {
  if constexpr (isOptional<std::remove_cvref_t<Made>>) {
    if (!made) return objsys::COSValue();
    return newValueBlock<Value>(std::move(*made));
  } else {
    return newValueBlock<Value>(std::forward<Made>(made));
  }
}

}  // namespace detail

template <class Rules>
objsys::COSValue ArrayConversion<Rules>::to(objsys::COSValue value) const {
  const auto* held = value.as<const typename Rules::Value>();
  return objsys::COSValue(held == nullptr ? Rules::noValueArray() : Rules::toArray(*held));
}

template <class Rules>
objsys::COSValue ArrayConversion<Rules>::from(objsys::COSValue array) const {
  using Value = typename Rules::Value;
  const auto* given = array.as<const zxArray>();
  if (given == nullptr) {
    if constexpr (requires { Rules::fromNoArray(); }) {
      return newValueBlock<Value>(Rules::fromNoArray());
    } else {
      return objsys::COSValue();
    }
  }
  return detail::blockOf<Value>(Rules::fromArray(*given));
}

template <class Rules>
objsys::COSValue TextConversion<Rules>::to(objsys::COSValue value) const {
  const auto* held = value.as<const typename Rules::Value>();
  if (held == nullptr) {
    if constexpr (requires { Rules::noValueText(); }) {
      return newTextValue(Rules::noValueText());
    } else {
      return objsys::COSValue();
    }
  }
  const std::optional<std::string> text = Rules::toText(*held);
  return text ? newTextValue(*text) : objsys::COSValue();
}

template <class Rules>
objsys::COSValue TextConversion<Rules>::from(objsys::COSValue text) const {
  using Value = typename Rules::Value;
  const char* given = text.as<const char>();
  if (given == nullptr) {
    if constexpr (requires { Rules::fromNoText(); }) {
      return newValueBlock<Value>(Rules::fromNoText());
    } else {
      return objsys::COSValue();
    }
  }
  return detail::blockOf<Value>(Rules::fromText(given));
}

}  // namespace graphics::datatype

// Instantiates both conversions of a type's rules in this source, exported from the library.
#define ORB_DEFINE_CONVERSIONS(Rules)                        \
  template class graphics::datatype::ArrayConversion<Rules>; \
  template class graphics::datatype::TextConversion<Rules>;
