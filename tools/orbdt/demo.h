// orbdt's built-in demo session: typical properties of a plotted line and an axes set to good and
// bad values.
#pragma once

#include <ostream>

#include "orbdt/host_session.h"

namespace orbdt {

// Writes the session to out; returns 0 when every step behaved as the demo expects.
int runDemo(const HostSession& host, std::ostream& out);

}  // namespace orbdt
