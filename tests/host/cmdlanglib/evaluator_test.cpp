// The splitting of statements and arguments at their top-level separators.
#include "cmdlanglib/evaluator.h"

#include <gtest/gtest.h>

#include <string_view>
#include <utility>
#include <vector>

namespace {

TEST(SplitTopLevel, SeparatorsInsideQuotesAndBracketsDoNotSplit) {
  const std::pair<const char*, std::vector<std::string_view>> kCases[] = {
      {"a, b", {"a", "b"}},
      {"f(1, 2), g", {"f(1, 2)", "g"}},
      {"'a,b', [1, 2], {3, 4}", {"'a,b'", "[1, 2]", "{3, 4}"}},
      {"'it''s, here', x", {"'it''s, here'", "x"}},
      {"", {""}},
      {"a,,b", {"a", "", "b"}},
      {"x) , y", {"x)", "y"}},
  };
  for (const auto& [text, parts] : kCases) {
    EXPECT_EQ(cmdlang::splitTopLevel(text, ","), parts) << text;
  }
}

}  // namespace
