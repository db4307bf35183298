// Tests of "did you mean" hints: which names are near enough, in which order, and how they read.
#include "orbdt/hints.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orbdt::test {
namespace {

TEST(NearestNamesTest, OffersOnlyCloseNamesNearestFirst) {
  struct Case {
    const char* typed;
    std::vector<std::string> candidates;
    std::vector<std::string> nearest;
  };
  const std::vector<std::string> alpha = {"flat", "interp", "texturemap"};
  const std::vector<std::string> lineStyles = {"-", "--", ":", "-.", "none"};
  const std::vector<std::string> primStyles = {"solid", "dashed", "dotted", "dashdot", "none"};
  const Case cases[] = {
      {"flatt", alpha, {"flat"}},
      {" FLT ", alpha, {"flat"}},
      {"intrep", alpha, {"interp"}},  // a swap counts as one edit
      {"texturmap", alpha, {"texturemap"}},
      {"opaque", alpha, {}},
      {"1.5", alpha, {}},
      {"nome", lineStyles, {"none"}},
      {"--.", lineStyles, {"--", "-."}},  // equally near: in the type's order
      {"x", lineStyles, {}},              // a one-character name is never wholly replaced
      {"dashd", lineStyles, {}},
      {"dased", primStyles, {"dashed"}},
      {"doted", primStyles, {"dotted"}},
      {"flat", alpha, {}},  // the name itself is no hint
      {"ab", {"abc", "abd", "abe", "abf"}, {"abc", "abd", "abe"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.typed);
    EXPECT_EQ(nearestNames(c.typed, c.candidates), c.nearest);
  }
}

TEST(DidYouMeanTest, ListsNamesAsASentence) {
  struct Case {
    std::vector<std::string> names;
    const char* text;
  };
  const Case cases[] = {
      {{}, ""},
      {{"dashed"}, "did you mean 'dashed'?"},
      {{"flat", "interp"}, "did you mean 'flat' or 'interp'?"},
      {{"a", "b", "c"}, "did you mean 'a', 'b' or 'c'?"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(didYouMean(c.names), c.text);
  }
}

}  // namespace
}  // namespace orbdt::test
