// Test support for the data types: starting the library once per test program, the host call frame,
// and matching the host's errors by identifier.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

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

// EXPECT_THAT([&] { ... }, RaisesId("Korvax:...")): the code raises an error with that identifier.
MATCHER_P(RaisesId, id, std::string("raises ") + id) {
  try {
    arg();
  } catch (const fl::except::IMsgIDException& error) {
    *result_listener << "raised " << error.get_error_id() << ": " << error.get_message_text();
    return std::string(error.get_error_id()) == id;
  }
  *result_listener << "raised nothing";
  return false;
}

}  // namespace orbtest
