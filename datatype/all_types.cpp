// The registration of every property type: one callback per row of all_types.def, queued while the
// library loads and run by the first start.
#include "datatype/all_types.h"

#include "datatype/java/java_conversion.h"
#include "datatype/registration.h"

namespace graphics::datatype {

// How each type's Java conversion is made: array-valued types and enumerations through their families'
// factories, JavaPeer with its own (it hands over the Java object itself), every other type from the peer
// table.
template <class DataType>
struct JavaConversionOf {
  static objsys::JavaTypeConversion* create(DataType* type) {
    if constexpr (requires { typename DataType::ValueType; } &&
                  std::is_base_of_v<ArrayBase, typename DataType::ValueType>) {
      return ArrayBase::createJavaConverter(type, "the closest Java object of the array form");
    } else {
      return new PeerJavaConversion(DataType::getDataTypeName());
    }
  }
};
template <class E>
struct JavaConversionOf<EnumValueDataType<E>> {
  static objsys::JavaTypeConversion* create(EnumValueDataType<E>* type) {
    return OrbTypedEnumStringType::createJavaConverter(&type->enumType(), "java.lang.String");
  }
};
template <>
struct JavaConversionOf<JavaPeerDataType> {
  static objsys::JavaTypeConversion* create(JavaPeerDataType*) { return new JavaPeerJC(); }
};

#define ORB_TYPE(Name, DataType, ArrayConversion, TextConversion) \
  ORB_QUEUE_REGISTRATION(Name, DataType, ArrayConversion, TextConversion, JavaConversionOf<DataType>)
#include "datatype/all_types.def"

}  // namespace graphics::datatype
