// The name-matching rule: trimmed, case-insensitive, exact before a unique abbreviation.
#include "datatype/enums/name_matcher.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>

namespace {

using graphics::datatype::matchName;

TEST(MatchName, ExactBeforeUniquePrefixInOrderOfAddition) {
  constexpr std::array<std::string_view, 4> kNames = {"add", "replace", "replacechildren", "-"};
  constexpr std::array<std::string_view, 3> kLines = {"-", "--", "-."};
  struct Case {
    std::span<const std::string_view> names;
    const char* text;
    std::optional<std::size_t> match;
  };
  const Case cases[] = {
      {kNames, "replace", 1},
      {kNames, "replacec", 2},
      {kNames, "REPLACECHILDREN", 2},
      {kNames, "rep", std::nullopt},
      {kNames, "a", 0},
      {kNames, "  Add\t", 0},
      {kNames, "", std::nullopt},
      {kNames, "   ", std::nullopt},
      {kNames, "adds", std::nullopt},
      {kLines, "-", 0},
      {kLines, "-.", 2},
      {kLines, "--", 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(matchName(c.names, c.text), c.match);
  }
  constexpr std::array<std::string_view, 1> kOne = {"only"};
  EXPECT_EQ(matchName(kOne, ""), 0u) << "the empty text abbreviates the only name";
}

}  // namespace
