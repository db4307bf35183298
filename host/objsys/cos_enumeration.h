// The class system's reference-counted cursor over values (COSEnumeration) and its holder.
#pragma once

#include <utility>
#include <vector>

#include "foundationlib/visibility.h"
#include "objsys/cos_interface.h"
#include "objsys/cos_value.h"

struct zxArray;

namespace objsys {

// A cursor over values, created with one reference that its creator hands to the caller. The values
// it yields stay owned by the cursor (or by whatever it walks) and are valid while it lives.
class KX_HOST_API COSEnumeration {
 public:
  virtual bool hasMoreElements() const = 0;
  virtual COSValue nextElement() = 0;

  void addReference() { ++references_; }
  // Deletes the cursor when the last reference goes.
  void releaseReference() {
    if (--references_ == 0) delete this;
  }

 protected:
  COSEnumeration() = default;
  virtual ~COSEnumeration();

 private:
  int references_ = 1;
};

// A cursor over a list of values collected when it is made. Objects added with addObject are kept
// alive by the cursor and yielded as slots holding the COSInterface*; arrays added with addArray
// stay owned by whatever holds them.
class KX_HOST_API COSValueListEnumeration : public COSEnumeration {
 public:
  COSValueListEnumeration() = default;
  void addObject(COSInterfacePtr object);
  void addArray(const zxArray* array) { values_.emplace_back(array); }
  bool hasMoreElements() const override { return next_ < values_.size(); }
  COSValue nextElement() override { return hasMoreElements() ? values_[next_++] : COSValue(); }

 private:
  ~COSValueListEnumeration() override;
  std::vector<COSValue> values_;
  std::vector<COSInterfacePtr> objects_;
  std::size_t next_ = 0;
};

// Holds one reference to a cursor and releases it when it goes.
class COSEnumerationRef {
 public:
  explicit COSEnumerationRef(COSEnumeration* adopted = nullptr) : cursor_(adopted) {}
  COSEnumerationRef(COSEnumerationRef&& other) noexcept : cursor_(std::exchange(other.cursor_, nullptr)) {}
  COSEnumerationRef& operator=(COSEnumerationRef&& other) noexcept {
    std::swap(cursor_, other.cursor_);
    return *this;
  }
  ~COSEnumerationRef() {
    if (cursor_ != nullptr) cursor_->releaseReference();
  }
  COSEnumeration* get() const { return cursor_; }
  COSEnumeration* operator->() const { return cursor_; }
  explicit operator bool() const { return cursor_ != nullptr; }

 private:
  COSEnumeration* cursor_;
};

}  // namespace objsys
