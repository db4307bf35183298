// Lines typed at a terminal, with line editing (arrow keys, Ctrl-R search), history kept across
// sessions, and Tab completion from a CompletionSource (libedit).
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "orbdt/completion.h"
#include "orbdt/request_line.h"

namespace orbdt {

// One editor at a time, for the process's terminal (libedit keeps its state in globals).
class LineEditor {
 public:
  // historyFile: where lines are kept across sessions; empty keeps none. maxBytes: a longer line is
  // handed on truncated, as LineReader does.
  LineEditor(const CompletionSource& completion, std::string historyFile, std::size_t maxBytes);
  ~LineEditor();
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;

  // The next line typed after the prompt; nullopt at the end of input (Ctrl-D on an empty line). A
  // line cut short by Ctrl-C comes back interrupted.
  std::optional<InputLine> read(const char* prompt);

  // The history file unless the environment or an option says otherwise: ORBDT_HISTORY names another
  // file, or turns history off when it is set but empty; by default ~/.orbdt_history.
  static std::string defaultHistoryFile();

 private:
  std::string historyFile_;
  std::size_t maxBytes_;
};

}  // namespace orbdt
