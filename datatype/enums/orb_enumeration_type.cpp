// Enumeration type objects: integer-valued (styles) and data-type-valued (enumerated properties).
#include "datatype/enums/orb_enumeration_type.h"

#include <memory>
#include <new>
#include <vector>

#include "datatype/enums/name_matcher.h"
#include "foundationlib/except.h"

namespace graphics::datatype {
namespace {

// Compares values by the identity of their stored word.
class OrbIntEnumerationType : public OrbEnumerationType {
 public:
  int getEnumLength() const override { return static_cast<int>(names_.size()); }

  const char* getEnumString(objsys::COSValue value) const override {
    for (std::size_t i = 0; i < values_.size(); ++i) {
      if (sameValue(values_[i], value)) return names_.name(i).c_str();
    }
    return nullptr;
  }

  objsys::COSValue getEnumValue(const char* name) const override { return getEnumValue(name, false); }

  objsys::COSValue getEnumValue(const char* name, bool warn) const override {
    const int index = findElement(name);
    return index < 0 ? objsys::COSValue() : elementValue(index, warn);
  }

  objsys::COSValue elementValue(int index, bool warn) const override {
    const auto at = static_cast<std::size_t>(index);
    if (warn && statuses_[at] == EnumStatus::warned) warnings_[at]->throwWarning();
    return values_[at];
  }

  bool isValidEnumName(const char* name) const override { return findElement(name) >= 0; }

  EnumerationStatus getEnumVisibility(const char* name) const override {
    const int index = findElement(name);
    return index < 0 ? -1 : statuses_[static_cast<std::size_t>(index)];
  }

  void addElement(objsys::COSValue value, const char* name, EnumValueWarningMessage* warning) override {
    append(value, name, 2, std::unique_ptr<EnumValueWarningMessage>(warning));
  }
  void addElement(objsys::COSValue value, const char* name, EnumerationStatus status) override {
    append(value, name, status, std::make_unique<EnumValueWarningMessage>());
  }
  void addElement(objsys::COSValue value, const char* name) override { addElement(value, name, 0); }

  int getVisibleLength() const override {
    int visible = 0;
    for (EnumerationStatus status : statuses_) visible += status == EnumStatus::offered ? 1 : 0;
    return visible;
  }

  objsys::COSEnumeration* getPossibleValues() const override;

  int findElement(const char* name) const override {
    const auto index = names_.find(name != nullptr ? name : "");
    return index ? static_cast<int>(*index) : -1;
  }

  const char* elementName(int index) const override { return names_.name(static_cast<std::size_t>(index)).c_str(); }
  EnumerationStatus elementStatus(int index) const override { return statuses_[static_cast<std::size_t>(index)]; }

  const std::vector<objsys::COSValue>& values() const { return values_; }
  const std::vector<EnumerationStatus>& statuses() const { return statuses_; }

 protected:
  virtual bool sameValue(objsys::COSValue a, objsys::COSValue b) const { return a == b; }

 private:
  void append(objsys::COSValue value, const char* name, EnumerationStatus status,
              std::unique_ptr<EnumValueWarningMessage> warning) {
    names_.add(name);
    statuses_.push_back(status);
    values_.push_back(value);
    warnings_.push_back(std::move(warning));
  }

  NameMatcher names_;
  std::vector<EnumerationStatus> statuses_;
  std::vector<objsys::COSValue> values_;
  std::vector<std::unique_ptr<EnumValueWarningMessage>> warnings_;
};

// Compares values through the owning data type.
class OrbObjectEnumerationType : public OrbIntEnumerationType {
 public:
  explicit OrbObjectEnumerationType(objsys::COSDataType* type) : type_(type) {}

 protected:
  bool sameValue(objsys::COSValue a, objsys::COSValue b) const override { return type_->isEqual(a, b); }

 private:
  objsys::COSDataType* type_;
};

// The cursor over the offered values; the values stay owned by the enumeration.
class VisibleEnum : public objsys::COSEnumeration {
 public:
  explicit VisibleEnum(const OrbIntEnumerationType& enumeration) : enumeration_(enumeration) { skipHidden(); }
  bool hasMoreElements() const override { return next_ < enumeration_.values().size(); }
  objsys::COSValue nextElement() override {
    if (!hasMoreElements()) return objsys::COSValue();
    const objsys::COSValue value = enumeration_.values()[next_++];
    skipHidden();
    return value;
  }

 private:
  void skipHidden() {
    while (next_ < enumeration_.statuses().size() && enumeration_.statuses()[next_] != 0) ++next_;
  }

  const OrbIntEnumerationType& enumeration_;
  std::size_t next_ = 0;
};

objsys::COSEnumeration* OrbIntEnumerationType::getPossibleValues() const {
  auto* cursor = new (std::nothrow) VisibleEnum(*this);
  if (cursor == nullptr) throw fl::except::bad_alloc();
  return cursor;
}

}  // namespace

OrbEnumerationType::~OrbEnumerationType() = default;

std::string validValuesOf(const OrbEnumerationType& elements) {
  std::string list;
  for (int i = 0; i < elements.getEnumLength(); ++i) {
    if (elements.elementStatus(i) != 0) continue;
    if (!list.empty()) list += " | ";
    list += '\'';
    list += elements.elementName(i);
    list += '\'';
  }
  return list;
}

OrbEnumerationType* OrbEnumerationType::createIntegerEnumeration() {
  auto* enumeration = new (std::nothrow) OrbIntEnumerationType();
  if (enumeration == nullptr) throw fl::except::bad_alloc();
  return enumeration;
}

OrbEnumerationType* OrbEnumerationType::createObjectTypeEnumeration(objsys::COSDataType* type) {
  auto* enumeration = new (std::nothrow) OrbObjectEnumerationType(type);
  if (enumeration == nullptr) throw fl::except::bad_alloc();
  return enumeration;
}

}  // namespace graphics::datatype
