// The conversion from a numeric handle ("double") to a class-system object
// ("korvax.graphics.datatype.COSInterface"), registered while the library is started.
#pragma once

#include "objsys/cos_type_conversion.h"

namespace graphics::datatype {

inline constexpr const char* kObjectReferenceTypeName = "korvax.graphics.datatype.COSInterface";

// Starting and stopping call these; they implement the object-reference steps of both.
void registerObjectReferenceConversion();
void removeObjectReferenceConversion();
// The current graphics context's flag of the conversion (false when the context has none yet).
bool objectReferenceFlag(int contextKXRID);
// Releases the record the conversion keeps for the graphics context at index.
void releaseObjectReferenceContext(std::size_t contextIndex);
// Whether a record exists for the graphics context at index.
bool hasObjectReferenceContext(std::size_t contextIndex);

}  // namespace graphics::datatype
