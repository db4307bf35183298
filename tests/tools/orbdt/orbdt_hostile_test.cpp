// orbdt batch against hostile input: absurd sizes, deep nesting, very many struct fields, NUL in
// strings, invalid UTF-8, very long and blank lines. The session must answer every request line
// once, in order, within bounded memory and time, and still answer the last request.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define ORB_TEST_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORB_TEST_ASAN 1
#endif
#endif

namespace {

using nlohmann::json;

// A request line and what it gets back: orbdt's refusal identifier, "" when the value is stored,
// "type" when the type refuses it (the request was read and run in full), "none" for no answer.
struct Line {
  std::string text;
  std::string expect;
  std::string id = "";          // the echoed id, if one is expected
  std::string valueError = "";  // the read-back's refusal of a stored value, if one is expected
};

std::string setRequest(const std::string& type, const json& value, const std::string& id) {
  return json{{"op", "set"}, {"type", type}, {"value", value}, {"id", id}}.dump();
}

std::string repeated(const std::string& piece, std::size_t times) {
  std::string text;
  for (std::size_t i = 0; i < times; ++i) text += piece;
  return text;
}

std::vector<Line> hostileLines() {
  std::vector<Line> lines = {{setRequest("MeshAlpha", "0.5", "first"), "", "first"}};

  // Sizes far beyond the budget, refused before anything is allocated.
  for (const char* literal :
       {"zeros(1e6,1e6)", "zeros(1e9,1e9,1e9)", "ones(4611686018427387904,2)", "cell(1e5,1e5)", "uint8(zeros(20000))",
        "complex(zeros(1e5),zeros(1e5))", "zeros(3e4,3e4,'int8')", "[zeros(1,2e7) zeros(1,2e7)]"}) {
    lines.push_back({setRequest("MeshAlpha", literal, literal), "orbdt:TooLarge", literal});
  }
  // Empty arrays whose other dimensions multiply beyond any size.
  for (const char* literal : {"reshape([],0,1e12,1e12)", "zeros(0,4611686018427387904,4611686018427387904)"}) {
    lines.push_back({setRequest("MeshAlpha", literal, literal), "orbdt:BadLiteral", literal});
  }
  const json bigArrays[] = {
      {{"class", "double"}, {"dims", {1000000, 1000000}}, {"re", json::array()}},
      {{"class", "char"}, {"dims", {1, 1000000000000}}, {"rows", {""}}},
      {{"class", "int8"}, {"dims", {4611686018427387904, 4}}, {"re", json::array()}},
  };
  for (const json& value : bigArrays)
    lines.push_back({setRequest("MeshAlpha", value, "array"), "orbdt:TooLarge", "array"});
  // A value stored within the budget whose read-back would not fit it.
  lines.push_back({setRequest("NumericMatrix", "zeros(2000,2000)", "readback"), "", "readback", "orbdt:TooLarge"});

  // Nesting 5,000 deep, in JSON and in literals.
  constexpr std::size_t kDepth = 5000;
  const std::string open = repeated("[", kDepth), close = repeated("]", kDepth);
  for (const std::string& text :
       {R"({"op":"types","id":)" + open + close + "}",
        R"({"op":"parse","type":"MeshAlpha","text":)" + open + "\"flat\"" + close + "}",
        R"({"op":"set","type":"MeshAlpha","value":{"class":"double","dims":[1,1],"re":)" + open + "1" + close + "}}",
        R"({"op":"set","type":"MeshAlpha","value":{"class":"struct","dims":[1,1],"fields":["a"],"elements":[)" +
            repeated(R"({"a":{"class":"struct","dims":[1,1],"fields":["a"],"elements":[)", kDepth / 4) + "{}" +
            repeated("]}}", kDepth / 4) + "]}}"}) {
    lines.push_back({text, "orbdt:BadRequest"});
  }
  for (const std::string& literal : {open + close, repeated("{", kDepth) + repeated("}", kDepth),
                                     repeated("struct('a',", kDepth) + "1" + repeated(")", kDepth)}) {
    lines.push_back({setRequest("MeshAlpha", literal, "deep"), "orbdt:BadLiteral", "deep"});
  }

  // 100,000 struct fields in an ARRAY object; MeshAlpha refuses the struct.
  json names = json::array(), element = json::object();
  for (int f = 0; f < 100000; ++f) {
    names.push_back("f" + std::to_string(f));
    element[names.back().get<std::string>()] = nullptr;
  }
  const json structArray = {{"class", "struct"}, {"dims", {1, 1}}, {"fields", names}, {"elements", {element}}};
  lines.push_back({setRequest("MeshAlpha", structArray, "fields"), "type", "fields"});

  // U+0000 in keys and in strings, and invalid UTF-8 inside and outside strings.
  for (const char* text :
       {R"({"op":"set\u0000","type":"MeshAlpha","value":"1"})", R"({"op":"types","id\u0000":1})",
        R"({"op":"set","type":"MeshAlpha","value":"'a\u0000'"})",
        "{\"op\":\"parse\",\"type\":\"MeshAlpha\",\"text\":\"\xED\xA0\x80\"}", "\xC3\x28{\"op\":\"types\"}"}) {
    lines.push_back({text, "orbdt:BadRequest"});
  }

  lines.push_back({"", "none"});
  lines.push_back({setRequest("MeshAlpha", "'interp'", "middle"), "", "middle"});
  lines.push_back({" \t\r", "none"});

  // Lines of 10 MB: a literal too large to read within the budget, a long id that fits, brackets.
  constexpr std::size_t kLong = 10'000'000;
  lines.push_back({setRequest("MeshAlpha", "[" + repeated(" 1", kLong / 2) + "]", "long"), "orbdt:TooLarge", "long"});
  const std::string longId(kLong, 'x');
  lines.push_back({json{{"op", "types"}, {"id", longId}}.dump(), "", longId});
  lines.push_back({std::string(kLong, '['), "orbdt:BadRequest"});

  lines.push_back({setRequest("MeshAlpha", "0.25", "last"), "", "last"});
  return lines;
}

// A run of orbdt on a file of input lines: its exit status, its standard output and its peak memory.
struct HostileRun {
  int status = -1;
  std::string out;
  long maxRssKiB = 0;
};

#ifdef ORB_TEST_ASAN
// The sanitizer reserves terabytes of address space, and its allocator keeps freed memory aside.
const std::string kAddressSpace = "";
constexpr long kMaxRssKiB = 2L << 20;
#else
// An address space of 1 GiB: the default budgets (256 MiB a request, 512 MiB held by a session) and
// the program itself, but far from what any absurd size would need had it not been refused.
const std::string kAddressSpace = "ulimit -v 1048576; ";
constexpr long kMaxRssKiB = 900L << 10;
#endif

HostileRun runHostile(const std::string& arguments, const std::vector<std::string>& lines) {
  const auto dir = std::filesystem::temp_directory_path() / ("orbdt_hostile_test_" + std::to_string(getpid()));
  std::filesystem::create_directories(dir);
  {
    std::ofstream in(dir / "in", std::ios::binary);
    for (const std::string& line : lines) in << line << '\n';
  }
  // timeout exits with 124 when it stops orbdt; the children's peak RSS is orbdt's.
  const std::string command = kAddressSpace + "exec timeout -k 5 120 " + ORBDT_PATH + " " + arguments + " < " +
                              (dir / "in").string() + " > " + (dir / "out").string() + " 2> /dev/null";
  const auto start = std::chrono::steady_clock::now();
  const int raw = std::system(command.c_str());
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  std::cout << "orbdt " << arguments << " on " << lines.size() << " hostile lines: peak RSS " << usage.ru_maxrss / 1024
            << " MiB, " << seconds.count() << " s\n";
  HostileRun run;
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  run.maxRssKiB = usage.ru_maxrss;
  std::ifstream out(dir / "out", std::ios::binary);
  run.out.assign(std::istreambuf_iterator<char>(out), {});
  std::filesystem::remove_all(dir);
  return run;
}

TEST(OrbdtHostileBatch, AnswersEveryLineOnceInBoundedMemoryAndTime) {
  const std::vector<Line> lines = hostileLines();
  std::vector<std::string> texts;
  for (const Line& line : lines) texts.push_back(line.text);
  const HostileRun run = runHostile("batch", texts);
  ASSERT_NE(run.status, 124) << "timed out";
  EXPECT_EQ(run.status, 0);
  EXPECT_LE(run.maxRssKiB, kMaxRssKiB);

  std::istringstream out(run.out);
  std::vector<std::string> answers;
  for (std::string answer; std::getline(out, answer);) answers.push_back(answer);

  std::size_t next = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const Line& line = lines[i];
    SCOPED_TRACE(testing::Message() << "line " << i + 1 << ": " << line.text.substr(0, 80));
    if (line.expect == "none") continue;
    ASSERT_LT(next, answers.size()) << "no answer";
    const json answer = json::parse(answers[next++], nullptr, false);
    ASSERT_TRUE(answer.is_object());
    EXPECT_EQ(answer.value("ok", false), line.expect.empty()) << answers[next - 1].substr(0, 300);
    const std::string errorId = answer.value("/error/id"_json_pointer, "");
    if (line.expect == "type") {
      EXPECT_THAT(errorId, testing::Not(testing::StartsWith("orbdt:")));
    } else if (!line.expect.empty()) {
      EXPECT_EQ(errorId, line.expect);
    }
    EXPECT_EQ(answer.value("/valueError/id"_json_pointer, ""), line.valueError);
    EXPECT_EQ(answer.value("id", json()), line.id.empty() ? json() : json(line.id));
  }
  EXPECT_EQ(next, answers.size()) << "more answers than request lines";
}

// Statements a session is sent and the refusal each gets ("" when it runs): calls without a value
// used as values, nesting far past every limit, a line too long to keep, values that together pass
// the session's budget, a chain of objects deeper than any stack, and names that are no names.
std::vector<std::pair<std::string, std::string>> hostileStatements() {
  constexpr std::size_t kDeep = 3000;
  std::vector<std::pair<std::string, std::string>> statements = {
      {"x = 1", ""},
      {"disp(disp(1))", "orbdt:NoValue"},
      {"y = disp(2)", "orbdt:NoValue"},
      {"disp(y)", "Korvax:UndefinedFunction"},
      {"n = NaN", ""},
      {"i = -Inf", ""},
      {"x = " + repeated("struct('a',", kDeep) + "1" + repeated(")", kDeep), "orbdt:BadLiteral"},
      {repeated("disp(", kDeep) + "1" + repeated(")", kDeep), "orbdt:BadStatement"},
      {"x = " + repeated("[", kDeep) + repeated("]", kDeep), "orbdt:BadLiteral"},
      {"x = zeros(1e5, 1e5)", "orbdt:TooLarge"},
      {"3 = x", "orbdt:BadStatement"},
      {"f = figure", ""},
      {"f.Colr = 1", "Korvax:objsys:UnknownProperty"},
      {"n.Color = 1", "Korvax:orb:dt_conv:Matrix_to_HObject:BadHandle"},
  };
  // 24 MB held each: the fifth would pass the session's 100 MiB.
  for (int i = 0; i < 5; ++i) {
    statements.emplace_back("v" + std::to_string(i) + " = zeros(1000);", i < 4 ? "" : "orbdt:TooLarge");
  }
  for (int i = 0; i < 5; ++i) statements.emplace_back("v" + std::to_string(i) + " = 0", "");
  // A chain of axes, each the parent of the next, deleted at once and again at the session's end.
  statements.emplace_back("a = axes(Parent=f)", "");
  for (int i = 0; i < 10000; ++i) statements.emplace_back("a = axes(Parent=a);", "");
  statements.emplace_back("delete(f)", "");
  statements.emplace_back("f = figure", "");
  statements.emplace_back("a = axes(Parent=f)", "");
  for (int i = 0; i < 10000; ++i) statements.emplace_back("a = axes(Parent=a);", "");
  statements.emplace_back("disp('the last statement ran')", "");
  return statements;
}

// The same file run as a script and typed into the prompt: one error line per refused statement, in
// order, the last statement run, exit status 1, within the budgets.
TEST(OrbdtHostileSession, RefusesEachBadStatementAndGoesOnInBoundedMemory) {
  const auto statements = hostileStatements();
  std::vector<std::string> lines;
  std::vector<std::string> expected;
  for (const auto& [line, refusal] : statements) {
    lines.push_back(line);
    if (!refusal.empty()) expected.push_back(refusal);
  }
  const auto dir = std::filesystem::temp_directory_path() / ("orbdt_hostile_script_" + std::to_string(getpid()));
  std::filesystem::create_directories(dir);
  {
    std::ofstream script(dir / "hostile.orb", std::ios::binary);
    for (const std::string& line : lines) script << line << '\n';
  }
  const std::string limits = "--max-request-bytes 64M --max-session-bytes 100M ";
  for (const std::string& mode : {limits + "run " + (dir / "hostile.orb").string(), limits + "repl"}) {
    SCOPED_TRACE(mode);
    const HostileRun run = runHostile(mode, mode.ends_with("repl") ? lines : std::vector<std::string>{});
    ASSERT_NE(run.status, 124) << "timed out";
    EXPECT_EQ(run.status, 1);
    EXPECT_LE(run.maxRssKiB, kMaxRssKiB);
    std::vector<std::string> refusals;
    std::istringstream out(run.out);
    for (std::string line; std::getline(out, line);) {
      // A script's refusals begin with where they happened ("FILE:LINE:COLUMN: error: ").
      const std::size_t error = line.find("error: ");
      if (error != std::string::npos && (error == 0 || line.compare(error - 2, 2, ": ") == 0)) {
        refusals.push_back(line.substr(error + 7, line.find(": ", error + 7) - error - 7));
      }
    }
    EXPECT_EQ(refusals, expected);
    EXPECT_TRUE(run.out.ends_with("the last statement ran\n"))
        << run.out.substr(run.out.size() - std::min<std::size_t>(run.out.size(), 300));
  }
  std::filesystem::remove_all(dir);

  // A line longer than a request may take is read to its end, refused, and the next line runs.
  const std::string longLine = "x = '" + std::string(2 << 20, 'a') + "'";
  const HostileRun run = runHostile("--max-request-bytes 1M repl", {longLine, "disp(7)"});
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.out, testing::StartsWith("error: orbdt:TooLarge: a line of " + std::to_string(longLine.size())));
  EXPECT_TRUE(run.out.ends_with("\n7\n"));
}

}  // namespace
