// The library's entry points: start, stop, the loader's function table and standalone shutdown.
#include <cstdint>
#include <new>

#include "datatype/builtin_string_conversions.h"
#include "datatype/library.h"
#include "datatype/references/object_reference_conversion.h"
#include "datatype/registration.h"
#include "foundationlib/except.h"
#include "graphicsutillib/graphics_context.h"
#include "guilib/registrar.h"
#include "utillib/ut.h"

namespace {

// Process-wide state, never freed.
std::uint32_t startCount = 0;
bool registrationPending = true;
bool libraryLoadDone = false;

// The host loader's table: a count followed by entries; this library lists none.
struct FunctionTable {
  int count;
  const void* entries;
};
constexpr FunctionTable kFunctionTable = {0, nullptr};

}  // namespace

const char* const orbdatatypes_version = ORB_VERSION;
const char* const orbdatatypes_build_date = __DATE__;

void KXInitialize_orbdatatypes(const char* libraryToLoad) {
  using namespace graphics::datatype;
  // Allocations made by the C++ library on the library's behalf (strings, lists) fail as its own do,
  // with the foundation library's bad_alloc. A host that keeps a new-handler of its own keeps it.
  if (std::get_new_handler() == nullptr) std::set_new_handler(&fl::except::throwBadAlloc);
  if (startCount == 0) registerObjectReferenceConversion();
  ++startCount;
  if (registrationPending) {
    registrationPending = false;
    registerBuiltinStringConversions();
    if (gui_objects::InitializationCallbackRegistrar* registrar = callbackRegistrar()) registrar->initialize();
  }
  if (!libraryLoadDone && libraryToLoad != nullptr) {
    libraryLoadDone = true;
    void* handle = nullptr;
    utLoadLibrary(libraryToLoad, &handle);
  }
}

void KXTerminate_orbdatatypes() {
  // A stop without a start wraps the count, deliberately: the next start then brings it back to 0.
  const std::uint32_t before = startCount--;
  if (before == 1) graphics::datatype::removeObjectReferenceConversion();
}

const void* QueryKXFcnTable_orbdatatypes() { return &kFunctionTable; }

void orbdatatypesShutdownForStandalone() {
  if (getContextKXRID() < 1) return;
  graphics::datatype::releaseObjectReferenceContext(getContextIndex());
}
