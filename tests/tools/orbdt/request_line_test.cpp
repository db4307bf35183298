// Tests of batch request lines (reading lines of bounded length, parsing one within its nesting and
// memory limits), byte counts, and the "did you mean" hints.
#include "orbdt/request_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "orbdt/hints.h"
#include "orbdt/usage_error.h"

namespace orbdt::test {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;

// Each line read: its kept text, full length, whether it was cut and whether it is blank.
using ReadLine = std::tuple<std::string, std::size_t, bool, bool>;

std::vector<ReadLine> readLines(const std::string& input, std::size_t maxBytes) {
  const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(std::tmpfile(), &std::fclose);
  std::fwrite(input.data(), 1, input.size(), file.get());
  std::rewind(file.get());
  LineReader reader(fileno(file.get()), maxBytes);
  std::vector<ReadLine> lines;
  while (const auto line = reader.next()) lines.emplace_back(line->text, line->length, line->truncated, line->blank);
  return lines;
}

TEST(LineReaderTest, SplitsLinesKeepingAtMostTheLimitOfEach) {
  const std::tuple<std::string, std::size_t, std::vector<ReadLine>> cases[] = {
      {"", 10, {}},
      {"ab\ncd", 10, {{"ab", 2, false, false}, {"cd", 2, false, false}}},  // the last line has no end
      {"\n \t\r\n", 10, {{"", 0, false, true}, {" \t\r", 3, false, true}}},
      {"abcd\n", 4, {{"abcd", 4, false, false}}},
      {"abcdef\nxy\n", 4, {{"abcd", 6, true, false}, {"xy", 2, false, false}}},
      {"   x\n", 2, {{"  ", 4, true, false}}},  // blank only in the kept part
  };
  for (const auto& [input, maxBytes, lines] : cases) {
    SCOPED_TRACE(input);
    EXPECT_EQ(readLines(input, maxBytes), lines);
  }
}

std::string nested(std::size_t depth) {
  return R"({"op":"types","id":)" + std::string(depth - 1, '[') + std::string(depth - 1, ']') + "}";
}

// NUL and invalid UTF-8 in requests are left to orbdt_hostile_test; these pin limits and messages.
TEST(ParseRequestLineTest, RefusesWhatNoRequestMayHoldWithOneError) {
  std::string manyZeros = "{\"id\":[0";
  for (int i = 1; i < 100'000; ++i) manyZeros += ",0";
  manyZeros += "]}";
  // The line, its budget, the refusal identifier ("" when it parses), part of the message, and the
  // full length of a line the reader cut short (0 when it was not).
  const std::tuple<std::string, std::size_t, const char*, const char*, std::size_t> cases[] = {
      {R"({"op":"types","id":["a",{"b":null}]})", 4096, "", "", 0},
      {nested(kMaxJsonDepth), 1 << 20, "", "", 0},
      {nested(kMaxJsonDepth + 1), 1 << 20, "orbdt:BadRequest", "nest deeper than 1024 levels", 0},
      {R"({"op":)", 4096, "orbdt:BadRequest", "invalid JSON at byte 7: syntax error", 0},
      {R"({} {})", 4096, "orbdt:BadRequest", "invalid JSON at byte 4", 0},
      {manyZeros, 1 << 20, "orbdt:TooLarge",
       "a JSON value of the request needs 48 bytes; the limit is 1048576 bytes (1 MiB)", 0},
      {"\"" + std::string(300'000, 'x') + "\"", 1 << 20, "orbdt:TooLarge", "the limit is 1048576 bytes (1 MiB)", 0},
      {std::string(100, ' '), 100, "orbdt:TooLarge", "the request line needs 5000 bytes", 5000},
  };
  for (const auto& [text, limit, errorId, message, cutFrom] : cases) {
    SCOPED_TRACE(text.substr(0, 60));
    cmdlang::ByteBudget budget(limit);
    try {
      const json request = parseRequestLine({text, cutFrom ? cutFrom : text.size(), cutFrom != 0, false}, budget);
      EXPECT_STREQ(errorId, "");
      EXPECT_EQ(request, json::parse(text));
      EXPECT_GE(budget.used(), text.size());
    } catch (const UsageError& error) {
      EXPECT_EQ(error.id(), errorId);
      EXPECT_THAT(error.what(), HasSubstr(message));
    } catch (const cmdlang::TooLargeError& error) {
      EXPECT_STREQ(errorId, "orbdt:TooLarge");
      EXPECT_THAT(error.what(), HasSubstr(message));
    }
  }
}

// Plain counts and the K and M suffixes are run by orbdt_cli_test; these are the edges.
TEST(ParseByteCountTest, ReadsDigitsWithBinarySuffixes) {
  EXPECT_EQ(parseByteCount("2G"), std::size_t{2} << 30);
  for (const char* refused : {"0", "", "12MB", "1.5G", "17179869184G", "99999999999999999999"}) {
    EXPECT_EQ(parseByteCount(refused), std::nullopt) << refused;  // 17179869184G is 2^64 bytes
  }
}

// The hints from orbdt's commands are run by orbdt_cli_test; these are the edges of nearness.
TEST(NearestNamesTest, OffersOnlyCloseNamesNearestFirst) {
  using Names = std::vector<std::string>;
  const Names alpha = {"flat", "interp", "texturemap"};
  const std::tuple<const char*, Names, Names> cases[] = {
      {" FLT ", alpha, {"flat"}},
      {"opaque", alpha, {}},
      {"flat", alpha, {}},  // the name itself is no hint
      {"nome", {"-", "none"}, {"none"}},
      {"x", {"-", "none"}, {}},  // a one-character name is never wholly replaced
      {"dased", {"solid", "dashed", "dotted", "dashdot", "none"}, {"dashed"}},
      {"ab", {"abc", "abd", "abe", "abf"}, {"abc", "abd", "abe"}},  // at most three, in the type's order
  };
  for (const auto& [typed, candidates, nearest] : cases) {
    SCOPED_TRACE(typed);
    EXPECT_EQ(nearestNames(typed, candidates), nearest);
  }
  EXPECT_EQ(didYouMean({"a", "b", "c"}), "did you mean 'a', 'b' or 'c'?");
}

}  // namespace
}  // namespace orbdt::test
