// The owning pointer through which host arrays (and other resources) are held until handed over.
#pragma once

#include <memory>

#include "arraylib/zxarray.h"
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace gui_objects {

// Destroys a host array; harmless on null.
struct ZxArrayDtor {
  void operator()(zxArray* array) const noexcept { zxDestroyArray(array); }
};

// A move-only owner that runs Deleter on what it holds when it is destroyed or reset, unless release()
// hands the pointer over first. AutoPtr<zxArray, ZxArrayDtor> holds a new host array until it is
// returned to the host.
template <class T, class Deleter = std::default_delete<T>>
using AutoPtr = std::unique_ptr<T, Deleter>;

using ZxArrayPtr = AutoPtr<zxArray, ZxArrayDtor>;

}  // namespace gui_objects

KX_HOST_API_END
