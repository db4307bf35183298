// The Java conversion of a property type: its values cross as objects of its peer class, or as the
// closest Java object of their array form.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "datatype/export.h"
#include "datatype/java_peer_classes.h"
#include "objsys/cos_value.h"
#include "objsys/java_type_conversion.h"

namespace graphics::datatype {

class ORB_EXPORT PeerJavaConversion final : public objsys::JavaTypeConversion {
 public:
  // A peer's numbers read from the value itself, where its array form leaves some out (a color's
  // alpha); nothing when the value has none (a style).
  using NumbersOfValue = std::optional<std::array<double, 4>> (*)(objsys::COSValue);

  // typeName: the registered name, "korvax.graphics.datatype.T"; peer: null for the closest Java object,
  // which javaForm names for people ("java.lang.String" for a name).
  PeerJavaConversion(std::string typeName, const JavaPeerClass* peer, const char* javaForm,
                     NumbersOfValue numbersOf = nullptr);
  // The Java form of the value's array form (its TMC's reading); null for no value.
  jobject toJava(objsys::COSValue value) const override;
  // A new value from the Java object through the type's TMC, with the type's own refusals. A type with a
  // numeric peer refuses a null object ("Invalid value for T type: NULL"); any other reads it as [].
  objsys::COSValue fromJava(jobject object) const override;
  const char* javaClassName() const override;

 private:
  std::string typeName_;
  const JavaPeerClass* peer_;
  const char* javaForm_;
  objsys::COSNameID type_;
  NumbersOfValue numbersOf_;
};

}  // namespace graphics::datatype
