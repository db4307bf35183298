// The host's Java bridge: one Java virtual machine per process, the calling thread's JNI environment,
// counted global references, and Java exceptions raised as host errors.
//
// The machine is found, not assumed: a process that is already a JVM (a Java program that loaded the
// host) is used as it is; otherwise the JDK's libjvm is loaded and a machine started on first use, with
// the host's Java types (korvax-graphics-types.jar, beside this library) on its class path.
#pragma once

#include <jni.h>

#include <cstddef>
#include <string>

#include "foundationlib/visibility.h"

// The calling thread's JNI environment, starting or attaching to the machine on first use. Raises
// "Korvax:javabridge:JavaUnavailable" when there is no machine to be had.
KX_HOST_API JNIEnv* GetJNIEnv();
// Whether a machine runs or can be started; never raises.
KX_HOST_API bool kxjIsJavaAvailable();
// From now on this process starts no machine: GetJNIEnv raises instead (programs that must not grow a
// JVM, such as fuzzers, call it first). A machine already running is used as before.
KX_HOST_API void kxjDisableJavaStartup();

// A new global reference to object (null for null). flags is reserved and must be 0.
KX_HOST_API jobject kxjNewGlobalRef(jobject object, int flags);
// Deletes a global reference made by kxjNewGlobalRef; null is ignored.
KX_HOST_API void kxjDeleteGlobalRef(jobject object);
// Global references made by kxjNewGlobalRef and not yet deleted, in the whole process.
KX_HOST_API std::size_t kxjLiveGlobalRefs();

// If a Java exception is pending, clears it and raises "Korvax:javabridge:JavaException" with the
// exception's class and message.
KX_HOST_API void kxjRaisePendingException(JNIEnv* env);

// Makes a new Java exception of the class (slashes, "java/lang/RuntimeException") pending, unless one
// already is; native methods use it to hand a host error to their Java caller.
KX_HOST_API void kxjThrowNew(JNIEnv* env, const char* className, const std::string& message);

// A JNI local frame for the current scope: every local reference made inside it is released at its end,
// so a loop that makes references in a frame per pass never runs out of them.
class KX_HOST_API JavaLocalFrame {
 public:
  explicit JavaLocalFrame(JNIEnv* env, jint capacity = 16);
  ~JavaLocalFrame();
  JavaLocalFrame(const JavaLocalFrame&) = delete;
  JavaLocalFrame& operator=(const JavaLocalFrame&) = delete;
  // Ends the frame, keeping result as a local reference in the enclosing frame.
  jobject keep(jobject result);

 private:
  JNIEnv* env_;
  bool open_;
};

// The class of the name (slashes, "java/lang/String"), a local reference; raises when it is absent.
KX_HOST_API jclass kxjFindClass(JNIEnv* env, const char* name);
// A new object of the class through the constructor of the signature; raises on a Java exception.
KX_HOST_API jobject kxjNewObject(JNIEnv* env, const char* className, const char* signature, ...);
// The UTF-8 text of a Java string; empty for null.
KX_HOST_API std::string kxjUtf8(JNIEnv* env, jstring text);
// The object's class name as Java gives it ("java.lang.Double", "[D").
KX_HOST_API std::string kxjClassName(JNIEnv* env, jobject object);
// The object's toString(), or "null".
KX_HOST_API std::string kxjToString(JNIEnv* env, jobject object);
