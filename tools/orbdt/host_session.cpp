// Loading the data type library and finding its types by name.
#include "orbdt/host_session.h"

#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "arraylib/zxarray.h"
#include "arraylib/zxerror.h"
#include "cmdlanglib/utf8.h"
#include "objsys/cos_package.h"
#include "orbdt/hints.h"
#include "utillib/ut.h"

namespace orbdt {

namespace {

constexpr const char* kDefaultChooser = "the default beside orbdt";

// Why a library file failed to load: what is wrong with the file when that can be told, else the
// loader's message without the path it starts with.
std::string loadFailureReason(const std::string& path) {
  std::error_code error;
  if (path.find('/') != std::string::npos) {
    const auto status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found) return "no such file";
    if (status.type() == std::filesystem::file_type::directory) return "it is a directory";
  }
  std::string reason = utLibraryError();
  if (reason.rfind(path + ": ", 0) == 0) reason.erase(0, path.size() + 2);
  return reason.empty() ? "the loader gave no reason" : reason;
}

}  // namespace

HostSession::HostSession(const LibraryLocation& library) {
  const std::string named = library.path + " (" + library.chosenBy + ")";
  if (!utLoadLibrary(library.path.c_str(), &library_)) {
    throw std::runtime_error("cannot load the data type library " + named + ": " + loadFailureReason(library.path));
  }
  auto initialize = reinterpret_cast<void (*)(const char*)>(utGetLibrarySymbol(library_, "KXInitialize_orbdatatypes"));
  terminate_ = reinterpret_cast<void (*)()>(utGetLibrarySymbol(library_, "KXTerminate_orbdatatypes"));
  if (initialize == nullptr || terminate_ == nullptr) {
    throw std::runtime_error(named +
                             " is not the data type library: it has no KXInitialize_orbdatatypes or "
                             "KXTerminate_orbdatatypes");
  }
  // A library without the export describes its types without their facts.
  factsOf_ = reinterpret_cast<const graphics::datatype::TypeFacts* (*)(const char*)>(
      utGetLibrarySymbol(library_, "orbdatatypes_type_facts"));
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
    throw UsageError("orbdt:UnknownType",
                     "no data type named '" + cmdlang::utf8Shortened(name, 200) + "' in " + kPackage,
                     didYouMean(nearestTypeNames(name)));
  }
  handle.arrays = objsys::COSTypeRepository::getConversion("any", handle.fullName.c_str());
  handle.texts = objsys::COSTypeRepository::getConversion("asciiString", handle.fullName.c_str());
  if (factsOf_ != nullptr) handle.facts = factsOf_(handle.fullName.c_str());
  return handle;
}

std::vector<std::string> HostSession::offeredNames(const TypeHandle& handle) const {
  std::vector<std::string> names;
  if (handle.texts == nullptr || !handle.type->isPossibleValuesFinite()) return names;
  try {
    objsys::COSEnumerationRef values(handle.type->getPossibleValues());
    while (values && values->hasMoreElements()) {
      const objsys::COSValue text = handle.texts->to(values->nextElement());
      if (!text.isEmpty()) names.emplace_back(text.as<const char>());
      utFree(text.pointer());
    }
  } catch (const std::exception&) {
    // A type that cannot list its names offers none.
  }
  return names;
}

std::vector<std::string> HostSession::colorNames() const {
  std::vector<std::string> names;
  try {
    const TypeHandle table = resolve("ColorTable");
    if (table.arrays == nullptr) return names;
    const zx::CallFrame frame;
    const std::unique_ptr<zxArray, decltype(&zxDestroyArray)> fields(
        table.arrays->to(table.type->getDefaultValue()).as<zxArray>(), &zxDestroyArray);
    if (!fields || !zxIsStruct(fields.get())) return names;
    for (int f = 0; f < zxGetNumberOfFields(fields.get()); ++f)
      names.emplace_back(zxGetFieldNameByNumber(fields.get(), f));
  } catch (const std::exception&) {
    // Without the table there are no names to offer.
  }
  return names;
}

std::vector<std::string> HostSession::nearestTypeNames(const std::string& name) const {
  // A full name is compared with full names. A short one is first a kind of type: the shortest names
  // ending with it ("Color" is RGBAColor, MeshColor, ...); then the names within a few edits of it.
  constexpr std::size_t kHints = 3;
  const bool full = name.find('.') != std::string::npos;
  std::vector<std::string> candidates;
  for (const std::string& fullName : typeNames()) {
    candidates.push_back(full ? fullName : fullName.substr(fullName.rfind('.') + 1));
  }
  if (full || name.size() < 3) return nearestNames(name, candidates);
  std::vector<std::string> kinds;
  for (const std::string& candidate : candidates) {
    if (candidate.size() > name.size() && candidate.ends_with(name)) kinds.push_back(candidate);
  }
  std::ranges::stable_sort(kinds, {}, &std::string::size);
  if (kinds.size() > kHints) kinds.resize(kHints);
  for (const std::string& near : nearestNames(name, candidates)) {
    if (kinds.size() < kHints && std::ranges::find(kinds, near) == kinds.end()) kinds.push_back(near);
  }
  return kinds;
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

LibraryLocation HostSession::defaultLibrary() {
  // The SONAME, which the runtime package holds; the unversioned name is the development package's.
  LibraryLocation beside{ORB_LIBRARY_FILE, kDefaultChooser};
  char self[PATH_MAX];
  const ssize_t length = readlink("/proc/self/exe", self, sizeof self - 1);
  if (length > 0) {
    const std::string program(self, static_cast<std::size_t>(length));
    // The installed tree's library folder, else the build tree's.
    const std::string prefix = program.substr(0, program.rfind('/')) + "/../";
    beside.path = prefix + ORB_LIBRARY_DIR "/" ORB_LIBRARY_FILE;
    if (access(beside.path.c_str(), F_OK) != 0) beside.path = prefix + "lib/" ORB_LIBRARY_FILE;
  }
  const char* named = std::getenv("ORBDT_LIBRARY");
  if (named == nullptr) return beside;
  if (*named == '\0') {
    throw std::runtime_error(
        "ORBDT_LIBRARY is set but empty: set it to the path of the data type library, or unset "
        "it to load " +
        beside.path);
  }
  return {named, "named by ORBDT_LIBRARY"};
}

}  // namespace orbdt
