// OrbCallback.fire: a callback that the Java side fires runs in the host, with the source and the event
// as their closest host arrays.
#include "javabridgelib/callback_natives.h"

#include <string>

#include "arraylib/zxerror.h"
#include "guilib/auto_ptr.h"
#include "guilib/callback.h"
#include "javabridgelib/closest_match.h"
#include "javabridgelib/java_bridge.h"

namespace {

using gui_objects::ZxArrayPtr;

// Every failure, the callback's own errors included, reaches Java as a RuntimeException whose message
// begins with the identifier.
void JNICALL fire(JNIEnv* env, jobject self, jobject source, jobject event) {
  try {
    const zx::CallFrame frame;
    jclass type = env->GetObjectClass(self);
    jmethodID getCode = env->GetMethodID(type, "getCallbackObject", "()Ljava/lang/Object;");
    jobject code = env->CallObjectMethod(self, getCode);
    kxjRaisePendingException(env);
    const ZxArrayPtr codeArray(kxjClosestKorvaxArray(env, code));
    const gui_objects::MCallback callback(codeArray.get());
    const ZxArrayPtr sourceArray(kxjClosestKorvaxArray(env, source));
    const ZxArrayPtr eventArray(kxjClosestKorvaxArray(env, event));
    callback.execute(sourceArray.get(), eventArray.get());
  } catch (const fl::except::IMsgIDException& error) {
    kxjThrowNew(env, "java/lang/RuntimeException", std::string(error.get_error_id()) + ": " + error.get_message_text());
  } catch (const gui_objects::InvalidCallbackException& error) {
    kxjThrowNew(env, "java/lang/IllegalArgumentException", std::string("not a callback: ") + error.what());
  } catch (const std::exception& error) {
    kxjThrowNew(env, "java/lang/RuntimeException", error.what());
  }
}

}  // namespace

void kxjRegisterCallbackNatives(JNIEnv* env) {
  const std::string className = std::string(kKorvaxJavaTypesPackage) + "OrbCallback";
  jclass type = env->FindClass(className.c_str());
  if (type == nullptr) {
    // Without the host's Java types there is no callback to fire.
    env->ExceptionClear();
    return;
  }
  JNINativeMethod method{const_cast<char*>("fire"), const_cast<char*>("(Ljava/lang/Object;Ljava/lang/Object;)V"),
                         reinterpret_cast<void*>(&fire)};
  if (env->RegisterNatives(type, &method, 1) != JNI_OK) env->ExceptionClear();
  env->DeleteLocalRef(type);
}
