// The tree of packages.
#include "objsys/cos_package.h"

#include <unordered_map>

#include "foundationlib/except.h"
#include "objsys/cos_type_conversion.h"
#include "utillib/ut.h"

namespace objsys {
namespace {

// Every package by its full name; packages live for the life of the process.
std::unordered_map<std::string, COSPackage*>& packagesByName() {
  static auto* packages = new std::unordered_map<std::string, COSPackage*>();
  return *packages;
}

}  // namespace

COSPackageInfo::~COSPackageInfo() = default;
bool COSPackageInfo::attemptToLoadSubPackage(const char*) { return false; }
bool COSPackageInfo::attemptToLoadClass(const char*) { return false; }
bool COSPackageInfo::attemptToLoadFunction(const char*) { return false; }
bool COSPackageInfo::attemptToLoadType(const char*) { return false; }
void* COSPackageInfo::getMethodSelector() { return nullptr; }
std::int32_t COSPackageInfo::setHandle(std::int32_t handle) { return handle_ = handle; }
bool COSPackageInfo::isDestructible() const { return true; }
bool COSPackageInfo::isLocked() const { return false; }
const char* COSPackageInfo::getH1Line() const { return ""; }
const char* COSPackageInfo::getHelpText() const { return ""; }

void* COSPackageInfo::operator new(std::size_t size) {
  void* block = utCalloc(1, size);
  if (block == nullptr) throw fl::except::bad_alloc();
  return block;
}

void* COSPackageInfo::operator new(std::size_t size, const std::nothrow_t&) noexcept { return utCalloc(1, size); }

void COSPackageInfo::operator delete(void* block) { utFree(block); }

COSPackage::COSPackage(std::string fullName, COSPackageInfo* info) : fullName_(std::move(fullName)), info_(info) {}

COSPackage::~COSPackage() = default;

COSPackage* COSPackage::create(std::string fullName, COSPackageInfo* info) {
  auto*& slot = packagesByName()[fullName];
  if (slot == nullptr) {
    slot = new COSPackage(std::move(fullName), info);
  } else {
    delete info;
  }
  return slot;
}

COSPackage* COSPackage::getPackage(const COSNameID& fullName) {
  const auto found = packagesByName().find(std::string(fullName.view()));
  return found == packagesByName().end() ? nullptr : found->second;
}

COSPackage* COSPackage::addPackage(COSPackageInfo* info) {
  if (info == nullptr) return nullptr;
  return create(info->getName(), info);
}

COSPackage* COSPackage::addSubPackage(COSPackageInfo* info) {
  if (info == nullptr) return nullptr;
  const std::size_t before = packagesByName().size();
  COSPackage* child = create(fullName_ + "." + info->getName(), info);
  if (packagesByName().size() != before) subPackages_.push_back(child);
  return child;
}

void COSPackage::addDataType(COSDataType* type) {
  if (type == nullptr) return;
  dataTypes_.push_back(type);
  COSTypeRepository::addNamedType(COSNameID(fullName_ + "." + type->getName()), type);
}

}  // namespace objsys
