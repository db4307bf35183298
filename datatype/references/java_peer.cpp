// JavaPeer: global references shared per copy, identity equality, and the closest-match conversions.
#include "datatype/references/java_peer.h"

#include <optional>
#include <string>

#include "arraylib/zxarray.h"
#include "datatype/conversion_definitions.h"
#include "datatype/data_type_definitions.h"
#include "guilib/auto_ptr.h"
#include "javabridgelib/closest_match.h"
#include "javabridgelib/java_bridge.h"

namespace graphics::datatype {

JavaPeer::JavaPeer(jobject object) { setJavaReference(object); }

JavaPeer::JavaPeer(const JavaPeer& other) { setJavaReference(other.reference_.get()); }

JavaPeer& JavaPeer::operator=(const JavaPeer& other) {
  if (this != &other) setJavaReference(other.reference_.get());
  return *this;
}

JavaPeer::~JavaPeer() = default;

void JavaPeer::setJavaReference(jobject object) {
  boost::shared_ptr<_jobject> made;
  if (object != nullptr) {
    jobject global = kxjNewGlobalRef(object, 0);
    try {
      made.reset(global, &kxjDeleteGlobalRef);
    } catch (...) {
      kxjDeleteGlobalRef(global);
      throw;
    }
  }
  reference_.swap(made);
}

bool JavaPeer::operator==(const JavaPeer& other) const {
  if (!reference_ || !other.reference_) return reference_.get() == other.reference_.get();
  return GetJNIEnv()->IsSameObject(reference_.get(), other.reference_.get()) == JNI_TRUE;
}

struct JavaPeerRules {
  using Value = JavaPeer;
  static JavaPeer fromArray(const zxArray& array) {
    jobject local = javaConvertKorvaxToClosestJavaObject(&array);
    JavaPeer peer(local);
    if (local != nullptr) GetJNIEnv()->DeleteLocalRef(local);
    return peer;
  }
  static zxArray* toArray(const JavaPeer& peer) {
    const boost::shared_ptr<_jobject> object = peer.get_jobject();
    if (!object) return noValueArray();
    return javaConvertJavaObjectToClosestKorvaxArray(kxjNewGlobalRef(object.get(), 0));
  }
  static zxArray* noValueArray() { return zxCreateDoubleMatrix(0, 0, zxREAL); }
  static std::optional<JavaPeer> fromText(const char*) { return std::nullopt; }
  static std::optional<std::string> toText(const JavaPeer&) { return std::nullopt; }
};

jobject JavaPeerJC::toJava(objsys::COSValue value) const {
  const gui_objects::ZxArrayPtr array(JavaPeerMC().to(value).as<zxArray>());
  const objsys::JavaTypeConversion* any = objsys::JavaTypeConversion::getConversion(objsys::COSNameID("any"));
  return any != nullptr ? any->toJava(objsys::COSValue(array.get())) : nullptr;
}

objsys::COSValue JavaPeerJC::fromJava(jobject object) const {
  if (object == nullptr) return objsys::COSValue();
  return newValueBlock<JavaPeer>(object);
}

}  // namespace graphics::datatype

ORB_DEFINE_DATA_TYPE(graphics::datatype::JavaPeerDataType)
ORB_DEFINE_CONVERSIONS(graphics::datatype::JavaPeerRules)
