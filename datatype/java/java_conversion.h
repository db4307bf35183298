// The Java conversion of every property type that has no conversion of its own: its values cross as
// objects of the peer class its row of java_peers.def names, or as the closest Java object of their
// array form.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "datatype/export.h"
#include "objsys/cos_value.h"
#include "objsys/java_type_conversion.h"

namespace graphics::datatype {

struct JavaPeerClass;

class ORB_EXPORT PeerJavaConversion final : public objsys::JavaTypeConversion {
 public:
  // typeName: the registered name, "korvax.graphics.datatype.T". javaForm, when given, names for people
  // the Java form of a type without a peer class ("java.lang.String" for a name).
  explicit PeerJavaConversion(std::string typeName, std::string javaForm = {});
  // The Java form of the value's array form (its TMC's reading); null for no value.
  jobject toJava(objsys::COSValue value) const override;
  // A new value from the Java object through the type's TMC, with the type's own refusals. A type with a
  // numeric peer refuses a null object ("Invalid value for T type: NULL"); any other reads it as [].
  objsys::COSValue fromJava(jobject object) const override;
  const char* javaClassName() const override;

 private:
  std::string typeName_;
  std::string javaForm_;
  objsys::COSNameID type_;
  const JavaPeerClass* peer_;  // null: the closest match
  std::optional<std::array<double, 4>> (*numbersOf_)(objsys::COSValue);
};

}  // namespace graphics::datatype
