// Enumeration type objects: a list of elements (name, status, value, warning) in order of addition,
// matched by name, walked for the offered values.
#pragma once

#include <string>

#include "datatype/enums/enum_base.h"
#include "datatype/export.h"
#include "objsys/cos_data_type.h"
#include "objsys/enumeration_type.h"

namespace graphics::datatype {

using objsys::EnumerationStatus;

// The implementation interface of every enumeration. Offered elements are listed; other
// statuses are accepted by matching but not listed; warned elements warn when used with warn set.
class ORB_EXPORT OrbEnumerationType : public objsys::EnumerationType {
 public:
  ~OrbEnumerationType() override;
  // Every name that does not select an element (also one that matches nothing at all) is reported
  // as ambiguous, deliberately.
  bool isEnumNameAmbiguous(const char* name) const override { return !isValidEnumName(name); }
  void setGrandfatheredWarningFlag(const char*) override {}
  const char* getEnumGrandfatheredMessage(const char*) const override { return nullptr; }

  // Appends a warned element that hands warning out when used (the type object keeps it).
  virtual void addElement(objsys::COSValue value, const char* name, EnumValueWarningMessage* warning) = 0;
  virtual void addElement(objsys::COSValue value, const char* name, EnumerationStatus status) = 0;
  virtual void addElement(objsys::COSValue value, const char* name) = 0;
  // The value findElement selects (the empty value when none); with warn, a warned element warns first.
  virtual objsys::COSValue getEnumValue(const char* name, bool warn) const = 0;
  using objsys::EnumerationType::getEnumValue;
  // The number of elements a walk of the possible values yields (the offered ones).
  virtual int getVisibleLength() const = 0;
  // A new cursor over the values of the offered elements in order of addition.
  virtual objsys::COSEnumeration* getPossibleValues() const = 0;
  // The index of the element the name selects (see NameMatcher), or -1.
  virtual int findElement(const char* name) const = 0;

  // Elements compare by the identity of their stored word (for styles whose values are ordinals).
  static OrbEnumerationType* createIntegerEnumeration();
  // Elements compare through the data type's isEqual.
  static OrbEnumerationType* createObjectTypeEnumeration(objsys::COSDataType* type);

  // The name of element index, in order of addition, and its status.
  virtual const char* elementName(int index) const = 0;
  virtual EnumerationStatus elementStatus(int index) const = 0;
  // The stored value of element index; with warn, a warned element warns first.
  virtual objsys::COSValue elementValue(int index, bool warn) const = 0;
};

// The list of valid values that messages show: the offered names, each in single quotes, separated
// by " | " ('position' | 'outerposition').
ORB_EXPORT std::string validValuesOf(const OrbEnumerationType& elements);

}  // namespace graphics::datatype
