// The exceptions that the host array readers raise.
#include "guilib/array_exceptions.h"

namespace gui_objects {

const char* NullArrayException::what() const noexcept { return "array is null or has no data"; }
const char* InvalidArrayClassException::what() const noexcept { return "array has an unsupported class"; }
const char* InvalidArrayShapeException::what() const noexcept { return "array has an unsupported shape"; }
const char* InvalidArrayDataException::what() const noexcept { return "array holds invalid data"; }

}  // namespace gui_objects
