// The statement parser: one pass pairs brackets and quotes, then each level of calls is split at its
// own commas, skipping what it encloses, so a line is read in time linear in its length.
#include "orbdt/statement.h"

#include <cctype>
#include <cstdint>
#include <string>

namespace orbdt {
namespace {

constexpr std::uint32_t kNoPartner = UINT32_MAX;

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
bool isNameStart(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }
bool isNameChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }
bool isOpener(char c) { return c == '(' || c == '[' || c == '{'; }
bool isCloser(char c) { return c == ')' || c == ']' || c == '}'; }
bool isQuote(char c) { return c == '\'' || c == '"'; }

class Parser {
 public:
  explicit Parser(std::string_view line) : line_(line), partner_(line.size(), kNoPartner) { pair(); }

  std::vector<Statement> statements() {
    std::vector<Statement> result;
    for (std::size_t start = 0;;) {
      const std::size_t separator = findTop(start, end_, ";,");
      Statement statement = this->statement(start, separator);
      statement.quiet = separator < end_ && line_[separator] == ';';
      if (statement.kind != Statement::Kind::empty) result.push_back(std::move(statement));
      if (separator >= end_) return result;
      start = separator + 1;
    }
  }

  Statement statement() { return statement(0, end_); }

 private:
  Statement statement(std::size_t from, std::size_t to) {
    Statement result;
    const auto [begin, end] = trimmed(from, to);
    result.column = begin + 1;
    if (begin == end) return result;
    const std::size_t equals = findTop(begin, end, "=");
    if (equals == end) {
      result.kind = Statement::Kind::expression;
      result.value = expression(begin, end, 0);
      return result;
    }
    const auto [targetBegin, targetEnd] = trimmed(begin, equals);
    const std::string_view target = line_.substr(targetBegin, targetEnd - targetBegin);
    const std::size_t dot = target.find('.');
    if (isName(target)) {
      result.kind = Statement::Kind::assignVariable;
      result.target = target;
    } else if (dot != std::string_view::npos && isName(target.substr(0, dot)) && isName(target.substr(dot + 1))) {
      result.kind = Statement::Kind::assignProperty;
      result.target = target.substr(0, dot);
      result.property = target.substr(dot + 1);
    } else {
      throw StatementError("cannot assign to '" + std::string(target) + "'", targetBegin + 1);
    }
    const auto [valueBegin, valueEnd] = trimmed(equals + 1, end);
    if (valueBegin == valueEnd) throw StatementError("expected a value after '='", equals + 2);
    result.value = expression(valueBegin, valueEnd, 0);
    return result;
  }

  // Pairs each opening bracket with its closer and each opening quote with its end, in one pass with
  // a stack of its own (no recursion, whatever the nesting); a '%' outside text ends the line there.
  // What is left unpaired keeps no partner and is the literal reader's to refuse.
  void pair() {
    std::vector<std::uint32_t> open;
    end_ = line_.size();
    for (std::size_t i = 0; i < line_.size(); ++i) {
      const char c = line_[i];
      if (isQuote(c)) {
        std::size_t j = i + 1;
        // A doubled quote inside text stands for one quote.
        while (j < line_.size() && (line_[j] != c || (j + 1 < line_.size() && line_[j + 1] == c))) {
          j += line_[j] == c ? 2 : 1;
        }
        if (j >= line_.size()) return;
        partner_[i] = static_cast<std::uint32_t>(j);
        i = j;
      } else if (c == '%') {
        end_ = i;
        return;
      } else if (isOpener(c)) {
        open.push_back(static_cast<std::uint32_t>(i));
      } else if (isCloser(c) && !open.empty()) {
        partner_[open.back()] = static_cast<std::uint32_t>(i);
        open.pop_back();
      }
    }
  }

  std::pair<std::size_t, std::size_t> trimmed(std::size_t begin, std::size_t end) const {
    while (begin < end && isBlank(line_[begin])) ++begin;
    while (end > begin && isBlank(line_[end - 1])) --end;
    return {begin, end};
  }

  // The first of chars in [begin, end) outside brackets and text, or end.
  std::size_t findTop(std::size_t begin, std::size_t end, std::string_view chars) const {
    for (std::size_t i = begin; i < end; ++i) {
      if (chars.find(line_[i]) != std::string_view::npos) return i;
      if ((isOpener(line_[i]) || isQuote(line_[i])) && partner_[i] != kNoPartner) i = partner_[i];
    }
    return end;
  }

  Expression expression(std::size_t begin, std::size_t end, int depth) {
    Expression result;
    result.text = line_.substr(begin, end - begin);
    result.column = begin + 1;
    if (!isNameStart(line_[begin])) return result;
    std::size_t nameEnd = begin;
    while (nameEnd < end && isNameChar(line_[nameEnd])) ++nameEnd;
    result.name = line_.substr(begin, nameEnd - begin);
    if (nameEnd == end) {
      result.kind = Expression::Kind::name;
    } else if (line_[nameEnd] == '.' && isName(line_.substr(nameEnd + 1, end - nameEnd - 1))) {
      result.kind = Expression::Kind::property;
      result.property = line_.substr(nameEnd + 1, end - nameEnd - 1);
    } else if (line_[nameEnd] == '(' && partner_[nameEnd] == end - 1) {
      result.kind = Expression::Kind::call;
      // Deeper calls stay text: the literal reader takes them if they are literals, and a session
      // call that nests too deeply is refused where it is run.
      result.argumentsParsed = depth < kMaxStatementDepth;
      if (result.argumentsParsed) addArguments(result, nameEnd + 1, end - 1, depth + 1);
    } else {
      result.name = {};
    }
    return result;
  }

  void addArguments(Expression& call, std::size_t begin, std::size_t end, int depth) {
    if (trimmed(begin, end).first == end) return;
    for (std::size_t start = begin;;) {
      const std::size_t comma = findTop(start, end, ",");
      const auto [argumentBegin, argumentEnd] = trimmed(start, comma);
      if (argumentBegin == argumentEnd) throw StatementError("expected an argument", argumentBegin + 1);
      Argument argument;
      const std::size_t equals = findTop(argumentBegin, argumentEnd, "=");
      const auto [nameBegin, nameEnd] = trimmed(argumentBegin, equals);
      if (equals != argumentEnd && isName(line_.substr(nameBegin, nameEnd - nameBegin))) {
        const auto [valueBegin, valueEnd] = trimmed(equals + 1, argumentEnd);
        if (valueBegin == valueEnd) throw StatementError("expected a value after '='", equals + 2);
        argument.name = line_.substr(nameBegin, nameEnd - nameBegin);
        argument.value = expression(valueBegin, valueEnd, depth);
      } else {
        argument.value = expression(argumentBegin, argumentEnd, depth);
      }
      call.arguments.push_back(std::move(argument));
      if (comma == end) return;
      start = comma + 1;
    }
  }

  std::string_view line_;
  std::size_t end_ = 0;
  std::vector<std::uint32_t> partner_;
};

}  // namespace

StatementError::StatementError(const std::string& what, std::size_t column)
    : std::runtime_error(what + " at column " + std::to_string(column)), column_(column) {}

bool isName(std::string_view text) {
  if (text.empty() || !isNameStart(text.front())) return false;
  for (const char c : text) {
    if (!isNameChar(c)) return false;
  }
  return true;
}

std::vector<Statement> parseLine(std::string_view line) { return Parser(line).statements(); }

Statement parseStatement(std::string_view line) { return Parser(line).statement(); }

}  // namespace orbdt
