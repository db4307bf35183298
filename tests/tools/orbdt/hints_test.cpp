// Tests of "did you mean" hints: which names are near enough, in which order, and how they read.
#include "orbdt/hints.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace orbdt::test {
namespace {

using Names = std::vector<std::string>;

TEST(NearestNamesTest, OffersOnlyCloseNamesNearestFirst) {
  const Names alpha = {"flat", "interp", "texturemap"};
  const Names lineStyles = {"-", "--", ":", "-.", "none"};
  const std::tuple<const char*, Names, Names> cases[] = {
      {"flatt", alpha, {"flat"}},
      {" FLT ", alpha, {"flat"}},
      {"intrep", alpha, {"interp"}},  // a swap counts as one edit
      {"opaque", alpha, {}},
      {"nome", lineStyles, {"none"}},
      {"--.", lineStyles, {"--", "-."}},  // equally near: in the type's order
      {"x", lineStyles, {}},              // a one-character name is never wholly replaced
      {"dashd", lineStyles, {}},
      {"dased", {"solid", "dashed", "dotted", "dashdot", "none"}, {"dashed"}},
      {"flat", alpha, {}},  // the name itself is no hint
      {"ab", {"abc", "abd", "abe", "abf"}, {"abc", "abd", "abe"}},
  };
  for (const auto& [typed, candidates, nearest] : cases) {
    SCOPED_TRACE(typed);
    EXPECT_EQ(nearestNames(typed, candidates), nearest);
  }
}

TEST(DidYouMeanTest, ListsNamesAsASentence) {
  EXPECT_EQ(didYouMean({}), "");
  EXPECT_EQ(didYouMean({"dashed"}), "did you mean 'dashed'?");
  EXPECT_EQ(didYouMean({"flat", "interp"}), "did you mean 'flat' or 'interp'?");
  EXPECT_EQ(didYouMean({"a", "b", "c"}), "did you mean 'a', 'b' or 'c'?");
}

}  // namespace
}  // namespace orbdt::test
