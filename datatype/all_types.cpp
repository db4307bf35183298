// The registration of every property type: one callback per row of all_types.def, queued while the
// library loads and run by the first start.
#include "datatype/all_types.h"

#include "datatype/registration.h"

namespace graphics::datatype {

// No Java conversions yet: the host has no Java bridge.
#define ORB_TYPE(Name, DataType, ArrayConversion, TextConversion) \
  ORB_QUEUE_REGISTRATION(Name, DataType, ArrayConversion, TextConversion, void)
#include "datatype/all_types.def"

}  // namespace graphics::datatype
