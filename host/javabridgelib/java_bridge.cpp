// Finding or starting the Java virtual machine, JNI environments, counted global references and Java
// exceptions as host errors.
#include "javabridgelib/java_bridge.h"

#include <dlfcn.h>

#include <atomic>
#include <cstdarg>
#include <cstdlib>
#include <mutex>
#include <string>
#include <vector>

#include "arraylib/zxerror.h"
#include "javabridgelib/callback_natives.h"

namespace {

using GetCreatedJavaVMs = jint (*)(JavaVM**, jsize, jsize*);
using CreateJavaVM = jint (*)(JavaVM**, void**, void*);

constexpr jint kJniVersion = JNI_VERSION_10;
constexpr const char* kTypesJar = "korvax-graphics-types.jar";

struct Machine {
  std::mutex mutex;
  JavaVM* vm = nullptr;
  bool nativesBound = false;
  bool startupDisabled = false;
  std::string failure;  // why the last attempt found no machine
};

Machine& machine() {
  static auto* instance = new Machine();
  return *instance;
}

std::atomic<std::size_t> liveGlobalRefs{0};

// The folder this library was loaded from; the host's Java types lie beside it.
std::string bridgeFolder() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&kxjLiveGlobalRefs), &info) == 0 || info.dli_fname == nullptr) return ".";
  const std::string path = info.dli_fname;
  const auto slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash);
}

// The process's machine if it has one, else a new one; null with machine().failure set otherwise.
JavaVM* findOrStartMachine(Machine& state) {
  void* library = nullptr;
  void* getCreated = dlsym(RTLD_DEFAULT, "JNI_GetCreatedJavaVMs");
  if (getCreated == nullptr) {
    // The JDK named by JAVA_HOME on this machine, else the one the bridge was built against.
    const char* javaHome = std::getenv("JAVA_HOME");
    const std::string path = javaHome != nullptr && *javaHome != '\0'
                                 ? std::string(javaHome) + "/lib/server/libjvm.so"
                                 : std::string(ORB_LIBJVM_PATH);
    library = dlopen(path.c_str(), RTLD_NOW | RTLD_GLOBAL);
    if (library == nullptr) {
      const char* why = dlerror();
      state.failure = "cannot load " + path + ": " + (why != nullptr ? why : "unknown error");
      return nullptr;
    }
    getCreated = dlsym(library, "JNI_GetCreatedJavaVMs");
  }
  JavaVM* vm = nullptr;
  jsize count = 0;
  if (getCreated != nullptr && reinterpret_cast<GetCreatedJavaVMs>(getCreated)(&vm, 1, &count) == JNI_OK && count > 0) {
    return vm;
  }
  if (state.startupDisabled) {
    state.failure = "this process starts no Java virtual machine";
    return nullptr;
  }
  void* create = dlsym(library != nullptr ? library : RTLD_DEFAULT, "JNI_CreateJavaVM");
  if (create == nullptr) {
    state.failure = "libjvm has no JNI_CreateJavaVM";
    return nullptr;
  }
  // A small machine: the host's Java side holds property values, not workloads.
  std::vector<std::string> texts = {"-Djava.class.path=" + bridgeFolder() + "/" + kTypesJar,
                                    "-Djava.awt.headless=true",
                                    "-Xrs",
                                    "-Xmx256m",
                                    "-XX:+UseSerialGC",
                                    "-XX:TieredStopAtLevel=1",
                                    "-XX:-UsePerfData"};
  std::vector<JavaVMOption> options(texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) options[i].optionString = texts[i].data();
  JavaVMInitArgs arguments{};
  arguments.version = kJniVersion;
  arguments.nOptions = static_cast<jint>(options.size());
  arguments.options = options.data();
  arguments.ignoreUnrecognized = JNI_FALSE;
  JNIEnv* env = nullptr;
  const jint status = reinterpret_cast<CreateJavaVM>(create)(&vm, reinterpret_cast<void**>(&env), &arguments);
  if (status != JNI_OK) {
    state.failure = "JNI_CreateJavaVM failed with status " + std::to_string(status);
    return nullptr;
  }
  return vm;
}

JavaVM* runningMachine() {
  Machine& state = machine();
  const std::lock_guard<std::mutex> lock(state.mutex);
  if (state.vm == nullptr) state.vm = findOrStartMachine(state);
  return state.vm;
}

}  // namespace

JNIEnv* GetJNIEnv() {
  JavaVM* vm = runningMachine();
  if (vm == nullptr) {
    zxErrMsgIdAndTxt("Korvax:javabridge:JavaUnavailable", "Java is not available: %s.", machine().failure.c_str());
  }
  JNIEnv* env = nullptr;
  const jint status = vm->GetEnv(reinterpret_cast<void**>(&env), kJniVersion);
  if (status == JNI_EDETACHED) {
    if (vm->AttachCurrentThreadAsDaemon(reinterpret_cast<void**>(&env), nullptr) != JNI_OK) {
      zxErrMsgIdAndTxt("Korvax:javabridge:JavaUnavailable", "Java is not available: this thread cannot attach.");
    }
  } else if (status != JNI_OK) {
    zxErrMsgIdAndTxt("Korvax:javabridge:JavaUnavailable", "Java is not available: JNI status %d.", status);
  }
  if (!machine().nativesBound) {
    machine().nativesBound = true;
    kxjRegisterCallbackNatives(env);
  }
  return env;
}

bool kxjIsJavaAvailable() { return runningMachine() != nullptr; }

void kxjDisableJavaStartup() {
  Machine& state = machine();
  const std::lock_guard<std::mutex> lock(state.mutex);
  state.startupDisabled = true;
}

jobject kxjNewGlobalRef(jobject object, int /*flags*/) {
  if (object == nullptr) return nullptr;
  jobject global = GetJNIEnv()->NewGlobalRef(object);
  if (global == nullptr) zxErrMsgIdAndTxt("Korvax:javabridge:JavaUnavailable", "Java is out of global references.");
  ++liveGlobalRefs;
  return global;
}

void kxjDeleteGlobalRef(jobject object) {
  if (object == nullptr) return;
  GetJNIEnv()->DeleteGlobalRef(object);
  --liveGlobalRefs;
}

std::size_t kxjLiveGlobalRefs() { return liveGlobalRefs.load(); }

void kxjRaisePendingException(JNIEnv* env) {
  if (!env->ExceptionCheck()) return;
  jthrowable thrown = env->ExceptionOccurred();
  env->ExceptionClear();
  const std::string text = kxjToString(env, thrown);
  env->DeleteLocalRef(thrown);
  zxErrMsgIdAndTxt("Korvax:javabridge:JavaException", "Java exception: %s", text.c_str());
}

void kxjThrowNew(JNIEnv* env, const char* className, const std::string& message) {
  if (env->ExceptionCheck()) return;
  jclass type = env->FindClass(className);
  if (type != nullptr) env->ThrowNew(type, message.c_str());
}

JavaLocalFrame::JavaLocalFrame(JNIEnv* env, jint capacity) : env_(env), open_(env->PushLocalFrame(capacity) == 0) {
  if (!open_) kxjRaisePendingException(env_);
}

JavaLocalFrame::~JavaLocalFrame() {
  if (open_) env_->PopLocalFrame(nullptr);
}

jobject JavaLocalFrame::keep(jobject result) {
  open_ = false;
  return env_->PopLocalFrame(result);
}

jclass kxjFindClass(JNIEnv* env, const char* name) {
  jclass found = env->FindClass(name);
  if (found == nullptr) kxjRaisePendingException(env);
  return found;
}

jobject kxjNewObject(JNIEnv* env, const char* className, const char* signature, ...) {
  jclass type = kxjFindClass(env, className);
  jmethodID constructor = env->GetMethodID(type, "<init>", signature);
  if (constructor == nullptr) kxjRaisePendingException(env);
  va_list arguments;
  va_start(arguments, signature);
  jobject made = env->NewObjectV(type, constructor, arguments);
  va_end(arguments);
  env->DeleteLocalRef(type);
  if (made == nullptr) kxjRaisePendingException(env);
  return made;
}

std::string kxjUtf8(JNIEnv* env, jstring text) {
  if (text == nullptr) return {};
  // Java's modified UTF-8 differs from UTF-8 only for NUL and supplementary characters. It serves class
  // names and messages; string values cross as UTF-16 units instead.
  const char* chars = env->GetStringUTFChars(text, nullptr);
  if (chars == nullptr) kxjRaisePendingException(env);
  std::string result(chars);
  env->ReleaseStringUTFChars(text, chars);
  return result;
}

std::string kxjClassName(JNIEnv* env, jobject object) {
  if (object == nullptr) return "null";
  JavaLocalFrame frame(env);
  jclass type = env->GetObjectClass(object);
  jclass classClass = env->GetObjectClass(type);
  jmethodID getName = env->GetMethodID(classClass, "getName", "()Ljava/lang/String;");
  auto name = static_cast<jstring>(env->CallObjectMethod(type, getName));
  kxjRaisePendingException(env);
  return kxjUtf8(env, name);
}

std::string kxjToString(JNIEnv* env, jobject object) {
  if (object == nullptr) return "null";
  JavaLocalFrame frame(env);
  jstring text = nullptr;
  if (kxjClassName(env, object)[0] == '[') {
    // An array's own toString names only its class; its contents are what people want to read.
    jclass arrays = kxjFindClass(env, "java/util/Arrays");
    jmethodID deepToString = env->GetStaticMethodID(arrays, "deepToString", "([Ljava/lang/Object;)Ljava/lang/String;");
    jclass objectClass = kxjFindClass(env, "java/lang/Object");
    jobjectArray wrapped = env->NewObjectArray(1, objectClass, object);
    if (wrapped == nullptr) kxjRaisePendingException(env);
    text = static_cast<jstring>(env->CallStaticObjectMethod(arrays, deepToString, wrapped));
    if (!env->ExceptionCheck()) {
      const std::string inBrackets = kxjUtf8(env, text);
      return inBrackets.substr(1, inBrackets.size() - 2);
    }
  } else {
    jclass objectClass = kxjFindClass(env, "java/lang/Object");
    jmethodID toString = env->GetMethodID(objectClass, "toString", "()Ljava/lang/String;");
    text = static_cast<jstring>(env->CallObjectMethod(object, toString));
  }
  if (env->ExceptionCheck()) {
    env->ExceptionClear();
    return "(toString failed)";
  }
  return kxjUtf8(env, text);
}
