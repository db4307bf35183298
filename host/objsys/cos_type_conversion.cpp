// The process-wide type repository.
#include "objsys/cos_type_conversion.h"

#include <unordered_map>
#include <utility>

#include "objsys/builtin_types.h"

namespace objsys {
namespace {

struct NamePairHash {
  std::size_t operator()(const std::pair<COSNameID, COSNameID>& key) const noexcept {
    return std::hash<COSNameID>()(key.first) * 31 + std::hash<COSNameID>()(key.second);
  }
};

// Everything the repository is handed stays reachable from here for the life of the process,
// including conversions that a later registration replaced.
struct Repository {
  std::unordered_map<COSNameID, COSDataType*> types;
  std::unordered_map<std::pair<COSNameID, COSNameID>, COSTypeConversion*, NamePairHash> conversions;
  std::vector<COSTypeConversion*> replaced;
};

// The repository starts with the class system's own types, as a host's class system has them before
// it loads any library; registering them reaches the repository again, which is already there then.
Repository& repository() {
  static Repository* instance = nullptr;
  if (instance == nullptr) {
    instance = new Repository();
    registerBuiltinTypes();
  }
  return *instance;
}

}  // namespace

COSTypeConversion::~COSTypeConversion() = default;

void COSTypeRepository::addGlobalType(COSDataType* type) {
  if (type != nullptr) addNamedType(COSNameID(type->getName()), type);
}

void COSTypeRepository::addNamedType(const COSNameID& fullName, COSDataType* type) {
  if (type != nullptr) repository().types[fullName] = type;
}

COSDataType* COSTypeRepository::getType(const COSNameID& name) {
  const auto found = repository().types.find(name);
  return found == repository().types.end() ? nullptr : found->second;
}

COSDataType* COSTypeRepository::getType(const char* name) {
  const std::optional<COSNameID> known = COSNameID::find(name != nullptr ? name : "");
  return known ? getType(*known) : nullptr;
}

void COSTypeRepository::addConversion(const COSNameID& source, const COSNameID& target, COSTypeConversion* conversion) {
  COSTypeConversion*& slot = repository().conversions[{source, target}];
  if (slot != nullptr && slot != conversion) repository().replaced.push_back(slot);
  slot = conversion;
}

COSTypeConversion* COSTypeRepository::getConversion(const COSNameID& source, const COSNameID& target) {
  const auto found = repository().conversions.find({source, target});
  return found == repository().conversions.end() ? nullptr : found->second;
}

COSTypeConversion* COSTypeRepository::getConversion(const char* source, const char* target) {
  const std::optional<COSNameID> knownSource = COSNameID::find(source != nullptr ? source : "");
  const std::optional<COSNameID> knownTarget = COSNameID::find(target != nullptr ? target : "");
  return knownSource && knownTarget ? getConversion(*knownSource, *knownTarget) : nullptr;
}

void COSTypeRepository::removeConversion(const COSNameID& source, const COSNameID& target) {
  repository().conversions.erase({source, target});
}

}  // namespace objsys
