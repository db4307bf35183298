// The data type and conversions shared by every enumerated property type.
#include "datatype/enums/enum_value.h"

#include <new>

#include "arraylib/zxarray.h"
#include "arraylib/zxerror.h"
#include "datatype/conversion_support.h"
#include "datatype/data_type_base.h"
#include "foundationlib/except.h"
#include "utillib/ut.h"

namespace graphics::datatype {

EnumValueWarningMessage::EnumValueWarningMessage(std::string id, std::vector<std::string> arguments)
    : id_(std::move(id)), arguments_(std::move(arguments)) {}

EnumValueWarningMessage::~EnumValueWarningMessage() = default;

void EnumValueWarningMessage::throwWarning() const {
  if (id_.empty()) return;
  // A warning must neither consume nor invent the user's interrupt request.
  const bool interruptPending = utIsInterruptPending();
  zxWarningMsgId(fl::i18n::BaseMsgID(id_, arguments_));
  utSetInterruptHandled(!interruptPending);
}

EnumDataTypeBase::EnumDataTypeBase(const EnumTypeInfo& info)
    : info_(info), fullName_(std::string(kPackageName) + "." + info.name) {}

objsys::COSValue EnumDataTypeBase::makeValue(signed char ordinal) {
  auto* block = static_cast<signed char*>(allocateValueBlock(1));
  *block = ordinal;
  return objsys::COSValue(block);
}

objsys::COSValue EnumDataTypeBase::getDefaultValue() const {
  if (default_.isEmpty()) default_ = makeValue(info_.defaultOrdinal);
  return default_;
}

bool EnumDataTypeBase::isEqual(objsys::COSValue a, objsys::COSValue b) const {
  if (a.isEmpty() || b.isEmpty()) return a == b;
  return ordinalOf(a) == ordinalOf(b);
}

objsys::COSOrderRelation EnumDataTypeBase::compare(objsys::COSValue a, objsys::COSValue b) {
  return isEqual(a, b) ? objsys::cosEqual : objsys::cosUnordered;
}

objsys::COSValue EnumDataTypeBase::copy(objsys::COSValue value) {
  return value.isEmpty() ? objsys::COSValue() : makeValue(ordinalOf(value));
}

void EnumDataTypeBase::destroy(objsys::COSValue value) const { utFree(value.pointer()); }

// The element values live as long as the type: the class system keeps both for the process.
const OrbTypedEnumStringType& EnumDataTypeBase::enumType() const {
  if (enumType_ == nullptr) {
    auto* type = new (std::nothrow) OrbTypedEnumStringType(const_cast<EnumDataTypeBase*>(this));
    if (type == nullptr) throw fl::except::bad_alloc();
    for (const EnumElement& element : info_.elements) {
      if (element.status == EnumStatus::offered) {
        type->addElement(makeValue(element.ordinal), element.name);
      } else if (element.status == EnumStatus::warned) {
        auto* warning =
            new (std::nothrow) EnumValueWarningMessage(element.warningId != nullptr ? element.warningId : "");
        if (warning == nullptr) throw fl::except::bad_alloc();
        type->addElement(makeValue(element.ordinal), element.name, warning);
      } else {
        type->addElement(makeValue(element.ordinal), element.name, element.status);
      }
    }
    enumType_ = type;
  }
  return *enumType_;
}

namespace {

// The ordinal of the element the name selects, warning first when the element asks for it; refuses a
// name that selects nothing.
signed char ordinalNamed(const EnumDataTypeBase& type, const char* name, bool warn) {
  const OrbTypedEnumStringType& elements = type.enumType();
  const int index = elements.findElement(name);
  if (index < 0) errorForInvalidEnumValue(name, elements);
  return EnumDataTypeBase::ordinalOf(elements.elements().elementValue(index, warn));
}

}  // namespace

signed char EnumDataTypeBase::ordinalFromArray(const zxArray& array) const {
  const OrbTypedEnumStringType& elements = enumType();
  if (!zxIsChar(&array)) errorForInvalidEnumValueFor(elements);
  if (zxIsEmpty(&array)) errorForInvalidValue(elements);
  // A name is one row of characters: a char matrix or N-D text is refused, not read column by column.
  if (zxGetM(&array) != 1 || zxGetNumberOfDimensions(&array) > 2) errorForInvalidEnumValueFor(elements);
  // A NUL would cut the name short and select an element by what precedes it; such text names nothing.
  if (holdsNul(&array)) errorForInvalidEnumValue(textWithVisibleNuls(&array).c_str(), elements);
  const std::string text = getStringFromZxArray(&array);
  return ordinalNamed(*this, text.c_str(), true);
}

signed char EnumDataTypeBase::ordinalFromText(const char* text) const { return ordinalNamed(*this, text, false); }

std::optional<signed char> EnumDataTypeBase::findOrdinal(const char* text) const {
  const OrbTypedEnumStringType& elements = enumType();
  const int index = elements.findElement(text);
  if (index < 0) return std::nullopt;
  return ordinalOf(elements.elements().elementValue(index, false));
}

const char* EnumDataTypeBase::nameOf(signed char ordinal) const {
  return enumType().getEnumString(objsys::COSValue(&ordinal));
}

zxArray* EnumDataTypeBase::nameArrayOf(signed char ordinal) const {
  const char* name = nameOf(ordinal);
  return zxCreateString(name != nullptr ? name : "");
}

}  // namespace graphics::datatype
