// The registration of every property type: one callback per row of all_types.def, queued while the
// library loads and run by the first start.
#include "datatype/all_types.h"

#include "datatype/java/java_conversion.h"
#include "datatype/registration.h"

namespace graphics::datatype {

// Every type's Java conversion comes from the peer table, except JavaPeer's, which hands over the Java
// object itself.
template <class DataType>
struct JavaConversionOf {
  using type = PeerJavaConversion;
};
template <>
struct JavaConversionOf<JavaPeerDataType> {
  using type = JavaPeerJC;
};

#define ORB_TYPE(Name, DataType, ArrayConversion, TextConversion) \
  ORB_QUEUE_REGISTRATION(Name, DataType, ArrayConversion, TextConversion, JavaConversionOf<DataType>::type)
#include "datatype/all_types.def"

}  // namespace graphics::datatype
