// orbdt's batch request path on any input: each line of the input is one request line, run in
// order in one session as `orbdt batch` runs them. Every line must be answered with one JSON object
// on one line that says whether it succeeded (and with which identifier it did not), and nothing a
// line does may end the session.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz_support.h"
#include "javabridgelib/java_bridge.h"
#include "orbdt/host_session.h"
#include "orbdt/requests.h"
#include "utillib/ut.h"

namespace {

// Large enough for every request the tests send, small enough that a fuzzer's inputs stay fast.
constexpr std::size_t kMaxRequestBytes = std::size_t{8} << 20;
constexpr int kMaxLines = 16;

const orbdt::HostSession& session() {
  static ut::PrintCapture quiet([](std::string_view) {});
  static const std::unique_ptr<orbdt::HostSession> host = [] {
    // Java peers and "java" requests would start a Java machine inside the fuzzer; they refuse instead.
    kxjDisableJavaStartup();
    const char* named = std::getenv("ORBDT_LIBRARY");
    return std::make_unique<orbdt::HostSession>(
        orbdt::LibraryLocation{named != nullptr && *named != '\0' ? named : ORBDATATYPES_PATH, "the fuzzer"});
  }();
  return *host;
}

// A line as orbdt's line reader hands it over: cut to the limit and marked when longer.
orbdt::InputLine inputLine(std::string_view text) {
  orbdt::InputLine line;
  line.length = text.size();
  line.truncated = text.size() > kMaxRequestBytes;
  line.text = std::string(text.substr(0, kMaxRequestBytes));
  line.blank = text.find_first_not_of(" \t\r\f\v") == std::string_view::npos;
  return line;
}

void checkAnswer(const std::string& answer, std::string_view request) {
  const std::string shown(request.substr(0, 2000));
  ORB_FUZZ_CHECK(answer.find('\n') == std::string::npos, "an answer spans lines: " + shown);
  nlohmann::json parsed;
  try {
    parsed = nlohmann::json::parse(answer);
  } catch (const nlohmann::json::exception& error) {
    orbfuzz::fail("an answer is not JSON", shown + " -> " + answer.substr(0, 2000) + ": " + error.what());
  }
  ORB_FUZZ_CHECK(parsed.is_object() && parsed.contains("ok") && parsed["ok"].is_boolean(), shown + " -> " + answer);
  if (!parsed["ok"].get<bool>()) {
    const auto error = parsed.find("error");
    ORB_FUZZ_CHECK(error != parsed.end() && error->is_object() && error->contains("id") && (*error)["id"].is_string(),
                   shown + " -> " + answer);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const orbdt::HostSession& host = session();
  std::string_view rest(reinterpret_cast<const char*>(data), size);
  for (int lines = 0; lines < kMaxLines && !rest.empty(); ++lines) {
    const std::size_t end = rest.find('\n');
    const std::string_view text = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    const orbdt::InputLine line = inputLine(text);
    if (line.blank) continue;
    const orbdt::Response response = orbdt::runRequestLine(host, line, kMaxRequestBytes);
    ORB_FUZZ_CHECK(response.exitStatus >= 0 && response.exitStatus <= 2, std::string(text));
    checkAnswer(orbdt::responseLine(response.json), text);
  }
  return 0;
}
