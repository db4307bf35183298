// EXPECT_THAT([&] { ... }, RaisesId("Korvax:...")): the code raises an error with that identifier.
#pragma once

#include <gmock/gmock.h>

#include <string>

#include "foundationlib/except.h"

namespace orbtest {

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
