// The closest Java object for a host array and the closest host array for a Java object: the forms a
// user of the host's Java side expects, chosen so that a value crosses and comes back unchanged.
//
//   host array                         Java object
//   ---------------------------------  ------------------------------------------------------------
//   0-by-0 double, or no array         null (and null gives a 0-by-0 double back)
//   1-by-1 double, single, intN,       Double, Float, Byte, Short, Integer, Long, Boolean
//     logical
//   1-by-N of those                    double[], float[], ..., boolean[]
//   uintN (Java has no unsigned)       korvax.graphics.types.OrbUnsigned: the values widened (uint8 to
//                                        short, uint16 to int, uint32 and uint64 to long) and the width
//   any other shape                    nested arrays, one level per dimension, the first outermost:
//                                        an M-by-N double is double[M][N]
//   an empty array whose shape nested  korvax.graphics.types.OrbEmpty: its class name and dimensions
//     arrays lose (0-by-3: no rows,      (numeric, logical, char and cell arrays)
//     so no row length)
//   char row (and empty char)          String; a char matrix is String[] of its rows
//   cell                               Object[] of the elements' forms (nested as above if not a row)
//   1-by-1 struct                      LinkedHashMap from field names to the fields' forms; other
//                                        struct shapes are Object[] of such maps
//   function handle                    korvax.graphics.types.OrbFunctionHandle
//   class-system object with a handle  korvax.graphics.types.OrbHandle (the object's numeric handle)
//   1-by-1 object array from a Java    that Java object
//     object
//   complex arrays                     none: "Korvax:class:JavaConversionError"
// Back from Java, String[] and Object[] give cell rows, Map gives a 1-by-1 struct, Character a char, and
// any other Java object a 1-by-1 object array that holds it (a JavaObjectReference).
#pragma once

#include <jni.h>

#include <string>

#include "arraylib/zxarray.h"
#include "foundationlib/visibility.h"
#include "objsys/cos_interface.h"

// A new local reference to the closest Java object for the array (null for null or a 0-by-0 double).
// Raises "Korvax:class:JavaConversionError" for an array without a Java form.
KX_HOST_API jobject javaConvertKorvaxToClosestJavaObject(const zxArray* array);
// A new array for the Java object. Takes over the global reference it is handed (made with
// kxjNewGlobalRef) and deletes it, whatever happens. Raises "Korvax:class:KorvaxConversionError" for
// an object without a host form (a ragged nested array, a map with a key that is not a String).
KX_HOST_API zxArray* javaConvertJavaObjectToClosestKorvaxArray(jobject globalReference);
// The same for a reference that stays the caller's.
KX_HOST_API zxArray* kxjClosestKorvaxArray(JNIEnv* env, jobject object);

// The package of the host's Java types, as JNI names classes.
inline constexpr const char* kKorvaxJavaTypesPackage = "korvax/graphics/types/";

// A Java object without a host form of its own, held by a class-system object so that a 1-by-1 object
// array can carry it. It keeps the object alive through a counted global reference.
class KX_HOST_API JavaObjectReference final : public objsys::COSInterface {
 public:
  static objsys::COSInterfacePtr create(JNIEnv* env, jobject object);
  jobject object() const { return object_; }
  // The Java class name, which the object array carries.
  const char* getClassName() const override { return className_.c_str(); }

 private:
  explicit JavaObjectReference(std::string className);
  ~JavaObjectReference() override;
  jobject object_ = nullptr;
  std::string className_;
};
