// Loads the built library as the host does, starts and stops it a thousand times and unloads it:
// nothing leaks and the heap does not grow beyond the singletons made at the first start.
#include <gtest/gtest.h>
#include <malloc.h>

#include "objsys/builtin_types.h"
#include "objsys/cos_type_conversion.h"
#include "utillib/ut.h"

namespace {

std::size_t heapInUse() { return mallinfo2().uordblks; }

TEST(LibraryLoad, ThousandStartStopCyclesLeaveTheHeapAsTheFirstLeftIt) {
  objsys::registerBuiltinTypes();
  void* library = nullptr;
  ASSERT_TRUE(utLoadLibrary(ORBDATATYPES_PATH, &library)) << utLibraryError();
  auto start = reinterpret_cast<void (*)(const char*)>(utGetLibrarySymbol(library, "KXInitialize_orbdatatypes"));
  auto stop = reinterpret_cast<void (*)()>(utGetLibrarySymbol(library, "KXTerminate_orbdatatypes"));
  ASSERT_NE(start, nullptr);
  ASSERT_NE(stop, nullptr);

  start(nullptr);
  stop();
  const std::size_t afterFirstCycle = heapInUse();
  for (int cycle = 0; cycle < 1000; ++cycle) {
    start(nullptr);
    EXPECT_NE(objsys::COSTypeRepository::getConversion("double", "korvax.graphics.datatype.COSInterface"), nullptr);
    stop();
  }
  EXPECT_EQ(objsys::COSTypeRepository::getConversion("double", "korvax.graphics.datatype.COSInterface"), nullptr);
  EXPECT_LE(heapInUse(), afterFirstCycle + 1024) << "the heap grew over the cycles";
  EXPECT_TRUE(utUnloadLibrary(library));
}

}  // namespace
