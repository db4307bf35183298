// What the JNI test exports do: the Utils start and stop of the library, and for each type one held
// value (its default until Java sets one) that Java sets and reads through the type's Java conversion. A refusal
// reaches Java as an IllegalArgumentException whose message begins with the identifier.
#pragma once

#include <jni.h>

namespace orbjni {

void setValue(JNIEnv* env, const char* typeName, jobject value);
jobject getValue(JNIEnv* env, const char* typeName);
jstring typeName(JNIEnv* env, const char* typeName);

}  // namespace orbjni
