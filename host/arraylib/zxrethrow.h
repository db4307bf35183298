// Re-raising an exception that a caller caught into an exception slot.
#pragma once

#include <boost/exception_ptr.hpp>

#include "arraylib/zxerror.h"
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

// Re-raises a caught exception: message-identifier errors become host errors inside a frame; running
// out of memory is the foundation library's bad_alloc; anything else is rethrown as it is.
[[noreturn]] void zxReThrowException(const boost::exception_ptr& caught);

KX_HOST_API_END
