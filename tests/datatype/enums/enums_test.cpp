// The enumeration mechanism and the catalogue of enumerated types: matching, statuses, ordinals,
// errors with their lists of valid values, and warnings.
#include <string>
#include <vector>

#include "../support.h"
#include "../user_view.h"
#include "arraylib/zxarray.h"
#include "datatype/color/mesh_alpha.h"
#include "datatype/enums/enum_types.h"
#include "datatype/enums/enum_value_definitions.h"
#include "utillib/ut.h"

namespace graphics::datatype {
// A type of tests only: its hidden element warns when an array selects it.
class WarningTestEnum : public EnumBase {
 public:
  using EnumBase::EnumBase;
  static constexpr const char* kName = "WarningTestEnum";
  static const EnumTypeInfo& info() {
    static constexpr EnumElement kElements[] = {{"current", 0},
                                                {"legacy", 1, EnumStatus::warned, "Korvax:test:LegacyValue"}};
    static constexpr EnumTypeInfo kInfo = {kName, kElements, 0};
    return kInfo;
  }
};
}  // namespace graphics::datatype
ORB_DEFINE_ENUM_DATA_TYPE(graphics::datatype::WarningTestEnum)

namespace {

using namespace graphics::datatype;
using objsys::COSValue;

class Enumerations : public orbtest::DataTypeTest {
 protected:
  const objsys::COSTypeConversion& textConversion(const std::string& type) {
    return *objsys::COSTypeRepository::getConversion("asciiString", userview::fullNameOf(type).c_str());
  }
  const objsys::COSTypeConversion& arrayConversion(const std::string& type) {
    return *objsys::COSTypeRepository::getConversion("any", userview::fullNameOf(type).c_str());
  }
  // The ordinal the text selects through the type's string conversion, or -1 when refused.
  int ordinalOf(const std::string& type, const char* text) {
    try {
      const COSValue value = textConversion(type).from(COSValue(text));
      const int ordinal = EnumDataTypeBase::ordinalOf(value);
      utFree(value.pointer());
      return ordinal;
    } catch (const fl::except::IMsgIDException& error) {
      EXPECT_STREQ(error.get_error_id(), "Korvax:datatypes:InvalidEnumValue");
      return -1;
    }
  }
  std::string nameOf(const std::string& type, signed char ordinal) {
    const COSValue value = EnumDataTypeBase::makeValue(ordinal);
    const COSValue text = textConversion(type).to(value);
    std::string name = text.isEmpty() ? "(null)" : text.as<const char>();
    utFree(text.pointer());
    utFree(value.pointer());
    return name;
  }
};

TEST_F(Enumerations, TextSelectsExactNamesBeforeUniqueAbbreviations) {
  struct Case {
    const char* type;
    const char* text;
    int ordinal;
  };
  const Case cases[] = {
      {"ActivePosition", "OuterPosition", 1},
      {"ActivePosition", "o", 1},
      {"ActivePosition", " \touterposition  ", 1},
      {"ActivePosition", "p", 0},
      {"ActivePosition", "", -1},
      {"ActivePosition", "outerpositions", -1},
      {"AxesNextPlot", "replace", 1},
      {"AxesNextPlot", "replacec", 2},
      {"AxesNextPlot", "rep", -1},
      {"Units", "p", -1},
      {"Units", "pi", 4},
      {"Units", "Devicepixels", 6},
      {"LineStyle", "-", 0},
      {"FontWeight", "l", 0},
      {"AxisClipping", "3D", 2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.type) + " <- '" + c.text + "'");
    EXPECT_EQ(ordinalOf(c.type, c.text), c.ordinal);
  }
}

TEST_F(Enumerations, OrdinalsNeedNotFollowTheOrderOfAddition) {
  const struct {
    const char* type;
    signed char ordinal;
    const char* name;
  } cases[] = {{"Units", 5, "characters"},
               {"UnitsWithData", 5, "pixels"},
               {"FontWeight", 1, "normal"},
               {"RenderEngineType", 0, "(null)"},
               {"PrimMarkerStyle", 7, "downtriangle"}};
  for (const auto& c : cases) EXPECT_EQ(nameOf(c.type, c.ordinal), c.name) << c.type;
}

TEST_F(Enumerations, HiddenNamesAreAcceptedButNeitherOfferedNorListed) {
  const OrbTypedEnumStringType& units = EnumValueDataType<Units>::getType()->enumType();
  EXPECT_EQ(units.getEnumVisibility("devicepixels"), 1);
  EXPECT_EQ(units.getEnumVisibility("inch"), 0);
  EXPECT_EQ(units.getEnumVisibility("furlongs"), -1);
  EXPECT_TRUE(units.isEnumNameAmbiguous("furlongs")) << "every name that selects nothing counts as ambiguous";
  EXPECT_TRUE(units.isEnumNameAmbiguous("p"));
  EXPECT_FALSE(units.isEnumNameAmbiguous("pi"));
  EXPECT_EQ(units.validValues(), "'inches' | 'centimeters' | 'characters' | 'normalized' | 'points' | 'pixels'");
  EXPECT_EQ(units.getEnumStrings().back(), "devicepixels");
}

TEST_F(Enumerations, RefusalsCarryTheListOfValidValues) {
  const std::string use = " Use one of these values: 'position' | 'outerposition'.";
  const std::string notText = "Value must be a character vector." + use;
  constexpr const char* kColumnsSpellPosition[] = {"psto", "oiin"};
  const struct {
    zxArray* array;
    const char* id;  // after "Korvax:datatypes:"
    std::string message;
  } cases[] = {
      {zxCreateString("middle"), "InvalidEnumValue", "'middle' is not a valid value." + use},
      {zxCreateDoubleScalar(1), "InvalidEnumValueFor", notText},
      {zxCreateString(""), "InvalidValue", "Value must be one of these values: 'position' | 'outerposition'."},
      // Read column by column these would spell "position"; a name is one row of characters.
      {zxCreateCharMatrixFromStrings(2, kColumnsSpellPosition), "InvalidEnumValueFor", notText},
      {zxCreateStringFromUTF16(u"outer\0junk", 10), "InvalidEnumValue", "'outer\\0junk' is not a valid value." + use},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    try {
      arrayConversion("ActivePosition").from(COSValue(c.array));
      ADD_FAILURE() << "accepted";
    } catch (const fl::except::IMsgIDException& error) {
      EXPECT_EQ(error.get_error_id(), std::string("Korvax:datatypes:") + c.id);
      EXPECT_EQ(error.get_message_text(), c.message);
    }
  }
}

TEST_F(Enumerations, AWarningElementWarnsWhenAnArraySelectsItButNotFromText) {
  const EnumValueMC<WarningTestEnum> fromArrays;
  const EnumValueSC<WarningTestEnum> fromTexts;
  zx::clearWarnings();
  EnumValueDataType<WarningTestEnum>::getType()->destroy(fromTexts.from(COSValue("legacy")));
  EXPECT_TRUE(zx::warnings().empty());
  EnumValueDataType<WarningTestEnum>::getType()->destroy(fromArrays.from(COSValue(zxCreateString("leg"))));
  ASSERT_EQ(zx::warnings().size(), 1u);
  EXPECT_EQ(zx::warnings()[0].id, "Korvax:test:LegacyValue");
  EnumValueDataType<WarningTestEnum>::getType()->destroy(fromArrays.from(COSValue(zxCreateString("current"))));
  EXPECT_EQ(zx::warnings().size(), 1u);
  zx::clearWarnings();
}

TEST_F(Enumerations, GeneratedPredicatesTestTheirOwnOrdinal) {
  EXPECT_TRUE(ActivePosition(1).isOuterposition());
  EXPECT_FALSE(ActivePosition(1).isPosition());
  EXPECT_TRUE(LineStyle(3).isDashDot());
  EXPECT_FALSE(MarkerStyle(12) == MarkerStyle(13));
}

TEST_F(Enumerations, StyleEnumerationsMatchByTheSameRule) {
  EXPECT_EQ(MeshAlphaStyle::fromName(" INTERP "), MeshAlphaStyle::interp);
  EXPECT_EQ(MeshAlphaStyle::fromName("a"), MeshAlphaStyle::alpha) << "hidden, yet accepted";
  EXPECT_EQ(MeshAlphaStyle::fromName("x"), std::nullopt);
  EXPECT_EQ(MeshAlphaStyle::enumeration().offeredNames(),
            (std::vector<std::string_view>{"flat", "interp", "texturemap"}));
}

}  // namespace
