// Java conversions through a peer class: a value goes through its type's array conversion, and the
// array crosses as a peer object or as the closest Java object.
#include "datatype/java_conversion.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string>

#include "arraylib/zxarray.h"
#include "datatype/errors.h"
#include "guilib/array_dispatch.h"
#include "guilib/auto_ptr.h"
#include "javabridgelib/closest_match.h"
#include "javabridgelib/java_bridge.h"
#include "objsys/cos_type_conversion.h"

namespace graphics::datatype {

namespace {

// The name as JNI finds classes: "korvax/graphics/types/OrbDouble".
std::string jniNameOf(const JavaPeerClass& peer) {
  std::string name = peer.javaName;
  for (char& c : name) c = c == '.' ? '/' : c;
  return name;
}

using gui_objects::ZxArrayPtr;

const objsys::COSTypeConversion& arrayConversionOf(const objsys::COSNameID& type) {
  const objsys::COSTypeConversion* found = objsys::COSTypeRepository::getConversion(objsys::COSNameID("any"), type);
  if (found == nullptr) raiseWithText<Korvax::class_::JavaConversionError>("The type has no array conversion.");
  return *found;
}

// The peer's numbers when the array form is real, full and numeric with one element per number (alpha
// may be left out); nothing otherwise.
std::optional<std::array<double, 4>> numbersOfArray(const JavaPeerClass& peer, const zxArray& array) {
  const std::size_t count = zxGetNumberOfElements(&array);
  const std::size_t components = peer.components();
  const bool alphaLeftOut = peer.arguments == PeerArguments::NumbersWithAlpha && count + 1 == components;
  if (!zxIsNumeric(&array) || zxIsComplex(&array) || zxIsSparse(&array) || (count != components && !alphaLeftOut)) {
    return std::nullopt;
  }
  std::array<double, 4> numbers{0, 0, 0, 1};
  for (std::size_t i = 0; i < count; ++i) numbers[i] = gui_objects::readElementAsDouble(&array, i);
  return numbers;
}

jobject newPeer(JNIEnv* env, const JavaPeerClass& peer, const std::array<jvalue, 4>& arguments) {
  std::string signature = "(";
  for (std::size_t i = 0; i < peer.components(); ++i) {
    switch (peer.arguments) {
      case PeerArguments::Object: signature += "Ljava/lang/Object;"; break;
      case PeerArguments::Integers: signature += 'I'; break;
      case PeerArguments::Numbers:
      case PeerArguments::NumbersWithAlpha: signature += 'D'; break;
    }
  }
  signature += ")V";
  jclass type = kxjFindClass(env, jniNameOf(peer).c_str());
  jmethodID constructor = env->GetMethodID(type, "<init>", signature.c_str());
  if (constructor == nullptr) kxjRaisePendingException(env);
  jobject made = env->NewObjectA(type, constructor, arguments.data());
  if (made == nullptr) kxjRaisePendingException(env);
  return made;
}

jobject newPeerOfNumbers(JNIEnv* env, const JavaPeerClass& peer, const std::array<double, 4>& numbers) {
  std::array<jvalue, 4> arguments{};
  for (std::size_t i = 0; i < peer.components(); ++i) {
    if (peer.arguments == PeerArguments::Integers) {
      arguments[i].i = static_cast<jint>(numbers[i]);
    } else {
      arguments[i].d = numbers[i];
    }
  }
  return newPeer(env, peer, arguments);
}

// The array a peer object stands for: its numbers as a 1-by-N double (alpha left out when it is 1), or
// its object's closest array.
zxArray* arrayOfPeer(JNIEnv* env, const JavaPeerClass& peer, jobject object) {
  jclass type = env->GetObjectClass(object);
  if (peer.arguments == PeerArguments::Object) {
    jmethodID get = env->GetMethodID(type, peer.getters[0], "()Ljava/lang/Object;");
    if (get == nullptr) kxjRaisePendingException(env);
    jobject inner = env->CallObjectMethod(object, get);
    kxjRaisePendingException(env);
    return kxjClosestKorvaxArray(env, inner);
  }
  std::array<double, 4> numbers{};
  std::size_t count = peer.components();
  for (std::size_t i = 0; i < count; ++i) {
    jmethodID get = env->GetMethodID(type, peer.getters[i], "()D");
    if (get == nullptr) kxjRaisePendingException(env);
    numbers[i] = env->CallDoubleMethod(object, get);
    kxjRaisePendingException(env);
  }
  if (peer.arguments == PeerArguments::NumbersWithAlpha && numbers[count - 1] == 1.0) --count;
  ZxArrayPtr made(zxCreateDoubleMatrix(1, count, zxREAL));
  std::copy_n(numbers.begin(), count, zxGetWritablePr(made.get()));
  return made.release();
}

}  // namespace

PeerJavaConversion::PeerJavaConversion(std::string typeName, const JavaPeerClass* peer, const char* javaForm,
                                       NumbersOfValue numbersOf)
    : typeName_(std::move(typeName)),
      peer_(peer),
      javaForm_(javaForm),
      type_(typeName_.c_str()),
      numbersOf_(numbersOf) {}

const char* PeerJavaConversion::javaClassName() const { return peer_ != nullptr ? peer_->javaName : javaForm_; }

jobject PeerJavaConversion::toJava(objsys::COSValue value) const {
  if (value.isEmpty()) return nullptr;
  const JavaPeerClass* peer = peer_;
  JNIEnv* env = GetJNIEnv();
  JavaLocalFrame frame(env);
  if (numbersOf_ != nullptr) {
    if (const auto numbers = numbersOf_(value)) return frame.keep(newPeerOfNumbers(env, *peer, *numbers));
  }
  const ZxArrayPtr array(arrayConversionOf(type_).to(value).as<zxArray>());
  if (peer != nullptr && peer->arguments == PeerArguments::Object) {
    std::array<jvalue, 4> arguments{};
    arguments[0].l = javaConvertKorvaxToClosestJavaObject(array.get());
    return frame.keep(newPeer(env, *peer, arguments));
  }
  if (peer != nullptr && numbersOf_ == nullptr) {
    if (const auto numbers = numbersOfArray(*peer, *array)) return frame.keep(newPeerOfNumbers(env, *peer, *numbers));
  }
  return frame.keep(javaConvertKorvaxToClosestJavaObject(array.get()));
}

objsys::COSValue PeerJavaConversion::fromJava(jobject object) const {
  const JavaPeerClass* peer = peer_;
  // A property shown as a number or a point has no "nothing" to be set to; other types read null as the
  // empty array, as their own empty values cross.
  if (object == nullptr && peer != nullptr && peer->arguments != PeerArguments::Object) {
    const char* shortName = std::strrchr(typeName_.c_str(), '.') + 1;
    raiseWithText<Korvax::class_::KorvaxConversionError>(std::string("Invalid value for ") + shortName + " type: NULL");
  }
  JNIEnv* env = GetJNIEnv();
  JavaLocalFrame frame(env);
  ZxArrayPtr array;
  jclass peerClass = peer != nullptr && object != nullptr ? kxjFindClass(env, jniNameOf(*peer).c_str()) : nullptr;
  if (peerClass != nullptr && env->IsInstanceOf(object, peerClass)) {
    array.reset(arrayOfPeer(env, *peer, object));
  } else {
    array.reset(kxjClosestKorvaxArray(env, object));
  }
  return arrayConversionOf(type_).from(objsys::COSValue(array.get()));
}

}  // namespace graphics::datatype
