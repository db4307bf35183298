// The error orbdt raises for a request it cannot run: what is wrong with the request itself, as
// opposed to a refusal by the data type.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace orbdt {

// A usage error: an unknown type, a bad literal or a malformed request. id is "orbdt:UnknownType",
// "orbdt:BadLiteral" or "orbdt:BadRequest".
class UsageError : public std::runtime_error {
 public:
  UsageError(std::string id, const std::string& message) : std::runtime_error(message), id_(std::move(id)) {}
  const std::string& id() const { return id_; }

 private:
  std::string id_;
};

}  // namespace orbdt
