// orbdt's requests (set, parse, equal, describe, types) and their responses, shared by the command
// line, --json and batch modes.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "orbdt/host_session.h"

namespace orbdt {

// A response and what people see of it. exitStatus: 0 stored (or answered), 1 refused by the type,
// 2 usage error.
struct Response {
  nlohmann::json json;
  std::string text;
  int exitStatus = 0;
  // For set and parse: the stored value read back as a host literal.
  std::string valueLiteral;
};

// Runs one request object ({"op": ..., ...}) inside its own host call frame; never throws.
Response runRequest(const HostSession& host, const nlohmann::json& request);

}  // namespace orbdt
