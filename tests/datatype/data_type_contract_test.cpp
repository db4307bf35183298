// The data type contract, through MeshAlpha, where the sweep over every type does not reach: empty
// slots and NaN in equality and comparison, the default's content and the order of possible values.
// (Names, sizes, the shared default and copies of every type are swept in every_type_test.cpp.)
#include <limits>
#include <string>
#include <vector>

#include "datatype/color/mesh_alpha.h"
#include "support.h"
#include "utillib/ut.h"

namespace {

using namespace graphics::datatype;
using objsys::COSValue;

class DataTypeContract : public orbtest::DataTypeTest {
 protected:
  MeshAlphaDataType& type = *MeshAlphaDataType::getType();

  // A block holding a value that no constructor accepts (as a corrupted or foreign value would be).
  COSValue rawValue(int style, double alpha) {
    struct Raw {
      int style;
      double alpha;
    };
    static_assert(sizeof(Raw) == sizeof(MeshAlpha));
    auto* raw = static_cast<Raw*>(utCalloc(1, sizeof(Raw)));
    *raw = {style, alpha};
    return COSValue(raw);
  }
};

TEST_F(DataTypeContract, EmptySlotsCopyToEmptyAndCompareByIdentity) {
  EXPECT_TRUE(type.copy(COSValue()).isEmpty());
  const COSValue half = rawValue(MeshAlphaStyle::alpha, 0.5);
  const COSValue nan = rawValue(MeshAlphaStyle::alpha, std::numeric_limits<double>::quiet_NaN());
  struct Case {
    COSValue a, b;
    bool equal;
  };
  const Case cases[] = {
      {COSValue(), COSValue(), true},
      {COSValue(), half, false},
      {half, COSValue(), false},
      {half, half, true},
      {nan, nan, false},
      {half, rawValue(MeshAlphaStyle::alpha, 0.5), true},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(type.isEqual(c.a, c.b), c.equal);
    EXPECT_EQ(type.compare(c.a, c.b), c.equal ? objsys::cosEqual : objsys::cosUnordered);
  }
  for (const Case& c : cases) {
    if (c.b != half && c.b != nan) type.destroy(c.b);
  }
  type.destroy(half);
  type.destroy(nan);
}

TEST_F(DataTypeContract, TheDefaultIsOpaqueAndPossibleValuesAreTheOfferedModesInOrder) {
  EXPECT_EQ(type.getDefaultValue().as<const MeshAlpha>()->getStyle(), MeshAlphaStyle::alpha);
  EXPECT_EQ(type.getDefaultValue().as<const MeshAlpha>()->getAlpha(), 1.0);
  EXPECT_TRUE(type.isPossibleValuesFinite());
  EXPECT_STREQ(type.getPossibleValuesDescription(), "");
  objsys::COSEnumerationRef values(type.getPossibleValues());
  std::vector<MeshAlphaStyle::value> styles;
  while (values->hasMoreElements()) styles.push_back(values->nextElement().as<const MeshAlpha>()->getStyle());
  EXPECT_EQ(styles, (std::vector<MeshAlphaStyle::value>{MeshAlphaStyle::flat, MeshAlphaStyle::interp,
                                                        MeshAlphaStyle::texturemap}));
}

}  // namespace
