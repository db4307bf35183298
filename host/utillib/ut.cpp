// The host's utility library.
#include "utillib/ut.h"

#include <dlfcn.h>

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

ut::PrintCapture* currentCapture = nullptr;
// Set from a signal handler, so it is a lock-free atomic.
std::atomic<bool> interruptPending = false;
std::string lastLibraryError;

void rememberLoaderError() {
  const char* message = dlerror();
  lastLibraryError = message != nullptr ? message : "";
}

}  // namespace

namespace {

// The countdown to the injected failure: 0 is off, 1 fails the next allocation. Whether any thread
// has armed one is a plain flag, so that allocations pay for the thread's own countdown only in tests.
thread_local std::size_t allocationsUntilFailure = 0;
thread_local bool injectedFailureHappened = false;
bool injectFailure() {
  if (!ut::detail::failureInjectionUsed.load(std::memory_order_relaxed) || allocationsUntilFailure == 0) return false;
  if (--allocationsUntilFailure != 0) return false;
  injectedFailureHappened = true;
  return true;
}

}  // namespace

namespace ut::detail {
std::atomic<bool> failureInjectionUsed{false};
void* countedMalloc(std::size_t bytes) { return injectFailure() ? nullptr : std::malloc(bytes); }
}  // namespace ut::detail

void* utCalloc(std::size_t count, std::size_t size) { return injectFailure() ? nullptr : std::calloc(count, size); }

void* utAlignedMalloc(std::size_t alignment, std::size_t bytes) {
  if (injectFailure()) return nullptr;
  void* block = nullptr;
  if (alignment < sizeof(void*)) alignment = sizeof(void*);
  return posix_memalign(&block, alignment, bytes) == 0 ? block : nullptr;
}

char* utStrdup(const char* text) {
  if (text == nullptr) return nullptr;
  return injectFailure() ? nullptr : strdup(text);
}

void utFailNthAllocation(std::size_t nth) {
  if (nth != 0) ut::detail::failureInjectionUsed.store(true, std::memory_order_relaxed);
  allocationsUntilFailure = nth;
  if (nth != 0) injectedFailureHappened = false;
}

bool utInjectedFailureHappened() { return injectedFailureHappened; }

int utPrintf(const char* format, ...) {
  va_list args;
  va_start(args, format);
  int written = 0;
  if (currentCapture == nullptr) {
    written = std::vprintf(format, args);
  } else {
    va_list sizing;
    va_copy(sizing, args);
    const int length = std::vsnprintf(nullptr, 0, format, sizing);
    va_end(sizing);
    if (length > 0) {
      std::string text(static_cast<std::size_t>(length), '\0');
      std::vsnprintf(text.data(), text.size() + 1, format, args);
      currentCapture->write(text);
    }
    written = length;
  }
  va_end(args);
  return written;
}

bool utLoadLibrary(const char* path, void** handle) {
  void* loaded = dlopen(path, RTLD_NOW | RTLD_GLOBAL);
  if (loaded == nullptr) {
    rememberLoaderError();
    return false;
  }
  if (handle != nullptr) *handle = loaded;
  return true;
}

void* utGetLibrarySymbol(void* handle, const char* name) {
  void* symbol = dlsym(handle, name);
  if (symbol == nullptr) rememberLoaderError();
  return symbol;
}

bool utUnloadLibrary(void* handle) {
  if (dlclose(handle) == 0) return true;
  rememberLoaderError();
  return false;
}

const char* utLibraryError() { return lastLibraryError.c_str(); }

bool utIsInterruptPending() { return interruptPending; }

void utSetInterruptPending(bool pending) { interruptPending = pending; }

void utSetInterruptHandled(bool handled) { interruptPending = !handled; }

namespace ut {

PrintCapture::PrintCapture(Sink sink) : sink_(std::move(sink)), previous_(currentCapture) { currentCapture = this; }

PrintCapture::~PrintCapture() { currentCapture = previous_; }

}  // namespace ut
