// The orbdt program end to end: each command, --json, batch, sessions, exit statuses and usage errors.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using nlohmann::json;
using ::testing::HasSubstr;

const std::filesystem::path kDir =
    std::filesystem::temp_directory_path() / ("orbdt_cli_test_" + std::to_string(getpid()));

struct ProgramRun {
  int status;
  std::string out, err;
};

std::string slurp(const std::filesystem::path& path) {
  std::ifstream in(path);
  return {std::istreambuf_iterator<char>(in), {}};
}

// Runs orbdt with the arguments (already quoted for the shell) and the given standard input; the
// environment assignments (also quoted) come before the program.
ProgramRun orbdt(const std::string& arguments, const std::string& input = "", const std::string& environment = "") {
  std::filesystem::create_directories(kDir);
  std::ofstream(kDir / "in") << input;
  const std::string command = environment + " " + ORBDT_PATH + " " + arguments + " < " + (kDir / "in").string() +
                              " > " + (kDir / "out").string() + " 2> " + (kDir / "err").string();
  const int raw = std::system(command.c_str());
  return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, slurp(kDir / "out"), slurp(kDir / "err")};
}

// Each member of expected is in the answer with an equal value, objects compared member by member
// the same way; a null member may also be absent.
bool hasMembers(const json& answer, const json& expected) {
  if (!expected.is_object() || !answer.is_object()) return answer == expected;
  for (const auto& [key, value] : expected.items()) {
    if (answer.contains(key) ? !hasMembers(answer[key], value) : !value.is_null()) return false;
  }
  return true;
}

// Standard output for statuses 0 and 1; usage errors (status 2) go to standard error. The java
// command starts a Java machine in orbdt's process.
TEST(OrbdtCommands, PeopleSeeValuesTextsRefusalsAndUsageErrors) {
  const std::tuple<const char*, int, const char*> cases[] = {
      {"types", 0, "korvax.graphics.datatype.MeshAlpha\n"},
      {"describe korvax.graphics.datatype.MeshAlpha", 0, "possible values: 'flat' 'interp' 'texturemap'"},
      {"set MeshAlpha 0.25", 0, "value: 0.25\ntext:  0.25\n"},
      {"set MeshAlpha \"'interp'\"", 0, "value: 'interp'\ntext:  interp\n"},
      {"parse MeshAlpha ' Flat '", 0, "value: 'flat'\n"},
      {"set MeshAlpha 1.5", 1, "error: Korvax:orb:dt_conv:Matrix_to_Real:ValueOutsideRange: "},
      {"parse MeshAlpha opaque", 1, "error: Korvax:orb:dt_conv:Matrix_to_Real:ExpectedNumeric1: "},
      {"equal MeshAlpha \"'interp'\" \"'i'\"", 0, "equal:   true\ncompare: 0\n"},
      {"equal MeshAlpha 0.5 NaN", 1, "ValueOutsideRange"},
      {"equal MeshAlpha 0.5 0.25", 0, "equal:   false\ncompare: 2\n"},
      {"set NoSuchType 1", 2, "error: orbdt:UnknownType: "},
      {"set Color \"'r'\"", 2, "hint: did you mean 'MeshColor', 'RGBAColor' or 'PatchColor'?"},
      {"describe korvax.graphics.datatype.LineStyl", 2, "hint: did you mean 'korvax.graphics.datatype.LineStyle'"},
      {"set MeshAlpha '[1 2'", 2, "error: orbdt:BadLiteral: "},
      {"set MeshAlpha", 2, "orbdt: set takes TYPE VALUE (orbdt --help shows every command and option)\n"},
      {"run", 2, "orbdt: run takes FILE"},
      {"sett MeshAlpha 1", 2, "orbdt: unknown command 'sett'; did you mean 'set'?"},
      {"demo --json", 2, "orbdt: --json does not apply to demo"},
      {"types --verbose", 2, "orbdt: unknown option '--verbose'"},
      {"set RGBAColor red", 2, "hint: text is written in quotes: 'red'"},
      {"demo", 0, "surface.FaceAlpha = 'interp'"},
      {"demo", 0, "refused Korvax:orb:dt_conv:Matrix_to_Real:ValueOutsideRange"},
      {"run /no/such/file", 2, "orbdt: "},
      {"java RGBAColor \"'r'\"", 0,
       "java class: korvax.graphics.types.OrbColor\njava text:  OrbColor[1.0 0.0 0.0 1.0]"},
      {"java JavaPeer 'complex(1, 2)'", 1, "error: Korvax:class:JavaConversionError: "},
      {"describe Point2", 0, "text form:        fixed by the type's rule"},
      {"describe Point2", 0, "java form:        java.awt.Point"},
      // The request limit is an option, and refusals name it.
      {"set MeshAlpha 'zeros(1e6, 1e6)'", 2,
       "error: orbdt:TooLarge: zeros at column 1: a 1000000x1000000 double array needs 8000000000000 bytes (7.3 TiB); "
       "the limit is 268435456 bytes (256 MiB)"},
      {"--max-request-bytes 1M set MeshAlpha 'zeros(1000)'", 2, "the limit is 1048576 bytes (1 MiB)"},
      {"set MeshAlpha 'zeros(1000)' --max-request-bytes=64K", 2, "the limit is 65536 bytes (64 KiB)"},
      {"types --max-request-bytes", 2, "--max-request-bytes needs a byte count"},
      {"--help", 0, "--max-request-bytes N"},
  };
  for (const auto& [arguments, status, shown] : cases) {
    SCOPED_TRACE(arguments);
    const ProgramRun run = orbdt(arguments);
    EXPECT_EQ(run.status, status) << run.out << run.err;
    EXPECT_THAT(status == 2 ? run.err : run.out, HasSubstr(shown));
  }
}

TEST(OrbdtCommands, JsonModeWritesOneResponseObject) {
  const std::tuple<const char*, int, json> cases[] = {
      {"set MeshAlpha \"'flat'\" --json", 0, {{"value", {{"class", "char"}, {"rows", {"flat"}}}}, {"text", "flat"}}},
      {"describe MeshAlpha --json",
       0,
       {{"sizeInBits", 128},
        {"className", "MeshAlphaDataType"},
        {"default", {{"re", {1.0}}}},
        {"textForm", "fixed"},
        {"possibleValues", {"flat", "interp", "texturemap"}}}},
      {"describe Callback --json", 0, {{"textForm", "none"}, {"defaultHoldsValue", false}}},
      {"java Positive 0.5 --json", 0, {{"javaClass", "korvax.graphics.types.OrbDouble"}, {"equal", true}}},
  };
  for (const auto& [arguments, status, members] : cases) {
    SCOPED_TRACE(arguments);
    const ProgramRun run = orbdt(arguments);
    EXPECT_EQ(run.status, status) << run.err;
    EXPECT_TRUE(hasMembers(json::parse(run.out), members)) << run.out;
  }
}

// One answer per line, in order, going on after bad lines; objects made in a batch are found by
// their handles. Blank lines and hostile input are left to orbdt_hostile_test.
TEST(OrbdtBatch, AnswersEveryLineInOrder) {
  struct Exchange {
    std::string line;
    json answer;  // members the answer has
  };
  const json badRequest = {{"error", {{"id", "orbdt:BadRequest"}}}};
  const Exchange exchanges[] = {
      {R"({"op":"set","type":"MeshAlpha","value":{"class":"single","dims":[1,1],"re":[0.5]},"id":1})",
       {{"id", 1}, {"text", "0.5"}}},
      {R"({"op":"set","type":"MeshAlpha","value":null})",
       {{"empty", true}, {"value", {{"dims", {0, 0}}}}, {"text", nullptr}}},
      {R"({"op":"parse","type":"MeshAlpha","text":"interp","id":"x"})", {{"id", "x"}, {"text", "interp"}}},
      {R"({"op":"equal","type":"MeshAlpha","a":"0.5","b":{"class":"double","dims":[1,1],"re":[0.5]}})",
       {{"equal", true}, {"compare", 0}}},
      {R"({"op":"set","type":"MeshAlpha","value":"2"})",
       {{"ok", false}, {"error", {{"id", "Korvax:orb:dt_conv:Matrix_to_Real:ValueOutsideRange"}}}}},
      {R"({"op":"fly"})", badRequest},
      {R"({"op":"parse","type":"MeshAlpha","text":"flatt","id":2})", {{"id", 2}, {"hint", "did you mean 'flat'?"}}},
      {R"({"op":"new","class":"figure"})", {{"handle", 1.0}}},
      {R"({"op":"new","class":"line","props":{"Parent":"1","LineWidth":"3"}})", {{"handle", 0.5}}},
      {R"({"op":"getprop","handle":0.5,"property":"Parent"})", {{"value", "figure 1"}}},
      {R"({"op":"setprop","handle":0.5,"property":"LineWidth","value":"-1"})",
       {{"error", {{"id", "Korvax:datatypes:valueOutsideValidRange"}}}}},
      {R"({"op":"getprop","handle":0.5,"property":"LineWidth"})", {{"value", "3"}}},
      {R"({"op":"new","class":"line","props":{"Parent":"7"}})",
       {{"error", {{"id", "Korvax:datatypes:handleoremptydatatype:InvalidOrbHandle"}}}}},
      {R"({"op":"new","class":"line","props":[]})", badRequest},
      {R"({"op":"delete","handle":1})", {{"ok", true}}},
      {R"({"op":"getprop","handle":0.5,"property":"LineWidth"})",
       {{"error", {{"id", "Korvax:orb:dt_conv:Matrix_to_HObject:BadHandle"}}}}},
      {R"({"op":"types"})", {{"ok", true}}},  // its list is checked below
      {R"({"op":"set","type":"MeshAlpha","value":"'interp'","id":4})", {{"id", 4}, {"text", "interp"}}},
  };
  std::string input;  // the last line has no end of line
  for (const Exchange& exchange : exchanges) input += (input.empty() ? "" : "\n") + exchange.line;
  const ProgramRun run = orbdt("batch", input);
  EXPECT_EQ(run.status, 0);
  std::istringstream lines(run.out);
  std::vector<json> answers;
  for (std::string line; std::getline(lines, line);) answers.push_back(json::parse(line));
  ASSERT_EQ(answers.size(), std::size(exchanges));
  for (std::size_t i = 0; i < answers.size(); ++i) {
    SCOPED_TRACE(exchanges[i].line);
    EXPECT_TRUE(hasMembers(answers[i], exchanges[i].answer)) << answers[i].dump();
  }
  EXPECT_THAT(answers[answers.size() - 2]["types"], ::testing::Contains("korvax.graphics.datatype.MeshAlpha"));
}

// Refused names come with the nearest valid ones, in text and in JSON, from every command.
TEST(OrbdtHints, RefusedNamesComeWithTheNearestValidOnes) {
  const std::pair<std::string, std::string> cases[] = {
      // arguments, and the hint or "" for none
      {"set MeshAlpha \"'texturmap'\"", "did you mean 'texturemap'?"},
      {"parse LineStyle --.", "did you mean '--' or '-.'?"},
      {"equal MeshAlpha 0.5 \"'intrep'\"", "did you mean 'interp'?"},
      {"parse LineStyle dashd", ""},  // no name is near enough
  };
  for (const auto& [arguments, hint] : cases) {
    SCOPED_TRACE(arguments);
    const ProgramRun text = orbdt(arguments);
    EXPECT_EQ(text.status, 1) << text.err;
    const json response = json::parse(orbdt(arguments + " --json").out);
    if (hint.empty()) {
      EXPECT_THAT(text.out, ::testing::Not(HasSubstr("hint:")));
      EXPECT_FALSE(response.contains("hint"));
    } else {
      EXPECT_THAT(text.out, HasSubstr("\nhint: " + hint + "\n"));
      EXPECT_EQ(response["hint"], hint);
    }
  }
}

TEST(OrbdtLibrary, LoadFailuresNameTheFileTried) {
  const std::string named = " \\(named by ORBDT_LIBRARY\\): ";
  const std::pair<std::string, std::string> cases[] = {
      {"", "ORBDT_LIBRARY is set but empty: .* unset it to load [^ ]*/liborbdatatypes\\.so"},
      {"/nonexistent/liborbdatatypes.so", "library /nonexistent/liborbdatatypes\\.so" + named + "no such file"},
      {kDir.string(), kDir.string() + named + "it is a directory"},
  };
  for (const auto& [library, message] : cases) {
    SCOPED_TRACE(library);
    const ProgramRun run = orbdt("types", "", "ORBDT_LIBRARY=" + library);
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, ::testing::StartsWith("orbdt: "));
    EXPECT_THAT(run.err, ::testing::ContainsRegex(message));
  }
}

// A session's lines and, for each, what it prints: it makes, sets, reads and deletes objects and goes on
// after refused lines. Run as a script, a refusal names the file, line and column.
TEST(OrbdtSession, ScriptsPrintEachLinesAnswerAndGoOnAfterRefusals) {
  const std::pair<const char*, std::string> kSteps[] = {
      {"f = figure", "f = 1\n"},
      {"a = axes(Parent=f)", "a = 0.5\n"},
      {"l = line(Parent=a, LineWidth=2)", "l = 1.5\n"},
      {"% a comment", ""},
      {"l.Parent", "ans = axes 0.5\n"},
      {"a.Parent = l", "error: Korvax:objsys:InvalidParent: "},
      {"l.ButtonDownFcn = {@disp, 'clicked'}", ""},
      {"click(l)", "1.5\n[]\nclicked\n"},
      {"set(l, 'ButtonDownFcn', 'disp(''ran''); disp([1 2])')", ""},
      {"click(l)", "ran\n[1 2]\n"},
      {"l.ButtonDownFcn = @nosuch", ""},
      {"click(l)", "error: Korvax:UndefinedFunction: Undefined function 'nosuch'.\n"},
      {"b = line(Parent=99)", "error: Korvax:datatypes:handleoremptydatatype:InvalidOrbHandle: "},
      {"b",
       "error: Korvax:UndefinedFunction: Undefined function or variable 'b'.\nhint: text is written in quotes: 'b'\n"},
      {"fgure",
       "error: Korvax:UndefinedFunction: Undefined function or variable 'fgure'.\nhint: did you mean 'figure'?\n"},
      {"teapot(Parent=f)", "error: orbdt:BadLiteral: unknown function 'teapot'"},
      {"l.Colour = 1",
       "error: Korvax:objsys:UnknownProperty: There is no Colour property on the line class.\n"
       "hint: did you mean 'Color'?\n"},
      {"x = \"it\"\"s\"", "x = 'it\"s'\n"},
      {"delete(f)", ""},
      {"l.Parent", "error: Korvax:orb:dt_conv:Matrix_to_HObject:BadHandle: Invalid object handle\n"},
      {"g = figure", "g = 1\n"},
  };
  std::string lines;
  for (const auto& [line, prints] : kSteps) lines += std::string(line) + "\n";
  const ProgramRun run = orbdt("repl", lines);
  EXPECT_EQ(run.status, 1) << "some lines were refused";
  std::size_t at = 0;
  for (const auto& [line, prints] : kSteps) {
    SCOPED_TRACE(line);
    ASSERT_EQ(run.out.find(prints, at), at) << run.out.substr(at, 200);
    if (!prints.empty()) at = run.out.find('\n', at + prints.size() - 1) + 1;
  }
  EXPECT_EQ(at, run.out.size());

  std::filesystem::create_directories(kDir);
  std::ofstream(kDir / "session.orb") << lines;
  const ProgramRun script = orbdt("run " + (kDir / "session.orb").string());
  EXPECT_EQ(script.status, 1);
  EXPECT_THAT(script.out, HasSubstr((kDir / "session.orb").string() + ":6:1: error: Korvax:objsys:InvalidParent: "));
  EXPECT_THAT(script.out,
              HasSubstr((kDir / "session.orb").string() + ":16:1: error: orbdt:BadLiteral: unknown function"));

  // Piped input is a script: no prompts.
  EXPECT_EQ(orbdt("repl", "f = figure\nf.Colour\n").out,
            "f = 1\nerror: Korvax:objsys:UnknownProperty: There is no Colour property on the figure class.\n"
            "hint: did you mean 'Color'?\n");
}

// Ctrl-C while the session waits for a line stops nothing but the line being typed: the session goes
// on with the next line.
TEST(OrbdtSession, AnInterruptLeavesTheSessionRunning) {
  int toOrbdt[2];
  int fromOrbdt[2];
  ASSERT_EQ(pipe(toOrbdt), 0);
  ASSERT_EQ(pipe(fromOrbdt), 0);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    dup2(toOrbdt[0], STDIN_FILENO);
    dup2(fromOrbdt[1], STDOUT_FILENO);
    for (const int fd : {toOrbdt[0], toOrbdt[1], fromOrbdt[0], fromOrbdt[1]}) close(fd);
    execl(ORBDT_PATH, ORBDT_PATH, "repl", static_cast<char*>(nullptr));
    _exit(127);
  }
  close(toOrbdt[0]);
  close(fromOrbdt[1]);
  const auto say = [&](const std::string& line) {
    ASSERT_EQ(write(toOrbdt[1], line.data(), line.size()), ssize_t(line.size()));
  };
  const auto hear = [&] {
    char buffer[256];
    const ssize_t count = read(fromOrbdt[0], buffer, sizeof buffer);
    return count > 0 ? std::string(buffer, static_cast<std::size_t>(count)) : std::string();
  };
  say("disp(1)\n");
  EXPECT_EQ(hear(), "1\n");
  say("disp(");  // half a line, then Ctrl-C
  usleep(100000);
  kill(child, SIGINT);
  usleep(100000);
  say("disp(2)\n");
  EXPECT_EQ(hear(), "2\n");
  close(toOrbdt[1]);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
  close(fromOrbdt[0]);
}

}  // namespace
