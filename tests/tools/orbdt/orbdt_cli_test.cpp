// The orbdt program end to end: each command, --json, batch, exit statuses and usage errors.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

namespace {

using ::testing::HasSubstr;

struct ProgramRun {
  int status;
  std::string out;
  std::string err;
};

std::string slurp(const std::filesystem::path& path) {
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

// Runs orbdt with the arguments (already quoted for the shell) and the given standard input; the
// environment assignments (also quoted) come before the program.
ProgramRun orbdt(const std::string& arguments, const std::string& input = "", const std::string& environment = "") {
  const auto dir = std::filesystem::temp_directory_path() / ("orbdt_cli_test_" + std::to_string(getpid()));
  std::filesystem::create_directories(dir);
  std::ofstream(dir / "in") << input;
  const std::string command = environment + " " + std::string(ORBDT_PATH) + " " + arguments + " < " +
                              (dir / "in").string() + " > " + (dir / "out").string() + " 2> " + (dir / "err").string();
  const int raw = std::system(command.c_str());
  return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, slurp(dir / "out"), slurp(dir / "err")};
}

TEST(OrbdtCommands, PeopleSeeValuesTextsAndRefusals) {
  struct Case {
    const char* arguments;
    int status;
    const char* out;  // expected in standard output (or standard error for usage errors)
  };
  const Case cases[] = {
      {"types", 0, "korvax.graphics.datatype.MeshAlpha\n"},
      {"describe MeshAlpha", 0, "possible values: 'flat' 'interp' 'texturemap'"},
      {"describe korvax.graphics.datatype.MeshAlpha", 0, "size:             128 bits, 16 bytes"},
      {"set MeshAlpha 0.25", 0, "value: 0.25\ntext:  0.25\n"},
      {"set MeshAlpha \"'interp'\"", 0, "value: 'interp'\ntext:  interp\n"},
      {"set MeshAlpha \"int8(1)\"", 0, "value: 1\n"},
      {"parse MeshAlpha ' Flat '", 0, "value: 'flat'\n"},
      {"set MeshAlpha 1.5", 1, "error: Korvax:orb:dt_conv:Matrix_to_Real:ValueOutsideRange: "},
      {"parse MeshAlpha opaque", 1, "error: Korvax:orb:dt_conv:Matrix_to_Real:ExpectedNumeric1: "},
      {"equal MeshAlpha \"'interp'\" \"'i'\"", 0, "equal:   true\ncompare: 0\n"},
      {"equal MeshAlpha 0.5 NaN", 1, "ValueOutsideRange"},
      {"equal MeshAlpha 0.5 0.25", 0, "equal:   false\ncompare: 2\n"},
      {"set NoSuchType 1", 2, "error: orbdt:UnknownType: "},
      {"set MeshAlpha '[1 2'", 2, "error: orbdt:BadLiteral: "},
      {"set MeshAlpha '[1 2; 3]'", 2, "error: orbdt:BadLiteral: "},
      {"set MeshAlpha 'frobnicate(1)'", 2, "unknown function 'frobnicate'"},
      {"set MeshAlpha", 2, "usage: orbdt"},
      {"", 2, "usage: orbdt"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.arguments);
    const ProgramRun run = orbdt(c.arguments);
    EXPECT_EQ(run.status, c.status) << run.out << run.err;
    EXPECT_THAT(c.status == 2 ? run.err : run.out, HasSubstr(c.out));
  }
}

// orbdt java starts a Java machine in orbdt's process and shows a value's crossing.
TEST(OrbdtCommands, JavaShowsTheJavaFormAndTheValueBack) {
  struct Case {
    const char* arguments;
    int status;
    const char* out;
  };
  const Case cases[] = {
      {"java RGBAColor \"'r'\"", 0, "java class: korvax.graphics.types.OrbColor\njava text:  OrbColor[1.0 0.0 0.0 1.0]"},
      {"java ColorMap '[0 0 1;1 0 0]'", 0, "java class: [[D\njava text:  [[0.0, 0.0, 1.0], [1.0, 0.0, 0.0]]"},
      {"java Rectangle2 '[1 2 3 4]'", 0, "equal:      true"},
      {"java JavaPeer 'complex(1, 2)'", 1, "error: Korvax:class:JavaConversionError: "},
      {"describe Point2", 0, "java form:        java.awt.Point"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.arguments);
    const ProgramRun run = orbdt(c.arguments);
    EXPECT_EQ(run.status, c.status) << run.out << run.err;
    EXPECT_THAT(run.out, HasSubstr(c.out));
  }
  const nlohmann::json answer = nlohmann::json::parse(orbdt("java Positive 0.5 --json").out);
  EXPECT_EQ(answer["javaClass"], "korvax.graphics.types.OrbDouble");
  EXPECT_EQ(answer["equal"], true);
}

TEST(OrbdtCommands, JsonModeWritesOneResponseObject) {
  const ProgramRun set = orbdt("set MeshAlpha \"'flat'\" --json");
  EXPECT_EQ(set.status, 0);
  const auto response = nlohmann::json::parse(set.out);
  EXPECT_EQ(response["type"], "korvax.graphics.datatype.MeshAlpha");
  EXPECT_EQ(response["empty"], false);
  EXPECT_EQ(response["value"]["class"], "char");
  EXPECT_EQ(response["value"]["rows"], nlohmann::json::array({"flat"}));
  EXPECT_EQ(response["text"], "flat");

  const ProgramRun refused = orbdt("--json set MeshAlpha -1");
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(nlohmann::json::parse(refused.out)["error"]["id"], "Korvax:orb:dt_conv:Matrix_to_Real:ValueOutsideRange");

  const auto described = nlohmann::json::parse(orbdt("describe MeshAlpha --json").out);
  EXPECT_EQ(described["sizeInBits"], 128);
  EXPECT_EQ(described["className"], "MeshAlphaDataType");
  EXPECT_EQ(described["default"]["re"], nlohmann::json::array({1.0}));
  EXPECT_EQ(described["possibleValues"], nlohmann::json::array({"flat", "interp", "texturemap"}));
}

TEST(OrbdtBatch, AnswersEveryLineInOrderAndGoesOnAfterBadOnes) {
  const std::string input =
      R"({"op":"set","type":"MeshAlpha","value":{"class":"single","dims":[1,1],"re":[0.5]},"id":1})"
      "\n"
      R"({"op":"set","type":"MeshAlpha","value":null})"
      "\n"
      "not json\n"
      R"({"op":"parse","type":"MeshAlpha","text":"interp","id":"x"})"
      "\n"
      R"({"op":"equal","type":"MeshAlpha","a":"0.5","b":{"class":"double","dims":[1,1],"re":[0.5]}})"
      "\n"
      R"({"op":"set","type":"MeshAlpha","value":"2"})"
      "\n"
      R"({"op":"fly"})"
      "\n"
      R"({"op":"types"})"
      "\n";
  const ProgramRun run = orbdt("batch", input);
  EXPECT_EQ(run.status, 0);
  std::istringstream lines(run.out);
  std::vector<nlohmann::json> responses;
  for (std::string line; std::getline(lines, line);) responses.push_back(nlohmann::json::parse(line));
  ASSERT_EQ(responses.size(), 8u);
  EXPECT_EQ(responses[0]["id"], 1);
  EXPECT_EQ(responses[0]["text"], "0.5");
  EXPECT_EQ(responses[1]["empty"], true);
  EXPECT_EQ(responses[1]["value"]["dims"], nlohmann::json::array({0, 0}));
  EXPECT_TRUE(responses[1]["text"].is_null());
  EXPECT_EQ(responses[2]["error"]["id"], "orbdt:BadRequest");
  EXPECT_EQ(responses[3]["id"], "x");
  EXPECT_EQ(responses[3]["text"], "interp");
  EXPECT_EQ(responses[4]["equal"], true);
  EXPECT_EQ(responses[4]["compare"], 0);
  EXPECT_EQ(responses[5]["ok"], false);
  EXPECT_EQ(responses[5]["error"]["id"], "Korvax:orb:dt_conv:Matrix_to_Real:ValueOutsideRange");
  EXPECT_EQ(responses[6]["error"]["id"], "orbdt:BadRequest");
  EXPECT_THAT(responses[7]["types"], ::testing::Contains("korvax.graphics.datatype.MeshAlpha"));
}

TEST(OrbdtHints, RefusedNamesComeWithTheNearestValidOnes) {
  struct Case {
    const char* arguments;
    const char* hint;  // "" when none is expected
  };
  const Case cases[] = {
      {"parse MeshAlpha flatt", "did you mean 'flat'?"},
      {"parse MeshAlpha Interpp", "did you mean 'interp'?"},
      {"set MeshAlpha \"'texturmap'\"", "did you mean 'texturemap'?"},
      {"parse LineStyle nome", "did you mean 'none'?"},
      {"parse LineStyle --.", "did you mean '--' or '-.'?"},
      {"parse PrimLineStyle dased", "did you mean 'dashed'?"},
      {"equal MeshAlpha 0.5 \"'intrep'\"", "did you mean 'interp'?"},
      {"parse LineStyle dashd", ""},
      {"parse MeshAlpha opaque", ""},
      {"set MeshAlpha 1.5", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.arguments);
    const ProgramRun text = orbdt(c.arguments);
    EXPECT_EQ(text.status, 1) << text.err;
    const ProgramRun json = orbdt(std::string(c.arguments) + " --json");
    const auto response = nlohmann::json::parse(json.out);
    if (*c.hint == '\0') {
      EXPECT_THAT(text.out, ::testing::Not(HasSubstr("hint:")));
      EXPECT_FALSE(response.contains("hint"));
    } else {
      EXPECT_THAT(text.out, HasSubstr(std::string("\nhint: ") + c.hint + "\n"));
      EXPECT_EQ(response["hint"], c.hint);
    }
  }
}

TEST(OrbdtLibrary, LoadFailuresNameTheFileTried) {
  const auto dir = std::filesystem::temp_directory_path() / ("orbdt_library_test_" + std::to_string(getpid()));
  std::filesystem::create_directories(dir);
  std::ofstream(dir / "notalib.so") << "not a library\n";
  struct Case {
    std::string environment;
    std::vector<std::string> messages;
  };
  const Case cases[] = {
      {"ORBDT_LIBRARY=", {"ORBDT_LIBRARY is set but empty", "liborbdatatypes.so"}},
      {"ORBDT_LIBRARY=/nonexistent/liborbdatatypes.so",
       {"cannot load the data type library /nonexistent/liborbdatatypes.so (named by ORBDT_LIBRARY): no such file"}},
      {"ORBDT_LIBRARY=" + dir.string(), {dir.string() + " (named by ORBDT_LIBRARY): it is a directory"}},
      {"ORBDT_LIBRARY=" + (dir / "notalib.so").string(),
       {(dir / "notalib.so").string() + " (named by ORBDT_LIBRARY): "}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.environment);
    const ProgramRun run = orbdt("types", "", c.environment);
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, ::testing::StartsWith("orbdt: "));
    for (const std::string& message : c.messages) EXPECT_THAT(run.err, HasSubstr(message));
  }
  std::filesystem::remove_all(dir);
}

TEST(OrbdtLimits, TheRequestLimitIsAnOptionAndRefusalsNameIt) {
  struct Case {
    const char* arguments;
    int status;
    const char* message;  // in standard error for status 2, else standard output
  };
  const Case cases[] = {
      {"set MeshAlpha 'zeros(1e6, 1e6)'", 2,
       "error: orbdt:TooLarge: zeros at column 1: a 1000000x1000000 double array needs 8000000000000 bytes (7.3 TiB); "
       "the limit is 268435456 bytes (256 MiB)"},
      {"--max-request-bytes 1M set MeshAlpha 'zeros(1000)'", 2, "the limit is 1048576 bytes (1 MiB)"},
      {"set MeshAlpha 'zeros(1000)' --max-request-bytes=64K", 2, "the limit is 65536 bytes (64 KiB)"},
      {"set MeshAlpha 0.5 --max-request-bytes 64K", 0, "value: 0.5"},
      {"set MeshAlpha 0.5 --max-request-bytes 0", 2, "--max-request-bytes needs a byte count"},
      {"set MeshAlpha 0.5 --max-request-bytes lots", 2, "--max-request-bytes needs a byte count"},
      {"types --max-request-bytes", 2, "--max-request-bytes needs a byte count"},
      {"--help", 0, "--max-request-bytes N"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.arguments);
    const ProgramRun run = orbdt(c.arguments);
    EXPECT_EQ(run.status, c.status) << run.out << run.err;
    EXPECT_THAT(c.status == 2 ? run.err : run.out, HasSubstr(c.message));
  }
}

TEST(OrbdtBatch, AnswersEveryLineButBlankOnesEvenAfterRefusals) {
  const std::string input =
      "\n"
      R"x({"op":"set","type":"MeshAlpha","value":"zeros(1e6,1e6)","id":1})x"
      "\n \t\r\n"
      R"({"op":"parse","type":"MeshAlpha","text":"flatt","id":2})"
      "\n"
      R"({"op":"parse","type":"MeshAlpha\u0000","text":"flat","id":3})"
      "\n"
      "\xFF\n"
      R"({"op":"set","type":"MeshAlpha","value":"'interp'","id":4})";
  const ProgramRun run = orbdt("batch", input);
  EXPECT_EQ(run.status, 0);
  std::istringstream lines(run.out);
  std::vector<nlohmann::json> responses;
  for (std::string line; std::getline(lines, line);) responses.push_back(nlohmann::json::parse(line));
  ASSERT_EQ(responses.size(), 5u);
  EXPECT_EQ(responses[0]["id"], 1);
  EXPECT_EQ(responses[0]["error"]["id"], "orbdt:TooLarge");
  EXPECT_EQ(responses[1]["id"], 2);
  EXPECT_EQ(responses[1]["hint"], "did you mean 'flat'?");
  EXPECT_EQ(responses[2]["error"]["id"], "orbdt:BadRequest");
  EXPECT_FALSE(responses[2].contains("id"));
  EXPECT_EQ(responses[3]["error"]["id"], "orbdt:BadRequest");
  EXPECT_EQ(responses[4]["id"], 4);
  EXPECT_EQ(responses[4]["text"], "interp");
}

TEST(OrbdtDemo, ShowsStoredAndRefusedValues) {
  const ProgramRun run = orbdt("demo");
  EXPECT_EQ(run.status, 0) << run.out << run.err;
  EXPECT_THAT(run.out, HasSubstr("surface.FaceAlpha = 'interp'"));
  EXPECT_THAT(run.out, HasSubstr("refused Korvax:orb:dt_conv:Matrix_to_Real:ValueOutsideRange"));
}

// A session script's lines and, for each, what it prints.
struct ScriptStep {
  const char* line;
  const char* prints;  // "" prints nothing
};

TEST(OrbdtSession, ScriptsMakeSetReadAndDeleteObjectsAndGoOnAfterRefusals) {
  const ScriptStep kSteps[] = {
      {"f = figure", "f = 1\n"},
      {"a = axes(Parent=f)", "a = 0.5\n"},
      {"l = line(Parent=a, LineWidth=2)", "l = 1.5\n"},
      {"% a comment", ""},
      {"l.Parent", "ans = axes 0.5\n"},
      {"l.LineWidth = 0", "error: Korvax:datatypes:valueOutsideValidRange: Value should be greater than 0\n"},
      {"l.LineWidth", "ans = 2\n"},
      {"l.Parent = 'abc'", "error: Korvax:datatypes:handleoremptydatatype:InvalidOrbHandle: "},
      {"a.Parent = l", "error: Korvax:objsys:InvalidParent: "},
      {"l.ButtonDownFcn = {@disp, 'clicked'}", ""},
      {"click(l)", "1.5\n[]\nclicked\n"},
      {"set(l, 'ButtonDownFcn', 'disp(''ran''); disp([1 2])')", ""},
      {"click(l)", "ran\n[1 2]\n"},
      {"l.ButtonDownFcn = 'y = 2'", ""},
      {"click(l)", "error: Korvax:cmdlang:CannotEvaluate: Cannot run 'y = 2'"},
      {"l.ButtonDownFcn = @nosuch", ""},
      {"click(l)", "error: Korvax:UndefinedFunction: Undefined function 'nosuch'.\n"},
      {"b = line(Parent=99)", "error: Korvax:datatypes:handleoremptydatatype:InvalidOrbHandle: "},
      {"b", "error: Korvax:UndefinedFunction: Undefined function or variable 'b'.\n"},
      {"teapot(Parent=f)", "error: orbdt:BadLiteral: unknown function 'teapot'"},
      {"l.Colour = 1", "error: Korvax:objsys:UnknownProperty: "},
      {"delete(f)", ""},
      {"l.Parent", "error: Korvax:orb:dt_conv:Matrix_to_HObject:BadHandle: Invalid object handle\n"},
      {"x = [1 2", "error: orbdt:BadLiteral: "},
      {"g = figure", "g = 1\n"},
  };
  std::string script;
  for (const ScriptStep& step : kSteps) script += std::string(step.line) + "\n";
  const auto file = std::filesystem::temp_directory_path() / ("orbdt_session_" + std::to_string(getpid()) + ".orb");
  std::ofstream(file) << script;
  const ProgramRun run = orbdt("run " + file.string());
  EXPECT_EQ(run.status, 1) << "some lines were refused";
  std::size_t at = 0;
  for (const ScriptStep& step : kSteps) {
    SCOPED_TRACE(step.line);
    const std::size_t found = run.out.find(step.prints, at);
    ASSERT_EQ(found, at) << run.out.substr(at, 200);
    at = step.prints[0] == '\0' ? at : run.out.find('\n', found + std::string(step.prints).size() - 1) + 1;
  }
  EXPECT_EQ(at, run.out.size());
  std::filesystem::remove(file);
}

TEST(OrbdtSession, TheReplPromptsForEachLine) {
  const ProgramRun run = orbdt("repl", "f = figure\nf.Colour\n");
  EXPECT_EQ(run.out, ">> f = 1\n>> error: Korvax:objsys:UnknownProperty: There is no Colour property on the figure class.\n>> \n");
  EXPECT_EQ(orbdt("run /no/such/file").status, 2);
}

TEST(OrbdtBatch, ObjectsAreMadeSetReadAndDeletedByHandle) {
  const ProgramRun run = orbdt("batch",
                               R"({"op":"new","class":"figure"}
{"op":"new","class":"line","props":{"Parent":"1","LineWidth":"3"}}
{"op":"getprop","handle":0.5,"property":"Parent"}
{"op":"setprop","handle":0.5,"property":"LineWidth","value":"-1"}
{"op":"getprop","handle":0.5,"property":"LineWidth"}
{"op":"new","class":"line","props":{"Parent":"7"}}
{"op":"new","class":"line","props":[]}
{"op":"delete","handle":1}
{"op":"getprop","handle":0.5,"property":"LineWidth"}
)");
  std::vector<nlohmann::json> answers;
  std::istringstream lines(run.out);
  for (std::string line; std::getline(lines, line);) answers.push_back(nlohmann::json::parse(line));
  ASSERT_EQ(answers.size(), 9u);
  EXPECT_EQ(answers[0]["handle"], 1.0);
  EXPECT_EQ(answers[1]["handle"], 0.5);
  EXPECT_EQ(answers[2]["value"], "figure 1");
  EXPECT_EQ(answers[3]["error"]["id"], "Korvax:datatypes:valueOutsideValidRange");
  EXPECT_EQ(answers[4]["value"], "3");
  EXPECT_EQ(answers[5]["error"]["id"], "Korvax:datatypes:handleoremptydatatype:InvalidOrbHandle");
  EXPECT_EQ(answers[6]["error"]["id"], "orbdt:BadRequest");
  EXPECT_EQ(answers[7]["ok"], true);
  EXPECT_EQ(answers[8]["error"]["id"], "Korvax:orb:dt_conv:Matrix_to_HObject:BadHandle");
}

}  // namespace
