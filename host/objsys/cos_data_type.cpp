// The class system's base behaviour of data types and cursors.
#include "objsys/cos_data_type.h"

#include <functional>

namespace objsys {

COSEnumeration::~COSEnumeration() = default;
COSValueListEnumeration::~COSValueListEnumeration() = default;
void COSValueListEnumeration::addObject(COSInterfacePtr object) {
  values_.emplace_back(object.get());
  objects_.push_back(std::move(object));
}

COSDataType::~COSDataType() = default;
const char* COSDataType::getDescription() const { return ""; }
const char* COSDataType::getDetailedDescription() const { return ""; }
const char* COSDataType::getPossibleValuesDescription() const { return ""; }
bool COSDataType::isPossibleValuesFinite() const { return false; }
COSEnumeration* COSDataType::getPossibleValues() { return nullptr; }
int COSDataType::getStorageType() { return cosStorageIndirect; }
const char* COSDataType::getCategoryName() const { return "Fundamental"; }
std::size_t COSDataType::getSizeInBits() const { return 8 * getValueSizeInBytes(COSValue()); }
void COSDataType::checkValue(COSValue, bool) const {}
COSOrderRelation COSDataType::compare(COSValue a, COSValue b) { return isEqual(a, b) ? cosEqual : cosUnordered; }
std::size_t COSDataType::getValueSizeInBytes(COSValue) const { return 0; }
COSValue COSDataType::copyInternal(COSValue value) const { return const_cast<COSDataType*>(this)->copy(value); }
void COSDataType::destroyInternal(COSValue value) const { destroy(value); }
std::size_t COSDataType::getHashCode(const COSValue& value) { return std::hash<std::int64_t>()(value.word()); }
bool COSDataType::canContainInterfaces() { return false; }
void COSDataType::getReference() {}
void COSDataType::releaseReference() {}
COSEnumeration* COSDataType::getInterfaces(COSValue) { return nullptr; }
int COSDataType::getKvxFormat() { return 0; }
bool COSDataType::isKorvaxArrayType() const { return false; }
COSEnumeration* COSDataType::getKXArrays(COSValue) { return nullptr; }

}  // namespace objsys
