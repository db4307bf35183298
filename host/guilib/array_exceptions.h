// The exceptions that the host array readers raise; callers map each one to an error of their own.
#pragma once

#include <exception>

namespace gui_objects {

// No array was given, or the array lacks the element data being read.
class NullArrayException : public std::exception {
 public:
  const char* what() const noexcept override { return "array is null or has no data"; }
};

// The array's class cannot be read as the value asked for.
class InvalidArrayClassException : public std::exception {
 public:
  const char* what() const noexcept override { return "array has an unsupported class"; }
};

// The array's dimensions or element count do not fit the value asked for.
class InvalidArrayShapeException : public std::exception {
 public:
  const char* what() const noexcept override { return "array has an unsupported shape"; }
};

// The array's elements break a rule of the value asked for (for example a minimum above its maximum).
class InvalidArrayDataException : public std::exception {
 public:
  const char* what() const noexcept override { return "array holds invalid data"; }
};

}  // namespace gui_objects
