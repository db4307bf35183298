// MeshAlpha's value rules and its array and string conversions.
#include "datatype/color/mesh_alpha.h"

#include <string>

#include "../support.h"
#include "../user_view.h"

namespace {

using namespace graphics::datatype;
using objsys::COSValue;
using userview::setting;

constexpr const char* kOutsideRange = "error: Korvax:orb:dt_conv:Matrix_to_Real:ValueOutsideRange";
constexpr const char* kNotANumber = "error: Korvax:orb:dt_conv:Matrix_to_Real:ExpectedNumeric1";

class MeshAlphaConversions : public orbtest::DataTypeTest {};

TEST_F(MeshAlphaConversions, ArraysGiveModesOrNumbersOfAnyNumericClassInTheUnitRange) {
  const struct {
    const char* literal;
    const char* seen;
  } cases[] = {
      {"'interp'", "'interp' | interp"},
      {"' TEXT '", "'texturemap' | texturemap"},  // any case, trimmed
      {"'0.25'", "0.25 | 0.25"},
      {"single(0.75)", "0.75 | 0.75"},
      {"'0.5abc'", "0.5 | 0.5"},  // a stream reads the leading number and stops, deliberately
      {"1.0000001", kOutsideRange},
      {"int8(-1)", kOutsideRange},  // read by value, not as a byte
      {"'alpha'", kNotANumber},     // the explicit style's own name is no number
      {"''", kNotANumber},
  };
  for (const auto& c : cases) EXPECT_EQ(setting("MeshAlpha", c.literal), c.seen) << c.literal;
  // A NUL would cut the text short and leave "0.5".
  EXPECT_THAT([] { MeshAlphaMC().from(COSValue(zxCreateStringFromUTF16(u"0.5\0x", 5))); },
              orbtest::RaisesId("Korvax:orb:dt_conv:Matrix_to_Real:ExpectedNumeric1"));
  EXPECT_TRUE(MeshAlphaMC().from(COSValue()).isEmpty());
  EXPECT_EQ(cmdlang::writeLiteral(MeshAlphaMC().to(COSValue()).as<const zxArray>()), "[]");
}

TEST_F(MeshAlphaConversions, EqualityIgnoresTheAlphaOfDrawingModes) {
  EXPECT_EQ(MeshAlpha(MeshAlphaStyle::interp, 0.2), MeshAlpha(MeshAlphaStyle::interp, 0.9));
  EXPECT_FALSE(MeshAlpha(0.2) == MeshAlpha(0.9));
  EXPECT_FALSE(MeshAlpha(MeshAlphaStyle::flat, 1.0) == MeshAlpha(1.0));
}

}  // namespace
