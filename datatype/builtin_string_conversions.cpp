// The conversions from text to the host's scalar types: each reads one value of its class.
#include "datatype/builtin_string_conversions.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>

#include "datatype/conversion_support.h"
#include "datatype/errors.h"
#include "datatype/value_block.h"
#include "guilib/convert_from_string_utils.h"
#include "objsys/cos_type_conversion.h"
#include "utillib/ut.h"

namespace graphics::datatype {
namespace {

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

[[noreturn]] void refuse(std::string_view text, const char* target) {
  raiseWithText("Korvax:class:KorvaxConversionError", "Cannot convert '" + std::string(text) + "' to " + target + ".");
}

// Integers are read exactly (decimal digits, optional sign); floating classes take the host's number
// syntax (NaN and Inf included); logical takes true, false, 1 or 0 in any case.
template <class T>
T parseScalar(std::string_view text, const char* target) {
  const std::string_view digits = trimmed(text);
  if constexpr (std::is_same_v<T, bool>) {
    std::string lower(digits);
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (lower == "true" || lower == "1") return true;
    if (lower == "false" || lower == "0") return false;
    refuse(text, target);
  } else if constexpr (std::is_floating_point_v<T>) {
    try {
      const double number = gui_objects::convert_from_string_utils::parse_double_scalar(std::string(digits).c_str());
      return static_cast<T>(number);
    } catch (const gui_objects::convert_from_string_utils::ParseException&) {
      refuse(text, target);
    }
  } else {
    std::string_view rest = digits;
    if (!rest.empty() && rest.front() == '+') rest.remove_prefix(1);
    T value{};
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), value);
    if (rest.empty() || error != std::errc() || end != rest.data() + rest.size()) refuse(text, target);
    return value;
  }
}

template <class T>
std::string scalarText(T value) {
  if constexpr (std::is_same_v<T, bool>) {
    return value ? "true" : "false";
  } else {
    if constexpr (std::is_floating_point_v<T>) {
      if (std::isnan(value)) return "NaN";
      if (std::isinf(value)) return value < 0 ? "-Inf" : "Inf";
    }
    char buffer[48];
    const auto written = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, written.ptr);
  }
}

// Text to one value of T in a C-heap block (freed with utFree), and back.
template <class T>
class ScalarTextConversion : public objsys::COSTypeConversion {
 public:
  explicit ScalarTextConversion(const char* target) : target_(target) {}
  objsys::COSValue from(objsys::COSValue text) const override {
    if (text.isEmpty()) return objsys::COSValue();
    return newValueBlock<T>(parseScalar<T>(text.as<const char>(), target_));
  }
  objsys::COSValue to(objsys::COSValue value) const override {
    if (value.isEmpty()) return objsys::COSValue();
    return newTextValue(scalarText(*value.as<const T>()));
  }

 private:
  const char* target_;
};

// Text to text: each direction hands out a copy.
class StringStringConversion : public objsys::COSTypeConversion {
 public:
  explicit StringStringConversion(const char*) {}
  objsys::COSValue from(objsys::COSValue text) const override { return copyOf(text); }
  objsys::COSValue to(objsys::COSValue text) const override { return copyOf(text); }

 private:
  static objsys::COSValue copyOf(objsys::COSValue text) {
    return text.isEmpty() ? objsys::COSValue() : newTextValue(text.as<const char>());
  }
};

template <class Conversion>
objsys::COSTypeConversion* make(const char* target) {
  return new (std::nothrow) Conversion(target);
}

struct BuiltinConversion {
  const char* target;
  objsys::COSTypeConversion* (*make)(const char* target);
};

// clang-format off
constexpr BuiltinConversion kBuiltinConversions[] = {
    {"int8 scalar", &make<ScalarTextConversion<std::int8_t>>},
    {"int16 scalar", &make<ScalarTextConversion<std::int16_t>>},
    {"int32 scalar", &make<ScalarTextConversion<std::int32_t>>},
    {"int64 scalar", &make<ScalarTextConversion<std::int64_t>>},
    {"uint8 scalar", &make<ScalarTextConversion<std::uint8_t>>},
    {"uint16 scalar", &make<ScalarTextConversion<std::uint16_t>>},
    {"uint32 scalar", &make<ScalarTextConversion<std::uint32_t>>},
    {"uint64 scalar", &make<ScalarTextConversion<std::uint64_t>>},
    {"single scalar", &make<ScalarTextConversion<float>>},
    {"double scalar", &make<ScalarTextConversion<double>>},
    {"logical scalar", &make<ScalarTextConversion<bool>>},
    {"asciiString", &make<StringStringConversion>},
    {"int", &make<ScalarTextConversion<std::int32_t>>},
    {"uint64_T", &make<ScalarTextConversion<std::uint64_t>>},
    {"single", &make<ScalarTextConversion<float>>},
    {"float", &make<ScalarTextConversion<float>>},
    {"double", &make<ScalarTextConversion<double>>},
    {"logical", &make<ScalarTextConversion<bool>>},
};
// clang-format on

}  // namespace

void registerBuiltinStringConversions() {
  for (const BuiltinConversion& conversion : kBuiltinConversions) {
    objsys::COSTypeRepository::addConversion("asciiString", conversion.target, conversion.make(conversion.target));
  }
}

}  // namespace graphics::datatype
