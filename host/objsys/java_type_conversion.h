// Conversions between a data type's values and Java objects, and their registry by type name.
#pragma once

#include "foundationlib/visibility.h"
#include "objsys/cos_value.h"

class _jobject;
typedef _jobject* jobject;  // the JNI object reference, as the Java bridge declares it

namespace objsys {

// Converts the values of one data type to and from Java objects (for the host's Java user interface).
class KX_HOST_API JavaTypeConversion {
 public:
  virtual ~JavaTypeConversion();
  // A new local reference to a Java object for the value, or null.
  virtual jobject toJava(COSValue value) const = 0;
  // A new value for the Java object; the caller owns it.
  virtual COSValue fromJava(jobject object) const = 0;
  // The Java class of the values made, for people ("korvax.graphics.types.OrbDouble").
  virtual const char* javaClassName() const = 0;

  // The registry keeps what it is handed for the life of the process.
  static void addConversion(const COSNameID& type, JavaTypeConversion* conversion);
  static JavaTypeConversion* getConversion(const COSNameID& type);

 protected:
  JavaTypeConversion() = default;
};

}  // namespace objsys
