// The exception of a numeric handle that names no object.
#pragma once

#include <boost/exception/exception.hpp>
#include <exception>
#include <string>
#include <vector>

#include "datatype/export.h"
#include "foundationlib/except.h"

namespace graphics::datatype {

// Thrown as a plain exception (not through the host's error path) by the numeric-handle conversion;
// its identifier is "Korvax:orb:dt_conv:Matrix_to_HObject:BadHandle", its message "Invalid object
// handle".
class ORB_EXPORT InvalidDoubleHandleException : public fl::except::IUserException,
                                                public boost::exception,
                                                public std::exception {
 public:
  InvalidDoubleHandleException();
  const char* GetID() const { return id_.c_str(); }
  std::wstring GetUnicodeMessageTxt() const;
  InvalidDoubleHandleException* clone() const { return new InvalidDoubleHandleException(*this); }
  [[noreturn]] void rethrow() const { throw *this; }

  const char* get_error_id() const noexcept override { return id_.c_str(); }
  const std::vector<std::string>& get_arguments() const noexcept override { return arguments_; }
  std::string get_message_text() const override { return message_; }
  std::unique_ptr<fl::except::IMsgIDException> copy() const override;
  [[noreturn]] void raise() const override { rethrow(); }
  const char* what() const noexcept override { return message_.c_str(); }

 private:
  std::string id_;
  std::string message_;
  std::vector<std::string> arguments_;
};

}  // namespace graphics::datatype
