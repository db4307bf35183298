// The terminal's line editor on libedit's readline interface.
#include "orbdt/line_editor.h"

#include <editline/readline.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#include "utillib/ut.h"

namespace orbdt {
namespace {

const CompletionSource* activeSource = nullptr;
constexpr int kHistoryLines = 1000;

// A copy on the C heap, as libedit frees what completion hands it.
char* heapCopy(const std::string& text) {
  char* copy = static_cast<char*>(std::malloc(text.size() + 1));
  if (copy != nullptr) std::memcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

// libedit's completion entry: the candidates for the word before the cursor, the common prefix first.
char** completeAtCursor(const char* /*text*/, int /*start*/, int /*end*/) {
  rl_attempted_completion_over = 1;
  if (activeSource == nullptr || rl_line_buffer == nullptr) return nullptr;
  const Completion completion =
      complete(std::string_view(rl_line_buffer, static_cast<std::size_t>(rl_point)), *activeSource);
  if (completion.candidates.empty()) return nullptr;
  // A single value is closed with its quote; a single name or property is left open for what follows.
  rl_completion_append_character = completion.candidates.size() == 1 ? completion.closingQuote : '\0';
  auto** matches = static_cast<char**>(std::calloc(completion.candidates.size() + 2, sizeof(char*)));
  if (matches == nullptr) return nullptr;
  matches[0] =
      heapCopy(completion.candidates.size() == 1 ? completion.candidates[0] : commonPrefix(completion.candidates));
  for (std::size_t i = 0; completion.candidates.size() > 1 && i < completion.candidates.size(); ++i) {
    matches[i + 1] = heapCopy(completion.candidates[i]);
  }
  return matches;
}

}  // namespace

LineEditor::LineEditor(const CompletionSource& completion, std::string historyFile, std::size_t maxBytes)
    : historyFile_(std::move(historyFile)), maxBytes_(maxBytes) {
  activeSource = &completion;
  rl_readline_name = "orbdt";
  // Words end at what separates a name, a property or a quoted value from what comes before it.
  static char breaks[] = " \t\n\"'.,;()=[]{}";
  rl_completer_word_break_characters = breaks;
  rl_basic_word_break_characters = breaks;
  rl_attempted_completion_function = &completeAtCursor;
  // The session's own handler turns Ctrl-C into the host's interrupt flag.
  rl_catch_signals = 0;
  rl_initialize();
  rl_parse_and_bind("bind ^R em-inc-search-prev");
  using_history();
  if (!historyFile_.empty()) read_history(historyFile_.c_str());
}

LineEditor::~LineEditor() {
  if (!historyFile_.empty() && write_history(historyFile_.c_str()) == 0) {
    history_truncate_file(historyFile_.c_str(), kHistoryLines);
  }
  activeSource = nullptr;
}

std::optional<InputLine> LineEditor::read(const char* prompt) {
  const std::unique_ptr<char, decltype(&std::free)> typed(readline(prompt), &std::free);
  if (utIsInterruptPending()) {
    InputLine dropped;
    dropped.interrupted = true;
    return dropped;
  }
  if (!typed) return std::nullopt;
  InputLine line;
  line.length = std::strlen(typed.get());
  line.truncated = line.length > maxBytes_;
  line.text.assign(typed.get(), line.truncated ? maxBytes_ : line.length);
  line.blank = line.text.find_first_not_of(" \t\r\n") == std::string::npos;
  if (!line.blank && !line.truncated) add_history(typed.get());
  return line;
}

std::string LineEditor::defaultHistoryFile() {
  if (const char* named = std::getenv("ORBDT_HISTORY")) return named;
  const char* home = std::getenv("HOME");
  return home != nullptr && *home != '\0' ? std::string(home) + "/.orbdt_history" : std::string();
}

}  // namespace orbdt
