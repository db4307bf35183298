// Tests of the message catalog and its argument filling.
#include "foundationlib/i18n/catalog.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using fl::i18n::MessageCatalog;

TEST(MessageCatalog, EveryIdentifierIsUniqueAndHasAText) {
  std::set<std::string_view> seen;
  for (std::string_view id : MessageCatalog::instance().identifiers()) {
    SCOPED_TRACE(std::string(id));
    EXPECT_TRUE(seen.insert(id).second) << "listed twice";
    const auto text = MessageCatalog::instance().find(id);
    ASSERT_TRUE(text.has_value());
    EXPECT_FALSE(text->empty());
  }
  EXPECT_GE(seen.size(), 230u);
}

TEST(MessageCatalog, ScalarTextsAreTheOnesUsersKnow) {
  struct Case {
    const char* id;
    const char* text;
  };
  const Case cases[] = {
      {"Korvax:datatypes:invalidPositive", "Value not a numeric scalar"},
      {"Korvax:datatypes:invalidValueNoNaN", "Value should be greater than 0"},
      {"Korvax:datatypes:invalidValue_0_1", "Value should be between 0 and 1"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.id);
    EXPECT_EQ(MessageCatalog::instance().find(c.id), c.text);
  }
}

TEST(FillArguments, ReplacesNumberedPlaceholdersAndLeavesTheRest) {
  struct Case {
    const char* text;
    std::vector<std::string> arguments;
    const char* filled;
  };
  const Case cases[] = {
      {"'{0}' is not valid: {1}.", {"x", "'a' | 'b'"}, "'x' is not valid: 'a' | 'b'."},
      {"{1} before {0}", {"a", "b"}, "b before a"},
      {"{0}{0}", {"ab"}, "abab"},
      {"missing {2}", {"a"}, "missing {2}"},
      {"not a number {x} or {} or {", {"a"}, "not a number {x} or {} or {"},
      {"{10}", {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "ten"}, "ten"},
      {"{0} and {1}", {"{1}", "no"}, "{1} and no"},  // an argument is not filled again
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(fl::i18n::fillArguments(c.text, c.arguments), c.filled);
  }
  EXPECT_EQ(MessageCatalog::instance().format("No:such:id", {"a", "b"}), "No:such:id a b");
}

}  // namespace
