// Class-system objects.
#include "objsys/cos_interface.h"

namespace objsys {

COSInterface::~COSInterface() = default;
bool COSInterface::isDeleted() const { return false; }

}  // namespace objsys
