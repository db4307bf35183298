// Starting the library once per benchmark program, as a host starts it.
#pragma once

#include "datatype/library.h"
#include "objsys/builtin_types.h"

namespace benchsupport {

inline void startLibrary() {
  static const bool started = [] {
    objsys::registerBuiltinTypes();
    KXInitialize_orbdatatypes(nullptr);
    return true;
  }();
  (void)started;
}

}  // namespace benchsupport
