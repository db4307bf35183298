// orbdt batch against hostile input: absurd sizes, deep nesting, very many struct fields, NUL in
// strings, invalid UTF-8, very long and blank lines. The session must answer every request line
// once, in order, within bounded memory and time, and still answer the last request.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
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

// What one line should get back.
struct Expect {
  enum Kind {
    kNoAnswer,  // blank lines are skipped
    kStored,    // ok
    kRefused,   // refused by the type: the request was read and run in full
    kError,     // refused by orbdt with errorId
  };
  Kind kind;
  std::string errorId;
  std::string id;            // echoed id; empty when none is expected
  std::string valueErrorId;  // for kStored: the read-back's refusal, if one is expected
};

struct Line {
  std::string text;
  Expect expect;
};

Expect stored(std::string id = "", std::string valueErrorId = "") {
  return {Expect::kStored, "", std::move(id), std::move(valueErrorId)};
}
Expect refused(std::string id = "") { return {Expect::kRefused, "", std::move(id), ""}; }
Expect error(std::string errorId, std::string id = "") {
  return {Expect::kError, std::move(errorId), std::move(id), ""};
}

std::string setRequest(const std::string& type, const json& value, const std::string& id) {
  return json{{"op", "set"}, {"type", type}, {"value", value}, {"id", id}}.dump();
}

std::string repeated(const std::string& piece, std::size_t times) {
  std::string text;
  text.reserve(piece.size() * times);
  for (std::size_t i = 0; i < times; ++i) text += piece;
  return text;
}

std::vector<Line> hostileLines() {
  std::vector<Line> lines;
  const auto add = [&](std::string text, Expect expect) { lines.push_back({std::move(text), std::move(expect)}); };
  add(setRequest("MeshAlpha", "0.5", "first"), stored("first"));

  // Sizes far beyond the budget, refused before anything is allocated.
  for (const char* literal :
       {"zeros(1e6,1e6)", "zeros(1e9,1e9,1e9)", "ones(4611686018427387904,2)", "cell(1e5,1e5)", "uint8(zeros(20000))",
        "complex(zeros(1e5),zeros(1e5))", "zeros(3e4,3e4,'int8')", "[zeros(1,2e7) zeros(1,2e7)]"}) {
    add(setRequest("MeshAlpha", literal, literal), error("orbdt:TooLarge", literal));
  }
  // Empty arrays whose other dimensions multiply beyond any size.
  for (const char* literal : {"reshape([],0,1e12,1e12)", "zeros(0,4611686018427387904,4611686018427387904)"}) {
    add(setRequest("MeshAlpha", literal, literal), error("orbdt:BadLiteral", literal));
  }
  const json bigArrays[] = {
      {{"class", "double"}, {"dims", {1000000, 1000000}}, {"re", json::array()}},
      {{"class", "cell"}, {"dims", {1000000, 1000000}}, {"cells", json::array()}},
      {{"class", "char"}, {"dims", {1, 1000000000000}}, {"rows", {""}}},
      {{"class", "struct"}, {"dims", {100000, 100000}}, {"fields", {"a"}}, {"elements", json::array()}},
      {{"class", "int8"}, {"dims", {4611686018427387904, 4}}, {"re", json::array()}},
  };
  for (const json& value : bigArrays) add(setRequest("MeshAlpha", value, "array"), error("orbdt:TooLarge", "array"));
  // A value stored within the budget whose read-back would not fit it.
  add(setRequest("NumericMatrix", "zeros(2000,2000)", "readback"), stored("readback", "orbdt:TooLarge"));

  // Nesting 5,000 to 60,000 deep, in JSON and in literals.
  for (const std::size_t depth : {5000, 60000}) {
    add(R"({"op":"types","id":)" + repeated("[", depth) + repeated("]", depth) + "}", error("orbdt:BadRequest"));
    add(R"({"op":"parse","type":"MeshAlpha","text":)" + repeated("[", depth) + "\"flat\"" + repeated("]", depth) + "}",
        error("orbdt:BadRequest"));
    add(R"({"op":"set","type":"MeshAlpha","value":{"class":"double","dims":[1,1],"re":)" + repeated("[", depth) + "1" +
            repeated("]", depth) + "}}",
        error("orbdt:BadRequest"));
    add(R"({"op":"set","type":"MeshAlpha","value":{"class":"struct","dims":[1,1],"fields":["a"],"elements":[)" +
            repeated(R"({"a":{"class":"struct","dims":[1,1],"fields":["a"],"elements":[)", depth / 4) + "{}" +
            repeated("]}}", depth / 4) + "]}}",
        error("orbdt:BadRequest"));
    for (const std::string& literal :
         {repeated("[", depth) + repeated("]", depth), repeated("{", depth) + repeated("}", depth),
          repeated("struct('a',", depth) + "1" + repeated(")", depth)}) {
      add(setRequest("MeshAlpha", literal, "deep"), error("orbdt:BadLiteral", "deep"));
    }
  }

  // 100,000 struct fields, as a literal and as an ARRAY object; MeshAlpha refuses the struct.
  constexpr int kFields = 100000;
  std::string structLiteral = "struct(";
  json names = json::array();
  json element = json::object();
  for (int f = 0; f < kFields; ++f) {
    const std::string name = "f" + std::to_string(f);
    structLiteral += (f > 0 ? ",'" : "'") + name + "',1";
    names.push_back(name);
    element[name] = nullptr;
  }
  structLiteral += ")";
  add(setRequest("MeshAlpha", structLiteral, "fields"), refused("fields"));
  add(setRequest("MeshAlpha",
                 {{"class", "struct"}, {"dims", {1, 1}}, {"fields", names}, {"elements", json::array({element})}},
                 "fields"),
      refused("fields"));

  // U+0000 in every kind of string, and invalid UTF-8 inside and outside strings.
  for (
      const char* text :
      {R"({"op":"set\u0000","type":"MeshAlpha","value":"1"})",
       R"({"op":"parse","type":"MeshAlpha\u0000","text":"flat"})",
       R"({"op":"parse","type":"MeshAlpha","text":"fl\u0000at"})",
       R"({"op":"set","type":"MeshAlpha","value":"'a\u0000'"})",
       R"({"op":"set","type":"MeshAlpha","value":{"class":"struct","dims":[1,1],"fields":["a\u0000"],"elements":[{}]}})",
       R"({"op":"types","id\u0000":1})",
       "{\"op\":\"parse\",\"type\":\"MeshAlpha\",\"text\":\"fl\xFF"
       "at\"}",
       "{\"op\":\"parse\",\"type\":\"MeshAlpha\",\"text\":\"\xED\xA0\x80\"}", "\xC3\x28{\"op\":\"types\"}"}) {
    add(text, error("orbdt:BadRequest"));
  }

  add("", {Expect::kNoAnswer, "", "", ""});
  add(setRequest("MeshAlpha", "'interp'", "middle"), stored("middle"));
  add(" \t\r", {Expect::kNoAnswer, "", "", ""});

  // Lines of 10 MB: a literal too large to read within the budget, a long id that fits, brackets.
  constexpr std::size_t kLong = 10'000'000;
  add(setRequest("MeshAlpha", "[" + repeated(" 1", kLong / 2) + "]", "long"), error("orbdt:TooLarge", "long"));
  const std::string longId(kLong, 'x');
  add(json{{"op", "types"}, {"id", longId}}.dump(), stored(longId));
  add(std::string(kLong, '['), error("orbdt:BadRequest"));

  add(setRequest("MeshAlpha", "0.25", "last"), stored("last"));
  return lines;
}

struct ChildRun {
  int status = -1;
  bool timedOut = false;
  long maxRssKiB = 0;
  double seconds = 0;
};

// Runs orbdt batch on in, writing standard output to out, limited to addressSpace bytes of address
// space when that is not zero; kills it after limit.
ChildRun runBatch(const std::filesystem::path& in, const std::filesystem::path& out, rlim_t addressSpace,
                  std::chrono::seconds limit) {
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = fork();
  if (child == 0) {
    const int input = open(in.c_str(), O_RDONLY);
    const int output = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const int nowhere = open("/dev/null", O_WRONLY);
    if (input < 0 || output < 0 || nowhere < 0) _exit(126);
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    if (addressSpace != 0) {
      const rlimit space{addressSpace, addressSpace};
      if (setrlimit(RLIMIT_AS, &space) != 0) _exit(126);
    }
    execl(ORBDT_PATH, ORBDT_PATH, "batch", static_cast<char*>(nullptr));
    _exit(127);
  }
  ChildRun run;
  if (child < 0) return run;
  int status = 0;
  rusage usage{};
  for (;;) {
    const pid_t done = wait4(child, &status, WNOHANG, &usage);
    if (done == child) break;
    if (std::chrono::steady_clock::now() - start > limit) {
      run.timedOut = true;
      kill(child, SIGKILL);
      wait4(child, &status, 0, &usage);
      break;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  run.maxRssKiB = usage.ru_maxrss;
  run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return run;
}

TEST(OrbdtHostileBatch, AnswersEveryLineOnceInBoundedMemoryAndTime) {
  const std::vector<Line> lines = hostileLines();
  const auto dir = std::filesystem::temp_directory_path() / ("orbdt_hostile_test_" + std::to_string(getpid()));
  std::filesystem::create_directories(dir);
  {
    std::ofstream in(dir / "in", std::ios::binary);
    for (const Line& line : lines) in << line.text << '\n';
  }

#ifdef ORB_TEST_ASAN
  // The sanitizer reserves terabytes of address space, and its allocator keeps freed memory aside.
  constexpr rlim_t kAddressSpace = 0;
  constexpr long kMaxRssKiB = 2L << 20;
#else
  // About four times the default request budget of 256 MiB: within it, but far from what any
  // absurd size would need had it not been refused.
  constexpr rlim_t kAddressSpace = rlim_t{1} << 30;
  constexpr long kMaxRssKiB = 512L << 10;
#endif
  const ChildRun run = runBatch(dir / "in", dir / "out", kAddressSpace, std::chrono::seconds(60));
  std::cout << "orbdt batch on " << lines.size() << " hostile lines: peak RSS " << run.maxRssKiB / 1024 << " MiB, "
            << run.seconds << " s\n";
  ASSERT_FALSE(run.timedOut);
  EXPECT_EQ(run.status, 0);
  EXPECT_LE(run.maxRssKiB, kMaxRssKiB);

  std::ifstream out(dir / "out", std::ios::binary);
  std::vector<std::string> answers;
  for (std::string answer; std::getline(out, answer);) answers.push_back(answer);
  std::filesystem::remove_all(dir);

  std::size_t next = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const Expect& expect = lines[i].expect;
    SCOPED_TRACE(testing::Message() << "line " << i + 1 << ": " << lines[i].text.substr(0, 80));
    if (expect.kind == Expect::kNoAnswer) continue;
    ASSERT_LT(next, answers.size()) << "no answer";
    const json answer = json::parse(answers[next++], nullptr, false);
    ASSERT_TRUE(answer.is_object());
    EXPECT_EQ(answer.value("ok", false), expect.kind == Expect::kStored) << answers[next - 1].substr(0, 300);
    const std::string errorId = answer.contains("error") ? answer["error"].value("id", "") : "";
    if (expect.kind == Expect::kError) {
      EXPECT_EQ(errorId, expect.errorId);
    } else if (expect.kind == Expect::kRefused) {
      EXPECT_THAT(errorId, testing::Not(testing::StartsWith("orbdt:")));
    }
    if (!expect.valueErrorId.empty()) {
      EXPECT_EQ(answer["valueError"].value("id", ""), expect.valueErrorId);
    }
    if (expect.id.empty()) {
      EXPECT_FALSE(answer.contains("id"));
    } else {
      EXPECT_EQ(answer.value("id", ""), expect.id);
    }
  }
  EXPECT_EQ(next, answers.size()) << "more answers than request lines";
}

}  // namespace
