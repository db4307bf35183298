// The session statement parser: what each form of line parses as, what it refuses, and that nesting
// and length cost neither stack nor quadratic time.
#include "orbdt/statement.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using orbdt::Expression;
using orbdt::parseStatement;
using orbdt::Statement;

// A parse written out: the statement's kind and target, then the expression as kind:text, a call's
// arguments in parentheses ("call:f(name:x, Parent=name:f)").
std::string shown(const Expression& e) {
  constexpr const char* kKinds[] = {"name", "property", "call", "literal"};
  std::string text = std::string(kKinds[static_cast<int>(e.kind)]) + ":" + std::string(e.text);
  if (e.kind != Expression::Kind::call || !e.argumentsParsed) return text;
  text = "call:" + std::string(e.name) + "(";
  for (std::size_t i = 0; i < e.arguments.size(); ++i) {
    text += i > 0 ? ", " : "";
    if (!e.arguments[i].name.empty()) text += std::string(e.arguments[i].name) + "=";
    text += shown(e.arguments[i].value);
  }
  return text + ")";
}

std::string shown(const Statement& s) {
  switch (s.kind) {
    case Statement::Kind::empty: return "empty";
    case Statement::Kind::expression: return shown(s.value);
    case Statement::Kind::assignVariable: return std::string(s.target) + " = " + shown(s.value);
    case Statement::Kind::assignProperty:
      return std::string(s.target) + "." + std::string(s.property) + " = " + shown(s.value);
  }
  return "";
}

std::string parsed(const std::string& line) {
  try {
    return shown(parseStatement(line));
  } catch (const orbdt::StatementError& error) {
    return std::string("error: ") + error.what();
  }
}

TEST(Statements, ParseIntoNamesPropertiesCallsAndLiterals) {
  const struct {
    const char* line;
    const char* parsed;
  } cases[] = {
      {"", "empty"},
      {"  % a comment", "empty"},
      {"f = figure % makes a figure", "f = name:figure"},
      {"l = line(Parent=f, Color='r')", "l = call:line(Parent=name:f, Color=literal:'r')"},
      {"l.Color = [0 0 1]", "l.Color = literal:[0 0 1]"},
      {"get(l, 'Color')", "call:get(name:l, literal:'Color')"},
      {"l.Parent", "property:l.Parent"},
      {"disp(get(l, 'XData'))", "call:disp(call:get(name:l, literal:'XData'))"},
      // Quotes and brackets hide commas, equals signs and '%' from the statement.
      {"disp('a, b = c % d')", "call:disp(literal:'a, b = c % d')"},
      {"x = {'it''s', [1, 2]}", "x = literal:{'it''s', [1, 2]}"},
      {"x = \"say \"\"hi\"\"\"", "x = literal:\"say \"\"hi\"\"\""},
      {"disp()", "call:disp()"},
      // Not a call of its whole text: left to the literal reader.
      {"x = zeros(2)'", "x = literal:zeros(2)'"},
      {"x = [1 2", "x = literal:[1 2"},
      {"x = @disp", "x = literal:@disp"},
      // Refused.
      {"3 = x", "error: cannot assign to '3' at column 1"},
      {"a.b.c = 1", "error: cannot assign to 'a.b.c' at column 1"},
      {"x =", "error: expected a value after '=' at column 4"},
      {"f(1, , 2)", "error: expected an argument at column 6"},
      {"line(Parent=)", "error: expected a value after '=' at column 13"},
  };
  for (const auto& c : cases) EXPECT_EQ(parsed(c.line), c.parsed) << c.line;
}

// Calls beyond the depth limit are left as text for whoever runs them; brackets of any depth are paired
// without recursion.
TEST(Statements, DeepAndLongLinesCostNeitherStackNorQuadraticTime) {
  std::string deepCalls = "x = ";
  constexpr int kDepth = 100000;
  for (int i = 0; i < kDepth; ++i) deepCalls += "f(";
  deepCalls += "1" + std::string(kDepth, ')');
  const Statement statement = parseStatement(deepCalls);
  const Expression* innermost = &statement.value;
  int depth = 0;
  while (innermost->argumentsParsed && !innermost->arguments.empty()) {
    innermost = &innermost->arguments[0].value;
    ++depth;
  }
  EXPECT_EQ(depth, orbdt::kMaxStatementDepth);
  EXPECT_FALSE(innermost->argumentsParsed);

  const std::string brackets = "x = " + std::string(kDepth, '[') + std::string(kDepth, ']');
  EXPECT_EQ(parseStatement(brackets).value.kind, Expression::Kind::literal);

  // 200,000 arguments and a 1 MB name, which a parse quadratic in the line would not finish.
  std::string wide = "disp(1";
  for (int i = 0; i < 200000; ++i) wide += ",x";
  wide += ")";
  EXPECT_EQ(parseStatement(wide).value.arguments.size(), 200001u);
  EXPECT_EQ(parseStatement(std::string(1 << 20, 'a')).value.kind, Expression::Kind::name);
}

}  // namespace
