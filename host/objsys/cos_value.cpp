// Interned type names.
#include "objsys/cos_value.h"

#include <unordered_set>

namespace objsys {
namespace {

// Hashes text of every kind alike, so that a name is looked up as a view without copying it.
struct NameHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view name) const noexcept { return std::hash<std::string_view>()(name); }
};

// Names are never released: the pool lives for the process, and nodes keep their addresses.
std::unordered_set<std::string, NameHash, std::equal_to<>>& namePool() {
  static auto* pool = new std::unordered_set<std::string, NameHash, std::equal_to<>>();
  return *pool;
}

}  // namespace

COSNameID::COSNameID(const char* name) : COSNameID(std::string_view(name != nullptr ? name : "")) {}

COSNameID::COSNameID(std::string_view name) {
  auto found = namePool().find(name);
  if (found == namePool().end()) found = namePool().emplace(name).first;
  name_ = &*found;
}

std::optional<COSNameID> COSNameID::find(std::string_view name) {
  const auto found = namePool().find(name);
  if (found == namePool().end()) return std::nullopt;
  return COSNameID(&*found);
}

}  // namespace objsys
