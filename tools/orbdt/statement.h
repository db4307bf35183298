// The statements of an orbdt session, parsed: "f = figure", "l = line(Parent=f, Color='r')",
// "l.Color = [0 0 1]", "get(l, 'Color')", "x = [1 2 3]". The parser reads a line once, whatever its
// length, and never follows calls nested deeper than kMaxStatementDepth; what it does not take as a
// name, a property or a call is left to the literal reader as written.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace orbdt {

// How deeply calls may nest in one statement ("disp(get(get(...)))"); literals nest by their own rule.
inline constexpr int kMaxStatementDepth = 64;

// A line that is no statement; column counts bytes from 1.
class StatementError : public std::runtime_error {
 public:
  StatementError(const std::string& what, std::size_t column);
  std::size_t column() const noexcept { return column_; }

 private:
  std::size_t column_;
};

struct Argument;

// An expression as written; views into the parsed line.
struct Expression {
  enum class Kind {
    name,      // x, figure, NaN
    property,  // l.Color
    call,      // line(Parent=f), get(l, 'Color'), zeros(2): a call or a literal, as the name decides
    literal,   // anything else: [1 2], 'red', {@disp, 1}
  };
  Kind kind = Kind::literal;
  std::string_view text;      // the whole expression, trimmed
  std::string_view name;      // a name, a call's function, a property's object
  std::string_view property;  // a property's name
  std::vector<Argument> arguments;
  // False for a call nested deeper than kMaxStatementDepth, whose arguments were left as text.
  bool argumentsParsed = true;
  std::size_t column = 1;
};

// One argument of a call: Value, or Name=Value.
struct Argument {
  std::string_view name;  // empty for a positional argument
  Expression value;
};

struct Statement {
  enum class Kind {
    empty,           // blank, or a comment
    expression,      // its value is shown as "ans = ..."
    assignVariable,  // x = value
    assignProperty,  // h.Property = value
  };
  Kind kind = Kind::empty;
  std::string_view target;    // the variable, or the object's variable
  std::string_view property;  // for assignProperty
  Expression value;
  bool quiet = false;  // ended by ';': its value is not shown
  std::size_t column = 1;
};

// Parses one line into its statements, separated by ';' (which also keeps a statement quiet) or ','
// outside brackets and text; '%' outside text starts a comment. Throws StatementError for an
// assignment to something that is neither a variable nor a property, and for an empty argument or
// value. The parse takes kParseBytesPerCharacter bytes of memory per character of the line, besides
// the expressions.
std::vector<Statement> parseLine(std::string_view line);
// The line as one statement (separators belong to it).
Statement parseStatement(std::string_view line);
inline constexpr std::size_t kParseBytesPerCharacter = 4;

// Whether text is a name: a letter followed by letters, digits and underscores.
bool isName(std::string_view text);

}  // namespace orbdt
