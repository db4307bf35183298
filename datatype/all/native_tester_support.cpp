// The held values of the NativeTesters, and the Utils exports that start and stop the library.
#include "datatype/all/native_tester_support.h"

#include <cstring>
#include <map>
#include <new>
#include <stdexcept>
#include <string>

#include "datatype/all/all_types.h"
#include "datatype/library.h"
#include "foundationlib/except.h"
#include "javabridgelib/java_bridge.h"
#include "objsys/builtin_types.h"
#include "objsys/java_type_conversion.h"

namespace orbjni {
namespace {

using graphics::datatype::kEveryType;
using graphics::datatype::TypeRow;

const TypeRow& rowOf(const char* name) {
  for (const TypeRow& row : kEveryType) {
    if (std::strcmp(row.name, name) == 0) return row;
  }
  throw std::logic_error(std::string("no type ") + name);
}

// The value each type's tester holds, for the life of the library's start.
std::map<std::string, objsys::COSValue>& held() {
  static auto* values = new std::map<std::string, objsys::COSValue>();
  return *values;
}

// Runs body; whatever it raises becomes a pending Java exception.
template <class Body>
void asJava(JNIEnv* env, Body&& body) {
  try {
    body();
  } catch (const fl::except::IMsgIDException& error) {
    kxjThrowNew(env, "java/lang/IllegalArgumentException",
                std::string(error.get_error_id()) + ": " + error.get_message_text());
  } catch (const std::bad_alloc&) {
    kxjThrowNew(env, "java/lang/OutOfMemoryError", "out of memory in the data type library");
  } catch (const std::exception& error) {
    kxjThrowNew(env, "java/lang/RuntimeException", error.what());
  }
}

const objsys::JavaTypeConversion& javaConversionOf(const TypeRow& row) {
  const objsys::JavaTypeConversion* java = objsys::JavaTypeConversion::getConversion(row.fullName());
  if (java == nullptr) throw std::logic_error(std::string(row.name) + " has no Java conversion");
  return *java;
}

}  // namespace

void setValue(JNIEnv* env, const char* name, jobject value) {
  asJava(env, [&] {
    const TypeRow& row = rowOf(name);
    const objsys::COSValue made = javaConversionOf(row).fromJava(value);
    objsys::COSValue& slot = held()[name];
    row.dataType()->destroy(slot);
    slot = made;
  });
}

jobject getValue(JNIEnv* env, const char* name) {
  jobject result = nullptr;
  asJava(env, [&] {
    const TypeRow& row = rowOf(name);
    // A tester holds its type's default until Java sets a value.
    const auto found = held().find(name);
    const objsys::COSValue value = found != held().end() ? found->second : row.dataType()->getDefaultValue();
    result = javaConversionOf(row).toJava(value);
  });
  return result;
}

jstring typeName(JNIEnv* env, const char* name) {
  jstring result = nullptr;
  asJava(env, [&] { result = env->NewStringUTF(rowOf(name).fullName()); });
  return result;
}

}  // namespace orbjni

extern "C" {

// Starts the library as the host does, without loading anything more.
JNIEXPORT void JNICALL Java_korvax_graphics_types_test_Utils_initializeOrbdatatypesLib(JNIEnv* env, jclass) {
  orbjni::asJava(env, [] {
    objsys::registerBuiltinTypes();
    KXInitialize_orbdatatypes(nullptr);
  });
}

// Releases the testers' values and stops the library.
JNIEXPORT void JNICALL Java_korvax_graphics_types_test_Utils_cleanupOrbdatatypesLib(JNIEnv* env, jclass) {
  orbjni::asJava(env, [] {
    for (auto& [name, value] : orbjni::held()) orbjni::rowOf(name.c_str()).dataType()->destroy(value);
    orbjni::held().clear();
    KXTerminate_orbdatatypes();
  });
}
}
