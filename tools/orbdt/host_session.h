// The orbdt host: loads the data type library as the environment does and reaches its types and
// conversions only through the class system's repository, by name.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "objsys/cos_data_type.h"
#include "objsys/cos_type_conversion.h"

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

// A registered data type with its conversions, found by name.
struct TypeHandle {
  std::string fullName;
  objsys::COSDataType* type = nullptr;
  const objsys::COSTypeConversion* arrays = nullptr;  // ("any", type); may be null
  const objsys::COSTypeConversion* texts = nullptr;   // ("asciiString", type); may be null
};

inline constexpr const char* kPackage = "korvax.graphics.datatype";

class HostSession {
 public:
  // Registers the class system's own types, loads the library at libraryPath and starts it. Throws
  // std::runtime_error when the library cannot be loaded or lacks its entry point.
  explicit HostSession(const std::string& libraryPath);
  ~HostSession();
  HostSession(const HostSession&) = delete;
  HostSession& operator=(const HostSession&) = delete;

  // A short name ("ColorMap") or a full name; throws UsageError "orbdt:UnknownType".
  TypeHandle resolve(const std::string& name) const;
  // The full names of the package's data types, sorted.
  std::vector<std::string> typeNames() const;

  // The library next to this program: <program dir>/../lib/liborbdatatypes.so, unless the
  // environment variable ORBDT_LIBRARY names another.
  static std::string defaultLibraryPath();

 private:
  void* library_ = nullptr;
  void (*terminate_)() = nullptr;
};

}  // namespace orbdt
