// Packages of the class system: a tree of named packages (COSPackage), each described by a
// COSPackageInfo and holding data types.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "foundationlib/visibility.h"
#include "objsys/cos_data_type.h"
#include "objsys/cos_value.h"

namespace objsys {

// Describes one package to the class system. The virtual operations are in the class system's slot
// order; the ones with a body are its base behaviour. Instances are allocated with the host
// allocator, so that the class system can free them whoever made them.
class KX_HOST_API COSPackageInfo {
 public:
  virtual ~COSPackageInfo();
  virtual const char* getName() const = 0;
  virtual const char* getDescription() const = 0;
  virtual const char* getDetails() const = 0;
  virtual bool attemptToLoadSubPackage(const char* name);
  virtual bool attemptToLoadClass(const char* name);
  virtual bool attemptToLoadFunction(const char* name);
  virtual bool attemptToLoadType(const char* name);
  virtual void* getMethodSelector();
  virtual std::int32_t setHandle(std::int32_t handle);
  virtual bool isDestructible() const;
  virtual bool isLocked() const;
  virtual const char* getH1Line() const;
  virtual const char* getHelpText() const;

  static void* operator new(std::size_t size);
  static void* operator new(std::size_t size, const std::nothrow_t&) noexcept;
  static void operator delete(void* block);

  std::int32_t getHandle() const { return handle_; }

 protected:
  COSPackageInfo() = default;

 private:
  std::int32_t handle_ = 0;
};

// A package: its info, its sub-packages and its data types. Packages live for the life of the process.
class KX_HOST_API COSPackage {
 public:
  // The package with the full dotted name ("korvax.graphics.datatype"), or null.
  static COSPackage* getPackage(const COSNameID& fullName);
  // Adds a top-level package described by info (taking it over); null info adds nothing.
  static COSPackage* addPackage(COSPackageInfo* info);

  virtual ~COSPackage();
  // Adds a sub-package described by info (taking it over); null info adds nothing.
  virtual COSPackage* addSubPackage(COSPackageInfo* info);
  // Adds a data type, reachable afterwards through COSTypeRepository by "<package>.<type name>".
  virtual void addDataType(COSDataType* type);

  const std::string& getFullName() const { return fullName_; }
  const COSPackageInfo* getInfo() const { return info_.get(); }
  const std::vector<COSDataType*>& getDataTypes() const { return dataTypes_; }
  const std::vector<COSPackage*>& getSubPackages() const { return subPackages_; }

 private:
  COSPackage(std::string fullName, COSPackageInfo* info);
  static COSPackage* create(std::string fullName, COSPackageInfo* info);

  std::string fullName_;
  std::unique_ptr<COSPackageInfo> info_;
  std::vector<COSPackage*> subPackages_;
  std::vector<COSDataType*> dataTypes_;
};

}  // namespace objsys
