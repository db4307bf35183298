// UTF-8 text in messages: character columns, whole characters and shortening at a character
// boundary. A byte that does not begin a well-formed character counts as one character of its own.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace cmdlang {

// The length in bytes of the well-formed character that starts at text[at]; 0 when none does.
std::size_t utf8CharacterLength(std::string_view text, std::size_t at);

// The 1-based character column of byte offset at.
std::size_t utf8Column(std::string_view text, std::size_t at);

// The character at text[at] for a message: the whole character, or "byte 0xNN" when the byte there
// does not begin one.
std::string utf8CharacterText(std::string_view text, std::size_t at);

bool isValidUtf8(std::string_view text);

// text as a terminal can show it: each control character (U+0000 to U+001F, U+007F) and each byte that
// does not begin a well-formed character written as "\xNN", every other character as it is.
std::string utf8Printable(std::string_view text);

// text itself when it has at most maxBytes bytes; otherwise its first characters (never part of
// one) within maxBytes, then "..." and its full size.
std::string utf8Shortened(std::string_view text, std::size_t maxBytes);

}  // namespace cmdlang

KX_HOST_API_END
