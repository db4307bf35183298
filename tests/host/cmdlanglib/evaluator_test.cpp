// The splitting of statements and arguments, and function-handle literals.
#include "cmdlanglib/evaluator.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cmdlanglib/literal.h"

namespace {

TEST(SplitTopLevel, SeparatorsInsideQuotesAndBracketsDoNotSplit) {
  struct Case {
    const char* text;
    std::vector<std::string_view> parts;
  };
  const Case kCases[] = {
      {"a, b", {"a", "b"}},
      {"f(1, 2), g", {"f(1, 2)", "g"}},
      {"'a,b', [1, 2], {3, 4}", {"'a,b'", "[1, 2]", "{3, 4}"}},
      {"'it''s, here', x", {"'it''s, here'", "x"}},
      {"", {""}},
      {"a,,b", {"a", "", "b"}},
      {"x) , y", {"x)", "y"}},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(cmdlang::splitTopLevel(c.text, ","), c.parts);
  }
}

TEST(FunctionHandleLiterals, ReadAndWriteBack) {
  for (const char* text : {"@disp", "{@f, 1, 'a'}"}) {
    SCOPED_TRACE(text);
    const auto array = cmdlang::readLiteral(text);
    EXPECT_EQ(cmdlang::readLiteral(cmdlang::writeLiteral(array.get())) != nullptr, true);
  }
  EXPECT_STREQ(zxGetFunctionName(cmdlang::readLiteral("@disp").get()), "disp");
  EXPECT_EQ(cmdlang::writeLiteral(cmdlang::readLiteral("{@f, 1}").get()), "{@f,1}");
  for (const char* bad : {"@", "@1", "[@f]", "@f(1)"}) EXPECT_THROW(cmdlang::readLiteral(bad), cmdlang::LiteralError) << bad;
}

}  // namespace
