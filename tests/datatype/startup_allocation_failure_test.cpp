// Start-up with every allocation failing once, one process per failing allocation: what cannot be
// made is skipped without a word, and whatever was registered works. This program routes operator new
// through utillib, so the library's and the host's C++ allocations fail too.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <string>

#include "arraylib/zxerror.h"
#include "datatype/all/all_types.h"
#include "datatype/library.h"
#include "objsys/builtin_types.h"
#include "utillib/ut.h"

namespace {

using namespace graphics::datatype;
using objsys::COSValue;

// In the child: starts with the given allocation failing, then uses every registered type. The exit
// status says what happened (see below).
[[noreturn]] void startFailing(std::size_t failing) {
  int status = 0;
  utFailNthAllocation(failing);
  try {
    KXInitialize_orbdatatypes(nullptr);
  } catch (const fl::except::IMsgIDException& error) {
    // The one refusal start-up may raise: the package could not be made.
    if (std::string(error.get_error_id()) != "Korvax:orb:OBJSYSPackageNotFound") status = 5;
  } catch (const std::exception& error) {
    std::cerr << "start-up raised " << error.what() << '\n';
    status = 6;
  } catch (...) {
    status = 6;
  }
  utFailNthAllocation(0);
  if (status == 0 && !utInjectedFailureHappened()) status = 3;
  try {
    zx::CallFrame frame;
    for (const TypeRow& row : kEveryType) {
      objsys::COSDataType* type = objsys::COSTypeRepository::getType(row.fullName());
      if (type == nullptr) continue;
      const COSValue copy = type->copy(type->getDefaultValue());
      if (const auto* arrays = objsys::COSTypeRepository::getConversion("any", row.fullName())) {
        type->destroy(arrays->from(arrays->to(copy)));
      }
      type->destroy(copy);
    }
    KXTerminate_orbdatatypes();
  } catch (const std::exception& error) {
    std::cerr << "a registered type raised " << error.what() << '\n';
    status = 4;
  }
  _exit(status);
}

// ORB_STARTUP_FAILING=N runs the start-up with allocation N failing in this process, for a debugger.
TEST(AllocationFailureAtStartUp, SkipsWhatItCannotMakeAndNothingElse) {
  objsys::registerBuiltinTypes();
  if (const char* one = std::getenv("ORB_STARTUP_FAILING")) startFailing(std::stoul(one));
  std::size_t failing = 1;
  for (; failing < 100000; ++failing) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) startFailing(failing);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status)) << "start-up with allocation " << failing << " failing died of signal "
                                   << (WIFSIGNALED(status) ? WTERMSIG(status) : 0);
    if (WEXITSTATUS(status) == 3) break;  // no allocation left to fail
    ASSERT_EQ(WEXITSTATUS(status), 0) << "allocation " << failing << " failing: 4 a registered type fails, 5 an "
                                      << "unexpected identifier, 6 an unexpected exception";
  }
  EXPECT_GT(failing, 100u) << "start-up made suspiciously few allocations";
  std::cout << "start-up runs through after " << failing - 1 << " allocations\n";
}

}  // namespace
