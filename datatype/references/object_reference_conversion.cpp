// The conversion from a numeric handle to a class-system object, and its per-context state.
#include "datatype/references/object_reference_conversion.h"

#include <map>
#include <new>
#include <vector>

#include "datatype/errors.h"
#include "graphicsutillib/graphics_context.h"
#include "objsys/cos_interface.h"

namespace graphics::datatype {
namespace {

// What the conversion keeps for one graphics context: the objects its handles have resolved to.
struct ContextRecord {
  std::map<double, objsys::COSInterfacePtr> resolved;
};

// Indexed by graphics context index; an entry is null until the context converts a handle.
std::vector<ContextRecord*>& contextRecords() {
  static auto* records = new std::vector<ContextRecord*>();
  return *records;
}

// Per context (by resource identifier): whether the conversion is registered for it.
std::map<int, bool>& contextFlags() {
  static auto* flags = new std::map<int, bool>();
  return *flags;
}

class ObjectReferenceConversion : public objsys::COSTypeConversion {
 public:
  // A handle value → the object it stands for. No graphics objects exist in this host yet, so every
  // handle is refused.
  objsys::COSValue from(objsys::COSValue handle) const override {
    recordFor(getContextIndex());
    (void)handle;
    raise<Korvax::datatypes::handleoremptydatatype::InvalidOrbHandle>();
  }
  objsys::COSValue to(objsys::COSValue) const override {
    raise<Korvax::datatypes::handleoremptydatatype::InvalidOrbHandle>();
  }

 private:
  static ContextRecord& recordFor(std::size_t index) {
    auto& records = contextRecords();
    if (records.size() <= index) records.resize(index + 1, nullptr);
    if (records[index] == nullptr) records[index] = new ContextRecord();
    return *records[index];
  }
};

ObjectReferenceConversion* conversion = nullptr;

}  // namespace

void registerObjectReferenceConversion() {
  if (conversion != nullptr) return;
  conversion = new (std::nothrow) ObjectReferenceConversion();
  objsys::COSTypeRepository::addConversion("double", kObjectReferenceTypeName, conversion);
  if (getContextKXRID() >= 0) contextFlags()[getContextKXRID()] = true;
}

void removeObjectReferenceConversion() {
  if (conversion == nullptr) return;
  objsys::COSTypeRepository::removeConversion("double", kObjectReferenceTypeName);
  delete conversion;
  conversion = nullptr;
  if (getContextKXRID() >= 0) contextFlags()[getContextKXRID()] = false;
}

bool objectReferenceFlag(int contextKXRID) {
  const auto found = contextFlags().find(contextKXRID);
  return found != contextFlags().end() && found->second;
}

void releaseObjectReferenceContext(std::size_t contextIndex) {
  auto& records = contextRecords();
  if (contextIndex >= records.size()) return;
  delete records[contextIndex];
  records[contextIndex] = nullptr;
}

bool hasObjectReferenceContext(std::size_t contextIndex) {
  return contextIndex < contextRecords().size() && contextRecords()[contextIndex] != nullptr;
}

}  // namespace graphics::datatype
