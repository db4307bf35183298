// The exceptions that the host array readers raise; callers map each one to an error of their own.
#pragma once

#include <exception>

#include "foundationlib/visibility.h"

namespace gui_objects {

// No array was given, or the array lacks the element data being read.
class KX_HOST_API NullArrayException : public std::exception {
 public:
  const char* what() const noexcept override;
};

// The array's class cannot be read as the value asked for.
class KX_HOST_API InvalidArrayClassException : public std::exception {
 public:
  const char* what() const noexcept override;
};

// The array's dimensions or element count do not fit the value asked for.
class KX_HOST_API InvalidArrayShapeException : public std::exception {
 public:
  const char* what() const noexcept override;
};

// The array's elements break a rule of the value asked for (for example a minimum above its maximum).
class KX_HOST_API InvalidArrayDataException : public std::exception {
 public:
  const char* what() const noexcept override;
};

}  // namespace gui_objects
