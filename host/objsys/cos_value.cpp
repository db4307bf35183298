// Interned type names.
#include "objsys/cos_value.h"

#include <unordered_set>

namespace objsys {
namespace {

// Names are never released: the pool lives for the process, and nodes keep their addresses.
std::unordered_set<std::string>& namePool() {
  static auto* pool = new std::unordered_set<std::string>();
  return *pool;
}

}  // namespace

COSNameID::COSNameID(const char* name) : COSNameID(std::string_view(name != nullptr ? name : "")) {}

COSNameID::COSNameID(std::string_view name) : name_(&*namePool().emplace(name).first) {}

std::optional<COSNameID> COSNameID::find(std::string_view name) {
  const auto found = namePool().find(std::string(name));
  if (found == namePool().end()) return std::nullopt;
  return COSNameID(&*found);
}

}  // namespace objsys
