// Tests of the UTF-8 helpers behind literal error messages: character lengths, columns, whole
// characters and shortening.
#include "cmdlanglib/utf8.h"

#include <gtest/gtest.h>

#include <string_view>

namespace cmdlang::test {
namespace {

TEST(Utf8Test, CharacterLengthAcceptsWellFormedCharactersOnly) {
  struct Case {
    std::string_view text;
    std::size_t length;
  };
  static constexpr Case kCases[] = {
      {"a", 1},
      {"\xC3\xA9", 2},          // é
      {"\xE2\x82\xAC", 3},      // €
      {"\xF0\x9F\x98\x80", 4},  // an emoji
      {"\xC3", 0},              // cut short
      {"\xC0\xAF", 0},          // overlong '/'
      {"\xE0\x80\xAF", 0},      // overlong, three bytes
      {"\xED\xA0\x80", 0},      // a UTF-16 surrogate
      {"\xF4\x90\x80\x80", 0},  // above U+10FFFF
      {"\x80", 0},              // a lone continuation byte
      {"\xFF", 0},
      {"", 0},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    EXPECT_EQ(utf8CharacterLength(c.text, 0), c.length);
    EXPECT_EQ(isValidUtf8(c.text), c.length == c.text.size());
  }
}

TEST(Utf8Test, ColumnsCountCharactersAndInvalidBytesOneEach) {
  struct Case {
    std::string_view text;
    std::size_t at;
    std::size_t column;
  };
  static constexpr Case kCases[] = {
      {"abc", 0, 1},       {"abc", 2, 3}, {"\xC3\xA9x", 2, 2}, {"\xF0\x9F\x98\x80\xF0\x9F\x98\x80x", 8, 3},
      {"\xFF\xFEx", 2, 3}, {"ab", 9, 3},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    EXPECT_EQ(utf8Column(c.text, c.at), c.column);
  }
}

TEST(Utf8Test, ShortenedTextNeverSplitsACharacter) {
  struct Case {
    std::string_view text;
    std::size_t maxBytes;
    std::string_view shortened;
  };
  static constexpr Case kCases[] = {
      {"abc", 3, "abc"},
      {"abcd", 3, "abc... (4 bytes in all)"},
      {"a\xE2\x82\xAC", 3, "a... (4 bytes in all)"},
      {"a\xE2\x82\xAC", 4, "a\xE2\x82\xAC"},
      {"\xFF\xFF\xFF", 2, "\xFF\xFF... (3 bytes in all)"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(testing::PrintToString(c.text));
    EXPECT_EQ(utf8Shortened(c.text, c.maxBytes), c.shortened);
  }
}

}  // namespace
}  // namespace cmdlang::test
