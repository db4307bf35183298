// Java conversions from the peer table: a value goes through its type's array conversion, and the array
// crosses as a peer object or as the closest Java object.
#include "datatype/java/java_conversion.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string>

#include "arraylib/zxarray.h"
#include "datatype/arrays/array_base.h"
#include "datatype/color/styled_colors.h"
#include "datatype/data_type_base.h"
#include "datatype/enums/orb_typed_enum_string_type.h"
#include "datatype/errors.h"
#include "guilib/array_dispatch.h"
#include "guilib/auto_ptr.h"
#include "javabridgelib/closest_match.h"
#include "javabridgelib/java_bridge.h"
#include "objsys/cos_type_conversion.h"

namespace graphics::datatype {

enum class PeerArguments { Numbers, NumbersWithAlpha, Integers, Object };

struct JavaPeerClass {
  const char* javaName;  // "korvax.graphics.types.OrbDouble"
  PeerArguments arguments;
  std::array<const char*, 4> getters;  // unused ones null

  std::size_t components() const {
    std::size_t n = 0;
    while (n < getters.size() && getters[n] != nullptr) ++n;
    return n;
  }
  // The name as JNI finds classes: "korvax/graphics/types/OrbDouble".
  std::string jniName() const {
    std::string name = javaName;
    for (char& c : name) c = c == '.' ? '/' : c;
    return name;
  }
};

namespace {

// The explicit color of a one-color value with its alpha; nothing for a style.
template <class Color>
std::optional<std::array<double, 4>> explicitColor(objsys::COSValue value) {
  const auto& color = *value.as<const Color>();
  if (color.getStyle() != Color::Style::color) return std::nullopt;
  return std::array<double, 4>{color.getRed(), color.getGreen(), color.getBlue(), color.getAlpha()};
}

#define ORB_JAVA_PEER_CLASS(Peer, javaName, kind, ...) \
  const JavaPeerClass k##Peer{javaName, PeerArguments::kind, {__VA_ARGS__}};
#define ORB_JAVA_PEER(Type, Peer)
#define ORB_JAVA_COLOR_PEER(Type)
#include "datatype/java/java_peers.def"

struct PeerRow {
  const char* type;
  const JavaPeerClass* peer;
  // The peer's numbers read from the value itself, where its array form leaves some out.
  std::optional<std::array<double, 4>> (*numbersOf)(objsys::COSValue);
};
#define ORB_JAVA_PEER_CLASS(...)
#define ORB_JAVA_PEER(Type, Peer) PeerRow{"korvax.graphics.datatype." #Type, &k##Peer, nullptr},
#define ORB_JAVA_COLOR_PEER(Type) PeerRow{"korvax.graphics.datatype." #Type, &kOrbColor, &explicitColor<Type>},
const PeerRow kPeerRows[] = {
#include "datatype/java/java_peers.def"
};

const PeerRow* peerRowOf(const char* typeName) {
  for (const PeerRow& row : kPeerRows) {
    if (std::strcmp(row.type, typeName) == 0) return &row;
  }
  return nullptr;
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
      default: signature += 'D';
    }
  }
  signature += ")V";
  jclass type = kxjFindClass(env, peer.jniName().c_str());
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

PeerJavaConversion::PeerJavaConversion(std::string typeName, std::string javaForm)
    : typeName_(std::move(typeName)), javaForm_(std::move(javaForm)), type_(typeName_.c_str()) {
  const PeerRow* row = peerRowOf(typeName_.c_str());
  peer_ = row != nullptr ? row->peer : nullptr;
  numbersOf_ = row != nullptr ? row->numbersOf : nullptr;
}

jobject PeerJavaConversion::toJava(objsys::COSValue value) const {
  if (value.isEmpty()) return nullptr;
  JNIEnv* env = GetJNIEnv();
  JavaLocalFrame frame(env);
  if (numbersOf_ != nullptr) {
    if (const auto numbers = numbersOf_(value)) return frame.keep(newPeerOfNumbers(env, *peer_, *numbers));
  }
  const ZxArrayPtr array(arrayConversionOf(type_).to(value).as<zxArray>());
  if (peer_ != nullptr && peer_->arguments == PeerArguments::Object) {
    std::array<jvalue, 4> arguments{};
    arguments[0].l = javaConvertKorvaxToClosestJavaObject(array.get());
    return frame.keep(newPeer(env, *peer_, arguments));
  }
  if (peer_ != nullptr && numbersOf_ == nullptr) {
    if (const auto numbers = numbersOfArray(*peer_, *array)) return frame.keep(newPeerOfNumbers(env, *peer_, *numbers));
  }
  return frame.keep(javaConvertKorvaxToClosestJavaObject(array.get()));
}

objsys::COSValue PeerJavaConversion::fromJava(jobject object) const {
  // A property shown as a number or a point has no "nothing" to be set to; other types read null as the
  // empty array, as their own empty values cross.
  if (object == nullptr && peer_ != nullptr && peer_->arguments != PeerArguments::Object) {
    const char* shortName = std::strrchr(typeName_.c_str(), '.') + 1;
    raiseWithText<Korvax::class_::KorvaxConversionError>(std::string("Invalid value for ") + shortName + " type: NULL");
  }
  JNIEnv* env = GetJNIEnv();
  JavaLocalFrame frame(env);
  ZxArrayPtr array;
  jclass peerClass = peer_ != nullptr && object != nullptr ? kxjFindClass(env, peer_->jniName().c_str()) : nullptr;
  if (peerClass != nullptr && env->IsInstanceOf(object, peerClass)) {
    array.reset(arrayOfPeer(env, *peer_, object));
  } else {
    array.reset(kxjClosestKorvaxArray(env, object));
  }
  return arrayConversionOf(type_).from(objsys::COSValue(array.get()));
}

const char* PeerJavaConversion::javaClassName() const {
  if (peer_ != nullptr) return peer_->javaName;
  return javaForm_.empty() ? "the closest Java object of the array form" : javaForm_.c_str();
}

objsys::JavaTypeConversion* ArrayBase::createJavaConverter(const objsys::COSDataType* type, const char* javaForm) {
  return new PeerJavaConversion(std::string(kPackageName) + "." + type->getName(), javaForm);
}

objsys::JavaTypeConversion* OrbTypedEnumStringType::createJavaConverter(const OrbTypedEnumStringType* type,
                                                                        const char* javaForm) {
  return new PeerJavaConversion(std::string(kPackageName) + "." + type->getName(), javaForm);
}

}  // namespace graphics::datatype
