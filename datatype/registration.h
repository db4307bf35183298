// Queueing and running the registration of every data type: each type's module queues one callback
// while the library loads; the first start runs them.
#pragma once

#include <new>
#include <type_traits>

#include "objsys/cos_data_type.h"
#include "objsys/cos_type_conversion.h"
#include "objsys/java_type_conversion.h"

namespace gui_objects {
class InitializationCallbackRegistrar;
}

namespace graphics::datatype {

// The process-wide registrar of registration callbacks, created on first use and never deleted;
// null if it could not be allocated.
gui_objects::InitializationCallbackRegistrar* callbackRegistrar();

// Queues a registration callback with the registrar. Static initialisers call it; it returns true so
// that its result can initialise a module-level flag.
bool queueRegistration(void (*callback)());

// Adds a data type to the package "korvax.graphics.datatype", creating the package if needed.
void addToDefaultPackage(objsys::COSDataType* type);

// Runs one step of registration. Start-up reports no shortage of memory: a step that cannot allocate
// what it needs is skipped, and the class system goes on without what it would have registered.
template <class Step>
void unlessOutOfMemory(Step&& step) {
  try {
    step();
  } catch (const std::bad_alloc&) {
  }
}

// The registration callback of a type: its data type singleton in the default package, and its array
// (from "any"), string (from "asciiString") and Java conversions. Use void for a conversion the type
// lacks. The Java step is a maker: its static create(DataType*) makes the type's Java conversion. A conversion that
// cannot be allocated is handed over as null; any other allocation that fails ends the callback early.
template <class DataType, class ArrayConversion, class StringConversion, class JavaConversion = void>
void registerDataType() {
  unlessOutOfMemory([] {
    DataType* type = DataType::getType();
    if (type == nullptr) return;
    addToDefaultPackage(type);
    const objsys::COSNameID name(DataType::getDataTypeName());
    if constexpr (!std::is_void_v<ArrayConversion>) {
      objsys::COSTypeRepository::addConversion("any", name, new (std::nothrow) ArrayConversion());
    }
    if constexpr (!std::is_void_v<StringConversion>) {
      objsys::COSTypeRepository::addConversion("asciiString", name, new (std::nothrow) StringConversion());
    }
    if constexpr (!std::is_void_v<JavaConversion>) {
      objsys::JavaTypeConversion::addConversion(name, JavaConversion::create(type));
    }
  });
}

}  // namespace graphics::datatype

// Queues a type's registration callback while the library loads (one per type module).
#define ORB_QUEUE_REGISTRATION(name, ...)                                                            \
  namespace {                                                                                        \
  [[maybe_unused]] const bool k##name##RegistrationQueued =                                          \
      ::graphics::datatype::queueRegistration(&::graphics::datatype::registerDataType<__VA_ARGS__>); \
  }
