// orbdt's requests (set, parse, equal, describe, types) and their responses, shared by the command
// line, --json and batch modes.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>

#include "cmdlanglib/budget.h"
#include "orbdt/host_session.h"
#include "orbdt/request_line.h"

namespace orbdt {

// What the caller shows of a response: Json fills json alone (--json and batch); Text fills text and
// valueLiteral as well.
enum class Form { Json, Text };

// A response and what people see of it. exitStatus: 0 stored (or answered), 1 refused by the type,
// 2 usage error (a request orbdt cannot run, too large ones included).
struct Response {
  nlohmann::json json;
  std::string text;
  int exitStatus = 0;
  // For set and parse: the stored value read back as a host literal.
  std::string valueLiteral;
};

// Runs one request object ({"op": ..., ...}) inside its own host call frame, every literal, ARRAY
// object and read-back charged to budget; never throws. The request's "id" moves into the response.
Response runRequest(const HostSession& host, nlohmann::json request, cmdlang::ByteBudget& budget, Form form);

// Parses one batch line and runs its request for a Json response, all within a budget of
// maxRequestBytes; never throws.
Response runRequestLine(const HostSession& host, const InputLine& line, std::size_t maxRequestBytes);

// The one line of JSON text that stands for a response; when the response cannot be written, an
// error response in its place.
std::string responseLine(const nlohmann::json& response) noexcept;

}  // namespace orbdt
