// The library's exported entry points: start and stop, the host loader's function table, standalone
// shutdown, the version and build date, and the two routines that place data types in packages.
#pragma once

#include "datatype/export.h"
#include "datatype/type_facts.h"
#include "objsys/cos_data_type.h"
#include "objsys/cos_package.h"

extern "C" {
// Starts the library. The first start registers the built-in string conversions and every data type;
// each start from a count of zero registers the object-reference conversion. libraryToLoad, when not
// null, is loaded once per process with utLoadLibrary.
ORB_EXPORT void KXInitialize_orbdatatypes(const char* libraryToLoad);
// Stops the library; the last stop removes only the object-reference conversion.
ORB_EXPORT void KXTerminate_orbdatatypes();
// The function table in the host loader's format; this library lists no functions.
ORB_EXPORT const void* QueryKXFcnTable_orbdatatypes();
// Releases the current graphics context's state of the object-reference conversion.
ORB_EXPORT void orbdatatypesShutdownForStandalone();
// "major.minor.patch.build"
ORB_EXPORT extern const char* const orbdatatypes_version;
// The build date as "Mmm dd yyyy", the day padded with a blank.
ORB_EXPORT extern const char* const orbdatatypes_build_date;
// The facts of the registered type with the full name ("korvax.graphics.datatype.MeshAlpha"), or null:
// what a host's tools show of a type beyond its data type (its text form, its Java form, ...).
ORB_EXPORT const graphics::datatype::TypeFacts* orbdatatypes_type_facts(const char* fullName);
}

namespace graphics::datatype {

using PackageTextFunction = const char* (*)(const char* packageName);

// The package with the dotted name, created with all its missing ancestors (outermost first);
// null if the class system could not make it.
ORB_EXPORT objsys::COSPackage* register_package(const char* name, PackageTextFunction description,
                                                PackageTextFunction details);
// Adds type to the package (created as by register_package), or registers it as a global type when
// package is null or empty. extra is accepted and ignored.
ORB_EXPORT void register_datatype(const char* package, PackageTextFunction description, PackageTextFunction details,
                                  const char* extra, objsys::COSDataType* type);

}  // namespace graphics::datatype
