// The registry of Java conversions.
#include "objsys/java_type_conversion.h"

#include <unordered_map>
#include <vector>

namespace objsys {
namespace {

// Everything handed over stays reachable for the life of the process, replaced conversions included.
struct JavaRegistry {
  std::unordered_map<COSNameID, JavaTypeConversion*> conversions;
  std::vector<JavaTypeConversion*> replaced;
};

JavaRegistry& registry() {
  static auto* instance = new JavaRegistry();
  return *instance;
}

}  // namespace

JavaTypeConversion::~JavaTypeConversion() = default;

void JavaTypeConversion::addConversion(const COSNameID& type, JavaTypeConversion* conversion) {
  JavaTypeConversion*& slot = registry().conversions[type];
  if (slot != nullptr && slot != conversion) registry().replaced.push_back(slot);
  slot = conversion;
}

JavaTypeConversion* JavaTypeConversion::getConversion(const COSNameID& type) {
  const auto found = registry().conversions.find(type);
  return found == registry().conversions.end() ? nullptr : found->second;
}

}  // namespace objsys
