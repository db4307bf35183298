// The command language's literal reader on any text: it reads one literal or refuses it with
// LiteralError or TooLargeError, never anything else, and what it reads is written back by
// writeLiteral as a literal that reads back to an equal array and is written the same way again.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "arraylib/zxcompare.h"
#include "cmdlanglib/literal.h"
#include "fuzz_support.h"

namespace {

// Enough for every literal a property takes (a 256-by-3 colormap is 6 KiB), small enough that writing
// and rereading the largest input stays well under a second under the sanitizers.
constexpr std::size_t kBudgetBytes = std::size_t{1} << 20;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  gui_objects::ZxArrayPtr array;
  try {
    cmdlang::ByteBudget budget(kBudgetBytes);
    array = cmdlang::readLiteral(text, budget);
  } catch (const cmdlang::LiteralError&) {
    return 0;
  } catch (const cmdlang::TooLargeError&) {
    return 0;
  }
  ORB_FUZZ_CHECK(array != nullptr, "a literal was read as no array");
  const std::string written = cmdlang::writeLiteral(array.get());
  if (orbfuzz::hasUnwritableParts(array.get())) return 0;

  gui_objects::ZxArrayPtr again;
  try {
    again = cmdlang::readLiteral(written);
  } catch (const cmdlang::LiteralError& error) {
    orbfuzz::fail("writeLiteral wrote a literal the reader refuses", written + ": " + error.what());
  }
  const std::string difference = zx::arrayDifference(array.get(), again.get());
  ORB_FUZZ_CHECK(difference.empty(), written + ": " + difference);
  const std::string rewritten = cmdlang::writeLiteral(again.get());
  ORB_FUZZ_CHECK(rewritten == written, written + " was written again as " + rewritten);
  return 0;
}
