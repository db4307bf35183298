// Conversions between data types (COSTypeConversion) and the process-wide type repository.
#pragma once

#include <vector>

#include "foundationlib/visibility.h"
#include "objsys/cos_data_type.h"
#include "objsys/cos_value.h"

namespace objsys {

// Converts values between the two types it is registered for, (source, target): from takes a
// source value and returns a new target value; to goes back. The caller owns the results.
class KX_HOST_API COSTypeConversion {
 public:
  virtual ~COSTypeConversion();
  virtual COSValue to(COSValue value) const = 0;
  virtual COSValue from(COSValue value) const = 0;

 protected:
  COSTypeConversion() = default;
};

// The process-wide registry of data types and conversions. It keeps everything it is handed for the
// life of the process and frees nothing.
class KX_HOST_API COSTypeRepository {
 public:
  static void addGlobalType(COSDataType* type);
  // Registers a type under a full name; packages do this for the types added to them.
  static void addNamedType(const COSNameID& fullName, COSDataType* type);
  // A global type by its name or a package's type by its full name; null when unknown.
  static COSDataType* getType(const COSNameID& name);
  // The same by text, without interning a name that nothing registered.
  static COSDataType* getType(const char* name);
  // Replaces an earlier conversion for the same pair (the earlier object stays alive).
  static void addConversion(const COSNameID& source, const COSNameID& target, COSTypeConversion* conversion);
  static COSTypeConversion* getConversion(const COSNameID& source, const COSNameID& target);
  static COSTypeConversion* getConversion(const char* source, const char* target);
  // Forgets the conversion; its owner deletes it.
  static void removeConversion(const COSNameID& source, const COSNameID& target);
};

}  // namespace objsys
