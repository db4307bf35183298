// Reading request lines and parsing them within their limits.
#include "orbdt/request_line.h"

#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <utility>

#include "cmdlanglib/utf8.h"
#include "orbdt/usage_error.h"
#include "utillib/ut.h"

namespace orbdt {
namespace {

using nlohmann::json;

constexpr std::size_t kReadSize = 64 * 1024;
// Enough of the parser's message to show where and why, without echoing a long token.
constexpr std::size_t kMaxParseMessageBytes = 200;

// What the JSON values of a request take in memory, charged as the parser makes them. The figures
// bound libstdc++'s node and string sizes with allocator overhead and vector growth.
constexpr std::size_t kValueCost = 48;      // a value's slot in its array, old and new storage while it grows
constexpr std::size_t kContainerCost = 80;  // an array's or object's own storage, allocator overhead included
constexpr std::size_t kMemberCost = 96;     // an object member's tree node with its key
constexpr std::size_t kStringCost = 48;     // a string's own record

bool isBlank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

// Builds a request's JSON from the parser's events, as the library's own builder does, but refuses
// deep nesting and strings holding U+0000 and charges every value to the budget as it is made. (The
// library's builder with a callback rescans an object's parent at each object's end, which is
// quadratic in the parent's size.)
class RequestBuilder {
 public:
  explicit RequestBuilder(cmdlang::ByteBudget& budget) : budget_(budget) {}

  json take() { return std::move(root_); }
  std::size_t errorByte() const { return errorByte_; }
  const std::string& errorReason() const { return errorReason_; }

  bool null() { return put(nullptr, 0); }
  bool boolean(bool value) { return put(value, 0); }
  bool number_integer(json::number_integer_t value) { return put(value, 0); }
  bool number_unsigned(json::number_unsigned_t value) { return put(value, 0); }
  bool number_float(json::number_float_t value, const json::string_t& /*text*/) { return put(value, 0); }
  bool binary(json::binary_t& value) {
    const std::size_t bytes = kStringCost + value.size();
    return put(std::move(value), bytes);
  }

  bool string(json::string_t& value) {
    refuseNul(value);
    chargeLexer(value.size());
    const std::size_t bytes = kStringCost + value.size();
    return put(std::move(value), bytes);
  }

  bool key(json::string_t& name) {
    refuseNul(name);
    chargeLexer(name.size());
    charge(kMemberCost + name.size());
    key_ = std::move(name);
    return true;
  }

  bool start_object(std::size_t /*elements*/) { return open(json::object()); }
  bool start_array(std::size_t /*elements*/) { return open(json::array()); }
  bool end_object() { return close(); }
  bool end_array() { return close(); }

  bool parse_error(std::size_t byte, const std::string& /*token*/, const json::exception& error) {
    errorByte_ = byte;
    // The parser's reason without its own prefix and position ("syntax error while parsing value - ...").
    const std::string_view what = error.what();
    const std::size_t reason = what.find(": ", what.find("parse error"));
    errorReason_ = cmdlang::utf8Shortened(reason == std::string_view::npos ? what : what.substr(reason + 2),
                                          kMaxParseMessageBytes);
    return false;
  }

 private:
  static void refuseNul(const json::string_t& text) {
    if (text.find('\0') != std::string::npos) {
      throw UsageError("orbdt:BadRequest", "a string holds U+0000 (\\u0000), which no request may contain");
    }
  }

  void charge(std::size_t bytes) { budget_.charge(bytes, "a JSON value of the request"); }

  // The parser keeps two buffers as large as the longest string so far (its text, and its bytes for
  // messages), each up to twice that while it grows.
  void chargeLexer(std::size_t stringBytes) {
    const std::size_t buffers = cmdlang::saturatingMultiply(stringBytes, 4);
    if (buffers <= lexerBytes_) return;
    charge(buffers - lexerBytes_);
    lexerBytes_ = buffers;
  }

  // Places a value in the open array or object, or as the root; returns where it went.
  json* place(json&& value) {
    if (open_.empty()) {
      root_ = std::move(value);
      return &root_;
    }
    json& container = *open_.back();
    if (container.is_array()) {
      container.push_back(std::move(value));
      return &container.back();
    }
    json& member = container[key_];
    member = std::move(value);
    return &member;
  }

  bool put(json&& value, std::size_t extra) {
    charge(kValueCost + extra);
    place(std::move(value));
    return true;
  }

  // A new array or object stays where it was placed while it is open: nothing else is added to its
  // parent until it closes.
  bool open(json&& container) {
    if (open_.size() >= static_cast<std::size_t>(kMaxJsonDepth)) {
      throw UsageError("orbdt:BadRequest",
                       "JSON arrays and objects nest deeper than " + std::to_string(kMaxJsonDepth) + " levels");
    }
    charge(kValueCost + kContainerCost);
    open_.push_back(place(std::move(container)));
    return true;
  }

  bool close() {
    open_.pop_back();
    return true;
  }

  cmdlang::ByteBudget& budget_;
  json root_;
  std::vector<json*> open_;
  std::string key_;
  std::size_t lexerBytes_ = 0;
  std::size_t errorByte_ = 0;
  std::string errorReason_;
};

// Finds the request's own "id" member while the parser walks the line, keeping nothing else.
class IdFinder {
 public:
  std::optional<json> take() { return std::move(id_); }

  bool null() { return put(nullptr); }
  bool boolean(bool value) { return put(value); }
  bool number_integer(json::number_integer_t value) { return put(value); }
  bool number_unsigned(json::number_unsigned_t value) { return put(value); }
  bool number_float(json::number_float_t value, const json::string_t& /*text*/) { return put(value); }
  bool binary(json::binary_t& /*value*/) { return put(nullptr, false); }
  bool string(json::string_t& value) {
    const bool small = value.size() <= kMaxLostIdBytes && value.find('\0') == std::string::npos;
    return small ? put(std::move(value)) : put(nullptr, false);
  }
  bool key(json::string_t& name) {
    atId_ = depth_ == 1 && name == "id";
    return true;
  }
  bool start_object(std::size_t /*elements*/) { return open(); }
  bool start_array(std::size_t /*elements*/) { return open(); }
  bool end_object() { return close(); }
  bool end_array() { return close(); }
  bool parse_error(std::size_t /*byte*/, const std::string& /*token*/, const json::exception& /*error*/) {
    id_.reset();
    return false;
  }

 private:
  bool put(json&& value, bool keep = true) {
    if (std::exchange(atId_, false) && keep) id_ = std::move(value);
    return true;
  }
  bool open() {
    atId_ = false;
    ++depth_;
    return true;
  }
  bool close() {
    --depth_;
    return true;
  }

  std::size_t depth_ = 0;
  bool atId_ = false;
  std::optional<json> id_;
};

}  // namespace

LineReader::LineReader(int fd, std::size_t maxBytes, bool interruptible)
    : fd_(fd), maxBytes_(maxBytes), interruptible_(interruptible), buffer_(kReadSize) {}

bool LineReader::fill() {
  for (;;) {
    const ssize_t count = ::read(fd_, buffer_.data(), buffer_.size());
    if (count < 0 && errno == EINTR) {
      if (interruptible_ && utIsInterruptPending()) {
        interrupted_ = true;
        return false;
      }
      continue;
    }
    begin_ = 0;
    end_ = count > 0 ? static_cast<std::size_t>(count) : 0;
    return count > 0;
  }
}

void LineReader::append(InputLine& line, const char* bytes, std::size_t count) const {
  line.length += count;
  for (std::size_t i = 0; line.blank && i < count; ++i) line.blank = isBlank(bytes[i]);
  const std::size_t kept = std::min(count, maxBytes_ - line.text.size());
  line.text.append(bytes, kept);
  line.truncated = line.truncated || kept < count;
}

std::optional<InputLine> LineReader::next() {
  InputLine line;
  bool any = false;
  for (;;) {
    if (begin_ == end_ && !fill()) {
      if (std::exchange(interrupted_, false)) {
        InputLine dropped;
        dropped.interrupted = true;
        return dropped;
      }
      if (any) return line;
      return std::nullopt;
    }
    any = true;
    const char* start = buffer_.data() + begin_;
    const auto* newline = static_cast<const char*>(std::memchr(start, '\n', end_ - begin_));
    const std::size_t count = newline != nullptr ? static_cast<std::size_t>(newline - start) : end_ - begin_;
    append(line, start, count);
    begin_ += count + (newline != nullptr ? 1 : 0);
    if (newline != nullptr) return line;
  }
}

json parseRequestLine(const InputLine& line, cmdlang::ByteBudget& budget) {
  const char* lineWhat = "the request line";
  if (line.truncated) budget.refuse(line.length, lineWhat);
  budget.charge(line.length, lineWhat);
  RequestBuilder builder(budget);
  if (!json::sax_parse(line.text, &builder)) {
    throw UsageError("orbdt:BadRequest",
                     "invalid JSON at byte " + std::to_string(builder.errorByte()) + ": " + builder.errorReason());
  }
  return builder.take();
}

std::optional<json> requestIdOf(const InputLine& line) {
  if (line.truncated) return std::nullopt;
  IdFinder finder;
  if (!json::sax_parse(line.text, &finder)) return std::nullopt;
  return finder.take();
}

std::optional<std::size_t> parseByteCount(std::string_view text) {
  std::size_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end == text.data() || value == 0) return std::nullopt;
  const std::string_view suffix(end, static_cast<std::size_t>(text.data() + text.size() - end));
  unsigned shift = 0;
  if (suffix == "K") {
    shift = 10;
  } else if (suffix == "M") {
    shift = 20;
  } else if (suffix == "G") {
    shift = 30;
  } else if (!suffix.empty()) {
    return std::nullopt;
  }
  if (value > (cmdlang::ByteBudget::kUnlimited >> shift)) return std::nullopt;
  return value << shift;
}

}  // namespace orbdt
