// Class-system objects.
#include "objsys/cos_interface.h"

#include "objsys/object_arrays.h"

namespace objsys {
namespace {

std::size_t live = 0;

}  // namespace

COSInterface::COSInterface() { ++live; }
COSInterface::~COSInterface() { --live; }
bool COSInterface::isDeleted() const { return false; }
const char* COSInterface::getClassName() const { return kPlaceholderClassName; }
std::size_t COSInterface::liveCount() { return live; }

}  // namespace objsys
