// The exception slot that validity checks fill, boost::exception_ptr, declared without Boost's
// headers; the sources that fill or read a slot include <boost/exception_ptr.hpp> themselves.
#pragma once

namespace boost {
class exception_ptr;
}  // namespace boost
