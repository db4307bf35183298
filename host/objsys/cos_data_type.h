// The class system's data type interface: every property type's singleton that copies, destroys,
// compares, defaults, sizes and describes the values held in COSValue slots.
#pragma once

#include <cstddef>

#include "foundationlib/visibility.h"
#include "objsys/cos_enumeration.h"
#include "objsys/cos_value.h"

namespace objsys {

// The outcome of compare. Data types of graphics properties answer only cosEqual or cosUnordered.
enum COSOrderRelation : int { cosEqual = 0, cosLessThan = 1, cosUnordered = 2, cosGreaterThan = 3 };

// How the class system stores values of a type. cosStorageIndirect: the slot points to a block that
// the data type allocates and frees.
enum COSStorageType : int { cosStorageIndirect = 7 };

// The virtual operations are declared in the class system's slot order; the ones with a body here
// are the class system's base behaviour that a data type may keep.
class KX_HOST_API COSDataType {
 public:
  virtual ~COSDataType();
  virtual const char* getDeclarationName() const = 0;
  virtual const char* getName() const = 0;
  virtual const char* getDescription() const;
  virtual const char* getDetailedDescription() const;
  virtual const char* getPossibleValuesDescription() const;
  virtual bool isPossibleValuesFinite() const;
  // A new cursor over the offered values (the caller holds its one reference), or null.
  virtual COSEnumeration* getPossibleValues();
  // The shared default value; callers must not destroy it.
  virtual COSValue getDefaultValue() const = 0;
  virtual int getStorageType();
  virtual const char* getCategoryName() const;
  virtual std::size_t getSizeInBits() const;
  virtual void checkValue(COSValue value, bool strict) const;
  virtual bool isEqual(COSValue a, COSValue b) const = 0;
  virtual COSOrderRelation compare(COSValue a, COSValue b);
  virtual std::size_t getValueSizeInBytes(COSValue value) const;
  virtual COSValue copy(COSValue value) = 0;
  virtual COSValue copyInternal(COSValue value) const;
  virtual void destroy(COSValue value) const = 0;
  virtual void destroyInternal(COSValue value) const;
  virtual std::size_t getHashCode(const COSValue& value);
  virtual bool canContainInterfaces();
  virtual void getReference();
  virtual void releaseReference();
  // A new cursor over the class-system objects a value refers to, or null.
  virtual COSEnumeration* getInterfaces(COSValue value);
  virtual int getKvxFormat();
  virtual bool isKorvaxArrayType() const;
  // A new cursor over the host arrays a value keeps (valid while the value lives), or null.
  virtual COSEnumeration* getKXArrays(COSValue value);

 protected:
  COSDataType() = default;
  COSDataType(const COSDataType&) = default;
  COSDataType& operator=(const COSDataType&) = default;
};

}  // namespace objsys
