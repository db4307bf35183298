// Tests of message-identifier exceptions and the out-of-memory error.
#include "foundationlib/except.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/exception_ptr.hpp>

FL_DECLARE_MSG_ID(Korvax::orb::shaped_arrays, AlphaMapSize)

namespace {

using namespace fl::except;

TEST(MsgIDException, BothFormsJoinTheirPartsIntoTheIdentifier) {
  struct Case {
    std::unique_ptr<IMsgIDException> error;
    const char* id;
    std::vector<std::string> parts;
  };
  Case cases[] = {
      {std::make_unique<Exception<Korvax::orb::shaped_arrays::AlphaMapSize>>(),
       "Korvax:orb:shaped_arrays:AlphaMapSize",
       {"Korvax", "orb", "shaped_arrays", "AlphaMapSize"}},
      {std::make_unique<Exception<key<"OBJSYSPackageNotFound", catalog<"orb", component<"Korvax">>>>>(),
       "Korvax:orb:OBJSYSPackageNotFound",
       {"Korvax", "orb", "OBJSYSPackageNotFound"}},
      {std::make_unique<Exception<key<"OutOfMemory", catalog<"orb:datatypes", component<"Korvax">>>>>(),
       "Korvax:orb:datatypes:OutOfMemory",
       {"Korvax", "orb", "datatypes", "OutOfMemory"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.id);
    EXPECT_STREQ(c.error->get_error_id(), c.id);
    EXPECT_EQ(dynamic_cast<const MsgIDExceptionBase&>(*c.error).get_parts(), c.parts);
  }
}

TEST(MsgIDException, ClonesAndRethrowsKeepTypeIdentifierAndArguments) {
  using ComplexError = Exception<Korvax::orb::shaped_arrays::AlphaMapSize>;
  const ComplexError original("AlphaMap", "extra");
  std::unique_ptr<IMsgIDException> copy = original.copy();
  EXPECT_THAT(copy->get_arguments(), ::testing::ElementsAre("AlphaMap", "extra"));
  EXPECT_THROW(copy->raise(), ComplexError);

  boost::exception_ptr slot = boost::copy_exception(original);
  try {
    boost::rethrow_exception(slot);
  } catch (const IUserException& caught) {
    EXPECT_STREQ(caught.get_error_id(), original.get_error_id());
  }
  EXPECT_EQ(original.get_message_text(), "AlphaMap must be a 1-by-n or m-by-1 vector.");
}

TEST(BadAlloc, IsAStandardBadAllocThatBoostCanCarry) {
  EXPECT_THROW(boost::rethrow_exception(boost::copy_exception(fl::except::bad_alloc())), std::bad_alloc);
}

}  // namespace
