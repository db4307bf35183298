// HandleOrEmpty and COSInterface: values, data types and conversions, and the exception of a bad
// numeric handle.
#include "datatype/references/handle_or_empty.h"

#include <optional>
#include <string>

#include "arraylib/zxarray.h"
#include "datatype/conversion_definitions.h"
#include "datatype/data_type_definitions.h"
#include "datatype/errors.h"
#include "datatype/references/invalid_double_handle.h"
#include "datatype/references/object_reference_conversion.h"
#include "guilib/array_dispatch.h"
#include "guilib/auto_ptr.h"
#include "objsys/builtin_types.h"
#include "objsys/object_arrays.h"
#include "utillib/ut.h"

namespace graphics::datatype {

using Korvax::datatypes::handleoremptydatatype::InvalidOrbHandle;

InvalidDoubleHandleException::InvalidDoubleHandleException()
    : id_("Korvax:orb:dt_conv:Matrix_to_HObject:BadHandle"), message_("Invalid object handle") {}

std::wstring InvalidDoubleHandleException::GetUnicodeMessageTxt() const {
  return std::wstring(message_.begin(), message_.end());
}

std::unique_ptr<fl::except::IMsgIDException> InvalidDoubleHandleException::copy() const {
  return std::make_unique<InvalidDoubleHandleException>(*this);
}

HandleOrEmpty::HandleOrEmpty() { setHandle(nullptr); }

HandleOrEmpty::HandleOrEmpty(const zxArray* array) { setHandle(array); }

HandleOrEmpty::HandleOrEmpty(const objsys::COSInterfacePtr& object) {
  if (!object) {
    setHandle(nullptr);
    return;
  }
  const gui_objects::ZxArrayPtr scalar(objsys::omCreateOBJSYSScalar(object.get()));
  setHandle(scalar.get());
}

HandleOrEmpty::HandleOrEmpty(const HandleOrEmpty& other) : held_(getMxArrayDataType().copy(other.held_)) {}

HandleOrEmpty& HandleOrEmpty::operator=(const HandleOrEmpty& other) {
  const objsys::COSValue copy = getMxArrayDataType().copy(other.held_);
  getMxArrayDataType().destroy(held_);
  held_ = copy;
  return *this;
}

HandleOrEmpty::~HandleOrEmpty() { getMxArrayDataType().destroy(held_); }

void HandleOrEmpty::setHandle(const zxArray* array) {
  const bool present = array != nullptr && !isArrayEmpty(array);
  if (present && !objsys::omIsOBJSYS(array) && !zxIsDouble(array)) raise<InvalidOrbHandle>();
  gui_objects::ZxArrayPtr made(!present                    ? createEmptyObject()
                               : objsys::omIsOBJSYS(array) ? zxCreateSharedDataCopy(array)
                                                           : convertDoubleToHandle(array));
  // The previous array goes only once the new value is ready, so a failure leaves it in place.
  const objsys::COSValue next = getMxArrayDataType().valueFromArray(made.get());
  getMxArrayDataType().destroy(held_);
  held_ = next;
}

const zxArray* HandleOrEmpty::getHandle() const { return objsys::AnyDataType::arrayOf(held_); }

zxArray* HandleOrEmpty::getSharedObjectCopy() const { return objsys::objsysConvertArrayToExternal(getHandle()); }

objsys::COSInterfacePtr HandleOrEmpty::getCOSReference() const {
  if (isArrayEmpty(getHandle())) return {};
  return objsys::omGetArrayElement(getHandle(), 0);
}

bool HandleOrEmpty::operator==(const HandleOrEmpty& other) const {
  if (held_ == other.held_) return true;
  const zxArray* mine = getHandle();
  const zxArray* theirs = other.getHandle();
  if (mine != nullptr && theirs != nullptr && zxIsEmpty(mine) && zxIsEmpty(theirs)) return true;
  return getCOSReference() == other.getCOSReference();
}

objsys::COSInterfacePtr HandleOrEmpty::convertValue(const char* typeName, objsys::COSValue value) {
  const objsys::COSTypeConversion* conversion = objsys::COSTypeRepository::getConversion("any", typeName);
  if (conversion == nullptr) return {};
  const gui_objects::ZxArrayPtr array(conversion->to(value).as<zxArray>());
  if (array == nullptr || zxIsEmpty(array.get())) return {};
  return objsys::omGetArrayElement(array.get(), 0);
}

void* HandleOrEmpty::operator new(std::size_t size) { return allocateValueBlock(size); }

void HandleOrEmpty::operator delete(void* block) { utFree(block); }

bool HandleOrEmpty::isArrayEmpty(const zxArray* array) { return array != nullptr && zxIsEmpty(array); }

zxArray* HandleOrEmpty::createEmptyObject() { return objsys::omCreateOBJSYSEmpty(objsys::kPlaceholderClassName); }

objsys::AnyDataType& HandleOrEmpty::getMxArrayDataType() {
  // The host registers its own "any" type; a host that has not yet done so gets the same type.
  static objsys::AnyDataType* const type = [] {
    auto* registered = dynamic_cast<objsys::AnyDataType*>(objsys::COSTypeRepository::getType("any"));
    return registered != nullptr ? registered : objsys::AnyDataType::instance();
  }();
  return *type;
}

zxArray* HandleOrEmpty::convertDoubleToHandle(const zxArray* array) {
  const objsys::COSTypeConversion* conversion =
      objsys::COSTypeRepository::getConversion("double", kObjectReferenceTypeName);
  if (conversion == nullptr) raise<InvalidOrbHandle>();
  const objsys::COSValue number = objsys::DoubleDataType::makeValue(gui_objects::readElementAsDouble(array, 0));
  objsys::COSValue resolved;
  bool refused = false;
  try {
    resolved = conversion->from(number);
  } catch (...) {
    refused = true;
  }
  objsys::DoubleDataType::instance()->destroy(number);
  if (refused) raise<InvalidOrbHandle>();
  objsys::COSInterfacePtr object;
  if (const auto* held = resolved.as<const objsys::COSInterfacePtr>()) object = *held;
  COSInterfaceDataType::getType()->destroy(resolved);
  if (!object || object->isDeleted()) raise<InvalidOrbHandle>();
  return objsys::omCreateOBJSYSScalar(object.get());
}

bool HandleOrEmptyDataType::isEqual(objsys::COSValue a, objsys::COSValue b) const {
  if (a.isEmpty() || b.isEmpty()) return a.isEmpty() && b.isEmpty();
  bool equal = false;
  bool failed = false;
  try {
    equal = *a.as<const HandleOrEmpty>() == *b.as<const HandleOrEmpty>();
  } catch (...) {
    failed = true;
  }
  if (failed) raise<Korvax::datatypes::handleoremptydatatype::IsEqualException>();
  return equal;
}

objsys::COSEnumeration* HandleOrEmptyDataType::getInterfaces(objsys::COSValue value) {
  const auto* held = value.as<const HandleOrEmpty>();
  return HandleOrEmpty::getMxArrayDataType().getInterfaces(held != nullptr ? held->held_ : objsys::COSValue());
}

objsys::COSEnumeration* HandleOrEmptyDataType::getKXArrays(objsys::COSValue value) {
  const auto* held = value.as<const HandleOrEmpty>();
  return HandleOrEmpty::getMxArrayDataType().getKXArrays(held != nullptr ? held->held_ : objsys::COSValue());
}

objsys::COSEnumeration* COSInterfaceDataType::getInterfaces(objsys::COSValue value) {
  auto* cursor = new objsys::COSValueListEnumeration();
  if (const auto* object = value.as<const objsys::COSInterfacePtr>(); object != nullptr && *object) {
    cursor->addObject(*object);
  }
  return cursor;
}

namespace {

// Object references have no text form, in either direction, deliberately.
template <class Value>
struct NoTextForm {
  [[noreturn]] static Value fromText(const char*) {
    raise<Korvax::datatypes::handleoremptydatatype::StringToDataType>();
  }
  [[noreturn]] static std::optional<std::string> toText(const Value&) {
    raise<Korvax::datatypes::handleoremptydatatype::DataTypeToString>();
  }
  // Not even an empty slot has a text.
  [[noreturn]] static std::string noValueText() { raise<Korvax::datatypes::handleoremptydatatype::DataTypeToString>(); }
  static zxArray* noValueArray() { return objsys::omCreateOBJSYSEmpty(objsys::kPlaceholderClassName); }
};

}  // namespace

struct HandleOrEmptyRules : NoTextForm<HandleOrEmpty> {
  using Value = HandleOrEmpty;
  static HandleOrEmpty fromArray(const zxArray& array) { return HandleOrEmpty(&array); }
  static HandleOrEmpty fromNoArray() { return HandleOrEmpty(); }
  static zxArray* toArray(const HandleOrEmpty& value) { return value.getSharedObjectCopy(); }
};

struct COSInterfaceRules : NoTextForm<objsys::COSInterfacePtr> {
  using Value = objsys::COSInterfacePtr;
  static Value fromArray(const zxArray& array) { return HandleOrEmpty(&array).getCOSReference(); }
  static zxArray* toArray(const Value& object) { return objsys::omCreateOBJSYSScalar(object.get()); }
};

}  // namespace graphics::datatype

ORB_DEFINE_DATA_TYPE(graphics::datatype::HandleOrEmptyDataType)
ORB_DEFINE_CONVERSIONS(graphics::datatype::HandleOrEmptyRules)
ORB_DEFINE_DATA_TYPE(graphics::datatype::COSInterfaceDataType)
ORB_DEFINE_CONVERSIONS(graphics::datatype::COSInterfaceRules)
