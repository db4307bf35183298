// orbdt's session statements on any input: each line of the input is one statement, run in order in
// one session as `orbdt run` runs a script. No statement may end the session or escape its line: each
// prints what it shows, or one error line with an identifier, and what the session kept is given back
// when it ends.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>

#include "fuzz_support.h"
#include "javabridgelib/java_bridge.h"
#include "orbdt/holdings.h"
#include "orbdt/host_session.h"
#include "orbdt/session.h"
#include "utillib/ut.h"

namespace {

// Small, so that an input's statements stay fast.
constexpr std::size_t kMaxRequestBytes = std::size_t{4} << 20;
constexpr std::size_t kMaxSessionBytes = std::size_t{32} << 20;
constexpr int kMaxLines = 16;

const orbdt::HostSession& startHost() {
  static ut::PrintCapture quiet([](std::string_view) {});
  static const std::unique_ptr<orbdt::HostSession> host = [] {
    kxjDisableJavaStartup();
    orbdt::holdings().setLimit(kMaxSessionBytes);
    const char* named = std::getenv("ORBDT_LIBRARY");
    return std::make_unique<orbdt::HostSession>(
        orbdt::LibraryLocation{named != nullptr && *named != '\0' ? named : ORBDATATYPES_PATH, "the fuzzer"});
  }();
  return *host;
}

// A refused statement shows a line that starts "error: component:key: text" (a hint may follow it). The
// text may quote the statement, "error: " and all, so only the start of a line counts.
void checkRefusal(const std::string& shown, std::string_view statement) {
  std::size_t start = std::string::npos;
  for (std::size_t line = 0; line < shown.size(); line = shown.find('\n', line) + 1) {
    if (shown.compare(line, 7, "error: ") == 0) start = line;
    if (shown.find('\n', line) == std::string::npos) break;
  }
  ORB_FUZZ_CHECK(start != std::string::npos, "a refusal without an error line: " + std::string(statement));
  const std::size_t idEnd = shown.find(": ", start + 7);
  const std::string id = shown.substr(start + 7, idEnd == std::string::npos ? std::string::npos : idEnd - start - 7);
  ORB_FUZZ_CHECK(idEnd != std::string::npos && id.find(':') != std::string::npos && id.find(' ') == std::string::npos,
                 "a refusal without an identifier: " + std::string(statement) + " -> " + shown.substr(start, 300));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const orbdt::HostSession& host = startHost();
  std::string_view rest(reinterpret_cast<const char*>(data), size);
  {
    std::ostringstream out;
    orbdt::Session session(host, out, kMaxRequestBytes);
    for (int lines = 0; lines < kMaxLines && !rest.empty(); ++lines) {
      const std::size_t end = rest.find('\n');
      const std::string_view statement = rest.substr(0, end);
      rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
      out.str("");
      if (!session.runLine(statement)) checkRefusal(out.str(), statement);
    }
  }
  ORB_FUZZ_CHECK(orbdt::holdings().used() == 0, "a session ended still holding memory");
  return 0;
}
