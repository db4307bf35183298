// Tests of the UTF-8, UTF-16 and wide-string conversions.
#include "foundationlib/i18n/unicode.h"

#include <gtest/gtest.h>

namespace {

using namespace fl::i18n;

TEST(Unicode, WellFormedTextRoundTripsThroughEveryForm) {
  const char* texts[] = {"", "ascii", "caf\xc3\xa9", "\xe2\x82\xac", "\xf0\x9f\x98\x80", "a\xf4\x8f\xbf\xbfz"};
  for (const char* text : texts) {
    SCOPED_TRACE(text);
    const std::u16string units = utf8ToUtf16(text);
    EXPECT_EQ(utf16ToUtf8(units), text);
    EXPECT_EQ(wideToUtf16(utf16ToWide(units)), units);
  }
  EXPECT_EQ(utf8ToUtf16("\xf0\x9f\x98\x80"), u"\xD83D\xDE00");
  EXPECT_EQ(utf16ToWide(u"\xD83D\xDE00"), std::wstring(1, static_cast<wchar_t>(0x1F600)));
}

TEST(Unicode, MalformedInputBecomesReplacementCharacters) {
  struct Case {
    std::string utf8;
    std::u16string expected;
  };
  const Case cases[] = {
      {"\xff", u"\uFFFD"},          // not a lead byte
      {"a\xc3", u"a\uFFFD"},        // truncated sequence
      {"\xc0\xaf", u"\uFFFD"},      // overlong encoding of '/'
      {"\xed\xa0\x80", u"\uFFFD"},  // an encoded surrogate
      {"\xc3(", u"\uFFFD("},        // continuation missing, next byte kept
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.utf8);
    EXPECT_EQ(utf8ToUtf16(c.utf8), c.expected);
  }
  EXPECT_EQ(utf16ToUtf8(u"\xD800x"), "\xef\xbf\xbdx") << "an unpaired surrogate";
}

}  // namespace
