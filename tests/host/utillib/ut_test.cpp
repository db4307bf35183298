// Tests of the utility library.
#include "utillib/ut.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

TEST(UtAllocation, FreeAcceptsEveryCHeapBlockAndNull) {
  utFree(nullptr);
  utFree(std::malloc(8));
  utFree(std::calloc(2, 8));
  auto* zeroed = static_cast<unsigned char*>(utCalloc(4, 4));
  ASSERT_NE(zeroed, nullptr);
  for (int i = 0; i < 16; ++i) EXPECT_EQ(zeroed[i], 0);
  utFree(zeroed);
  char* copy = utStrdup("text");
  EXPECT_STREQ(copy, "text");
  utFree(copy);
  EXPECT_EQ(utStrdup(nullptr), nullptr);
}

TEST(UtPrintf, CapturesNestAndRestoreTheirPredecessor) {
  std::string outer, inner;
  {
    ut::PrintCapture outerCapture([&](std::string_view text) { outer += text; });
    utPrintf("%s %d|", "one", 1);
    {
      ut::PrintCapture innerCapture([&](std::string_view text) { inner += text; });
      EXPECT_EQ(utPrintf("ambiguous name: %s\n", "bl"), 19);
    }
    utPrintf("two");
  }
  EXPECT_EQ(outer, "one 1|two");
  EXPECT_EQ(inner, "ambiguous name: bl\n");
}

TEST(UtLoadLibrary, LoadsByPathAndReportsFailure) {
  void* handle = nullptr;
  ASSERT_TRUE(utLoadLibrary("libm.so.6", &handle));
  EXPECT_NE(utGetLibrarySymbol(handle, "cos"), nullptr);
  EXPECT_TRUE(utUnloadLibrary(handle));
  EXPECT_FALSE(utLoadLibrary("/nonexistent/libnothing.so", &handle));
  EXPECT_NE(std::strlen(utLibraryError()), 0u);
}

TEST(UtInterrupt, HandledClearsThePendingRequestAndUnhandledRestoresIt) {
  EXPECT_FALSE(utIsInterruptPending());
  utSetInterruptPending(true);
  utSetInterruptHandled(true);
  EXPECT_FALSE(utIsInterruptPending());
  utSetInterruptHandled(false);
  EXPECT_TRUE(utIsInterruptPending());
  utSetInterruptPending(false);
}

}  // namespace
