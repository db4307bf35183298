// Every registered type's text conversion on any text: the first bytes of the input pick the type
// (see typeChosenBy), the rest is the text. A refusal must carry a cataloged
// identifier; a stored value goes through the checks of checkStoredValue and is destroyed.
#include <cstddef>
#include <cstdint>
#include <string>

#include "arraylib/zxerror.h"
#include "fuzz_support.h"
#include "type_support.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  orbfuzz::ByteReader input(data, size);
  const orbfuzz::FuzzType& type = orbfuzz::typeChosenBy(input);
  // The conversion takes NUL-terminated text: a NUL in the input ends it there.
  const std::string text(input.rest());
  {
    zx::CallFrame frame;
    const objsys::COSValue value =
        orbfuzz::convertOrRefuse(type, "text", text, [&] { return type.texts->from(objsys::COSValue(text.c_str())); });
    orbfuzz::checkStoredValue(type, value, text, false);
  }
  zx::clearWarnings();
  orbfuzz::restoreProcessTables();
  return 0;
}
