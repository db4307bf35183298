// The host's small command evaluator.
#include "cmdlanglib/evaluator.h"

#include <cctype>
#include <string>

#include "arraylib/zxerror.h"
#include "cmdlanglib/budget.h"
#include "cmdlanglib/literal.h"
#include "guilib/callback.h"

namespace cmdlang {
namespace {

std::string_view trimmed(std::string_view text) {
  const auto blank = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  return text;
}

struct Call {
  std::string name;
  std::vector<gui_objects::ZxArrayPtr> arguments;
};

[[noreturn]] void cannotRun(std::string_view statement, const std::string& why) {
  const std::string text(statement);
  zxErrMsgIdAndTxt("Korvax:cmdlang:CannotEvaluate",
                   "Cannot run '%s': %s. This evaluator runs calls of registered functions with literal "
                   "arguments, such as disp('hello').",
                   text.c_str(), why.c_str());
}

std::size_t codeByteLimit = ByteBudget::kUnlimited;

Call callOf(std::string_view statement, ByteBudget& budget) {
  std::size_t nameEnd = 0;
  while (nameEnd < statement.size() &&
         (std::isalnum(static_cast<unsigned char>(statement[nameEnd])) != 0 || statement[nameEnd] == '_')) {
    ++nameEnd;
  }
  Call call{std::string(statement.substr(0, nameEnd)), {}};
  if (!isName(call.name)) cannotRun(statement, "it is not a function call");
  const std::string_view rest = trimmed(statement.substr(nameEnd));
  if (rest.empty()) return call;
  if (rest.front() != '(' || rest.back() != ')') cannotRun(statement, "it is not a function call");
  const std::string_view inside = rest.substr(1, rest.size() - 2);
  if (trimmed(inside).empty()) return call;
  for (std::string_view argument : splitTopLevel(inside, ",")) {
    try {
      call.arguments.push_back(readLiteral(argument, budget));
    } catch (const LiteralError& error) {
      cannotRun(statement, "the argument '" + std::string(argument) + "' is not a literal (" + error.what() + ")");
    }
  }
  return call;
}

}  // namespace

std::vector<std::string_view> splitTopLevel(std::string_view text, std::string_view separators) {
  std::vector<std::string_view> parts;
  int depth = 0;
  char quote = '\0';
  std::size_t start = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quote != '\0') {
      // A doubled quote stands for one quote and keeps the text open.
      if (c == quote) quote = '\0';
    } else if (c == '\'' || c == '"') {
      quote = c;
    } else if (c == '(' || c == '[' || c == '{') {
      ++depth;
    } else if ((c == ')' || c == ']' || c == '}') && depth > 0) {
      --depth;
    } else if (depth == 0 && separators.find(c) != std::string_view::npos) {
      parts.push_back(trimmed(text.substr(start, i - start)));
      start = i + 1;
    }
  }
  parts.push_back(trimmed(text.substr(start)));
  return parts;
}

bool isName(std::string_view text) {
  if (text.empty() || std::isalpha(static_cast<unsigned char>(text.front())) == 0) return false;
  for (char c : text) {
    if (std::isalnum(static_cast<unsigned char>(c)) == 0 && c != '_') return false;
  }
  return true;
}

void evaluate(std::string_view code) {
  // Every statement is read before any runs, so code that cannot be run does nothing at all.
  std::vector<Call> calls;
  ByteBudget budget(codeByteLimit);
  for (std::string_view statement : splitTopLevel(code, ";,\n")) {
    if (!statement.empty()) calls.push_back(callOf(statement, budget));
  }
  for (const Call& call : calls) {
    std::vector<const zxArray*> arguments;
    for (const auto& argument : call.arguments) arguments.push_back(argument.get());
    gui_objects::callFunction(call.name, arguments);
  }
}

void installEvaluator() { gui_objects::setCodeEvaluator(&evaluate); }

void setCodeByteLimit(std::size_t bytes) { codeByteLimit = bytes; }

}  // namespace cmdlang
