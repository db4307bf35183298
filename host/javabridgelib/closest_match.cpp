// The closest-match conversions between host arrays and Java objects.
#include "javabridgelib/closest_match.h"

#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "arraylib/zxerror.h"
#include "guilib/auto_ptr.h"
#include "javabridgelib/java_bridge.h"
#include "objsys/handles.h"
#include "objsys/java_type_conversion.h"
#include "objsys/object_arrays.h"

namespace {

[[noreturn]] void refuseToJava(const std::string& why) {
  zxErrMsgIdAndTxt("Korvax:class:JavaConversionError", "Unable to convert the value to a Java object: %s.",
                   why.c_str());
}

[[noreturn]] void refuseFromJava(const std::string& why) {
  zxErrMsgIdAndTxt("Korvax:class:KorvaxConversionError", "Unable to convert the Java object to a Korvax value: %s.",
                   why.c_str());
}

std::string typesClass(const char* name) { return std::string(kKorvaxJavaTypesPackage) + name; }

using gui_objects::ZxArrayPtr;

// One Java primitive type: its array's JNI calls, its box and the host class it comes back as. A char is
// never boxed on the way to Java (a 1-by-1 char array is a String), so its box goes unused.
template <class J>
struct Primitive;

#define KXJ_PRIMITIVE(J, Name, code, box, boxConstructor, unboxMethod, member, hostClass)                           \
  template <>                                                                                                       \
  struct Primitive<J> {                                                                                             \
    static constexpr char kCode = code;                                                                             \
    [[maybe_unused]] static constexpr const char* kBox = box;                                                       \
    [[maybe_unused]] static constexpr const char* kBoxConstructor = boxConstructor;                                 \
    static constexpr zxClassID kHostClass = hostClass;                                                              \
    static constexpr const char* kUnboxMethod = unboxMethod;                                                        \
    static J unbox(JNIEnv* env, jobject boxed, jmethodID method) { return env->Call##Name##Method(boxed, method); } \
    static jarray make(JNIEnv* env, jsize n) { return env->New##Name##Array(n); }                                   \
    static void write(JNIEnv* env, jarray a, jsize n, const J* v) {                                                 \
      env->Set##Name##ArrayRegion(static_cast<J##Array>(a), 0, n, v);                                               \
    }                                                                                                               \
    static void read(JNIEnv* env, jarray a, jsize n, J* v) {                                                        \
      env->Get##Name##ArrayRegion(static_cast<J##Array>(a), 0, n, v);                                               \
    }                                                                                                               \
    static jvalue wrap(J v) {                                                                                       \
      jvalue value{};                                                                                               \
      value.member = v;                                                                                             \
      return value;                                                                                                 \
    }                                                                                                               \
  };
// clang-format off
KXJ_PRIMITIVE(jdouble, Double, 'D', "java/lang/Double", "(D)V", "doubleValue", d, zxDOUBLE_CLASS)
KXJ_PRIMITIVE(jfloat, Float, 'F', "java/lang/Float", "(F)V", "floatValue", f, zxSINGLE_CLASS)
KXJ_PRIMITIVE(jbyte, Byte, 'B', "java/lang/Byte", "(B)V", "byteValue", b, zxINT8_CLASS)
KXJ_PRIMITIVE(jshort, Short, 'S', "java/lang/Short", "(S)V", "shortValue", s, zxINT16_CLASS)
KXJ_PRIMITIVE(jint, Int, 'I', "java/lang/Integer", "(I)V", "intValue", i, zxINT32_CLASS)
KXJ_PRIMITIVE(jlong, Long, 'J', "java/lang/Long", "(J)V", "longValue", j, zxINT64_CLASS)
KXJ_PRIMITIVE(jboolean, Boolean, 'Z', "java/lang/Boolean", "(Z)V", "booleanValue", z, zxLOGICAL_CLASS)
KXJ_PRIMITIVE(jchar, Char, 'C', "java/lang/Character", "(C)V", "charValue", c, zxCHAR_CLASS)
// clang-format on
#undef KXJ_PRIMITIVE

// Dimensions and column-major strides of a host array.
struct Shape {
  std::vector<zxSize> dims;
  std::vector<zxSize> strides;
  explicit Shape(std::vector<zxSize> dimensions) : dims(std::move(dimensions)), strides(dims.size(), 1) {
    for (std::size_t k = 1; k < dims.size(); ++k) strides[k] = strides[k - 1] * dims[k - 1];
  }
  static Shape of(const zxArray* array) {
    const zxSize* dims = zxGetDimensions(array);
    return Shape({dims, dims + zxGetNumberOfDimensions(array)});
  }
  zxSize count() const {
    zxSize n = 1;
    for (zxSize d : dims) n *= d;
    return n;
  }
};

jsize javaLength(zxSize n) {
  if (n > static_cast<zxSize>(std::numeric_limits<jsize>::max())) refuseToJava("a dimension exceeds Java's array size");
  return static_cast<jsize>(n);
}

// The nested Java array of an array of the shape: one level per dimension, the innermost built by
// innermost(offset, stride, count) and its class named innermostClass ("[D", "[Ljava/lang/Object;").
template <class Innermost>
jobject nested(JNIEnv* env, const Shape& shape, std::size_t level, zxSize offset, const std::string& innermostClass,
               const Innermost& innermost) {
  const std::size_t last = shape.dims.size() - 1;
  if (level == last) return innermost(offset, shape.strides[last], shape.dims[last]);
  const std::string elementClass = std::string(last - level - 1, '[') + innermostClass;
  jclass element = kxjFindClass(env, elementClass.c_str());
  jobjectArray outer = env->NewObjectArray(javaLength(shape.dims[level]), element, nullptr);
  if (outer == nullptr) kxjRaisePendingException(env);
  env->DeleteLocalRef(element);
  for (zxSize i = 0; i < shape.dims[level]; ++i) {
    JavaLocalFrame frame(env);
    jobject row = nested(env, shape, level + 1, offset + i * shape.strides[level], innermostClass, innermost);
    env->SetObjectArrayElement(outer, static_cast<jsize>(i), row);
  }
  return outer;
}

// A 1-by-1 array is one object, a 1-by-N row one Java array, any other shape nested arrays.
template <class One, class Innermost>
jobject byShape(JNIEnv* env, const zxArray* array, const std::string& innermostClass, const One& one,
                const Innermost& innermost) {
  const Shape shape = Shape::of(array);
  if (shape.dims.size() == 2 && shape.dims[0] == 1) {
    return shape.dims[1] == 1 ? one(0) : innermost(0, 1, shape.dims[1]);
  }
  return nested(env, shape, 0, 0, innermostClass, innermost);
}

template <class Source, class J>
jobject primitiveToJava(JNIEnv* env, const zxArray* array) {
  using P = Primitive<J>;
  const auto* data = static_cast<const Source*>(zxGetData(array));
  const auto element = [&](zxSize index) {
    const Source value = data[index];
    return static_cast<J>(value);
  };
  const auto one = [&](zxSize index) {
    const jvalue value = P::wrap(element(index));
    jclass box = kxjFindClass(env, P::kBox);
    jmethodID constructor = env->GetMethodID(box, "<init>", P::kBoxConstructor);
    jobject boxed = env->NewObjectA(box, constructor, &value);
    env->DeleteLocalRef(box);
    if (boxed == nullptr) kxjRaisePendingException(env);
    return boxed;
  };
  const auto innermost = [&](zxSize offset, zxSize stride, zxSize count) {
    std::vector<J> values(count);
    for (zxSize i = 0; i < count; ++i) values[i] = element(offset + i * stride);
    jarray made = P::make(env, javaLength(count));
    if (made == nullptr) kxjRaisePendingException(env);
    P::write(env, made, static_cast<jsize>(count), values.data());
    return static_cast<jobject>(made);
  };
  return byShape(env, array, std::string("[") + P::kCode, one, innermost);
}

// Java has no unsigned classes: the widened values travel with the width they come back to.
jobject unsignedToJava(JNIEnv* env, jint bits, jobject values) {
  return kxjNewObject(env, typesClass("OrbUnsigned").c_str(), "(ILjava/lang/Object;)V", bits, values);
}

jobject stringOf(JNIEnv* env, const zxChar* units, zxSize count) {
  jstring made = env->NewString(reinterpret_cast<const jchar*>(units), javaLength(count));
  if (made == nullptr) kxjRaisePendingException(env);
  return made;
}

jobject charToJava(JNIEnv* env, const zxArray* array) {
  const zxChar* units = zxGetChars(array);
  if (zxGetNumberOfDimensions(array) != 2) refuseToJava("a char array of more than two dimensions");
  const zxSize rows = zxGetM(array);
  const zxSize columns = zxGetN(array);
  if (rows == 1 || (rows == 0 && columns == 0)) return stringOf(env, units, columns);
  jclass stringClass = kxjFindClass(env, "java/lang/String");
  jobjectArray made = env->NewObjectArray(javaLength(rows), stringClass, nullptr);
  if (made == nullptr) kxjRaisePendingException(env);
  std::vector<zxChar> row(columns);
  for (zxSize r = 0; r < rows; ++r) {
    JavaLocalFrame frame(env);
    for (zxSize c = 0; c < columns; ++c) row[c] = units[r + c * rows];
    env->SetObjectArrayElement(made, static_cast<jsize>(r), stringOf(env, row.data(), columns));
  }
  return made;
}

jobject toJava(JNIEnv* env, const zxArray* array);

// Cells, structs and object arrays: the Java form of each element, arranged by shape.
template <class Element>
jobject elementsToJava(JNIEnv* env, const zxArray* array, bool oneIsArray, const Element& element) {
  const char* objectClass = "java/lang/Object";
  const auto innermost = [&](zxSize offset, zxSize stride, zxSize count) {
    jclass type = kxjFindClass(env, objectClass);
    jobjectArray made = env->NewObjectArray(javaLength(count), type, nullptr);
    if (made == nullptr) kxjRaisePendingException(env);
    for (zxSize i = 0; i < count; ++i) {
      JavaLocalFrame frame(env);
      env->SetObjectArrayElement(made, static_cast<jsize>(i), element(offset + i * stride));
    }
    return static_cast<jobject>(made);
  };
  const auto one = [&](zxSize index) { return oneIsArray ? innermost(index, 1, 1) : element(index); };
  return byShape(env, array, "[Ljava/lang/Object;", one, innermost);
}

jobject structToJava(JNIEnv* env, const zxArray* array, zxSize index) {
  jobject map = kxjNewObject(env, "java/util/LinkedHashMap", "()V");
  jclass mapClass = kxjFindClass(env, "java/util/Map");
  jmethodID put = env->GetMethodID(mapClass, "put", "(Ljava/lang/Object;Ljava/lang/Object;)Ljava/lang/Object;");
  for (int field = 0; field < zxGetNumberOfFields(array); ++field) {
    JavaLocalFrame frame(env);
    jstring name = env->NewStringUTF(zxGetFieldNameByNumber(array, field));
    if (name == nullptr) kxjRaisePendingException(env);
    env->CallObjectMethod(map, put, name, toJava(env, zxGetFieldByNumber(array, index, field)));
    kxjRaisePendingException(env);
  }
  env->DeleteLocalRef(mapClass);
  return map;
}

jobject objectToJava(JNIEnv* env, const zxArray* array, zxSize index) {
  const objsys::COSInterfacePtr object = objsys::omGetArrayElement(array, index);
  if (!object) return nullptr;
  if (const auto* reference = dynamic_cast<const JavaObjectReference*>(object.get())) {
    return env->NewLocalRef(reference->object());
  }
  const auto handle = objsys::HandleTable::current().handleOf(object.get());
  if (!handle) refuseToJava(std::string("an object of class ") + object->getClassName() + " without a handle");
  return kxjNewObject(env, typesClass("OrbHandle").c_str(), "(D)V", *handle);
}

// Whether nested Java arrays give the dimensions back: not when a dimension of 0 comes before one that
// is not (an array of no rows keeps no row length). A 1-by-N row is one Java array and always does.
bool nestingKeepsShape(const zxArray* array) {
  const zxSize count = zxGetNumberOfDimensions(array);
  const zxSize* dims = zxGetDimensions(array);
  if (count == 2 && dims[0] == 1) return true;
  for (zxSize k = 0; k + 1 < count; ++k) {
    if (dims[k] == 0) {
      for (zxSize j = k + 1; j < count; ++j) {
        if (dims[j] != 0) return false;
      }
    }
  }
  return true;
}

// The classes of empty arrays that OrbEmpty carries, by the names the array library gives them.
struct EmptyClass {
  zxClassID id;
  const char* name;
};
constexpr EmptyClass kEmptyClasses[] = {
    {zxDOUBLE_CLASS, "double"}, {zxSINGLE_CLASS, "single"}, {zxINT8_CLASS, "int8"},       {zxUINT8_CLASS, "uint8"},
    {zxINT16_CLASS, "int16"},   {zxUINT16_CLASS, "uint16"}, {zxINT32_CLASS, "int32"},     {zxUINT32_CLASS, "uint32"},
    {zxINT64_CLASS, "int64"},   {zxUINT64_CLASS, "uint64"}, {zxLOGICAL_CLASS, "logical"}, {zxCHAR_CLASS, "char"},
    {zxCELL_CLASS, "cell"}};

jobject emptyToJava(JNIEnv* env, const zxArray* array, const char* name) {
  const zxSize count = zxGetNumberOfDimensions(array);
  std::vector<jint> dims(count);
  for (zxSize k = 0; k < count; ++k) dims[k] = javaLength(zxGetDimensions(array)[k]);
  jintArray javaDims = env->NewIntArray(static_cast<jsize>(count));
  if (javaDims == nullptr) kxjRaisePendingException(env);
  env->SetIntArrayRegion(javaDims, 0, static_cast<jsize>(count), dims.data());
  jstring className = env->NewStringUTF(name);
  if (className == nullptr) kxjRaisePendingException(env);
  return kxjNewObject(env, typesClass("OrbEmpty").c_str(), "(Ljava/lang/String;[I)V", className, javaDims);
}

jobject toJava(JNIEnv* env, const zxArray* array) {
  if (array == nullptr) return nullptr;
  if (zxIsComplex(array)) refuseToJava("complex arrays have no Java form");
  if (zxIsEmpty(array) && !nestingKeepsShape(array)) {
    for (const EmptyClass& carried : kEmptyClasses) {
      if (zxGetClassID(array) == carried.id) return emptyToJava(env, array, carried.name);
    }
  }
  if (zxIsSparse(array)) {
    const ZxArrayPtr full(zxMustBeFull(array));
    return toJava(env, full.get());
  }
  switch (zxGetClassID(array)) {
    case zxDOUBLE_CLASS:
      if (zxGetM(array) == 0 && zxGetN(array) == 0) return nullptr;
      return primitiveToJava<double, jdouble>(env, array);
    case zxSINGLE_CLASS: return primitiveToJava<float, jfloat>(env, array);
    case zxINT8_CLASS: return primitiveToJava<std::int8_t, jbyte>(env, array);
    case zxUINT8_CLASS: return unsignedToJava(env, 8, primitiveToJava<std::uint8_t, jshort>(env, array));
    case zxINT16_CLASS: return primitiveToJava<std::int16_t, jshort>(env, array);
    case zxUINT16_CLASS: return unsignedToJava(env, 16, primitiveToJava<std::uint16_t, jint>(env, array));
    case zxINT32_CLASS: return primitiveToJava<std::int32_t, jint>(env, array);
    case zxUINT32_CLASS: return unsignedToJava(env, 32, primitiveToJava<std::uint32_t, jlong>(env, array));
    case zxINT64_CLASS: return primitiveToJava<std::int64_t, jlong>(env, array);
    case zxUINT64_CLASS: return unsignedToJava(env, 64, primitiveToJava<std::uint64_t, jlong>(env, array));
    case zxLOGICAL_CLASS: return primitiveToJava<zxLogical, jboolean>(env, array);
    case zxCHAR_CLASS: return charToJava(env, array);
    case zxCELL_CLASS:
      return elementsToJava(env, array, true, [&](zxSize i) { return toJava(env, zxGetCell(array, i)); });
    case zxSTRUCT_CLASS:
      return elementsToJava(env, array, false, [&](zxSize i) { return structToJava(env, array, i); });
    case zxFUNCTION_CLASS: {
      jstring name = env->NewStringUTF(zxGetFunctionName(array));
      if (name == nullptr) kxjRaisePendingException(env);
      return kxjNewObject(env, typesClass("OrbFunctionHandle").c_str(), "(Ljava/lang/String;)V", name);
    }
    case zxOBJECT_CLASS:
      if (!objsys::omIsOBJSYS(array)) refuseToJava(std::string("objects of class ") + zxGetClassName(array));
      if (zxIsEmpty(array)) return nullptr;
      return elementsToJava(env, array, false, [&](zxSize i) { return objectToJava(env, array, i); });
    default: refuseToJava(std::string("arrays of class ") + zxGetClassName(array) + " have no Java form");
  }
}

// --- Java to host ---

jsize lengthOf(JNIEnv* env, jobject array) { return env->GetArrayLength(static_cast<jarray>(array)); }

// The dimensions of a nested Java array of the depth, read along its first elements.
std::vector<zxSize> nestedDims(JNIEnv* env, jobject array, std::size_t depth) {
  std::vector<zxSize> dims;
  JavaLocalFrame frame(env, static_cast<jint>(depth + 4));
  jobject level = array;
  for (std::size_t k = 0; k < depth; ++k) {
    const jsize n = level != nullptr ? lengthOf(env, level) : 0;
    dims.push_back(static_cast<zxSize>(n));
    level = (k + 1 < depth && n > 0) ? env->GetObjectArrayElement(static_cast<jobjectArray>(level), 0) : nullptr;
  }
  return dims;
}

// Walks a nested Java array of the shape and hands each innermost array to fill(innermost, offset,
// stride, count); a row of another length than the first is refused.
template <class Fill>
void walkNested(JNIEnv* env, jobject array, const Shape& shape, std::size_t level, zxSize offset, const Fill& fill) {
  if (array == nullptr) refuseFromJava("a nested array has a null row");
  const std::size_t last = shape.dims.size() - 1;
  if (static_cast<zxSize>(lengthOf(env, array)) != shape.dims[level]) refuseFromJava("a nested array is ragged");
  if (level == last) {
    fill(array, offset, shape.strides[last], shape.dims[last]);
    return;
  }
  for (zxSize i = 0; i < shape.dims[level]; ++i) {
    JavaLocalFrame frame(env);
    jobject row = env->GetObjectArrayElement(static_cast<jobjectArray>(array), static_cast<jsize>(i));
    walkNested(env, row, shape, level + 1, offset + i * shape.strides[level], fill);
  }
}

// One level gives a 1-by-N row; more levels give one dimension each.
Shape shapeOfJavaArray(JNIEnv* env, jobject array, std::size_t depth) {
  if (depth == 1) return Shape({1, static_cast<zxSize>(lengthOf(env, array))});
  return Shape(nestedDims(env, array, depth));
}

template <class J>
zxArray* primitiveFromJava(JNIEnv* env, jobject array, std::size_t depth) {
  using P = Primitive<J>;
  const Shape shape = shapeOfJavaArray(env, array, depth);
  ZxArrayPtr made(P::kHostClass == zxCHAR_CLASS
                      ? zxCreateCharArray(shape.dims.size(), shape.dims.data())
                      : zxCreateNumericArray(shape.dims.size(), shape.dims.data(), P::kHostClass, zxREAL));
  auto* data = static_cast<J*>(zxGetWritableData(made.get()));
  std::vector<J> buffer;
  const auto fill = [&](jobject innermost, zxSize offset, zxSize stride, zxSize count) {
    buffer.resize(count);
    P::read(env, static_cast<jarray>(innermost), static_cast<jsize>(count), buffer.data());
    for (zxSize i = 0; i < count; ++i) data[offset + i * stride] = buffer[i];
  };
  if (depth == 1) {
    fill(array, 0, 1, shape.dims[1]);
  } else {
    walkNested(env, array, shape, 0, 0, fill);
  }
  return made.release();
}

zxArray* fromJava(JNIEnv* env, jobject object);

zxArray* objectsFromJava(JNIEnv* env, jobject array, std::size_t depth) {
  const Shape shape = shapeOfJavaArray(env, array, depth);
  ZxArrayPtr made(zxCreateCellArray(shape.dims.size(), shape.dims.data()));
  // Null elements (a cell's empty values crossed as null) share one empty array's data.
  const ZxArrayPtr empty(zxCreateDoubleMatrix(0, 0, zxREAL));
  const auto fill = [&](jobject innermost, zxSize offset, zxSize stride, zxSize count) {
    for (zxSize i = 0; i < count; ++i) {
      JavaLocalFrame frame(env);
      jobject element = env->GetObjectArrayElement(static_cast<jobjectArray>(innermost), static_cast<jsize>(i));
      zxSetCell(made.get(), offset + i * stride,
                element == nullptr ? zxCreateSharedDataCopy(empty.get()) : fromJava(env, element));
    }
  };
  if (depth == 1) {
    fill(array, 0, 1, shape.dims[1]);
  } else {
    walkNested(env, array, shape, 0, 0, fill);
  }
  return made.release();
}

zxArray* mapFromJava(JNIEnv* env, jobject map) {
  jclass mapClass = kxjFindClass(env, "java/util/Map");
  jmethodID keySet = env->GetMethodID(mapClass, "keySet", "()Ljava/util/Set;");
  jmethodID get = env->GetMethodID(mapClass, "get", "(Ljava/lang/Object;)Ljava/lang/Object;");
  jclass setClass = kxjFindClass(env, "java/util/Set");
  jmethodID toArray = env->GetMethodID(setClass, "toArray", "()[Ljava/lang/Object;");
  jobject keys = env->CallObjectMethod(env->CallObjectMethod(map, keySet), toArray);
  kxjRaisePendingException(env);
  const jsize count = lengthOf(env, keys);
  std::vector<std::string> names;
  for (jsize i = 0; i < count; ++i) {
    JavaLocalFrame frame(env);
    jobject key = env->GetObjectArrayElement(static_cast<jobjectArray>(keys), i);
    if (kxjClassName(env, key) != "java.lang.String") refuseFromJava("a map key is not a String");
    names.push_back(kxjUtf8(env, static_cast<jstring>(key)));
  }
  std::vector<const char*> fieldNames;
  for (const std::string& name : names) fieldNames.push_back(name.c_str());
  ZxArrayPtr made(zxCreateStructMatrix(1, 1, static_cast<int>(fieldNames.size()), fieldNames.data()));
  for (jsize i = 0; i < count; ++i) {
    JavaLocalFrame frame(env);
    jobject key = env->GetObjectArrayElement(static_cast<jobjectArray>(keys), i);
    jobject value = env->CallObjectMethod(map, get, key);
    kxjRaisePendingException(env);
    // A map's keys are distinct, so field i is key i: set by number, not looked up by name.
    zxSetFieldByNumber(made.get(), 0, static_cast<int>(i), fromJava(env, value));
  }
  return made.release();
}

// A boxed number, logical or character as a 1-by-1 array of its class.
template <class J, class Host>
zxArray* unboxed(JNIEnv* env, jobject boxed) {
  using P = Primitive<J>;
  jclass type = env->GetObjectClass(boxed);
  const std::string signature = std::string("()") + P::kCode;
  jmethodID method = env->GetMethodID(type, P::kUnboxMethod, signature.c_str());
  if (method == nullptr) kxjRaisePendingException(env);
  const J value = P::unbox(env, boxed, method);
  kxjRaisePendingException(env);
  if constexpr (P::kHostClass == zxCHAR_CLASS) {
    return zxCreateStringFromUTF16(reinterpret_cast<const zxChar*>(&value), 1);
  } else {
    ZxArrayPtr made(zxCreateNumericMatrix(1, 1, P::kHostClass, zxREAL));
    *static_cast<Host*>(zxGetWritableData(made.get())) = static_cast<Host>(value);
    return made.release();
  }
}

double readDouble(JNIEnv* env, jobject object, const char* method) {
  jclass type = env->GetObjectClass(object);
  jmethodID read = env->GetMethodID(type, method, "()D");
  if (read == nullptr) kxjRaisePendingException(env);
  const double value = env->CallDoubleMethod(object, read);
  kxjRaisePendingException(env);
  return value;
}

template <class Unsigned, class Signed>
void narrowToUnsigned(const zxArray* widened, zxArray* made) {
  const auto* from = static_cast<const Signed*>(zxGetData(widened));
  auto* to = static_cast<Unsigned*>(zxGetWritableData(made));
  for (zxSize i = 0; i < zxGetNumberOfElements(widened); ++i) to[i] = static_cast<Unsigned>(from[i]);
}

zxArray* unsignedFromJava(JNIEnv* env, jobject object) {
  jclass type = env->GetObjectClass(object);
  const jint bits = env->CallIntMethod(object, env->GetMethodID(type, "getBits", "()I"));
  jobject values = env->CallObjectMethod(object, env->GetMethodID(type, "getValues", "()Ljava/lang/Object;"));
  kxjRaisePendingException(env);
  const ZxArrayPtr widened(fromJava(env, values));
  struct Width {
    jint bits;
    zxClassID widenedClass;
    zxClassID unsignedClass;
    void (*narrow)(const zxArray*, zxArray*);
  };
  static constexpr Width kWidths[] = {
      {8, zxINT16_CLASS, zxUINT8_CLASS, &narrowToUnsigned<std::uint8_t, std::int16_t>},
      {16, zxINT32_CLASS, zxUINT16_CLASS, &narrowToUnsigned<std::uint16_t, std::int32_t>},
      {32, zxINT64_CLASS, zxUINT32_CLASS, &narrowToUnsigned<std::uint32_t, std::int64_t>},
      {64, zxINT64_CLASS, zxUINT64_CLASS, &narrowToUnsigned<std::uint64_t, std::int64_t>},
  };
  for (const Width& width : kWidths) {
    if (width.bits != bits) continue;
    if (zxGetClassID(widened.get()) != width.widenedClass) refuseFromJava("OrbUnsigned values of the wrong type");
    ZxArrayPtr made(zxCreateNumericArray(zxGetNumberOfDimensions(widened.get()), zxGetDimensions(widened.get()),
                                         width.unsignedClass, zxREAL));
    width.narrow(widened.get(), made.get());
    return made.release();
  }
  refuseFromJava("OrbUnsigned of " + std::to_string(bits) + " bits");
}

zxArray* emptyFromJava(JNIEnv* env, jobject object) {
  jclass type = env->GetObjectClass(object);
  auto className = static_cast<jstring>(
      env->CallObjectMethod(object, env->GetMethodID(type, "getClassName", "()Ljava/lang/String;")));
  auto javaDims =
      static_cast<jintArray>(env->CallObjectMethod(object, env->GetMethodID(type, "getDimensions", "()[I")));
  kxjRaisePendingException(env);
  const std::string name = kxjUtf8(env, className);
  const jsize count = javaDims != nullptr ? env->GetArrayLength(javaDims) : 0;
  std::vector<jint> values(static_cast<std::size_t>(count));
  if (count > 0) env->GetIntArrayRegion(javaDims, 0, count, values.data());
  std::vector<zxSize> dims;
  bool empty = false;
  for (jint d : values) {
    if (d < 0) refuseFromJava("OrbEmpty with a negative dimension");
    empty = empty || d == 0;
    dims.push_back(static_cast<zxSize>(d));
  }
  if (dims.size() < 2 || !empty) refuseFromJava("OrbEmpty of a shape that is not empty");
  for (const EmptyClass& carried : kEmptyClasses) {
    if (name != carried.name) continue;
    switch (carried.id) {
      case zxCELL_CLASS: return zxCreateCellArray(dims.size(), dims.data());
      case zxCHAR_CLASS: return zxCreateCharArray(dims.size(), dims.data());
      case zxLOGICAL_CLASS: return zxCreateLogicalArray(dims.size(), dims.data());
      default: return zxCreateNumericArray(dims.size(), dims.data(), carried.id, zxREAL);
    }
  }
  refuseFromJava("OrbEmpty of class " + name);
}

zxArray* fromJava(JNIEnv* env, jobject object) {
  if (object == nullptr) return zxCreateDoubleMatrix(0, 0, zxREAL);
  JavaLocalFrame frame(env);
  const std::string name = kxjClassName(env, object);
  if (name[0] == '[') {
    const std::size_t depth = name.find_first_not_of('[');
    switch (name[depth]) {
      case 'D': return primitiveFromJava<jdouble>(env, object, depth);
      case 'F': return primitiveFromJava<jfloat>(env, object, depth);
      case 'B': return primitiveFromJava<jbyte>(env, object, depth);
      case 'S': return primitiveFromJava<jshort>(env, object, depth);
      case 'I': return primitiveFromJava<jint>(env, object, depth);
      case 'J': return primitiveFromJava<jlong>(env, object, depth);
      case 'Z': return primitiveFromJava<jboolean>(env, object, depth);
      case 'C': return primitiveFromJava<jchar>(env, object, depth);
      default: return objectsFromJava(env, object, depth);
    }
  }
  if (name == "java.lang.Double") return unboxed<jdouble, double>(env, object);
  if (name == "java.lang.Float") return unboxed<jfloat, float>(env, object);
  if (name == "java.lang.Byte") return unboxed<jbyte, std::int8_t>(env, object);
  if (name == "java.lang.Short") return unboxed<jshort, std::int16_t>(env, object);
  if (name == "java.lang.Integer") return unboxed<jint, std::int32_t>(env, object);
  if (name == "java.lang.Long") return unboxed<jlong, std::int64_t>(env, object);
  if (name == "java.lang.Boolean") return unboxed<jboolean, bool>(env, object);
  if (name == "java.lang.Character") return unboxed<jchar, zxChar>(env, object);
  if (name == "java.lang.String") {
    auto text = static_cast<jstring>(object);
    const jsize length = env->GetStringLength(text);
    std::vector<jchar> units(static_cast<std::size_t>(length));
    env->GetStringRegion(text, 0, length, units.data());
    return zxCreateStringFromUTF16(reinterpret_cast<const zxChar*>(units.data()), units.size());
  }
  if (name == "korvax.graphics.types.OrbHandle") {
    const double handle = readDouble(env, object, "getHandle");
    const objsys::COSInterfacePtr found = objsys::HandleTable::current().find(handle);
    if (!found) refuseFromJava("the handle " + std::to_string(handle) + " names no object");
    return objsys::omCreateOBJSYSScalar(found.get());
  }
  if (name == "korvax.graphics.types.OrbUnsigned") return unsignedFromJava(env, object);
  if (name == "korvax.graphics.types.OrbEmpty") return emptyFromJava(env, object);
  if (name == "korvax.graphics.types.OrbFunctionHandle") {
    jclass type = env->GetObjectClass(object);
    jmethodID getName = env->GetMethodID(type, "getName", "()Ljava/lang/String;");
    auto functionName = static_cast<jstring>(env->CallObjectMethod(object, getName));
    kxjRaisePendingException(env);
    return zxCreateFunctionHandle(kxjUtf8(env, functionName).c_str());
  }
  jclass mapClass = kxjFindClass(env, "java/util/Map");
  if (env->IsInstanceOf(object, mapClass)) return mapFromJava(env, object);
  const objsys::COSInterfacePtr reference = JavaObjectReference::create(env, object);
  return objsys::omCreateOBJSYSScalar(reference.get());
}

// The class system's Java conversion for "any": the closest match both ways.
class ClosestMatchConversion final : public objsys::JavaTypeConversion {
 public:
  jobject toJava(objsys::COSValue value) const override {
    return javaConvertKorvaxToClosestJavaObject(value.as<const zxArray>());
  }
  objsys::COSValue fromJava(jobject object) const override {
    return objsys::COSValue(kxjClosestKorvaxArray(GetJNIEnv(), object));
  }
  const char* javaClassName() const override { return "the closest Java object of the array"; }
};

[[maybe_unused]] const bool kClosestMatchRegistered = [] {
  objsys::JavaTypeConversion::addConversion(objsys::COSNameID("any"), new ClosestMatchConversion());
  return true;
}();

}  // namespace

jobject javaConvertKorvaxToClosestJavaObject(const zxArray* array) {
  // Answers that need no Java object are given without the machine, which may not be running yet.
  if (array == nullptr || (zxIsDouble(array) && !zxIsComplex(array) && zxGetNumberOfDimensions(array) == 2 &&
                           zxGetM(array) == 0 && zxGetN(array) == 0)) {
    return nullptr;
  }
  if (zxIsComplex(array)) refuseToJava("complex arrays have no Java form");
  JNIEnv* env = GetJNIEnv();
  JavaLocalFrame frame(env);
  return frame.keep(toJava(env, array));
}

zxArray* javaConvertJavaObjectToClosestKorvaxArray(jobject globalReference) {
  struct Release {
    jobject reference;
    ~Release() { kxjDeleteGlobalRef(reference); }
  } release{globalReference};
  return kxjClosestKorvaxArray(GetJNIEnv(), globalReference);
}

zxArray* kxjClosestKorvaxArray(JNIEnv* env, jobject object) { return fromJava(env, object); }

objsys::COSInterfacePtr JavaObjectReference::create(JNIEnv* env, jobject object) {
  objsys::COSInterfacePtr made(new JavaObjectReference(kxjClassName(env, object)));
  static_cast<JavaObjectReference*>(made.get())->object_ = kxjNewGlobalRef(object, 0);
  return made;
}

JavaObjectReference::JavaObjectReference(std::string className) : className_(std::move(className)) {}

JavaObjectReference::~JavaObjectReference() { kxjDeleteGlobalRef(object_); }
