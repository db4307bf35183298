// The data type and conversions shared by every enumerated property type: EnumValueDataType<E>,
// EnumValueMC<E> and EnumValueSC<E>. The work is done once, in non-template bases driven by each
// type's element table; the templates only bind a type to its table.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include "datatype/conversions.h"
#include "datatype/enums/enum_base.h"
#include "datatype/enums/orb_typed_enum_string_type.h"
#include "datatype/export.h"
#include "datatype/type_facts.h"
#include "objsys/cos_data_type.h"

namespace graphics::datatype {

struct EnumElement {
  const char* name;
  signed char ordinal;
  EnumerationStatus status = EnumStatus::offered;
  // For a warned element: the warning identifier issued when an array selects the element.
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
  // A value's text is its element's name; it crosses to Java as that name.
  static constexpr TypeFacts kFacts{.text = TextForm::fixed, .javaForm = "java.lang.String"};

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
  // The ordinal of the element that an array names. The array must be one row of characters: other
  // classes, empty text, char matrices and text holding a NUL are refused. An element that warns
  // issues its warning.
  signed char ordinalFromArray(const zxArray& array) const;
  // The ordinal of the element that the text names; refused when it names none or several.
  signed char ordinalFromText(const char* text) const;
  // The same without the refusal: nothing when the text names no element or several.
  std::optional<signed char> findOrdinal(const char* text) const;
  // The name of the element holding ordinal, or null.
  const char* nameOf(signed char ordinal) const;
  // A new char row holding that name; the empty text when there is none.
  zxArray* nameArrayOf(signed char ordinal) const;
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

// E provides kName, info() (its EnumTypeInfo) and derives from EnumBase.
// The singleton is defined out of line, in the library only (data_type_definitions.h).
template <class E>
class ORB_EXPORT EnumValueDataType final : public EnumDataTypeBase {
 public:
  static EnumValueDataType* getType();
  // "korvax.graphics.datatype.<name>", whether or not the singleton could be made.
  static const char* getDataTypeName();

 private:
  EnumValueDataType() : EnumDataTypeBase(E::info()) {}
};

// The conversion rules of an enumerated type: a char row naming an element (array) or the name itself
// (text) in; the element's name out, a 0-by-0 char array or no text for an empty slot.
template <class E>
struct ORB_EXPORT EnumRules {
  using Value = E;
  static E fromArray(const zxArray& array) { return E(type().ordinalFromArray(array)); }
  static zxArray* toArray(const E& value) { return type().nameArrayOf(static_cast<signed char>(value.getIntValue())); }
  static zxArray* noValueArray() { return type().nameArrayOf(kNoOrdinal); }
  // The refusal is raised here rather than below the lookup, so that it unwinds through as few frames
  // as possible: a refused name is a common answer, and each frame costs the unwinder.
  static E fromText(const char* text) {
    if (const std::optional<signed char> ordinal = type().findOrdinal(text)) return E(*ordinal);
    errorForInvalidEnumValue(text, type().enumType());
  }
  static std::optional<std::string> toText(const E& value) {
    const char* name = type().nameOf(static_cast<signed char>(value.getIntValue()));
    return name != nullptr ? std::optional<std::string>(name) : std::nullopt;
  }
  static const EnumDataTypeBase& type() { return *EnumValueDataType<E>::getType(); }
  // No element holds it: ordinals are small and never negative.
  static constexpr signed char kNoOrdinal = -128;
};

template <class E>
class ORB_EXPORT EnumValueMC final : public ArrayConversion<EnumRules<E>> {};

template <class E>
class ORB_EXPORT EnumValueSC final : public TextConversion<EnumRules<E>> {};

}  // namespace graphics::datatype
