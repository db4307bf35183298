// Numeric handles of the graphics contexts.
#include "objsys/handles.h"

#include <cmath>
#include <memory>

#include "graphicsutillib/graphics_context.h"

namespace objsys {

HandleTable& HandleTable::current() {
  // Tables live for the process: an object may outlive a short-lived context scope.
  static auto* tables = new std::vector<std::unique_ptr<HandleTable>>();
  const std::size_t index = getContextIndex();
  if (tables->size() <= index) tables->resize(index + 1);
  auto& table = (*tables)[index];
  if (table == nullptr) table = std::make_unique<HandleTable>();
  return *table;
}

double HandleTable::add(COSInterface* object, HandleKind kind) {
  double handle = 0;
  switch (kind) {
    case HandleKind::Integer:
      if (freedIntegers_.empty()) {
        handle = nextInteger_++;
      } else {
        handle = *freedIntegers_.begin();
        freedIntegers_.erase(freedIntegers_.begin());
      }
      break;
    case HandleKind::Fraction:
      while (objects_.contains(nextFraction_)) ++nextFraction_;
      handle = nextFraction_++;
      break;
  }
  objects_.emplace(handle, COSInterfacePtr(object));
  return handle;
}

COSInterfacePtr HandleTable::find(double handle) const {
  // NaN compares with nothing, so the ordered map would take it for its first handle.
  if (std::isnan(handle)) return COSInterfacePtr();
  const auto found = objects_.find(handle);
  return found == objects_.end() ? COSInterfacePtr() : found->second;
}

std::optional<double> HandleTable::handleOf(const COSInterface* object) const {
  for (const auto& [handle, mapped] : objects_) {
    if (mapped.get() == object) return handle;
  }
  return std::nullopt;
}

void HandleTable::remove(double handle) {
  // The entry goes before the reference is released, so that a destructor sees a consistent table.
  const auto found = objects_.find(handle);
  if (found == objects_.end()) return;
  const COSInterfacePtr released = std::move(found->second);
  objects_.erase(found);
  if (handle < nextInteger_ && handle == std::floor(handle)) freedIntegers_.insert(handle);
}

std::vector<double> HandleTable::handles() const {
  std::vector<double> all;
  for (const auto& entry : objects_) all.push_back(entry.first);
  return all;
}

}  // namespace objsys
