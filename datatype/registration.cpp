// The registrar of registration callbacks, packages, and the placing of data types in them.
#include "datatype/registration.h"

#include <cstring>
#include <string>

#include "datatype/data_type_base.h"
#include "datatype/errors.h"
#include "datatype/library.h"
#include "guilib/registrar.h"
#include "objsys/cos_package.h"
#include "utillib/ut.h"

namespace graphics::datatype {
namespace {

gui_objects::InitializationCallbackRegistrar* registrarInstance = nullptr;

// Describes one package to the class system: its last name component, description and details.
class OrbPackageInfo : public objsys::COSPackageInfo {
 public:
  OrbPackageInfo(const char* name, const char* description, const char* details)
      : name_(utStrdup(name)), description_(utStrdup(description)), details_(utStrdup(details)) {}
  ~OrbPackageInfo() override {
    utFree(name_);
    utFree(description_);
    utFree(details_);
  }
  OrbPackageInfo(const OrbPackageInfo&) = delete;
  OrbPackageInfo& operator=(const OrbPackageInfo&) = delete;

  // Whether its three texts could be copied; one that could not makes the info unusable.
  bool complete() const { return name_ != nullptr && description_ != nullptr && details_ != nullptr; }

  const char* getName() const override { return name_; }
  const char* getDescription() const override { return description_; }
  const char* getDetails() const override { return details_; }

 private:
  char* name_;
  char* description_;
  char* details_;
};

// Details are asked for before the description, as the class system's loaders do.
OrbPackageInfo* makePackageInfo(const char* lastName, const char* fullName, PackageTextFunction description,
                                PackageTextFunction details) {
  const char* detailText = details(fullName);
  const char* descriptionText = description(fullName);
  auto* info = new (std::nothrow) OrbPackageInfo(lastName, descriptionText, detailText);
  if (info != nullptr && !info->complete()) {
    delete info;
    return nullptr;
  }
  return info;
}

const char* emptyDescription(const char*) { return ""; }
const char* noDetails(const char*) { return "no details"; }

objsys::COSPackage* requirePackage(const char* name, PackageTextFunction description, PackageTextFunction details) {
  register_package(name, description, details);
  objsys::COSPackage* package = objsys::COSPackage::getPackage(name);
  if (package == nullptr) raise<Korvax::orb::OBJSYSPackageNotFound>();
  return package;
}

}  // namespace

gui_objects::InitializationCallbackRegistrar* callbackRegistrar() {
  if (registrarInstance == nullptr)
    registrarInstance = new (std::nothrow) gui_objects::InitializationCallbackRegistrar();
  return registrarInstance;
}

bool queueRegistration(void (*callback)()) {
  unlessOutOfMemory([callback] {
    if (gui_objects::InitializationCallbackRegistrar* registrar = callbackRegistrar()) registrar->addCallback(callback);
  });
  return true;
}

void addToDefaultPackage(objsys::COSDataType* type) {
  type->getName();
  objsys::COSPackage* package = objsys::COSPackage::getPackage(kPackageName);
  if (package == nullptr) package = requirePackage(kPackageName, &emptyDescription, &noDetails);
  package->addDataType(type);
}

objsys::COSPackage* register_package(const char* name, PackageTextFunction description, PackageTextFunction details) {
  if (objsys::COSPackage* existing = objsys::COSPackage::getPackage(name)) return existing;
  const char* lastDot = std::strrchr(name, '.');
  if (lastDot != nullptr) {
    const std::string parentName(name, lastDot);
    objsys::COSPackage* parent = register_package(parentName.c_str(), description, details);
    OrbPackageInfo* info = makePackageInfo(lastDot + 1, name, description, details);
    if (parent != nullptr) {
      parent->addSubPackage(info);
    } else {
      delete info;
    }
  } else {
    objsys::COSPackage::addPackage(makePackageInfo(name, name, description, details));
  }
  return objsys::COSPackage::getPackage(name);
}

void register_datatype(const char* package, PackageTextFunction description, PackageTextFunction details,
                       const char* /*extra: accepted and ignored*/, objsys::COSDataType* type) {
  if (package != nullptr && *package != '\0') {
    requirePackage(package, description, details)->addDataType(type);
  } else {
    objsys::COSTypeRepository::addGlobalType(type);
  }
}

}  // namespace graphics::datatype
