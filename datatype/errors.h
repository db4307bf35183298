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
#define ORB_MSG_TEXT_ID(ns, keyName, idText)       \
  namespace ns {                                   \
  struct keyName {                                 \
    static constexpr const char* text_id = idText; \
  };                                               \
  }
#include "datatype/errors.def"

namespace graphics::datatype {

namespace detail {

// Id's exception, handed to the host's error path as soon as it is made. Thrown as a temporary, it is
// made in the place it is thrown from, so the raising frame holds nothing to destroy while it unwinds:
// that cleanup would cost a refusal more than everything else it does.
template <class Id>
class RaisedError final : public fl::except::Exception<Id> {
 public:
  template <class... Args>
  explicit RaisedError(const Args&... arguments) : fl::except::Exception<Id>(arguments...) {
    matrix::detail::do_legacy_zx_error(*this);
  }
};

}  // namespace detail

// Raises the identifier Id with its message arguments: the host's error while a host call is
// running (the host's error path does not return then), otherwise the identifier's own exception.
template <class Id, class... Args>
[[noreturn]] void raise(const Args&... arguments) {
  throw detail::RaisedError<Id>(arguments...);
}

// Raises an identifier together with a text of the library's own (the identifier's catalog text
// does not apply).
[[noreturn]] void raiseWithText(const char* id, const std::string& text);

// The same for a declared identifier: one raised by text (ORB_MSG_TEXT_ID) or one with a class.
template <class Id>
[[noreturn]] void raiseWithText(const std::string& text) {
  if constexpr (requires { Id::text_id; }) {
    raiseWithText(Id::text_id, text);
  } else {
    raiseWithText(fl::except::Exception<Id>().get_error_id(), text);
  }
}

}  // namespace graphics::datatype
