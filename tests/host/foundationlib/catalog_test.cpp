// Tests of the message catalog, its argument filling, and the UTF-8, UTF-16 and wide-string
// conversions.
#include "foundationlib/i18n/catalog.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "foundationlib/i18n/unicode.h"

namespace {

using namespace fl::i18n;

TEST(MessageCatalog, EveryIdentifierIsUniqueAndHasAText) {
  std::set<std::string_view> seen;
  for (std::string_view id : MessageCatalog::instance().identifiers()) {
    EXPECT_TRUE(seen.insert(id).second) << id << " is listed twice";
    EXPECT_FALSE(MessageCatalog::instance().find(id).value_or("").empty()) << id << " has no text";
  }
  EXPECT_GE(seen.size(), 230u);
}

TEST(FillArguments, ReplacesNumberedPlaceholdersAndLeavesTheRest) {
  const std::tuple<const char*, std::vector<std::string>, const char*> cases[] = {
      {"'{0}' is not valid: {1}.", {"x", "'a' | 'b'"}, "'x' is not valid: 'a' | 'b'."},
      {"{1}{0}{1}", {"a", "b"}, "bab"},
      {"missing {2}", {"a"}, "missing {2}"},
      {"not a number {x} or {} or {", {"a"}, "not a number {x} or {} or {"},
      {"{10}", {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "ten"}, "ten"},
      {"{0} and {1}", {"{1}", "no"}, "{1} and no"},  // an argument is not filled again
  };
  for (const auto& [text, arguments, filled] : cases) {
    SCOPED_TRACE(text);
    EXPECT_EQ(fillArguments(text, arguments), filled);
  }
  EXPECT_EQ(MessageCatalog::instance().format("No:such:id", {"a", "b"}), "No:such:id a b");
}

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
  const std::pair<std::string, std::u16string> cases[] = {
      {"\xff", u"\uFFFD"},          // not a lead byte
      {"a\xc3", u"a\uFFFD"},        // truncated sequence
      {"\xc0\xaf", u"\uFFFD"},      // overlong encoding of '/'
      {"\xed\xa0\x80", u"\uFFFD"},  // an encoded surrogate
      {"\xc3(", u"\uFFFD("},        // continuation missing, next byte kept
  };
  for (const auto& [utf8, utf16] : cases) {
    SCOPED_TRACE(utf8);
    EXPECT_EQ(utf8ToUtf16(utf8), utf16);
  }
  EXPECT_EQ(utf16ToUtf8(u"\xD800x"), "\xef\xbf\xbdx") << "an unpaired surrogate";
}

}  // namespace
