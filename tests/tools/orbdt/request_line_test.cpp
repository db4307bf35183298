// Tests of batch request lines: reading lines of bounded length, and parsing a line into a request
// within its nesting, string and memory limits.
#include "orbdt/request_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

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
  while (const std::optional<InputLine> line = reader.next()) {
    lines.emplace_back(line->text, line->length, line->truncated, line->blank);
  }
  return lines;
}

TEST(LineReaderTest, SplitsLinesKeepingAtMostTheLimitOfEach) {
  struct Case {
    const char* name;
    std::string input;
    std::size_t maxBytes;
    std::vector<ReadLine> lines;
  };
  const std::string longLine(200'000, 'x');
  const Case cases[] = {
      {"empty input", "", 10, {}},
      {"last line without end", "ab\ncd", 10, {{"ab", 2, false, false}, {"cd", 2, false, false}}},
      {"blank lines", "\n \t\r\n", 10, {{"", 0, false, true}, {" \t\r", 3, false, true}}},
      {"exactly the limit", "abcd\n", 4, {{"abcd", 4, false, false}}},
      {"over the limit", "abcdef\nxy\n", 4, {{"abcd", 6, true, false}, {"xy", 2, false, false}}},
      {"across reads",
       longLine + "\nz\n",
       150'000,
       {{longLine.substr(0, 150'000), 200'000, true, false}, {"z", 1, false, false}}},
      {"blank only at the start", "   x\n", 2, {{"  ", 4, true, false}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(readLines(c.input, c.maxBytes), c.lines);
  }
}

std::string nested(std::size_t depth) {
  return R"({"op":"types","id":)" + std::string(depth - 1, '[') + std::string(depth - 1, ']') + "}";
}

TEST(ParseRequestLineTest, RefusesWhatNoRequestMayHoldWithOneError) {
  struct Case {
    const char* name;
    std::string line;
    std::size_t limit;
    const char* errorId;  // "" when the line parses
    const char* message;
    std::size_t cutFrom = 0;  // the full length of a line cut short by the reader
  };
  std::string manyZeros = "{\"id\":[0";
  for (int i = 1; i < 100'000; ++i) manyZeros += ",0";
  manyZeros += "]}";
  const Case cases[] = {
      {"plain", R"({"op":"types","id":["a",{"b":null}]})", 4096, "", ""},
      {"deepest allowed", nested(kMaxJsonDepth), 1 << 20, "", ""},
      {"one level deeper", nested(kMaxJsonDepth + 1), 1 << 20, "orbdt:BadRequest", "nest deeper than 1024 levels"},
      {"NUL in a value", R"({"op":"parse","text":"a\u0000b"})", 4096, "orbdt:BadRequest", "U+0000"},
      {"NUL in a key", R"({"op\u0000":"types"})", 4096, "orbdt:BadRequest", "U+0000"},
      {"not JSON", R"({"op":)", 4096, "orbdt:BadRequest", "invalid JSON at byte 7: syntax error"},
      {"two values", R"({} {})", 4096, "orbdt:BadRequest", "invalid JSON at byte 4"},
      {"invalid UTF-8", "{\"op\":\"\xC0\xAF\"}", 4096, "orbdt:BadRequest", "ill-formed UTF-8"},
      {"values beyond the budget", manyZeros, 1 << 20, "orbdt:TooLarge",
       "a JSON value of the request needs 48 bytes; the limit is 1048576 bytes (1 MiB)"},
      {"long string beyond the budget", "\"" + std::string(300'000, 'x') + "\"", 1 << 20, "orbdt:TooLarge",
       "the limit is 1048576 bytes (1 MiB)"},
      {"cut line", std::string(100, ' '), 100, "orbdt:TooLarge", "the request line needs 5000 bytes", 5000},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    cmdlang::ByteBudget budget(c.limit);
    const InputLine line{c.line, c.cutFrom ? c.cutFrom : c.line.size(), c.cutFrom != 0, false};
    try {
      const json request = parseRequestLine(line, budget);
      EXPECT_STREQ(c.errorId, "");
      EXPECT_EQ(request.dump(), json::parse(c.line).dump());
      EXPECT_GE(budget.used(), c.line.size());
    } catch (const UsageError& error) {
      EXPECT_EQ(error.id(), c.errorId);
      EXPECT_THAT(error.what(), HasSubstr(c.message));
    } catch (const cmdlang::TooLargeError& error) {
      EXPECT_STREQ(c.errorId, "orbdt:TooLarge");
      EXPECT_THAT(error.what(), HasSubstr(c.message));
    }
  }
}

TEST(ParseByteCountTest, ReadsDigitsWithBinarySuffixes) {
  const std::pair<const char*, std::optional<std::size_t>> cases[] = {
      {"268435456", 268435456},
      {"64K", 64 << 10},
      {"256M", std::size_t{256} << 20},
      {"2G", std::size_t{2} << 30},
      {"0", std::nullopt},
      {"", std::nullopt},
      {"12MB", std::nullopt},
      {"1.5G", std::nullopt},
      {"17179869184G", std::nullopt},  // 2^64 bytes
      {"99999999999999999999", std::nullopt},
  };
  for (const auto& [text, count] : cases) {
    SCOPED_TRACE(text);
    EXPECT_EQ(parseByteCount(text), count);
  }
}

}  // namespace
}  // namespace orbdt::test
