// Marks the host's classes as visible across shared libraries, so that a library built with hidden
// visibility can still catch the host's exceptions and derive from the host's classes.
#pragma once

#define KX_HOST_API __attribute__((visibility("default")))

// Open and close a run of declarations that are all exported: a header of plain functions says so once
// rather than on every line.
#define KX_HOST_API_BEGIN _Pragma("GCC visibility push(default)")
#define KX_HOST_API_END _Pragma("GCC visibility pop")
