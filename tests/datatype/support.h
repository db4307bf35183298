// Test support for the data types: starting the library once per test program, the host call frame,
// and matching the host's errors by identifier.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "../raises_id.h"
#include "arraylib/zxerror.h"
#include "datatype/library.h"
#include "objsys/builtin_types.h"

namespace orbtest {

// Starts the library (its registrations are process-wide) and runs the test inside a host call frame,
// so refusals arrive as host errors and temporaries are reclaimed.
class DataTypeTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    objsys::registerBuiltinTypes();
    KXInitialize_orbdatatypes(nullptr);
  }
  static void TearDownTestSuite() { KXTerminate_orbdatatypes(); }
  zx::CallFrame frame_;
};

}  // namespace orbtest
