// Enumerated types of the class system.
#include "objsys/enumeration_type.h"

namespace objsys {

EnumerationType::~EnumerationType() = default;
TypedEnumStringType::~TypedEnumStringType() = default;

}  // namespace objsys
