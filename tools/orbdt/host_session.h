// The orbdt host: loads the data type library as the environment does and reaches its types and
// conversions only through the class system's repository, by name.
#pragma once

#include <string>
#include <vector>

#include "datatype/type_facts.h"
#include "objsys/cos_data_type.h"
#include "objsys/cos_type_conversion.h"
#include "orbdt/usage_error.h"

namespace orbdt {

// A registered data type with its conversions, found by name.
struct TypeHandle {
  std::string fullName;
  objsys::COSDataType* type = nullptr;
  const objsys::COSTypeConversion* arrays = nullptr;     // ("any", type); may be null
  const objsys::COSTypeConversion* texts = nullptr;      // ("asciiString", type); may be null
  const graphics::datatype::TypeFacts* facts = nullptr;  // what the library states of the type; may be null
};

inline constexpr const char* kPackage = "korvax.graphics.datatype";

// The file of the data type library and what chose it, for messages.
struct LibraryLocation {
  std::string path;
  std::string chosenBy;  // "named by ORBDT_LIBRARY" or "the default beside orbdt"
};

class HostSession {
 public:
  // Registers the class system's own types, loads the library and starts it. Throws
  // std::runtime_error naming the file when it cannot be loaded or lacks its entry points.
  explicit HostSession(const LibraryLocation& library);
  ~HostSession();
  HostSession(const HostSession&) = delete;
  HostSession& operator=(const HostSession&) = delete;

  // A short name ("ColorMap") or a full name; throws UsageError "orbdt:UnknownType".
  TypeHandle resolve(const std::string& name) const;
  // The full names of the package's data types, sorted.
  std::vector<std::string> typeNames() const;
  // The names a type with a finite set of values offers, as its text conversion writes them (the
  // values it hides are not offered); empty for any other type.
  std::vector<std::string> offeredNames(const TypeHandle& handle) const;
  // The names of the process's color name table, as the ColorTable type reads it back; empty when the
  // library has none.
  std::vector<std::string> colorNames() const;
  // The registered names nearest a name that names no type: full names for a full name, short ones
  // otherwise; at most three.
  std::vector<std::string> nearestTypeNames(const std::string& name) const;

  // The library next to this program, <program dir>/../lib/liborbdatatypes.so.1, unless the
  // environment variable ORBDT_LIBRARY names another. Throws std::runtime_error when ORBDT_LIBRARY is
  // set but empty.
  static LibraryLocation defaultLibrary();

 private:
  void* library_ = nullptr;
  void (*terminate_)() = nullptr;
  const graphics::datatype::TypeFacts* (*factsOf_)(const char* fullName) = nullptr;
};

}  // namespace orbdt
