// Conversions between UTF-8 narrow text, UTF-16 code units and wide strings.
#include "foundationlib/i18n/unicode.h"

#include <cstdint>

namespace fl::i18n {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool isContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

// Decodes one code point at text[pos], advancing pos past it.
char32_t decodeUtf8(std::string_view text, std::size_t& pos) {
  const auto lead = static_cast<unsigned char>(text[pos++]);
  if (lead < 0x80) return lead;
  int length = 0;
  char32_t point = 0;
  char32_t minimum = 0;
  if ((lead & 0xE0) == 0xC0) {
    length = 1, point = lead & 0x1F, minimum = 0x80;
  } else if ((lead & 0xF0) == 0xE0) {
    length = 2, point = lead & 0x0F, minimum = 0x800;
  } else if ((lead & 0xF8) == 0xF0) {
    length = 3, point = lead & 0x07, minimum = 0x10000;
  } else {
    return kReplacement;
  }
  for (int i = 0; i < length; ++i) {
    if (pos >= text.size() || !isContinuation(static_cast<unsigned char>(text[pos]))) return kReplacement;
    point = (point << 6) | (static_cast<unsigned char>(text[pos++]) & 0x3F);
  }
  const bool surrogate = point >= 0xD800 && point <= 0xDFFF;
  if (point < minimum || point > 0x10FFFF || surrogate) return kReplacement;
  return point;
}

void appendUtf8(std::string& out, char32_t point) {
  if (point < 0x80) {
    out += static_cast<char>(point);
  } else if (point < 0x800) {
    out += static_cast<char>(0xC0 | (point >> 6));
    out += static_cast<char>(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    out += static_cast<char>(0xE0 | (point >> 12));
    out += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (point & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (point >> 18));
    out += static_cast<char>(0x80 | ((point >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (point & 0x3F));
  }
}

void appendUtf16(std::u16string& out, char32_t point) {
  if (point < 0x10000) {
    out += static_cast<char16_t>(point);
  } else {
    point -= 0x10000;
    out += static_cast<char16_t>(0xD800 + (point >> 10));
    out += static_cast<char16_t>(0xDC00 + (point & 0x3FF));
  }
}

// Decodes one code point at text[pos], advancing pos past it.
char32_t decodeUtf16(std::u16string_view text, std::size_t& pos) {
  const char16_t unit = text[pos++];
  if (unit < 0xD800 || unit > 0xDFFF) return unit;
  if (unit >= 0xDC00 || pos >= text.size()) return kReplacement;
  const char16_t low = text[pos];
  if (low < 0xDC00 || low > 0xDFFF) return kReplacement;
  ++pos;
  return 0x10000 + ((static_cast<char32_t>(unit) - 0xD800) << 10) + (low - 0xDC00);
}

}  // namespace

std::u16string utf8ToUtf16(std::string_view text) {
  std::u16string out;
  out.reserve(text.size());
  for (std::size_t pos = 0; pos < text.size();) appendUtf16(out, decodeUtf8(text, pos));
  return out;
}

std::string utf16ToUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t pos = 0; pos < text.size();) appendUtf8(out, decodeUtf16(text, pos));
  return out;
}

std::wstring utf16ToWide(std::u16string_view text) {
  std::wstring out;
  out.reserve(text.size());
  for (std::size_t pos = 0; pos < text.size();) out += static_cast<wchar_t>(decodeUtf16(text, pos));
  return out;
}

std::u16string wideToUtf16(std::wstring_view text) {
  std::u16string out;
  out.reserve(text.size());
  for (wchar_t ch : text) {
    const auto point = static_cast<char32_t>(ch);
    const bool valid = point <= 0x10FFFF && !(point >= 0xD800 && point <= 0xDFFF);
    appendUtf16(out, valid ? point : kReplacement);
  }
  return out;
}

}  // namespace fl::i18n
