// The holdings of an orbdt process.
#include "orbdt/holdings.h"

#include <cstdio>

#include "cmdlanglib/budget.h"

namespace orbdt {

std::size_t Holdings::heldBy(std::string_view key) const {
  const auto found = held_.find(key);
  return found == held_.end() ? 0 : found->second;
}

void Holdings::requireRoom(std::string_view key, std::size_t bytes, std::string_view what) const {
  const std::size_t others = used_ - heldBy(key);
  if (bytes > limit_ || others > limit_ - bytes) {
    throw cmdlang::TooLargeError(std::string(what) + " (held for the session)", bytes, limit_, others);
  }
}

void Holdings::hold(std::string_view key, std::size_t bytes, std::string_view what) {
  requireRoom(key, bytes, what);
  used_ = used_ - heldBy(key) + bytes;
  held_.insert_or_assign(std::string(key), bytes);
}

void Holdings::release(std::string_view key) {
  const auto found = held_.find(key);
  if (found == held_.end()) return;
  used_ -= found->second;
  held_.erase(found);
}

void Holdings::releasePrefix(std::string_view prefix) {
  for (auto it = held_.lower_bound(prefix); it != held_.end() && it->first.starts_with(prefix);) {
    used_ -= it->second;
    it = held_.erase(it);
  }
}

void Holdings::keep(std::size_t bytes, std::string_view what) {
  requireRoom({}, bytes, what);
  used_ += bytes;
}

Holdings& holdings() {
  static Holdings instance;
  return instance;
}

std::string objectKey(double handle, std::string_view property) {
  // The exact handle, and a separator no property name contains, so that one object's keys never
  // share a prefix with another's.
  char text[40];
  std::snprintf(text, sizeof text, "object %.17g/", handle);
  return std::string(text) + std::string(property);
}

}  // namespace orbdt
