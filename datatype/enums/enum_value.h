// The data type and conversions shared by every enumerated property type: EnumValueDataType<E>,
// EnumValueMC<E> and EnumValueSC<E>. The work is done once, in non-template bases driven by each
// type's element table; the templates only bind a type to its table.
#pragma once

#include <cstddef>
#include <span>

#include "datatype/enums/enum_base.h"
#include "datatype/enums/orb_typed_enum_string_type.h"
#include "datatype/export.h"
#include "objsys/cos_data_type.h"
#include "objsys/cos_type_conversion.h"

namespace graphics::datatype {

struct EnumElement {
  const char* name;
  signed char ordinal;
  EnumerationStatus status;
  // For status 2: the warning identifier issued when an array selects the element.
  const char* warningId = nullptr;
};

// What distinguishes one enumerated type: its name, elements in order of addition and default.
struct EnumTypeInfo {
  const char* name;
  std::span<const EnumElement> elements;
  signed char defaultOrdinal;
};

// Values are one-byte blocks holding the ordinal; a null slot is the empty value.
class ORB_EXPORT EnumDataTypeBase : public objsys::COSDataType {
 public:
  const char* getDeclarationName() const override { return info_.name; }
  const char* getName() const override { return info_.name; }
  const char* getDataTypeName() const { return fullName_.c_str(); }
  const char* getPossibleValuesDescription() const override { return ""; }
  bool isPossibleValuesFinite() const override { return true; }
  objsys::COSEnumeration* getPossibleValues() override { return enumType().elements().getPossibleValues(); }
  // A block holding the default ordinal, made on the first call and shared.
  objsys::COSValue getDefaultValue() const override;
  int getStorageType() override { return objsys::cosStorageIndirect; }
  const char* getCategoryName() const override { return "Fundamental"; }
  std::size_t getSizeInBits() const override { return 8; }
  std::size_t getValueSizeInBytes(objsys::COSValue) const override { return 1; }
  bool isEqual(objsys::COSValue a, objsys::COSValue b) const override;
  objsys::COSOrderRelation compare(objsys::COSValue a, objsys::COSValue b) override;
  objsys::COSValue copy(objsys::COSValue value) override;
  void destroy(objsys::COSValue value) const override;

  // The type's enumeration, filled from the element table on first use.
  const OrbTypedEnumStringType& enumType() const;
  // A new value block holding ordinal.
  static objsys::COSValue makeValue(signed char ordinal);
  static signed char ordinalOf(objsys::COSValue value) { return *value.as<const signed char>(); }

 protected:
  explicit EnumDataTypeBase(const EnumTypeInfo& info);

 private:
  const EnumTypeInfo& info_;
  std::string fullName_;
  mutable objsys::COSValue default_;
  mutable OrbTypedEnumStringType* enumType_ = nullptr;
};

// Host array to value: a char array naming an element; value to array: a char row of its name.
class ORB_EXPORT EnumArrayConversion : public objsys::COSTypeConversion {
 public:
  objsys::COSValue to(objsys::COSValue value) const override;
  objsys::COSValue from(objsys::COSValue array) const override;

 protected:
  explicit EnumArrayConversion(EnumDataTypeBase* type) : type_(type) {}

 private:
  EnumDataTypeBase* type_;
};

// Text to value: the element the text names; value to text: a utStrdup copy of its name, or null.
class ORB_EXPORT EnumStringConversion : public objsys::COSTypeConversion {
 public:
  objsys::COSValue to(objsys::COSValue value) const override;
  objsys::COSValue from(objsys::COSValue text) const override;

 protected:
  explicit EnumStringConversion(EnumDataTypeBase* type) : type_(type) {}

 private:
  EnumDataTypeBase* type_;
};

// E provides kName, info() (its EnumTypeInfo) and derives from EnumBase.
// The singleton is defined out of line, in the library only (data_type_definitions.h).
template <class E>
class ORB_EXPORT EnumValueDataType final : public EnumDataTypeBase {
 public:
  static EnumValueDataType* getType();
  static const char* getDataTypeName() { return getType()->EnumDataTypeBase::getDataTypeName(); }

 private:
  EnumValueDataType() : EnumDataTypeBase(E::info()) {}
};

template <class E>
class ORB_EXPORT EnumValueMC final : public EnumArrayConversion {
 public:
  EnumValueMC() : EnumArrayConversion(EnumValueDataType<E>::getType()) {}
};

template <class E>
class ORB_EXPORT EnumValueSC final : public EnumStringConversion {
 public:
  EnumValueSC() : EnumStringConversion(EnumValueDataType<E>::getType()) {}
};

}  // namespace graphics::datatype
