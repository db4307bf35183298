// MeshAlpha's value rules and its array and string conversions.
#include "datatype/color/mesh_alpha.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "../support.h"
#include "guilib/array_dispatch.h"
#include "utillib/ut.h"

namespace {

using namespace graphics::datatype;
using objsys::COSValue;
using orbtest::RaisesId;

constexpr const char* kOutsideRange = "Korvax:orb:dt_conv:Matrix_to_Real:ValueOutsideRange";
constexpr const char* kExpectedNumeric = "Korvax:orb:dt_conv:Matrix_to_Real:ExpectedNumeric";
constexpr const char* kNotANumber = "Korvax:orb:dt_conv:Matrix_to_Real:ExpectedNumeric1";

class MeshAlphaConversions : public orbtest::DataTypeTest {
 protected:
  MeshAlphaMC arrays;
  MeshAlphaSC texts;

  template <class T>
  zxArray* scalarOf(T number) {
    zxArray* array = zxCreateNumericMatrix(1, 1, gui_objects::classIDOf<T>, zxREAL);
    *static_cast<T*>(zxGetWritableData(array)) = number;
    return array;
  }
  // The value an array gives, or nothing when it is refused.
  MeshAlpha fromArray(zxArray* array) {
    const COSValue value = arrays.from(COSValue(array));
    const MeshAlpha result = *value.as<const MeshAlpha>();
    MeshAlphaDataType::getType()->destroy(value);
    return result;
  }
};

TEST_F(MeshAlphaConversions, ArraysGiveModesAndNumbersOfAnyNumericClass) {
  struct Case {
    const char* name;
    zxArray* array;
    MeshAlphaStyle::value style;
    double alpha;
  };
  const Case cases[] = {
      {"mode name", zxCreateString("interp"), MeshAlphaStyle::interp, 1.0},
      {"abbreviated, any case", zxCreateString(" TEXT "), MeshAlphaStyle::texturemap, 1.0},
      {"number as text", zxCreateString("0.25"), MeshAlphaStyle::alpha, 0.25},
      // A stream reads the leading number and stops; what follows is ignored, deliberately.
      {"number with trailing text", zxCreateString("0.5abc"), MeshAlphaStyle::alpha, 0.5},
      {"first of two numbers", zxCreateString("0.5 0.7"), MeshAlphaStyle::alpha, 0.5},
      {"blanks before the number", zxCreateString("  0.125"), MeshAlphaStyle::alpha, 0.125},
      {"double", zxCreateDoubleScalar(0.5), MeshAlphaStyle::alpha, 0.5},
      {"both ends", zxCreateDoubleScalar(0), MeshAlphaStyle::alpha, 0.0},
      {"single", scalarOf(0.75f), MeshAlphaStyle::alpha, 0.75},
      {"int8 by value", scalarOf<std::int8_t>(1), MeshAlphaStyle::alpha, 1.0},
      {"uint64 zero", scalarOf<std::uint64_t>(0), MeshAlphaStyle::alpha, 0.0},
      {"logical", zxCreateLogicalScalar(true), MeshAlphaStyle::alpha, 1.0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const MeshAlpha value = fromArray(c.array);
    EXPECT_EQ(value.getStyle(), c.style);
    EXPECT_EQ(value.getAlpha(), c.alpha);
  }
  EXPECT_TRUE(arrays.from(COSValue()).isEmpty());
}

TEST_F(MeshAlphaConversions, RefusedArraysRaiseTheirIdentifiers) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  struct Case {
    const char* name;
    zxArray* array;
    const char* id;
  };
  const Case cases[] = {
      {"above 1", zxCreateDoubleScalar(1.5), kOutsideRange},
      {"just above 1", zxCreateDoubleScalar(1.0000001), kOutsideRange},
      {"below 0", zxCreateDoubleScalar(-0.1), kOutsideRange},
      {"NaN", zxCreateDoubleScalar(nan), kOutsideRange},
      {"Inf", zxCreateDoubleScalar(inf), kOutsideRange},
      {"int8 -1 is read as -1", scalarOf<std::int8_t>(-1), kOutsideRange},
      {"1-by-2", zxCreateDoubleMatrix(1, 2, zxREAL), kExpectedNumeric},
      {"empty", zxCreateDoubleMatrix(0, 0, zxREAL), kExpectedNumeric},
      {"1-by-1 cell", zxCreateCellMatrix(1, 1), kExpectedNumeric},
      {"the explicit style's own name", zxCreateString("alpha"), kNotANumber},
      {"neither mode nor number", zxCreateString("opaque"), kNotANumber},
      {"text before the number", zxCreateString("px 0.5"), kNotANumber},
      {"empty text", zxCreateString(""), kNotANumber},
      {"number cut short by a NUL", zxCreateStringFromUTF16(u"0.5\0x", 5), kNotANumber},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_THAT([&] { arrays.from(COSValue(c.array)); }, RaisesId(c.id));
  }
}

TEST_F(MeshAlphaConversions, ValuesReadBackAsArraysAndTexts) {
  struct Case {
    MeshAlpha value;
    const char* text;
  };
  const Case cases[] = {{MeshAlpha(0.5), "0.5"}, {MeshAlpha(MeshAlphaStyle::flat, 1.0), "flat"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const COSValue value = newValueBlock<MeshAlpha>(c.value);
    const COSValue text = texts.to(value);
    EXPECT_STREQ(text.as<const char>(), c.text);
    utFree(text.pointer());
    const zxArray* array = arrays.to(value).as<const zxArray>();
    if (c.value.getStyle() == MeshAlphaStyle::alpha) {
      EXPECT_EQ(zxGetScalar(array), c.value.getAlpha());
    } else {
      EXPECT_TRUE(zxIsChar(array));
    }
    MeshAlphaDataType::getType()->destroy(value);
  }
  const zxArray* empty = arrays.to(COSValue()).as<const zxArray>();
  EXPECT_TRUE(zxIsDouble(empty) && zxGetM(empty) == 0 && zxGetN(empty) == 0);
  EXPECT_TRUE(texts.to(COSValue()).isEmpty());
  EXPECT_TRUE(texts.from(COSValue()).isEmpty());
}

TEST_F(MeshAlphaConversions, EqualityIgnoresTheAlphaOfDrawingModes) {
  EXPECT_EQ(MeshAlpha(MeshAlphaStyle::interp, 0.2), MeshAlpha(MeshAlphaStyle::interp, 0.9));
  EXPECT_FALSE(MeshAlpha(0.2) == MeshAlpha(0.9));
  EXPECT_FALSE(MeshAlpha(MeshAlphaStyle::flat, 1.0) == MeshAlpha(1.0));
}

TEST_F(MeshAlphaConversions, TheConversionsAreRegisteredUnderTheTypesFullName) {
  EXPECT_NE(objsys::COSTypeRepository::getConversion("any", "korvax.graphics.datatype.MeshAlpha"), nullptr);
  EXPECT_NE(objsys::COSTypeRepository::getConversion("asciiString", "korvax.graphics.datatype.MeshAlpha"), nullptr);
}

}  // namespace
