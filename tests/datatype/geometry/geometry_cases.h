// What the geometry tests share: a table of inputs and what a user sees of each, checked through the
// registered conversions.
#pragma once

#include <gtest/gtest.h>

#include <span>
#include <string>

#include "objsys/cos_type_conversion.h"
// After the class system's repository, which it uses without including.
#include "../user_view.h"

namespace geometrytest {

struct Case {
  const char* type;
  const char* input;  // a host literal, or a text
  const char* seen;   // the array read back, " | " and the text; or "error: <identifier>"
};

// Each input set as a host literal through the type's array conversion.
inline void expectSettings(std::span<const Case> cases) {
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.type) + " " + c.input);
    EXPECT_EQ(userview::setting(c.type, c.input), c.seen);
  }
}

// Each input parsed through the type's string conversion.
inline void expectParsings(std::span<const Case> cases) {
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.type) + " \"" + c.input + "\"");
    EXPECT_EQ(userview::parsing(c.type, c.input), c.seen);
  }
}

}  // namespace geometrytest
