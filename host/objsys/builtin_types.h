// The class system's own data types and conversions: "any" (an arbitrary host array), "double",
// "asciiString" (a narrow string), and the conversion from any array to its text.
#pragma once

#include "foundationlib/visibility.h"
#include "objsys/cos_data_type.h"
#include "objsys/cos_type_conversion.h"

struct zxArray;

namespace objsys {

// Values are persistent host arrays (zxArray*), copied as shared-data copies.
class KX_HOST_API AnyDataType : public COSDataType {
 public:
  static AnyDataType* instance();
  // A new value holding a persistent shared-data copy of array (the empty value for null).
  COSValue valueFromArray(const zxArray* array) const;
  static const zxArray* arrayOf(COSValue value) { return value.as<const zxArray>(); }

  const char* getDeclarationName() const override;
  const char* getName() const override;
  COSValue getDefaultValue() const override;
  bool isEqual(COSValue a, COSValue b) const override;
  COSValue copy(COSValue value) override;
  void destroy(COSValue value) const override;
  bool isKorvaxArrayType() const override;
  // The objects an array holds, also inside cells and struct fields, and the array itself.
  bool canContainInterfaces() override;
  COSEnumeration* getInterfaces(COSValue value) override;
  COSEnumeration* getKXArrays(COSValue value) override;
};

// Values are blocks holding one double.
class KX_HOST_API DoubleDataType : public COSDataType {
 public:
  static DoubleDataType* instance();
  // A new value block holding number.
  static COSValue makeValue(double number);

  const char* getDeclarationName() const override;
  const char* getName() const override;
  COSValue getDefaultValue() const override;
  bool isEqual(COSValue a, COSValue b) const override;
  COSValue copy(COSValue value) override;
  void destroy(COSValue value) const override;
};

// Registers "any", "double" and "asciiString" and the ("any", "asciiString") conversion: from takes a
// host array and gives its canonical text as a string allocated with utMalloc (the caller frees it
// with utFree); to takes a string and gives a new char row array. Idempotent. The type repository
// calls it when it is first used, so a host need not.
KX_HOST_API void registerBuiltinTypes();

}  // namespace objsys
