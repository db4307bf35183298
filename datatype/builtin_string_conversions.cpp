// The conversions from text to the host's scalar types: each reads one value of its class.
#include "datatype/builtin_string_conversions.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <type_traits>

#include "datatype/conversion_definitions.h"
#include "datatype/conversion_support.h"
#include "datatype/registration.h"
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
  raiseWithText<Korvax::class_::KorvaxConversionError>("Cannot convert '" + std::string(text) + "' to " + target + ".");
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

// Text to one value of T named Target in a C-heap block (freed with utFree), and back.
template <class T, fl::except::fixed_string Target>
struct ScalarTextRules {
  using Value = T;
  static T fromText(const char* text) { return parseScalar<T>(text, Target.chars); }
  static std::optional<std::string> toText(const T& value) { return scalarText(value); }
};

// Text to text: each direction hands out a copy.
class StringStringConversion : public objsys::COSTypeConversion {
 public:
  objsys::COSValue from(objsys::COSValue text) const override { return copyOf(text); }
  objsys::COSValue to(objsys::COSValue text) const override { return copyOf(text); }

 private:
  static objsys::COSValue copyOf(objsys::COSValue text) {
    return text.isEmpty() ? objsys::COSValue() : newTextValue(text.as<const char>());
  }
};

template <class Conversion>
objsys::COSTypeConversion* make() {
  return new (std::nothrow) Conversion();
}

struct BuiltinConversion {
  const char* target;
  objsys::COSTypeConversion* (*make)();
};

// The host's order of target names; each parses into one value of its class.
#define ORB_SCALAR_TEXT(target, T) \
  { target, &make<TextConversion<ScalarTextRules<T, target>>> }
// clang-format off
constexpr BuiltinConversion kBuiltinConversions[] = {
    ORB_SCALAR_TEXT("int8 scalar", std::int8_t),
    ORB_SCALAR_TEXT("int16 scalar", std::int16_t),
    ORB_SCALAR_TEXT("int32 scalar", std::int32_t),
    ORB_SCALAR_TEXT("int64 scalar", std::int64_t),
    ORB_SCALAR_TEXT("uint8 scalar", std::uint8_t),
    ORB_SCALAR_TEXT("uint16 scalar", std::uint16_t),
    ORB_SCALAR_TEXT("uint32 scalar", std::uint32_t),
    ORB_SCALAR_TEXT("uint64 scalar", std::uint64_t),
    ORB_SCALAR_TEXT("single scalar", float),
    ORB_SCALAR_TEXT("double scalar", double),
    ORB_SCALAR_TEXT("logical scalar", bool),
    {"asciiString", &make<StringStringConversion>},
    ORB_SCALAR_TEXT("int", std::int32_t),
    ORB_SCALAR_TEXT("uint64_T", std::uint64_t),
    ORB_SCALAR_TEXT("single", float),
    ORB_SCALAR_TEXT("float", float),
    ORB_SCALAR_TEXT("double", double),
    ORB_SCALAR_TEXT("logical", bool),
};
#undef ORB_SCALAR_TEXT
// clang-format on

}  // namespace

void registerBuiltinStringConversions() {
  for (const BuiltinConversion& conversion : kBuiltinConversions) {
    unlessOutOfMemory(
        [&] { objsys::COSTypeRepository::addConversion("asciiString", conversion.target, conversion.make()); });
  }
}

}  // namespace graphics::datatype
