// The one maker of a failure for an identifier: the exception a validity check stores in its exception
// slot, raised later through the host's error path (zxReThrowException).
#pragma once

#include <boost/exception_ptr.hpp>

#include "datatype/errors.h"

namespace graphics::datatype {

// The exception of identifier Id with its message arguments, in a slot of its own.
template <class Id, class... Args>
boost::exception_ptr failureOf(const Args&... arguments) {
  return boost::copy_exception(fl::except::Exception<Id>(arguments...));
}

}  // namespace graphics::datatype
