// Class-system objects (COSInterface) and the reference-counting pointer to them.
#pragma once

#include <cstddef>
#include <utility>

#include "foundationlib/visibility.h"

namespace objsys {

// An object of the class system (a figure, a line, ...), kept alive by references: every
// COSInterfacePtr and every element of an object array made by the class system holds one.
class KX_HOST_API COSInterface {
 public:
  void addReference() { ++references_; }
  // Deletes the object when the last reference goes.
  void releaseReference() {
    if (--references_ == 0) delete this;
  }
  int referenceCount() const { return references_; }
  // The status query: true once the object has been deleted by the user, while references may still
  // hold it.
  virtual bool isDeleted() const;
  // The class name that object arrays of this object carry.
  virtual const char* getClassName() const;

  // Objects constructed and not yet destroyed, in the whole process (tests check that counts balance).
  static std::size_t liveCount();

 protected:
  COSInterface();
  COSInterface(const COSInterface&) = delete;
  COSInterface& operator=(const COSInterface&) = delete;
  virtual ~COSInterface();

 private:
  int references_ = 0;
};

// A counted reference to a class-system object, or null. Two pointers are equal when they designate
// the same object.
class KX_HOST_API COSInterfacePtr {
 public:
  COSInterfacePtr() = default;
  explicit COSInterfacePtr(COSInterface* object) : object_(object) {
    if (object_ != nullptr) object_->addReference();
  }
  COSInterfacePtr(const COSInterfacePtr& other) : COSInterfacePtr(other.object_) {}
  COSInterfacePtr(COSInterfacePtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  COSInterfacePtr& operator=(COSInterfacePtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~COSInterfacePtr() {
    if (object_ != nullptr) object_->releaseReference();
  }
  COSInterface* get() const { return object_; }
  COSInterface* operator->() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }
  friend bool operator==(const COSInterfacePtr& a, const COSInterfacePtr& b) { return a.object_ == b.object_; }

 private:
  COSInterface* object_ = nullptr;
};

}  // namespace objsys
