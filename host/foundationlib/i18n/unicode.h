// Conversions between UTF-8 narrow text, UTF-16 code units and wide strings.
#pragma once

#include <string>
#include <string_view>
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace fl::i18n {

// Malformed UTF-8 and unpaired surrogates become U+FFFD; nothing is dropped silently.
std::u16string utf8ToUtf16(std::string_view text);
std::string utf16ToUtf8(std::u16string_view text);
std::wstring utf16ToWide(std::u16string_view text);
std::u16string wideToUtf16(std::wstring_view text);

}  // namespace fl::i18n

KX_HOST_API_END
