// Tests of starting and stopping the library and of placing data types in packages. Start and stop
// change process-wide state, so each scenario runs in a process of its own.
#include "datatype/library.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "arraylib/zxerror.h"
#include "datatype/color/mesh_alpha.h"
#include "datatype/references/object_reference_conversion.h"
#include "graphicsutillib/graphics_context.h"
#include "objsys/builtin_types.h"
#include "objsys/cos_type_conversion.h"
#include "utillib/ut.h"

namespace {

using namespace graphics::datatype;
using objsys::COSTypeRepository;

bool objectReferenceRegistered() { return COSTypeRepository::getConversion("double", kObjectReferenceTypeName); }
objsys::COSTypeConversion* meshAlphaConversion() {
  return COSTypeRepository::getConversion("any", MeshAlphaDataType::getDataTypeName());
}

// Ends the process with 0 when every check held; each failed check is printed.
class Scenario {
 public:
  void check(bool condition, const char* what) {
    if (!condition) {
      std::fprintf(stderr, "failed: %s\n", what);
      failed_ = true;
    }
  }
  [[noreturn]] void finish() { std::exit(failed_ ? 1 : 0); }

 private:
  bool failed_ = false;
};

class LibraryLifecycle : public ::testing::Test {
 protected:
  void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(LibraryLifecycle, CallbacksRunAtTheFirstStartAndTheLastStopRemovesTheObjectReference) {
  EXPECT_EXIT(
      {
        Scenario s;
        s.check(meshAlphaConversion() == nullptr, "nothing registered before the first start");
        KXInitialize_orbdatatypes(nullptr);
        objsys::COSTypeConversion* first = meshAlphaConversion();
        s.check(first != nullptr, "registered at the first start");
        s.check(COSTypeRepository::getConversion("asciiString", "int8 scalar") != nullptr, "built-in conversions");
        KXInitialize_orbdatatypes(nullptr);
        KXTerminate_orbdatatypes();
        s.check(objectReferenceRegistered(), "registered after one of two stops");
        KXTerminate_orbdatatypes();
        s.check(!objectReferenceRegistered(), "removed by the last stop");
        s.check(meshAlphaConversion() == first, "other registrations stay");
        KXInitialize_orbdatatypes(nullptr);
        s.check(meshAlphaConversion() == first, "a later start does not register again");
        s.check(objectReferenceRegistered(), "the object-reference conversion comes back");
        s.finish();
      },
      ::testing::ExitedWithCode(0), "");
}

TEST_F(LibraryLifecycle, StopBeforeAnyStartWrapsTheCountSoTheNextStartSkipsTheObjectReference) {
  EXPECT_EXIT(
      {
        Scenario s;
        KXTerminate_orbdatatypes();
        KXInitialize_orbdatatypes(nullptr);
        s.check(!objectReferenceRegistered(), "the wrapped count was not 0");
        s.check(meshAlphaConversion() != nullptr, "registration still ran");
        KXInitialize_orbdatatypes(nullptr);
        s.check(objectReferenceRegistered(), "the count is back at 0");
        s.finish();
      },
      ::testing::ExitedWithCode(0), "");
}

TEST_F(LibraryLifecycle, TheLibraryArgumentIsLoadedOnceAndNeverWhenNull) {
  EXPECT_EXIT(
      {
        Scenario s;
        KXInitialize_orbdatatypes(nullptr);
        s.check(std::strlen(utLibraryError()) == 0, "a null argument loads nothing");
        KXInitialize_orbdatatypes("/nonexistent/first-library.so");
        s.check(std::strstr(utLibraryError(), "first-library") != nullptr, "the first argument is loaded");
        KXInitialize_orbdatatypes("/nonexistent/second-library.so");
        s.check(std::strstr(utLibraryError(), "first-library") != nullptr, "no second load");
        s.finish();
      },
      ::testing::ExitedWithCode(0), "");
}

TEST_F(LibraryLifecycle, StopClearsTheContextFlagAndStandaloneShutdownReleasesTheContextRecord) {
  EXPECT_EXIT(
      {
        Scenario s;
        graphicsutil::ContextScope context(3, 1);
        KXInitialize_orbdatatypes(nullptr);
        s.check(objectReferenceFlag(3), "flag set for the current context");
        zx::CallFrame frame;
        try {
          objsys::COSTypeRepository::getConversion("double", kObjectReferenceTypeName)->from(objsys::COSValue());
        } catch (const fl::except::IMsgIDException& e) {
          s.check(std::strcmp(e.get_error_id(), "Korvax:orb:dt_conv:Matrix_to_HObject:BadHandle") == 0,
                  "a slot without a handle names no object");
        }
        s.check(hasObjectReferenceContext(1), "the context has a record");
        orbdatatypesShutdownForStandalone();
        s.check(!hasObjectReferenceContext(1), "standalone shutdown released it");
        KXTerminate_orbdatatypes();
        s.check(!objectReferenceFlag(3), "flag cleared by the last stop");
        s.finish();
      },
      ::testing::ExitedWithCode(0), "");
}

// Package registration is additive and may run in this process.
const char* describe(const char* name) { return name; }
const char* detail(const char*) { return "details"; }

TEST(RegisterPackage, CreatesEveryMissingAncestorOutermostFirst) {
  objsys::COSPackage* leaf = register_package("ta.tb.tc", &describe, &detail);
  ASSERT_NE(leaf, nullptr);
  EXPECT_EQ(leaf->getFullName(), "ta.tb.tc");
  struct Expected {
    const char* fullName;
    const char* name;
  };
  for (const Expected e : {Expected{"ta", "ta"}, Expected{"ta.tb", "tb"}, Expected{"ta.tb.tc", "tc"}}) {
    SCOPED_TRACE(e.fullName);
    objsys::COSPackage* package = objsys::COSPackage::getPackage(e.fullName);
    ASSERT_NE(package, nullptr);
    EXPECT_STREQ(package->getInfo()->getName(), e.name);
    EXPECT_STREQ(package->getInfo()->getDescription(), e.fullName);
    EXPECT_STREQ(package->getInfo()->getDetails(), "details");
  }
  EXPECT_EQ(register_package("ta.tb.tc", &describe, &detail), leaf) << "an existing package is returned";
}

TEST(RegisterDatatype, PlacesATypeInItsPackageOrAmongTheGlobalTypes) {
  register_datatype("", &describe, &detail, "ignored", MeshAlphaDataType::getType());
  EXPECT_EQ(COSTypeRepository::getType("MeshAlpha"), MeshAlphaDataType::getType());
  register_datatype("tx.ty", &describe, &detail, nullptr, MeshAlphaDataType::getType());
  EXPECT_EQ(COSTypeRepository::getType("tx.ty.MeshAlpha"), MeshAlphaDataType::getType());
}

TEST(LibraryExports, VersionAndBuildDateHaveTheirForms) {
  int parts[4];
  char end;
  EXPECT_EQ(std::sscanf(orbdatatypes_version, "%d.%d.%d.%d%c", &parts[0], &parts[1], &parts[2], &parts[3], &end), 4);
  char month[4];
  int day = 0, year = 0;
  EXPECT_EQ(std::sscanf(orbdatatypes_build_date, "%3s %d %d", month, &day, &year), 3);
  EXPECT_EQ(std::strlen(orbdatatypes_build_date), 11u);
  EXPECT_NE(QueryKXFcnTable_orbdatatypes(), nullptr);
}

}  // namespace
