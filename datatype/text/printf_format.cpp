// PrintfFormat: reading a format, writing a number with it, conversions.
#include "datatype/text/printf_format.h"

#include <climits>
#include <cmath>
#include <cstdio>
#include <optional>
#include <string_view>

#include "arraylib/zxarray.h"
#include "datatype/conversion_definitions.h"
#include "datatype/conversion_support.h"
#include "datatype/data_type_definitions.h"
#include "datatype/errors.h"
#include "datatype/text/text_support.h"

namespace graphics::datatype {
namespace {

namespace ids = Korvax::datatypes::PrintfFormatDataType;

constexpr std::string_view kFlags = "-+ 0#";
constexpr std::string_view kNumberTypes = "diuoxXfFeEgG";
// C conversions that write something other than a number.
constexpr std::string_view kOtherTypes = "cspnaA";

// A format read into the text before its conversion, the conversion without its type, the type and
// the text after it (with "%%" still doubled).
struct ReadFormat {
  std::string_view before;
  std::string_view spec;  // "%", flags, width and precision
  char type = 0;
  std::string_view after;
};

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Reads a width or precision at position; "*" and numbers above the largest are refused.
void readFieldNumber(std::string_view text, std::size_t& position) {
  if (position < text.size() && text[position] == '*') raise<ids::DynamicNumber>();
  int number = 0;
  while (position < text.size() && isDigit(text[position])) {
    number = number * 10 + (text[position] - '0');
    if (number > PrintfFormat::kLargestFieldNumber) raise<ids::NumberTooLarge>();
    ++position;
  }
}

ReadFormat readFormat(std::string_view text) {
  ReadFormat read;
  bool found = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') continue;
    if (i + 1 < text.size() && text[i + 1] == '%') {
      ++i;
      continue;
    }
    if (found) raise<ids::InvalidFormat>();
    std::size_t position = i + 1;
    while (position < text.size() && kFlags.find(text[position]) != std::string_view::npos) ++position;
    readFieldNumber(text, position);
    if (position < text.size() && text[position] == '.') readFieldNumber(text, ++position);
    if (position == text.size()) raise<ids::InvalidFormat>();
    const char type = text[position];
    if (kOtherTypes.find(type) != std::string_view::npos) raise<ids::UnsupportedType>();
    if (kNumberTypes.find(type) == std::string_view::npos) raise<ids::InvalidFormat>();
    read = {text.substr(0, i), text.substr(i, position - i), type, text.substr(position + 1)};
    found = true;
    i = position;
  }
  if (!found) raise<ids::InvalidFormat>();
  return read;
}

// Literal text with each "%%" written as one "%".
void appendLiteral(std::string& out, std::string_view literal) {
  for (std::size_t i = 0; i < literal.size(); ++i) {
    out += literal[i];
    if (literal[i] == '%') ++i;
  }
}

template <class Number>
void appendFormatted(std::string& out, const std::string& spec, Number number) {
  const int length = std::snprintf(nullptr, 0, spec.c_str(), number);
  if (length <= 0) return;
  std::string written(static_cast<std::size_t>(length) + 1, '\0');
  std::snprintf(written.data(), written.size(), spec.c_str(), number);
  written.pop_back();
  out += written;
}

// The spec without a precision, for conversions that take none.
std::string withoutPrecision(std::string_view spec) { return std::string(spec.substr(0, spec.find('.'))); }

}  // namespace

PrintfFormat::PrintfFormat(std::string text) : text_(std::move(text)) { readFormat(text_); }

std::string PrintfFormat::format(double number) const {
  const ReadFormat read = readFormat(text_);
  std::string out;
  appendLiteral(out, read.before);
  const std::string_view integerTypes = "diuoxX";
  if (integerTypes.find(read.type) == std::string_view::npos) {
    appendFormatted(out, std::string(read.spec) + read.type, number);
  } else if (!std::isfinite(number)) {
    appendFormatted(out, withoutPrecision(read.spec) + "f", number);
  } else {
    const double whole = std::nearbyint(number);
    const double clamped = std::fmax(std::fmin(whole, 9.2e18), -9.2e18);
    if (clamped < 0 || read.type == 'd' || read.type == 'i') {
      appendFormatted(out, std::string(read.spec) + "lld", static_cast<long long>(clamped));
    } else {
      appendFormatted(out, std::string(read.spec) + "ll" + read.type, static_cast<unsigned long long>(clamped));
    }
  }
  appendLiteral(out, read.after);
  return out;
}

struct PrintfFormatRules {
  using Value = PrintfFormat;

  static PrintfFormat fromArray(const zxArray& array) {
    if (!isCharRow(&array) || holdsNul(&array)) raise<ids::InvalidFormat>();
    return PrintfFormat(textOfCharArray(&array).get());
  }
  static zxArray* toArray(const PrintfFormat& value) { return zxCreateString(value.getText().c_str()); }
  static zxArray* noValueArray() { return zxCreateString(""); }

  static PrintfFormat fromText(const char* text) { return PrintfFormat(text); }
  static std::optional<std::string> toText(const PrintfFormat& value) { return value.getText(); }
};

}  // namespace graphics::datatype

ORB_DEFINE_DATA_TYPE(graphics::datatype::PrintfFormatDataType)
ORB_DEFINE_CONVERSIONS(graphics::datatype::PrintfFormatRules)
