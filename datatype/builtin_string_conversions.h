// The conversions from text ("asciiString") to the host's own scalar types, registered at the first
// start.
#pragma once

namespace graphics::datatype {

// Registers every conversion, in the host's order of target names.
void registerBuiltinStringConversions();

}  // namespace graphics::datatype
