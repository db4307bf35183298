// UTF-8 positions and pieces for messages.
#include "cmdlanglib/utf8.h"

#include <cstdio>

namespace cmdlang {
namespace {

bool inRange(std::string_view text, std::size_t at, unsigned char low, unsigned char high) {
  if (at >= text.size()) return false;
  const auto byte = static_cast<unsigned char>(text[at]);
  return byte >= low && byte <= high;
}

}  // namespace

std::size_t utf8CharacterLength(std::string_view text, std::size_t at) {
  if (at >= text.size()) return 0;
  const auto lead = static_cast<unsigned char>(text[at]);
  if (lead < 0x80) return 1;
  // The second byte's range excludes overlong forms, surrogates and points above U+10FFFF.
  unsigned char low = 0x80;
  unsigned char high = 0xBF;
  std::size_t length = 0;
  if (lead >= 0xC2 && lead <= 0xDF) {
    length = 2;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    length = 3;
    if (lead == 0xE0) low = 0xA0;
    if (lead == 0xED) high = 0x9F;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    length = 4;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
  } else {
    return 0;
  }
  if (!inRange(text, at + 1, low, high)) return 0;
  for (std::size_t i = 2; i < length; ++i) {
    if (!inRange(text, at + i, 0x80, 0xBF)) return 0;
  }
  return length;
}

std::size_t utf8Column(std::string_view text, std::size_t at) {
  std::size_t column = 1;
  for (std::size_t i = 0; i < at && i < text.size(); ++column) {
    const std::size_t length = utf8CharacterLength(text, i);
    i += length == 0 ? 1 : length;
  }
  return column;
}

std::string utf8CharacterText(std::string_view text, std::size_t at) {
  if (const std::size_t length = utf8CharacterLength(text, at)) return std::string(text.substr(at, length));
  if (at >= text.size()) return "end of text";
  char byte[16];
  std::snprintf(byte, sizeof byte, "byte 0x%02X", static_cast<unsigned char>(text[at]));
  return byte;
}

bool isValidUtf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = utf8CharacterLength(text, i);
    if (length == 0) return false;
    i += length;
  }
  return true;
}

std::string utf8Printable(std::string_view text) {
  std::string shown;
  shown.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const std::size_t length = utf8CharacterLength(text, i);
    if (length == 0 || byte < 0x20 || byte == 0x7F) {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\x%02X", byte);
      shown += escaped;
      ++i;
    } else {
      shown.append(text.substr(i, length));
      i += length;
    }
  }
  return shown;
}

std::string utf8Shortened(std::string_view text, std::size_t maxBytes) {
  if (text.size() <= maxBytes) return std::string(text);
  std::size_t end = 0;
  for (;;) {
    const std::size_t length = utf8CharacterLength(text, end);
    const std::size_t step = length == 0 ? 1 : length;
    if (end + step > maxBytes) break;
    end += step;
  }
  return std::string(text.substr(0, end)) + "... (" + std::to_string(text.size()) + " bytes in all)";
}

}  // namespace cmdlang
