// Graphics utility: the current graphics context.
#include "graphicsutillib/graphics_context.h"

namespace {
int currentKXRID = -1;
std::size_t currentIndex = 0;
}  // namespace

int getContextKXRID() { return currentKXRID; }

std::size_t getContextIndex() { return currentIndex; }

namespace graphicsutil {

ContextScope::ContextScope(int kxrid, std::size_t index) : previousKXRID_(currentKXRID), previousIndex_(currentIndex) {
  currentKXRID = kxrid;
  currentIndex = index;
}

ContextScope::~ContextScope() {
  currentKXRID = previousKXRID_;
  currentIndex = previousIndex_;
}

}  // namespace graphicsutil
