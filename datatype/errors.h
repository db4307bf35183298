// The library's message identifiers and the one path by which it raises them into the host.
#pragma once

#include <string>

#include "arraylib/zxerror.h"
#include "foundationlib/except.h"

#define ORB_MSG_ID(ns, keyName) FL_DECLARE_MSG_ID(ns, keyName)
#define ORB_MSG_ID_PARTS(ns, componentText, catalogText, keyName)                                                    \
  namespace ns {                                                                                                     \
  using keyName = fl::except::key<#keyName, fl::except::catalog<catalogText, fl::except::component<componentText>>>; \
  }
#include "datatype/errors.def"

namespace graphics::datatype {

// Raises the identifier Id with its message arguments: the host's error while a host call is
// running, otherwise the identifier's own exception.
template <class Id, class... Args>
[[noreturn]] void raise(const Args&... arguments) {
  const fl::except::Exception<Id> error(arguments...);
  matrix::detail::do_legacy_zx_error(error);
  throw error;
}

// Raises an identifier together with a text of the library's own (the identifier's catalog text
// does not apply).
[[noreturn]] void raiseWithText(const char* id, const std::string& text);

}  // namespace graphics::datatype
