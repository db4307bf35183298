// The conversion from a numeric handle to a class-system object, and its per-context state.
#include "datatype/references/object_reference_conversion.h"

#include <map>
#include <new>
#include <optional>
#include <vector>

#include "datatype/references/invalid_double_handle.h"
#include "datatype/registration.h"
#include "datatype/value_block.h"
#include "graphicsutillib/graphics_context.h"
#include "objsys/builtin_types.h"
#include "objsys/cos_interface.h"
#include "objsys/handles.h"

namespace graphics::datatype {
namespace {

// What the conversion keeps for one graphics context: the context's handle table, which the host
// owns (the record holds no object).
struct ContextRecord {
  objsys::HandleTable* table;
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
  // A slot holding a double → a slot holding a COSInterfacePtr to the live object of that handle.
  // A handle that names no object of the current context is InvalidDoubleHandleException.
  objsys::COSValue from(objsys::COSValue handle) const override {
    const objsys::HandleTable& table = *recordFor(getContextIndex()).table;
    const auto* number = handle.as<const double>();
    objsys::COSInterfacePtr object = number != nullptr ? table.find(*number) : objsys::COSInterfacePtr();
    if (!object) throw InvalidDoubleHandleException();
    return newValueBlock<objsys::COSInterfacePtr>(std::move(object));
  }
  // Back: the object's handle as a double; the same exception for an object without one.
  objsys::COSValue to(objsys::COSValue value) const override {
    const objsys::HandleTable& table = *recordFor(getContextIndex()).table;
    const auto* object = value.as<const objsys::COSInterfacePtr>();
    const std::optional<double> number = object != nullptr ? table.handleOf(object->get()) : std::nullopt;
    if (!number) throw InvalidDoubleHandleException();
    return objsys::DoubleDataType::makeValue(*number);
  }

 private:
  static ContextRecord& recordFor(std::size_t index) {
    auto& records = contextRecords();
    if (records.size() <= index) records.resize(index + 1, nullptr);
    if (records[index] == nullptr) records[index] = new ContextRecord{&objsys::HandleTable::current()};
    return *records[index];
  }
};

ObjectReferenceConversion* conversion = nullptr;

}  // namespace

void registerObjectReferenceConversion() {
  if (conversion != nullptr) return;
  conversion = new (std::nothrow) ObjectReferenceConversion();
  unlessOutOfMemory([] {
    objsys::COSTypeRepository::addConversion("double", kObjectReferenceTypeName, conversion);
    if (getContextKXRID() >= 0) contextFlags()[getContextKXRID()] = true;
  });
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
