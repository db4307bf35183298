// The class system's enumerated types: a list of names with values and statuses, and the data type
// of enumerated string properties.
#pragma once

#include "foundationlib/visibility.h"
#include "objsys/cos_data_type.h"
#include "objsys/cos_value.h"

namespace objsys {

// An element's status: 0 offered; any other value is the class system's own (the graphics types use
// 1 for names accepted but not offered, 2 for names that warn when used).
using EnumerationStatus = int;

// The operations through which the class system reads an enumeration, in its slot order.
class KX_HOST_API EnumerationType {
 public:
  virtual ~EnumerationType();
  virtual int getEnumLength() const = 0;
  // The name of the element whose value equals value, or null.
  virtual const char* getEnumString(COSValue value) const = 0;
  // The value of the element that name matches, or the empty value.
  virtual COSValue getEnumValue(const char* name) const = 0;
  virtual bool isValidEnumName(const char* name) const = 0;
  virtual bool isEnumNameAmbiguous(const char* name) const = 0;
  // The matched element's status, or -1.
  virtual EnumerationStatus getEnumVisibility(const char* name) const = 0;
  virtual void setGrandfatheredWarningFlag(const char* name) = 0;
  virtual const char* getEnumGrandfatheredMessage(const char* name) const = 0;

 protected:
  EnumerationType() = default;
};

// A data type whose values are the elements of an enumeration (an enumerated string property).
class KX_HOST_API TypedEnumStringType : public COSDataType, public EnumerationType {
 public:
  ~TypedEnumStringType() override;

 protected:
  TypedEnumStringType() = default;
};

}  // namespace objsys
