// Graphics utility: the identifier and index of the current graphics context.
#pragma once

#include <cstddef>
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

// The current context's resource identifier, or -1 when no graphics context is current.
int getContextKXRID();
// The current context's index into per-context tables (0 when no context is current).
std::size_t getContextIndex();

namespace graphicsutil {

// Makes a context current for as long as the object lives; contexts nest.
class ContextScope {
 public:
  ContextScope(int kxrid, std::size_t index);
  ~ContextScope();
  ContextScope(const ContextScope&) = delete;
  ContextScope& operator=(const ContextScope&) = delete;

 private:
  int previousKXRID_;
  std::size_t previousIndex_;
};

}  // namespace graphicsutil

KX_HOST_API_END
