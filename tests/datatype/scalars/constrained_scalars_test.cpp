// The constrained numeric scalars through their registered conversions: check order and message
// texts, what an empty slot reads back as, the text form, and the two isValid forms.
#include "datatype/scalars/constrained_scalars.h"

#include <boost/exception_ptr.hpp>
#include <functional>
#include <limits>
#include <string>

#include "../support.h"
#include "arraylib/zxarray.h"
#include "utillib/ut.h"

namespace {

using namespace graphics::datatype;
using objsys::COSValue;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr const char* kRange = "Korvax:datatypes:valueOutsideValidRange";
constexpr const char* kFiniteAbove0 = "Value should be a finite number greater than 0";
constexpr const char* kAbove0 = "Value should be greater than 0";
constexpr const char* kBetween = "Value should be between 0 and 1";
constexpr const char* kZeroToOne = "Value is NaN, or out of range 0.0 <= value <= 1.0";
constexpr const char* kPwz = "Korvax:datatypes:PositiveWithZeroDataType:";

// A conversion's outcome: accepted (id empty) reading back as value, or refused with id and text.
struct Outcome {
  const char* type;
  double value;
  std::string id;
  const char* text;
};

class ConstrainedScalars : public orbtest::DataTypeTest {
 protected:
  static objsys::COSTypeConversion& conversion(const char* from, const char* type) {
    return *objsys::COSTypeRepository::getConversion(from, (std::string("korvax.graphics.datatype.") + type).c_str());
  }
  static double readBack(const char* type, COSValue value) {
    return zxGetScalar(conversion("any", type).to(value).as<const zxArray>());
  }
  // Converts input through the array ("any") or text ("asciiString") conversion and checks want.
  static void expect(const Outcome& want, const char* from, COSValue input) {
    SCOPED_TRACE(std::string(want.type) + " " + std::to_string(want.value));
    try {
      const COSValue value = conversion(from, want.type).from(input);
      EXPECT_EQ(want.id, "") << "accepted";
      EXPECT_EQ(readBack(want.type, value), want.value);
      utFree(value.pointer());
    } catch (const fl::except::IMsgIDException& error) {
      ASSERT_NE(want.id, "") << error.get_error_id() << ": " << error.get_message_text();
      EXPECT_EQ(error.get_error_id(), want.id);
      EXPECT_EQ(error.get_message_text(), want.text);
    }
  }
};

TEST_F(ConstrainedScalars, ChecksRunInOrderWithTheirIdentifiersAndTexts) {
  const std::string nan = std::string(kPwz) + "MustBeNotNaN", finite = std::string(kPwz) + "MustBeFinite";
  // clang-format off
  const Outcome cases[] = {
      {"Positive", 0, kRange, kAbove0},                {"Positive", -kInf, kRange, kFiniteAbove0},
      {"Positive", kNaN, kRange, kFiniteAbove0},       {"PositiveInteger", 2.5, kRange, "Value should be an integer"},
      {"PositiveInteger", -2.5, kRange, kAbove0},      {"PositiveInteger", kInf, kRange, kFiniteAbove0},
      {"ZeroToOne", -0.0, "", nullptr},                {"ZeroToOne", 1, "", nullptr},
      {"ZeroToOne", 1.0000001, kRange, kZeroToOne},    {"ZeroToOne", kNaN, kRange, kZeroToOne},
      {"LightingStrength", 1.0000001, kRange, kBetween}, {"LightingStrength", kInf, kRange, kBetween},
      {"NoNaN", kInf, "", nullptr},                    {"NoNaN", kNaN, kRange, "Value should be a valid number"},
      {"PositiveWithZero", -0.0, "", nullptr},         {"PositiveWithZero", kNaN, nan, "Value must not be NaN."},
      {"PositiveWithZero", -kInf, finite, "Value must be finite."},
      {"PositiveWithZero", -1, std::string(kPwz) + "MustBeNotNegative", "Value must be greater than or equal to 0."},
  };
  // clang-format on
  for (const Outcome& c : cases) expect(c, "any", COSValue(zxCreateDoubleScalar(c.value)));
}

// Per type: its default, which an empty slot reads back as, and the texts of refusing an array that
// is not a numeric scalar and text that is not one number.
TEST_F(ConstrainedScalars, AnEmptySlotReadsBackAsTheDefaultAndRefusalsHaveTheirTexts) {
  constexpr const char* kNotScalar = "Value not a numeric scalar";
  constexpr const char* kPwzText = "Value must be a numeric scalar.";
  const struct {
    const char* type;
    double defaultValue;
    const char *notScalarText, *badTextText;
  } types[] = {{"Positive", 1, kNotScalar, kAbove0},        {"PositiveInteger", 1, kNotScalar, kAbove0},
               {"PositiveWithZero", 0, kPwzText, kPwzText}, {"ZeroToOne", 1, kNotScalar, kBetween},
               {"NoNaN", 0, kNotScalar, kAbove0},           {"LightingStrength", 0, kNotScalar, kBetween}};
  for (const auto& t : types) {
    SCOPED_TRACE(t.type);
    const zxArray* empty = conversion("any", t.type).to(COSValue()).as<const zxArray>();
    EXPECT_TRUE(zxIsDouble(empty) && zxIsScalar(empty));
    EXPECT_EQ(zxGetScalar(empty), t.defaultValue);
    EXPECT_TRUE(conversion("any", t.type).from(COSValue()).isEmpty());
    EXPECT_TRUE(conversion("asciiString", t.type).from(COSValue()).isEmpty());
    try {
      conversion("any", t.type).from(COSValue(zxCreateLogicalScalar(true)));
      ADD_FAILURE() << "accepted";
    } catch (const fl::except::IMsgIDException& error) {
      EXPECT_EQ(error.get_message_text(), t.notScalarText);
    }
    try {
      conversion("asciiString", t.type).from(COSValue("1 2"));
      ADD_FAILURE() << "accepted";
    } catch (const fl::except::IMsgIDException& error) {
      EXPECT_EQ(error.get_message_text(), t.badTextText);
    }
  }
  expect({"Positive", 0, kRange, kAbove0}, "asciiString", COSValue("0"));  // a range fault keeps its identifier
  expect({"ZeroToOne", 0.5, "", nullptr}, "asciiString", COSValue("[0.5]"));
}

// Every type writes its number as the standard stream insertion does: six significant digits, the
// exponent with a sign and two digits, infinities in lower case.
TEST_F(ConstrainedScalars, TextsAreTheStreamInsertionOfTheNumber) {
  const struct {
    const char* type;
    const char* in;
    const char* out;
  } cases[] = {
      {"Positive", "123456789", "1.23457e+08"},
      {"Positive", "1e300", "1e+300"},
      {"Positive", "0.0000001", "1e-07"},
      {"PositiveInteger", "1000000", "1e+06"},
      {"PositiveWithZero", "0.123456789", "0.123457"},
      {"ZeroToOne", "0.5", "0.5"},
      {"LightingStrength", "1", "1"},
      {"NoNaN", "-2.5", "-2.5"},
      {"NoNaN", "-Inf", "-inf"},
      {"NoNaN", "Inf", "inf"},
      {"NoNaN", "-123456.5", "-123456"},
      {"NoNaN", "-0", "-0"},
  };
  for (const auto& c : cases) {
    const COSValue value = conversion("asciiString", c.type).from(COSValue(c.in));
    const COSValue text = conversion("asciiString", c.type).to(value);
    EXPECT_STREQ(text.as<const char>(), c.out) << c.type << " " << c.in;
    for (const COSValue made : {text, value}) utFree(made.pointer());
  }
}

template <class T>
concept PublicErrorMessageCheck = requires(ErrorMessage* err) {
  T::isValid(0.0, err);
};
static_assert(PublicErrorMessageCheck<Positive> && !PublicErrorMessageCheck<LightingStrength>);

TEST_F(ConstrainedScalars, IsValidReportsTheFirstFailureWithoutRaising) {
  ErrorMessage err;
  EXPECT_TRUE(PositiveInteger::isValid(4, &err));
  EXPECT_TRUE(err.id.empty() && err.text.empty());
  EXPECT_FALSE(PositiveInteger::isValid(-0.5, &err));
  EXPECT_EQ(err.id + " " + err.text, std::string(kRange) + " " + kAbove0);
  EXPECT_FALSE(ZeroToOne::isValid(kNaN, nullptr));
  boost::exception_ptr slot;
  EXPECT_TRUE(PositiveWithZero::isValid(0, slot));
  EXPECT_FALSE(slot);
  EXPECT_FALSE(PositiveWithZero::isValid(kInf, slot));
  ASSERT_TRUE(slot);
  EXPECT_THAT([&] { boost::rethrow_exception(slot); }, orbtest::RaisesId(std::string(kPwz) + "MustBeFinite"));
}

}  // namespace
