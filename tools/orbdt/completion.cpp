// Completion: one forward pass over the text before the cursor finds the open quote and the calls it
// is inside, and from them what is being typed.
#include "orbdt/completion.h"

#include <algorithm>
#include <cctype>
#include <optional>

#include "orbdt/statement.h"

namespace orbdt {
namespace {

bool isNameChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }

char lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

bool startsWith(std::string_view text, std::string_view prefix, bool anyCase) {
  if (text.size() < prefix.size()) return false;
  for (std::size_t i = 0; i < prefix.size(); ++i) {
    if (anyCase ? lower(text[i]) != lower(prefix[i]) : text[i] != prefix[i]) return false;
  }
  return true;
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())) != 0) text.remove_prefix(1);
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())) != 0) text.remove_suffix(1);
  return text;
}

// The text of a quoted argument ('Color' is Color); nullopt for anything else.
std::optional<std::string> unquoted(std::string_view argument) {
  argument = trimmed(argument);
  if (argument.size() < 2 || (argument.front() != '\'' && argument.front() != '"') ||
      argument.back() != argument.front()) {
    return std::nullopt;
  }
  return std::string(argument.substr(1, argument.size() - 2));
}

// A call the cursor is inside: the name before its '(' and its arguments so far.
struct OpenCall {
  std::string_view callee;
  std::vector<std::string_view> arguments;  // the finished ones
  std::size_t argumentStart = 0;
  std::string_view argumentName;  // Name of a Name=Value argument being typed
};

// Where the cursor is: the calls it is inside, the open quote if any, and where the statement began.
struct Position {
  std::vector<OpenCall> calls;
  std::optional<std::size_t> quote;  // the opening quote's offset
  std::size_t statementStart = 0;
};

Position positionOf(std::string_view line) {
  Position at;
  std::vector<char> brackets;  // '(' of calls and '[' '{' of literals, innermost last
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (at.quote) {
      if (c != line[*at.quote]) continue;
      if (i + 1 < line.size() && line[i + 1] == c) {
        ++i;  // a doubled quote stays inside the text
      } else {
        at.quote.reset();
      }
      continue;
    }
    if (c == '\'' || c == '"') {
      at.quote = i;
    } else if (c == '(') {
      std::size_t nameStart = i;
      while (nameStart > 0 && isNameChar(line[nameStart - 1])) --nameStart;
      brackets.push_back(c);
      at.calls.push_back({line.substr(nameStart, i - nameStart), {}, i + 1, {}});
    } else if (c == '[' || c == '{') {
      brackets.push_back(c);
    } else if ((c == ')' || c == ']' || c == '}') && !brackets.empty()) {
      if (brackets.back() == '(') at.calls.pop_back();
      brackets.pop_back();
    } else if (brackets.empty() && (c == ';' || c == ',')) {
      at.statementStart = i + 1;
    } else if (!brackets.empty() && brackets.back() == '(' && c == ',') {
      OpenCall& call = at.calls.back();
      call.arguments.push_back(trimmed(line.substr(call.argumentStart, i - call.argumentStart)));
      call.argumentStart = i + 1;
      call.argumentName = {};
    } else if (!brackets.empty() && brackets.back() == '(' && c == '=') {
      OpenCall& call = at.calls.back();
      const std::string_view name = trimmed(line.substr(call.argumentStart, i - call.argumentStart));
      if (isName(name)) call.argumentName = name;
    }
  }
  return at;
}

Completion matching(std::size_t start, std::string_view typed, const std::vector<std::string>& options, bool anyCase) {
  Completion completion;
  completion.start = start;
  for (const std::string& option : options) {
    if (startsWith(option, typed, anyCase) &&
        std::ranges::find(completion.candidates, option) == completion.candidates.end()) {
      completion.candidates.push_back(option);
    }
  }
  return completion;
}

// Inside quotes: a property name, or a value of a property.
Completion inQuotes(std::string_view line, const Position& at, const CompletionSource& source) {
  const std::size_t start = *at.quote + 1;
  const std::string_view typed = line.substr(start);
  Completion completion;
  if (!at.calls.empty()) {
    const OpenCall& call = at.calls.back();
    const bool inSet = call.callee == "set";
    if ((inSet || call.callee == "get") && call.arguments.size() == 1) {
      completion = matching(start, typed, source.propertiesOf(call.arguments[0]), true);
    } else if (inSet && call.arguments.size() == 2) {
      if (const std::optional<std::string> property = unquoted(call.arguments[1])) {
        completion = matching(start, typed, source.valuesOf(call.arguments[0], *property), true);
      }
    } else if (!call.argumentName.empty()) {
      completion = matching(start, typed, source.valuesOf(call.callee, call.argumentName), true);
    }
  } else {
    // h.Property = '...
    std::string_view before = trimmed(line.substr(at.statementStart, *at.quote - at.statementStart));
    if (before.ends_with('=')) {
      before = trimmed(before.substr(0, before.size() - 1));
      const std::size_t dot = before.find('.');
      if (dot != std::string_view::npos && isName(before.substr(0, dot)) && isName(before.substr(dot + 1))) {
        completion = matching(start, typed, source.valuesOf(before.substr(0, dot), before.substr(dot + 1)), true);
      }
    }
  }
  completion.start = start;
  completion.closingQuote = line[*at.quote];
  return completion;
}

}  // namespace

Completion complete(std::string_view line, const CompletionSource& source) {
  const Position at = positionOf(line);
  if (at.quote) return inQuotes(line, at, source);
  std::size_t start = line.size();
  while (start > 0 && isNameChar(line[start - 1])) --start;
  const std::string_view typed = line.substr(start);
  if (!typed.empty() && std::isalpha(static_cast<unsigned char>(typed.front())) == 0) return {line.size(), {}, '\0'};
  // h.Prop
  if (start > 0 && line[start - 1] == '.') {
    std::size_t owner = start - 1;
    while (owner > 0 && isNameChar(line[owner - 1])) --owner;
    return matching(start, typed, source.propertiesOf(line.substr(owner, start - 1 - owner)), true);
  }
  std::vector<std::string> options;
  // A Name=Value argument of a constructor: the class's properties, then any name.
  if (!at.calls.empty() && trimmed(line.substr(at.calls.back().argumentStart)) == typed) {
    options = source.propertiesOfClass(at.calls.back().callee);
  }
  for (std::string& name : source.names()) options.push_back(std::move(name));
  return matching(start, typed, options, false);
}

std::string commonPrefix(const std::vector<std::string>& candidates) {
  if (candidates.empty()) return {};
  std::string prefix = candidates.front();
  for (const std::string& candidate : candidates) {
    std::size_t n = 0;
    while (n < prefix.size() && n < candidate.size() && lower(prefix[n]) == lower(candidate[n])) ++n;
    prefix.resize(n);
  }
  return prefix;
}

}  // namespace orbdt
