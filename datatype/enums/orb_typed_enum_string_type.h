// The enumeration of an enumerated property type, seen by the class system as a data type
// (OrbTypedEnumStringType), its cached derived data (utils::EnumCache), and the errors it reports.
#pragma once

#include <memory>
#include <string>

#include "datatype/enums/orb_enumeration_type.h"
#include "datatype/export.h"
#include "objsys/enumeration_type.h"

struct zxArray;

namespace objsys {
class JavaTypeConversion;
}  // namespace objsys

namespace graphics::datatype {

class OrbTypedEnumStringType;

namespace utils {
// Per-type data derived from an enumeration: the list of valid values for messages, such as
// 'position' | 'outerposition' (the offered names, quoted, in order).
class ORB_EXPORT EnumCache {
 public:
  explicit EnumCache(const OrbTypedEnumStringType& type);
  const std::string& validValues() const { return validValues_; }

 private:
  std::string validValues_;
};
}  // namespace utils

// Forwards every enumeration operation to an object-type implementation and every data type
// operation to the owning data type.
class ORB_EXPORT OrbTypedEnumStringType : public objsys::TypedEnumStringType {
 public:
  explicit OrbTypedEnumStringType(objsys::COSDataType* owner);
  ~OrbTypedEnumStringType() override;
  OrbTypedEnumStringType(const OrbTypedEnumStringType&) = delete;
  OrbTypedEnumStringType& operator=(const OrbTypedEnumStringType&) = delete;

  void addElement(objsys::COSValue value, const char* name) { elements_->addElement(value, name); }
  void addElement(objsys::COSValue value, const char* name, EnumValueWarningMessage* warning) {
    elements_->addElement(value, name, warning);
  }
  void addElement(objsys::COSValue value, const char* name, EnumerationStatus status) {
    elements_->addElement(value, name, status);
  }
  // The names in order of addition.
  std::vector<std::string> getEnumStrings() const;
  objsys::COSValue getEnumValue(const char* name, bool warn) const { return elements_->getEnumValue(name, warn); }
  int findElement(const char* name) const { return elements_->findElement(name); }
  const OrbEnumerationType& elements() const { return *elements_; }
  // The offered names, quoted and separated by " | ", made once.
  const std::string& validValues() const;

  // The Java conversion of an enumerated type: a value crosses as its name, which javaForm names for
  // people ("java.lang.String"). The class system owns the result.
  static objsys::JavaTypeConversion* createJavaConverter(const OrbTypedEnumStringType* type, const char* javaForm);

  // objsys::EnumerationType
  int getEnumLength() const override { return elements_->getEnumLength(); }
  const char* getEnumString(objsys::COSValue value) const override { return elements_->getEnumString(value); }
  objsys::COSValue getEnumValue(const char* name) const override { return elements_->getEnumValue(name); }
  bool isValidEnumName(const char* name) const override { return elements_->isValidEnumName(name); }
  bool isEnumNameAmbiguous(const char* name) const override { return elements_->isEnumNameAmbiguous(name); }
  EnumerationStatus getEnumVisibility(const char* name) const override { return elements_->getEnumVisibility(name); }
  void setGrandfatheredWarningFlag(const char* name) override { elements_->setGrandfatheredWarningFlag(name); }
  const char* getEnumGrandfatheredMessage(const char* name) const override {
    return elements_->getEnumGrandfatheredMessage(name);
  }

  // objsys::COSDataType, forwarded to the owning data type
  const char* getDeclarationName() const override { return owner_->getDeclarationName(); }
  const char* getName() const override { return owner_->getName(); }
  bool isPossibleValuesFinite() const override { return true; }
  objsys::COSEnumeration* getPossibleValues() override { return elements_->getPossibleValues(); }
  objsys::COSValue getDefaultValue() const override { return owner_->getDefaultValue(); }
  void checkValue(objsys::COSValue value, bool strict) const override { owner_->checkValue(value, strict); }
  bool isEqual(objsys::COSValue a, objsys::COSValue b) const override { return owner_->isEqual(a, b); }
  objsys::COSOrderRelation compare(objsys::COSValue a, objsys::COSValue b) override { return owner_->compare(a, b); }
  std::size_t getValueSizeInBytes(objsys::COSValue value) const override { return owner_->getValueSizeInBytes(value); }
  objsys::COSValue copy(objsys::COSValue value) override { return owner_->copy(value); }
  void destroy(objsys::COSValue value) const override { owner_->destroy(value); }

 private:
  objsys::COSDataType* owner_;
  std::unique_ptr<OrbEnumerationType> elements_;
  mutable std::unique_ptr<utils::EnumCache> cache_;
};

// The errors of enumerated values; none returns. Each carries the list of valid values.
// Text that selects no element (or selects ambiguously): "Korvax:datatypes:InvalidEnumValue".
[[noreturn]] ORB_EXPORT void errorForInvalidEnumValue(const char* given, const OrbTypedEnumStringType& type);
// An array of a class other than char: "Korvax:datatypes:InvalidEnumValueFor".
[[noreturn]] ORB_EXPORT void errorForInvalidEnumValueFor(const OrbTypedEnumStringType& type);
// An empty char array: "Korvax:datatypes:InvalidValue".
[[noreturn]] ORB_EXPORT void errorForInvalidValue(const OrbTypedEnumStringType& type);

// The text of a char array (its characters in storage order, UTF-8).
ORB_EXPORT std::string getStringFromZxArray(const zxArray* array);

}  // namespace graphics::datatype
