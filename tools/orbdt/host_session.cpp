// Loading the data type library and finding its types by name.
#include "orbdt/host_session.h"

#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>

#include "objsys/builtin_types.h"
#include "objsys/cos_package.h"
#include "utillib/ut.h"

namespace orbdt {

HostSession::HostSession(const std::string& libraryPath) {
  objsys::registerBuiltinTypes();
  if (!utLoadLibrary(libraryPath.c_str(), &library_)) {
    throw std::runtime_error("cannot load " + libraryPath + ": " + utLibraryError());
  }
  auto initialize = reinterpret_cast<void (*)(const char*)>(utGetLibrarySymbol(library_, "KXInitialize_orbdatatypes"));
  terminate_ = reinterpret_cast<void (*)()>(utGetLibrarySymbol(library_, "KXTerminate_orbdatatypes"));
  if (initialize == nullptr || terminate_ == nullptr) {
    throw std::runtime_error(libraryPath + " has no KXInitialize_orbdatatypes or KXTerminate_orbdatatypes");
  }
  initialize(nullptr);
}

// The library stays loaded: the class system keeps its data types and conversions for the process.
HostSession::~HostSession() {
  if (terminate_ != nullptr) terminate_();
}

TypeHandle HostSession::resolve(const std::string& name) const {
  TypeHandle handle;
  handle.fullName = name.find('.') == std::string::npos ? std::string(kPackage) + "." + name : name;
  handle.type = objsys::COSTypeRepository::getType(handle.fullName.c_str());
  if (handle.type == nullptr || handle.fullName.rfind(std::string(kPackage) + ".", 0) != 0) {
    throw UsageError("orbdt:UnknownType", "no data type named '" + name + "' in " + kPackage);
  }
  handle.arrays = objsys::COSTypeRepository::getConversion("any", handle.fullName.c_str());
  handle.texts = objsys::COSTypeRepository::getConversion("asciiString", handle.fullName.c_str());
  return handle;
}

std::vector<std::string> HostSession::typeNames() const {
  std::vector<std::string> names;
  if (const objsys::COSPackage* package = objsys::COSPackage::getPackage(kPackage)) {
    for (const objsys::COSDataType* type : package->getDataTypes()) {
      names.push_back(std::string(kPackage) + "." + type->getName());
    }
  }
  std::sort(names.begin(), names.end());
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

std::string HostSession::defaultLibraryPath() {
  if (const char* path = std::getenv("ORBDT_LIBRARY")) return path;
  char self[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", self, sizeof self - 1);
  if (length <= 0) return "liborbdatatypes.so";
  std::string program(self, static_cast<std::size_t>(length));
  const std::string dir = program.substr(0, program.rfind('/'));
  return dir + "/../lib/liborbdatatypes.so";
}

}  // namespace orbdt
