// The constrained numeric scalars through their registered conversions: check order, identifiers and
// texts, refused arrays and texts, defaults, and the two isValid forms.
#include "datatype/scalars/constrained_scalars.h"

#include <boost/exception_ptr.hpp>
#include <cstdint>
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
constexpr const char* kNotNaN = "Korvax:datatypes:PositiveWithZeroDataType:MustBeNotNaN";
constexpr const char* kFinite = "Korvax:datatypes:PositiveWithZeroDataType:MustBeFinite";
constexpr const char* kNotNegative = "Korvax:datatypes:PositiveWithZeroDataType:MustBeNotNegative";

// A conversion's outcome: accepted (id null) reading back as value, or refused with id and text.
struct Outcome {
  const char* type;
  double value;
  const char* id;
  const char* text;
};

class ConstrainedScalars : public orbtest::DataTypeTest {
 protected:
  static objsys::COSNameID fullName(const char* type) {
    return objsys::COSNameID(std::string("korvax.graphics.datatype.") + type);
  }
  static objsys::COSTypeConversion& arrays(const char* type) {
    return *objsys::COSTypeRepository::getConversion("any", fullName(type));
  }
  static objsys::COSTypeConversion& texts(const char* type) {
    return *objsys::COSTypeRepository::getConversion("asciiString", fullName(type));
  }
  static double readBack(const char* type, COSValue value) {
    return zxGetScalar(arrays(type).to(value).as<const zxArray>());
  }

  static void expectOutcome(const Outcome& want, const std::function<COSValue()>& convert) {
    try {
      const COSValue value = convert();
      EXPECT_EQ(want.id, nullptr) << "accepted";
      EXPECT_EQ(readBack(want.type, value), want.value);
      objsys::COSTypeRepository::getType(fullName(want.type))->destroy(value);
    } catch (const fl::except::IMsgIDException& error) {
      ASSERT_NE(want.id, nullptr) << error.get_error_id() << ": " << error.get_message_text();
      EXPECT_STREQ(error.get_error_id(), want.id);
      EXPECT_EQ(error.get_message_text(), want.text);
    }
  }
  static void expectFromArray(const Outcome& want, zxArray* array) {
    expectOutcome(want, [&] { return arrays(want.type).from(COSValue(array)); });
  }
  static void expectFromText(const Outcome& want, const char* text) {
    expectOutcome(want, [&] { return texts(want.type).from(COSValue(text)); });
  }
};

TEST_F(ConstrainedScalars, ChecksRunInOrderWithTheirIdentifiersAndTexts) {
  // clang-format off
  const Outcome cases[] = {
      {"Positive", 2, nullptr, nullptr},               {"Positive", 0, kRange, kAbove0},
      {"Positive", -kInf, kRange, kFiniteAbove0},      {"Positive", kNaN, kRange, kFiniteAbove0},
      {"PositiveInteger", 3, nullptr, nullptr},        {"PositiveInteger", 2.5, kRange, "Value should be an integer"},
      {"PositiveInteger", -2.5, kRange, kAbove0},      {"PositiveInteger", kInf, kRange, kFiniteAbove0},
      {"ZeroToOne", -0.0, nullptr, nullptr},           {"ZeroToOne", 1, nullptr, nullptr},
      {"ZeroToOne", 1.0000001, kRange, kZeroToOne},    {"ZeroToOne", kNaN, kRange, kZeroToOne},
      {"LightingStrength", 0, nullptr, nullptr},       {"LightingStrength", 1.0000001, kRange, kBetween},
      {"LightingStrength", kInf, kRange, kBetween},    {"NoNaN", kInf, nullptr, nullptr},
      {"NoNaN", kNaN, kRange, "Value should be a valid number"},
      {"PositiveWithZero", -0.0, nullptr, nullptr},    {"PositiveWithZero", kNaN, kNotNaN, "Value must not be NaN."},
      {"PositiveWithZero", -kInf, kFinite, "Value must be finite."},
      {"PositiveWithZero", -1, kNotNegative, "Value must be greater than or equal to 0."},
  };
  // clang-format on
  for (const Outcome& c : cases) {
    SCOPED_TRACE(std::string(c.type) + " " + std::to_string(c.value));
    expectFromArray(c, zxCreateDoubleScalar(c.value));
  }
}

// Per type: its default and what it raises for an array that is not a numeric scalar and for text
// that is not one number (identifiers after "Korvax:datatypes:").
struct TypeRow {
  const char* type;
  double defaultValue;
  const char *notScalarId, *notScalarText, *badTextId, *badTextText;
};
constexpr const char* kNotScalar = "Value not a numeric scalar";
constexpr const char* kPwzText = "Value must be a numeric scalar.";
constexpr const char* kPwzId = "PositiveWithZeroDataType:MustBeANumericScalar";
const TypeRow kTypes[] = {
    {"Positive", 1, "invalidPositive", kNotScalar, "invalidValuePositive", kAbove0},
    {"PositiveInteger", 1, "invalidPositiveInteger", kNotScalar, "invalidValuePositiveInteger", kAbove0},
    {"PositiveWithZero", 0, kPwzId, kPwzText, kPwzId, kPwzText},
    {"ZeroToOne", 1, "invalidZeroToOne", kNotScalar, "invalidValueZeroToOne", kBetween},
    {"NoNaN", 0, "invalidNoNaN", kNotScalar, "invalidValueNoNaN", kAbove0},
    {"LightingStrength", 0, "invalidLightingStrength", kNotScalar, "invalidValue_0_1", kBetween},
};
std::string datatypesId(const char* leaf) { return std::string("Korvax:datatypes:") + leaf; }

TEST_F(ConstrainedScalars, EveryRowIsCoveredAndAnEmptySlotReadsBackAsItsDefault) {
#define ORB_CONSTRAINED_SCALAR(Name, ...) #Name,
  const std::string rows[] = {
#include "datatype/scalars/constrained_scalars.def"
  };
  ASSERT_EQ(std::size(rows), std::size(kTypes));
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    const TypeRow& t = kTypes[i];
    SCOPED_TRACE(t.type);
    EXPECT_EQ(rows[i], t.type);
    const zxArray* empty = arrays(t.type).to(COSValue()).as<const zxArray>();
    EXPECT_TRUE(zxIsDouble(empty) && zxIsScalar(empty));
    EXPECT_EQ(zxGetScalar(empty), t.defaultValue);
    EXPECT_EQ(readBack(t.type, objsys::COSTypeRepository::getType(fullName(t.type))->getDefaultValue()),
              t.defaultValue);
    EXPECT_TRUE(arrays(t.type).from(COSValue()).isEmpty());
    EXPECT_TRUE(texts(t.type).from(COSValue()).isEmpty());
  }
}

TEST_F(ConstrainedScalars, OnlyNumericScalarsOrOneNumberOfTextAreAccepted) {
  for (const TypeRow& t : kTypes) {
    SCOPED_TRACE(t.type);
    for (zxArray* array : {zxCreateDoubleMatrix(1, 2, zxREAL), zxCreateString("1"), zxCreateLogicalScalar(true),
                           zxCreateCellMatrix(1, 1)}) {
      SCOPED_TRACE(zxGetClassName(array));
      expectFromArray({t.type, 0, datatypesId(t.notScalarId).c_str(), t.notScalarText}, array);
    }
    for (const char* text : {"abc", "1 2", ""}) {
      SCOPED_TRACE(std::string("'") + text + "'");
      expectFromText({t.type, 0, datatypesId(t.badTextId).c_str(), t.badTextText}, text);
    }
  }
  zxArray* int8 = zxCreateNumericMatrix(1, 1, zxINT8_CLASS, zxREAL);
  *static_cast<std::int8_t*>(zxGetWritableData(int8)) = -1;
  expectFromArray({"NoNaN", -1, nullptr, nullptr}, int8);
  zxArray* single = zxCreateNumericMatrix(1, 1, zxSINGLE_CLASS, zxREAL);
  *static_cast<float*>(zxGetWritableData(single)) = 0.5f;
  expectFromArray({"ZeroToOne", 0.5, nullptr, nullptr}, single);
  expectFromText({"Positive", 0, kRange, kAbove0}, "0");  // a range fault keeps its own identifier
  expectFromText({"ZeroToOne", 0.5, nullptr, nullptr}, "[0.5]");
}

// The text form is the shortest that reads back as the same number, however many digits that takes.
TEST_F(ConstrainedScalars, TextsReadBackAsTheSameNumber) {
  const struct {
    const char* type;
    const char* in;
    const char* out;
  } cases[] = {
      {"ZeroToOne", "0.123456789012345", "0.123456789012345"}, {"Positive", "1e300", "1e+300"},
      {"PositiveInteger", "[123456789]", "123456789"},          {"NoNaN", "-Inf", "-Inf"},
      {"LightingStrength", "0.1", "0.1"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.type) + " " + c.in);
    const COSValue value = texts(c.type).from(COSValue(c.in));
    const COSValue text = texts(c.type).to(value);
    EXPECT_STREQ(text.as<const char>(), c.out);
    const COSValue again = texts(c.type).from(text);
    EXPECT_EQ(*again.as<const double>(), *value.as<const double>());
    for (const COSValue made : {text, again, value}) utFree(made.pointer());
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
  EXPECT_EQ(err.id, kRange);
  EXPECT_EQ(err.text, kAbove0);
  EXPECT_FALSE(ZeroToOne::isValid(kNaN, nullptr));

  boost::exception_ptr slot;
  EXPECT_TRUE(PositiveWithZero::isValid(0, slot));
  EXPECT_FALSE(slot);
  EXPECT_FALSE(PositiveWithZero::isValid(kInf, slot));
  ASSERT_TRUE(slot);
  EXPECT_THAT([&] { boost::rethrow_exception(slot); }, orbtest::RaisesId(kFinite));
}

}  // namespace
