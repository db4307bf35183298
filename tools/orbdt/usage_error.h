// The error orbdt raises for a request it cannot run: what is wrong with the request itself, as
// opposed to a refusal by the data type.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace orbdt {

// A usage error: an unknown type, a bad literal or a malformed request. id is "orbdt:UnknownType",
// "orbdt:BadLiteral" or "orbdt:BadRequest".
// hint, when not empty, says what was probably meant ("did you mean 'RGBAColor'?").
class UsageError : public std::runtime_error {
 public:
  UsageError(std::string id, const std::string& message, std::string hint = {})
      : std::runtime_error(message), id_(std::move(id)), hint_(std::move(hint)) {}
  const std::string& id() const { return id_; }
  const std::string& hint() const { return hint_; }

 private:
  std::string id_;
  std::string hint_;
};

}  // namespace orbdt
