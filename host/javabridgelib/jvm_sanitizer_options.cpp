// Sanitizer defaults of programs that run a Java machine in their process (options given in the
// environment still apply on top). The machine uses SIGSEGV itself, so AddressSanitizer leaves that signal
// to it; LeakSanitizer crashes scanning the machine's thread-local storage, so that is not scanned; and the
// machine's own allocations, which it frees only with the process, are suppressed.
extern "C" const char* __asan_default_options() { return "handle_segv=0"; }
extern "C" const char* __lsan_default_options() { return "use_tls=0:suppressions=" ORB_JVM_LEAK_SUPPRESSIONS; }
