// orbdt: a small host that loads the data type library and sets, parses, compares and describes
// property values of any registered type.
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "orbdt/demo.h"
#include "orbdt/host_session.h"
#include "orbdt/requests.h"
#include "utillib/ut.h"

namespace {

constexpr const char* kUsage =
    "usage: orbdt types [--json]\n"
    "       orbdt describe TYPE [--json]\n"
    "       orbdt set TYPE VALUE [--json]\n"
    "       orbdt parse TYPE TEXT [--json]\n"
    "       orbdt equal TYPE VALUE1 VALUE2 [--json]\n"
    "       orbdt batch\n"
    "       orbdt demo\n"
    "TYPE is a short name (ColorMap) or a full name (korvax.graphics.datatype.ColorMap).\n"
    "VALUE is a host literal: 1, [1 0 0], 'red', {'-', '--'}, uint8([0 255]), zeros(0,3), ...\n";

void writeJson(const nlohmann::json& json) {
  std::cout << json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) << "\n";
}

// The request a command line asks for, or null when the words do not form one.
nlohmann::json requestOf(const std::vector<std::string>& words) {
  const std::string& command = words[0];
  const std::size_t n = words.size();
  if (command == "types" && n == 1) return {{"op", "types"}};
  if (command == "describe" && n == 2) return {{"op", "describe"}, {"type", words[1]}};
  if (command == "set" && n == 3) return {{"op", "set"}, {"type", words[1]}, {"value", words[2]}};
  if (command == "parse" && n == 3) return {{"op", "parse"}, {"type", words[1]}, {"text", words[2]}};
  if (command == "equal" && n == 4) return {{"op", "equal"}, {"type", words[1]}, {"a", words[2]}, {"b", words[3]}};
  return nullptr;
}

int runBatch(const orbdt::HostSession& host) {
  std::string line;
  while (std::getline(std::cin, line)) {
    if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
    nlohmann::json request;
    try {
      request = nlohmann::json::parse(line);
    } catch (const nlohmann::json::exception& error) {
      writeJson({{"ok", false}, {"error", {{"id", "orbdt:BadRequest"}, {"message", error.what()}}}});
      continue;
    }
    writeJson(orbdt::runRequest(host, request).json);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> words(argv + 1, argv + argc);
  const bool json = std::erase(words, "--json") > 0;
  if (words.empty() || words[0] == "--help" || words[0] == "-h") {
    (words.empty() ? std::cerr : std::cout) << kUsage;
    return words.empty() ? 2 : 0;
  }
  const bool batch = words[0] == "batch" && words.size() == 1;
  const nlohmann::json request = requestOf(words);
  if (!batch && !(words[0] == "demo" && words.size() == 1) && request.is_null()) {
    std::cerr << kUsage;
    return 2;
  }

  // Diagnostics the host prints must not mix with JSON on standard output.
  std::optional<ut::PrintCapture> diagnostics;
  if (json || batch) diagnostics.emplace([](std::string_view text) { std::cerr << text; });

  try {
    const orbdt::HostSession host(orbdt::HostSession::defaultLibraryPath());
    if (batch) return runBatch(host);
    if (words[0] == "demo") return orbdt::runDemo(host, std::cout);
    const orbdt::Response response = orbdt::runRequest(host, request);
    if (json) {
      writeJson(response.json);
    } else {
      (response.exitStatus == 2 ? std::cerr : std::cout) << response.text;
    }
    return response.exitStatus;
  } catch (const std::exception& error) {
    std::cerr << "orbdt: " << error.what() << "\n";
    return 2;
  }
}
