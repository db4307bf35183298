// Marks the host's classes as visible across shared libraries, so that a library built with hidden
// visibility can still catch the host's exceptions and derive from the host's classes.
#pragma once

#define KX_HOST_API __attribute__((visibility("default")))
