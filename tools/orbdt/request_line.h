// Request lines of orbdt batch: lines of bounded length read from a file descriptor, and the
// request on one line, parsed with its nesting, its strings and its memory checked as it is read.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cmdlanglib/budget.h"

namespace orbdt {

// The memory one request may take unless --max-request-bytes says otherwise.
inline constexpr std::size_t kDefaultMaxRequestBytes = std::size_t{256} << 20;

// How deeply JSON arrays and objects may nest on one request line: deep enough for ARRAY objects
// nesting arrays as deeply as literals may (three JSON levels per array), shallow enough that
// copying, writing and destroying a request cannot exhaust the stack.
inline constexpr int kMaxJsonDepth = 1024;

// One input line without its end of line. A line longer than the reader keeps has only its first
// bytes in text; length is always the full length.
struct InputLine {
  std::string text;
  std::size_t length = 0;
  bool truncated = false;
  bool blank = true;  // nothing but white space
  // An interrupt (Ctrl-C) came while the line was read; what was read of it is dropped.
  bool interrupted = false;
};

// Reads lines from a file descriptor without ever keeping more than maxBytes of one line; the rest
// of a longer line is read and dropped. A read returns as soon as data is there, so a program that
// drives orbdt through pipes gets each answer before it sends the next request.
class LineReader {
 public:
  // interruptible: a read cut short by a signal while the host's interrupt flag is set ends the line
  // as interrupted; otherwise reads are simply resumed.
  LineReader(int fd, std::size_t maxBytes, bool interruptible = false);
  // The next line, the last one counting even without an end of line; nullopt at the end of input.
  std::optional<InputLine> next();

 private:
  bool fill();
  void append(InputLine& line, const char* bytes, std::size_t count) const;

  int fd_;
  std::size_t maxBytes_;
  bool interruptible_;
  bool interrupted_ = false;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

// The request on a line, every step charged to budget: the line, then each JSON value as it is made
// along with the parser's buffers for its longest string. A truncated line, or a request too large for the budget,
// raises cmdlang::TooLargeError. Invalid JSON (invalid UTF-8 included), nesting deeper than
// kMaxJsonDepth and strings holding U+0000 raise UsageError "orbdt:BadRequest".
nlohmann::json parseRequestLine(const InputLine& line, cmdlang::ByteBudget& budget);

// The "id" member of a request line that parseRequestLine refused (too large, too deep, a U+0000),
// found without building the request: a number, boolean, null, or a string of at most kMaxLostIdBytes;
// nullopt when the line has none of those, or is not valid JSON.
std::optional<nlohmann::json> requestIdOf(const InputLine& line);
inline constexpr std::size_t kMaxLostIdBytes = 64 * 1024;

// A byte count written as digits with an optional K, M or G (powers of 1024); nullopt for anything
// else, zero and counts beyond SIZE_MAX included.
std::optional<std::size_t> parseByteCount(std::string_view text);

}  // namespace orbdt
