// The native methods of the host's Java types: OrbCallback.fire runs its callback in the host.
#pragma once

#include <jni.h>
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

// Binds the natives to their classes in the machine of env; the bridge does it once, when it first
// finds the machine. Classes that cannot be found are left alone.
void kxjRegisterCallbackNatives(JNIEnv* env);

KX_HOST_API_END
