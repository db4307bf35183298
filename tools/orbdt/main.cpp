// orbdt: a small host that loads the data type library and sets, parses, compares and describes
// property values of any registered type.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include "cmdlanglib/evaluator.h"
#include "cmdlanglib/literal.h"
#include "orbdt/catalog.h"
#include "orbdt/demo.h"
#include "orbdt/hints.h"
#include "orbdt/holdings.h"
#include "orbdt/host_session.h"
#include "orbdt/line_editor.h"
#include "orbdt/request_line.h"
#include "orbdt/requests.h"
#include "orbdt/session.h"
#include "utillib/ut.h"

namespace {

const std::string kUsage =
    "usage: orbdt types [--json]\n"
    "       orbdt describe TYPE [--json]\n"
    "       orbdt set TYPE VALUE [--json]\n"
    "       orbdt parse TYPE TEXT [--json]\n"
    "       orbdt equal TYPE VALUE1 VALUE2 [--json]\n"
    "       orbdt java TYPE VALUE [--json]  (the value to its Java form and back)\n"
    "       orbdt batch\n"
    "       orbdt run FILE     (a session script: f = figure, l = line(Parent=f), l.Color = 'r', ...)\n"
    "       orbdt repl [--history FILE | --no-history]\n"
    "                          (the same lines, typed: editing, history, Tab completion)\n"
    "       orbdt demo\n"
    "       orbdt catalog      (a Markdown reference of every type)\n"
    "TYPE is a short name (ColorMap) or a full name (korvax.graphics.datatype.ColorMap).\n"
    "VALUE is a host literal: 1, [1 0 0], 'red', {'-', '--'}, uint8([0 255]), zeros(0,3), ...\n"
    "Options:\n"
    "  --max-request-bytes N  memory one request may take: its line, its values and its response\n"
    "                         (N in bytes, or with K, M or G; default 256M); larger requests are\n"
    "                         refused with orbdt:TooLarge before anything is allocated\n"
    "  --max-session-bytes N  memory what requests keep may take together: variables, objects and\n"
    "                         their property values, color names added (default 512M)\n"
    "Limits: literals nest at most " +
    std::to_string(cmdlang::kMaxLiteralDepth) + " levels deep, JSON request lines " +
    std::to_string(orbdt::kMaxJsonDepth) + " levels.\n";

// The commands, what each takes after its name, and the options that apply to it.
struct Command {
  std::string_view name;
  std::string_view arguments;  // for its usage error: "TYPE VALUE"
  std::size_t count;           // how many arguments
  bool json = false;           // answers in JSON with --json
  bool history = false;        // keeps a history (--history, --no-history)
};
constexpr Command kCommands[] = {
    {"types", "", 0, true},
    {"describe", "TYPE", 1, true},
    {"set", "TYPE VALUE", 2, true},
    {"parse", "TYPE TEXT", 2, true},
    {"equal", "TYPE VALUE1 VALUE2", 3, true},
    {"java", "TYPE VALUE", 2, true},
    {"batch", "", 0},
    {"run", "FILE", 1},
    {"repl", "", 0, false, true},
    {"demo", "", 0},
    {"catalog", "", 0},
};

// A usage error in one line, pointing to the full usage.
int usageError(const std::string& what) {
  std::cerr << "orbdt: " << what << " (orbdt --help shows every command and option)\n";
  return 2;
}

// The request of a command that is one request, or null for the others.
nlohmann::json requestOf(const std::vector<std::string>& words) {
  const std::string& command = words[0];
  if (command == "types") return {{"op", "types"}};
  if (command == "describe") return {{"op", "describe"}, {"type", words[1]}};
  if (command == "set") return {{"op", "set"}, {"type", words[1]}, {"value", words[2]}};
  if (command == "parse") return {{"op", "parse"}, {"type", words[1]}, {"text", words[2]}};
  if (command == "java") return {{"op", "java"}, {"type", words[1]}, {"value", words[2]}};
  if (command == "equal") return {{"op", "equal"}, {"type", words[1]}, {"a", words[2]}, {"b", words[3]}};
  return nullptr;
}

// Takes a byte-count option (--NAME N or --NAME=N) out of words; nullopt when it is given without a
// valid count.
std::optional<std::size_t> takeByteLimit(std::vector<std::string>& words, const std::string& option,
                                         std::size_t limit) {
  for (std::size_t i = 0; i < words.size();) {
    std::optional<std::string> value;
    std::size_t taken = 1;
    if (words[i] == option) {
      if (i + 1 == words.size()) return std::nullopt;
      value = words[i + 1];
      taken = 2;
    } else if (words[i].rfind(option + "=", 0) == 0) {
      value = words[i].substr(option.size() + 1);
    }
    if (!value) {
      ++i;
      continue;
    }
    const std::optional<std::size_t> count = orbdt::parseByteCount(*value);
    if (!count) return std::nullopt;
    limit = *count;
    words.erase(words.begin() + static_cast<std::ptrdiff_t>(i), words.begin() + static_cast<std::ptrdiff_t>(i + taken));
  }
  return limit;
}

// Why a script cannot be run from path, or nullopt when it can: it must open for reading and not be a
// directory (which opens, and reads as nothing).
std::optional<std::string> cannotRead(const std::string& path) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return std::string(std::strerror(errno));
  struct stat status {};
  const bool directory = ::fstat(fd, &status) == 0 && S_ISDIR(status.st_mode);
  ::close(fd);
  if (directory) return std::string("it is a directory");
  return std::nullopt;
}

// One answer per line that is not blank, written and flushed before the next line is read.
int runBatch(const orbdt::HostSession& host, std::size_t maxRequestBytes) {
  orbdt::LineReader lines(STDIN_FILENO, maxRequestBytes);
  while (const std::optional<orbdt::InputLine> line = lines.next()) {
    if (line->blank) continue;
    std::cout << orbdt::responseLine(orbdt::runRequestLine(host, *line, maxRequestBytes).json) << "\n" << std::flush;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> words(argv + 1, argv + argc);
  if (std::ranges::find(words, "--help") != words.end() || std::ranges::find(words, "-h") != words.end()) {
    std::cout << kUsage;
    return 0;
  }
  const bool json = std::erase(words, "--json") > 0;
  const bool noHistory = std::erase(words, "--no-history") > 0;
  std::optional<std::string> historyFile;
  if (const auto at = std::ranges::find(words, "--history"); at != words.end()) {
    if (at + 1 == words.end()) return usageError("--history needs a file");
    historyFile = *(at + 1);
    words.erase(at, at + 2);
  }
  const std::optional<std::size_t> maxRequestBytes =
      takeByteLimit(words, "--max-request-bytes", orbdt::kDefaultMaxRequestBytes);
  if (!maxRequestBytes) return usageError("--max-request-bytes needs a byte count such as 268435456 or 256M");
  const std::optional<std::size_t> maxSessionBytes =
      takeByteLimit(words, "--max-session-bytes", orbdt::kDefaultMaxSessionBytes);
  if (!maxSessionBytes) return usageError("--max-session-bytes needs a byte count such as 536870912 or 512M");
  orbdt::holdings().setLimit(*maxSessionBytes);
  cmdlang::setCodeByteLimit(*maxRequestBytes);
  if (words.empty()) return usageError("no command given");
  // An option is "--" and a word; "--" and "--." are values (line styles).
  for (const std::string& word : words) {
    if (word.size() > 2 && word.starts_with("--") && std::isalpha(static_cast<unsigned char>(word[2])) != 0) {
      return usageError("unknown option '" + word + "'");
    }
  }
  const auto* command = std::ranges::find(kCommands, words[0], &Command::name);
  if (command == std::end(kCommands)) {
    std::vector<std::string> names;
    for (const Command& known : kCommands) names.emplace_back(known.name);
    const std::string hint = orbdt::didYouMean(orbdt::nearestNames(words[0], names));
    return usageError("unknown command '" + words[0] + "'" + (hint.empty() ? "" : "; " + hint));
  }
  if (words.size() != command->count + 1) {
    return usageError(std::string(command->name) + " takes " +
                      (command->count == 0 ? std::string("no arguments") : std::string(command->arguments)));
  }
  if (json && !command->json) return usageError("--json does not apply to " + std::string(command->name));
  if ((noHistory || historyFile) && !command->history) {
    return usageError("--history and --no-history apply to repl only");
  }
  const bool batch = command->name == "batch";
  const nlohmann::json request = requestOf(words);

  // Diagnostics the host prints must not mix with JSON, or with the catalogue, on standard output.
  std::optional<ut::PrintCapture> diagnostics;
  if (json || batch || command->name == "catalog")
    diagnostics.emplace([](std::string_view text) { std::cerr << text; });

  try {
    const orbdt::HostSession host(orbdt::HostSession::defaultLibrary());
    if (batch) return runBatch(host, *maxRequestBytes);
    if (words[0] == "repl") {
      const orbdt::SessionInput input{
          STDIN_FILENO,
          isatty(STDIN_FILENO) != 0,
          noHistory ? std::string() : historyFile.value_or(orbdt::LineEditor::defaultHistoryFile()),
          {}};
      return orbdt::runSession(host, input, std::cout, *maxRequestBytes);
    }
    if (words[0] == "run") {
      const std::optional<std::string> cannot = cannotRead(words[1]);
      if (cannot) {
        std::cerr << "orbdt: cannot read " << words[1] << ": " << *cannot << "\n";
        return 2;
      }
      const int fd = ::open(words[1].c_str(), O_RDONLY | O_CLOEXEC);
      const int status =
          orbdt::runSession(host, orbdt::SessionInput{fd, false, {}, words[1]}, std::cout, *maxRequestBytes);
      ::close(fd);
      return status;
    }
    if (words[0] == "demo") return orbdt::runDemo(host, std::cout);
    if (words[0] == "catalog") {
      orbdt::writeCatalog(host, std::cout);
      return 0;
    }
    cmdlang::ByteBudget budget(*maxRequestBytes);
    const orbdt::Response response =
        orbdt::runRequest(host, request, budget, json ? orbdt::Form::Json : orbdt::Form::Text);
    if (json) {
      std::cout << orbdt::responseLine(response.json) << "\n";
    } else {
      (response.exitStatus == 2 ? std::cerr : std::cout) << response.text;
    }
    return response.exitStatus;
  } catch (const std::exception& error) {
    std::cerr << "orbdt: " << error.what() << "\n";
    return 2;
  }
}
