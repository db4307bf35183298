// Tests of the UTF-8 helpers behind literal error messages: character lengths, columns, whole
// characters and shortening.
#include "cmdlanglib/utf8.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string_view>
#include <tuple>
#include <utility>

namespace cmdlang::test {
namespace {

TEST(Utf8Test, CharacterLengthAcceptsWellFormedCharactersOnly) {
  for (const auto& [text, length] : std::initializer_list<std::pair<std::string_view, std::size_t>>{
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
       }) {
    SCOPED_TRACE(testing::PrintToString(text));
    EXPECT_EQ(utf8CharacterLength(text, 0), length);
    EXPECT_EQ(isValidUtf8(text), length == text.size());
  }
}

TEST(Utf8Test, ColumnsCountCharactersAndInvalidBytesOneEach) {
  for (const auto& [text, at, column] : std::initializer_list<std::tuple<std::string_view, std::size_t, std::size_t>>{
           {"abc", 2, 3}, {"\xF0\x9F\x98\x80\xF0\x9F\x98\x80x", 8, 3}, {"\xFF\xFEx", 2, 3}, {"ab", 9, 3}}) {
    EXPECT_EQ(utf8Column(text, at), column) << testing::PrintToString(text);
  }
}

TEST(Utf8Test, ShortenedTextNeverSplitsACharacter) {
  for (const auto& [text, maxBytes, shortened] :
       std::initializer_list<std::tuple<std::string_view, std::size_t, std::string_view>>{
           {"abc", 3, "abc"},
           {"a\xE2\x82\xAC", 3, "a... (4 bytes in all)"},
           {"a\xE2\x82\xAC", 4, "a\xE2\x82\xAC"},
           {"\xFF\xFF\xFF", 2, "\xFF\xFF... (3 bytes in all)"},
       }) {
    EXPECT_EQ(utf8Shortened(text, maxBytes), shortened) << testing::PrintToString(text);
  }
}

}  // namespace
}  // namespace cmdlang::test
