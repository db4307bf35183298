// The type catalogue: a Markdown reference of every registered data type, written from what the
// types themselves answer (describe, and a fixed set of sample values set and parsed).
#pragma once

#include <ostream>

#include "orbdt/host_session.h"

namespace orbdt {

// Writes the catalogue of every type in the host's package to out.
void writeCatalog(const HostSession& host, std::ostream& out);

}  // namespace orbdt
