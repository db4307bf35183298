// The host's utility library: C-heap allocation, printing, library loading and the interrupt flag.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <string_view>
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace ut::detail {
// Whether a failure has ever been injected (utFailNthAllocation); until then every allocation is the
// C heap's own, without a call into this library.
extern std::atomic<bool> failureInjectionUsed;
void* countedMalloc(std::size_t bytes);
}  // namespace ut::detail

// Allocation on the C heap. utFree accepts any C-heap block (malloc, calloc, strdup) and null.
// utMalloc and utFree are inline: they sit under every value the library makes.
inline void* utMalloc(std::size_t bytes) {
  if (ut::detail::failureInjectionUsed.load(std::memory_order_relaxed)) return ut::detail::countedMalloc(bytes);
  return std::malloc(bytes);
}
void* utCalloc(std::size_t count, std::size_t size);
// A block aligned to alignment (a power of two), released with utFree; null when it cannot be had.
void* utAlignedMalloc(std::size_t alignment, std::size_t bytes);
inline void utFree(void* block) { std::free(block); }
// A C-heap copy of a NUL-terminated string, released with utFree; null for a null argument.
char* utStrdup(const char* text);

// Allocation-failure injection, for tests: with nth > 0 the nth allocation from now through utMalloc,
// utCalloc, utAlignedMalloc or utStrdup (and through operator new in a program that links utillib_routed_new) returns
// null, once; 0 turns it off. The count runs on the calling thread.
void utFailNthAllocation(std::size_t nth);
// Whether the failure last set by utFailNthAllocation (with nth > 0) has happened; turning injection
// off keeps the answer.
bool utInjectedFailureHappened();

// printf-style output to standard output, or to the sink installed by ut::PrintCapture.
int utPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Loads a shared library by path; on success stores its handle in *handle (when handle is not
// null) and returns true. The library stays loaded for the rest of the process unless
// utUnloadLibrary is called.
bool utLoadLibrary(const char* path, void** handle);
void* utGetLibrarySymbol(void* handle, const char* name);
bool utUnloadLibrary(void* handle);
// The loader's message for the last failed load or lookup, or an empty string.
const char* utLibraryError();

// The user's interrupt request (Ctrl-C). The host sets it; long operations poll it.
bool utIsInterruptPending();
void utSetInterruptPending(bool pending);
// Marks a pending interrupt as handled (clears it) or, with false, as still pending.
void utSetInterruptHandled(bool handled);

namespace ut {

// While alive, utPrintf writes to the given sink instead of standard output. Captures nest: the
// newest one receives the output; destroying it restores the previous destination.
class PrintCapture {
 public:
  using Sink = std::function<void(std::string_view)>;
  explicit PrintCapture(Sink sink);
  ~PrintCapture();
  PrintCapture(const PrintCapture&) = delete;
  PrintCapture& operator=(const PrintCapture&) = delete;

  void write(std::string_view text) const { sink_(text); }

 private:
  Sink sink_;
  PrintCapture* previous_;
};

}  // namespace ut

KX_HOST_API_END
