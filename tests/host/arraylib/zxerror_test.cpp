// Tests of the error and warning path, with and without a call frame.
#include "arraylib/zxerror.h"
#include "arraylib/zxrethrow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>

FL_DECLARE_MSG_ID(Korvax::datatypes, InvalidEnumValue)

namespace {

using EnumError = fl::except::Exception<Korvax::datatypes::InvalidEnumValue>;
using PackageError = fl::except::Exception<
    fl::except::key<"OBJSYSPackageNotFound", fl::except::catalog<"orb", fl::except::component<"Korvax">>>>;

TEST(ErrorPath, WithoutAFrameTheLegacyCallReturnsSoTheRaiserThrowsItsOwnException) {
  ASSERT_FALSE(zx::inCallFrame());
  const EnumError error("bogus", "'on' | 'off'");
  matrix::detail::do_legacy_zx_error(error);
  try {
    throw error;
  } catch (const EnumError& caught) {
    EXPECT_STREQ(caught.get_error_id(), "Korvax:datatypes:InvalidEnumValue");
    EXPECT_EQ(caught.get_message_text(), "'bogus' is not a valid value. Use one of these values: 'on' | 'off'.");
  }
}

TEST(ErrorPath, InsideAFrameTheHostRaisesItsOwnErrorWithTheCatalogText) {
  zx::CallFrame frame;
  try {
    matrix::detail::do_legacy_zx_error(EnumError("bogus", "'on' | 'off'"));
    FAIL() << "the host did not raise";
  } catch (const fl::except::IMsgIDException& caught) {
    EXPECT_NE(dynamic_cast<const zx::HostError*>(&caught), nullptr);
    EXPECT_STREQ(caught.get_error_id(), "Korvax:datatypes:InvalidEnumValue");
    EXPECT_EQ(caught.get_message_text(), "'bogus' is not a valid value. Use one of these values: 'on' | 'off'.");
    EXPECT_THAT(caught.get_arguments(), ::testing::ElementsAre("bogus", "'on' | 'off'"));
  }
}

TEST(ErrorPath, RaisingCallsCarryTheirIdentifierAndText) {
  struct Case {
    const char* name;
    void (*raise)();
    const char* id;
    const char* text;
  };
  const Case cases[] = {
      {"own text",
       [] {
         zxErrMsgIdAndTxt("Korvax:orb:set_chck:Expected3ElementVector", "Value must be a %d element numeric vector.",
                          3);
       },
       "Korvax:orb:set_chck:Expected3ElementVector", "Value must be a 3 element numeric vector."},
      {"numbered", [] { zxErrMsg(zxINDEX_OUT_OF_RANGE); }, "Korvax:arraylib:IndexOutOfRange",
       "Index exceeds the number of array elements."},
      {"wrapper", [] { zxErrMsgWrapper(fl::i18n::BaseMsgID("Korvax:orb:shaped_arrays:Complex", {"ColorMap"})); },
       "Korvax:orb:shaped_arrays:Complex", nullptr},
      {"explicit parts", [] { zxReThrowException(boost::copy_exception(PackageError())); },
       "Korvax:orb:OBJSYSPackageNotFound", nullptr},
  };
  for (bool framed : {false, true}) {
    for (const Case& c : cases) {
      SCOPED_TRACE(std::string(c.name) + (framed ? " in a frame" : " outside frames"));
      std::optional<zx::CallFrame> frame;
      if (framed) frame.emplace();
      try {
        c.raise();
        FAIL() << "returned";
      } catch (const fl::except::IMsgIDException& caught) {
        EXPECT_STREQ(caught.get_error_id(), c.id);
        if (c.text != nullptr) {
          EXPECT_EQ(caught.get_message_text(), c.text);
        }
        EXPECT_EQ(caught.get_message_text().find('{'), std::string::npos) << caught.get_message_text();
      }
    }
  }
}

TEST(ErrorPath, RethrowOutsideAFrameKeepsTheOriginalExceptionType) {
  try {
    zxReThrowException(boost::copy_exception(EnumError("x", "y")));
  } catch (const EnumError& caught) {
    EXPECT_THAT(caught.get_arguments(), ::testing::ElementsAre("x", "y"));
    return;
  } catch (...) {
  }
  FAIL() << "the original type was lost";
}

TEST(ErrorPath, RethrowPassesOtherExceptionsThroughUnchanged) {
  zx::CallFrame frame;
  EXPECT_THROW(zxReThrowException(boost::copy_exception(std::out_of_range("x"))), std::out_of_range);
}

TEST(WarningLog, WarningsAreRecordedInOrderAndExecutionGoesOn) {
  zx::clearWarnings();
  zxWarningMsgId(fl::i18n::BaseMsgID("Korvax:orb:shaped_arrays:NaN", {"Tick"}));
  zxWarningMsgId(fl::i18n::BaseMsgID("Test:unknownWarning", {"a"}));
  ASSERT_EQ(zx::warnings().size(), 2u);
  EXPECT_EQ(zx::warnings()[0].id, "Korvax:orb:shaped_arrays:NaN");
  EXPECT_NE(zx::warnings()[0].text.find("Tick"), std::string::npos);
  EXPECT_EQ(zx::warnings()[1].text, "Test:unknownWarning a") << "an identifier the catalog lacks keeps its arguments";
  zx::clearWarnings();
  EXPECT_TRUE(zx::warnings().empty());
}

}  // namespace
