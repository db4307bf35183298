// Callback: data type and conversions over the host's MCallback.
#include "datatype/references/callback.h"

#include <memory>
#include <optional>
#include <string>

#include "arraylib/zxarray.h"
#include "datatype/conversion_definitions.h"
#include "datatype/data_type_definitions.h"
#include "datatype/errors.h"
#include "objsys/object_arrays.h"

namespace graphics::datatype {
namespace {

using gui_objects::MCallback;

// Whatever goes wrong while the host makes a callback, the user sees one identifier.
template <class Make>
MCallback madeOrRefused(Make&& make) {
  std::optional<MCallback> made;
  try {
    made.emplace(make());
  } catch (...) {
  }
  if (!made) raise<Korvax::datatypes::callback::CreateCallback>();
  return std::move(*made);
}

// The callback of the empty string, which equals no callback.
const MCallback& emptyCallback() {
  static const MCallback* const empty = MCallback::createFromString("");
  return *empty;
}

}  // namespace

struct CallbackRules {
  using Value = MCallback;
  static MCallback fromArray(const zxArray& array) {
    return madeOrRefused([&] { return MCallback(&array); });
  }
  static zxArray* toArray(const MCallback& callback) { return callback.convertToKorvaxArray(true); }
  static zxArray* noValueArray() { return zxCreateString(""); }
  static MCallback fromText(const char* text) {
    return madeOrRefused([&] { return MCallback(*std::unique_ptr<MCallback>(MCallback::createFromString(text))); });
  }
  // A callback has no text form; it is to stay so.
  static std::optional<std::string> toText(const MCallback&) { return std::nullopt; }
};

objsys::COSValue CallbackDataType::copy(objsys::COSValue value) {
  const auto* callback = value.as<const MCallback>();
  return objsys::COSValue(callback != nullptr ? callback->clone() : nullptr);
}

void CallbackDataType::destroy(objsys::COSValue value) const { delete value.as<MCallback>(); }

bool CallbackDataType::isEqual(objsys::COSValue a, objsys::COSValue b) const {
  const auto* first = a.as<const MCallback>();
  const auto* second = b.as<const MCallback>();
  if (first == nullptr && second == nullptr) return true;
  return MCallback::isEqual(first != nullptr ? *first : emptyCallback(), second != nullptr ? *second : emptyCallback());
}

objsys::COSEnumeration* CallbackDataType::getInterfaces(objsys::COSValue value) {
  auto* cursor = new objsys::COSValueListEnumeration();
  if (const auto* callback = value.as<const MCallback>()) {
    for (objsys::COSInterfacePtr& object : objsys::interfacesIn(callback->getArray())) cursor->addObject(std::move(object));
  }
  return cursor;
}

objsys::COSEnumeration* CallbackDataType::getKXArrays(objsys::COSValue value) {
  auto* cursor = new objsys::COSValueListEnumeration();
  const auto* callback = value.as<const MCallback>();
  if (callback != nullptr && callback->getArray() != nullptr && !zxIsEmpty(callback->getArray())) {
    cursor->addArray(callback->getArray());
  }
  return cursor;
}

}  // namespace graphics::datatype

ORB_DEFINE_DATA_TYPE(graphics::datatype::CallbackDataType)
ORB_DEFINE_CONVERSIONS(graphics::datatype::CallbackRules)
