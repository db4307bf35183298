// The shaped array types: which arrays each accepts and the identifier a refusal reports, the equality
// bound, shared-data read-back, the public predicates, and a sweep over every row of the family table.
#include "datatype/arrays/shaped_arrays.h"

#include <cstdint>
#include <string>

#include "../support.h"
#include "../user_view.h"
#include "arraylib/zxrethrow.h"

namespace {

using namespace graphics::datatype;
using objsys::COSValue;
using orbtest::RaisesId;

objsys::COSTypeConversion& arraysOf(const std::string& type) {
  return *objsys::COSTypeRepository::getConversion("any", userview::fullNameOf(type).c_str());
}
objsys::COSTypeConversion& textsOf(const std::string& type) {
  return *objsys::COSTypeRepository::getConversion("asciiString", userview::fullNameOf(type).c_str());
}

// A value made by a type's conversion, destroyed with it.
struct Held {
  Held(const std::string& type, COSValue held)
      : dataType(*objsys::COSTypeRepository::getType(userview::fullNameOf(type).c_str())), value(held) {}
  ~Held() { dataType.destroy(value); }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  const zxArray* array() const { return value.as<const ArrayBase>()->getPtr(); }
  objsys::COSDataType& dataType;
  COSValue value;
};

Held set(const std::string& type, const zxArray* array) { return Held(type, arraysOf(type).from(COSValue(array))); }
Held set(const std::string& type, const char* literal) { return set(type, cmdlang::readLiteral(literal).get()); }

// The identifier a refusal carries, or "" when the type stores the array.
std::string outcome(const std::string& type, const char* literal) {
  const std::string seen = userview::setting(type, literal);
  return seen.starts_with("error: ") ? seen.substr(7) : "";
}

std::string shapeOf(const zxArray* array) {
  std::string text = zxGetClassName(array);
  for (zxSize d = 0; d < zxGetNumberOfDimensions(array); ++d) text += " " + std::to_string(zxGetDimensions(array)[d]);
  return text;
}

class ShapedArrays : public orbtest::DataTypeTest {};

TEST_F(ShapedArrays, AcceptanceAndTheIdentifierOfTheLastFailure) {
  struct Case {
    const char* type;
    const char* literal;
    const char* leaf;  // after "Korvax:orb:shaped_arrays:"; null when accepted
  };
  // clang-format off
  static const Case cases[] = {
      // The uint8 test runs last, so its Type failure replaces every failure of the double test.
      {"ColorMap", "[0 0 0; 1 0.5 NaN]", nullptr},           {"ColorMap", "uint8(zeros(64,3))", nullptr},
      {"ColorMap", "[0 0 2]", "ColorMapType"},               {"ColorMap", "uint8(zeros(64,4))", "ColorMapSize"},
      {"ColorMap", "complex(zeros(64,3),ones(64,3))", "Complex"}, {"ColorMap", "sparse([0 0 1])", nullptr},
      {"ColorOrder", "[0 0 2]", "ColorOrderRange"},          {"ColorOrder", "zeros(0,0)", "ColorOrderSize"},
      // A class failure replaces a shape failure; a mis-shaped array never reaches its values.
      {"ColorOrder", "int8([0 0 1 5])", "ColorOrderType"},   {"ColorOrder", "[0 0 1 5]", "ColorOrderSize"},
      {"AxesView", "[30 -Inf]", "AxesViewSize"},             {"AxesView", "[NaN; 30]", "NaN"},
      {"PrimitiveColorData", "single([0 NaN 1])", "PrimitiveColorDataSize"},
      {"PrimitiveColorData", "single([0 1 1; 0 NaN 1])", "NaN"},
      {"AlphaMap", "zeros(0,0)", "AlphaMapSize"},            {"AlphaMap", "zeros(1,0)", nullptr},
      {"NColorPtr", "[1 1 1.5]", "NColorPtrPredicate"},      {"Curvature", "[0.5 NaN]", "CurvatureRange"},
      {"ImageXYData", "complex([1 64],[1 1])", nullptr},     {"ImageXYData", "-Inf", "Inf"},
      {"DataBounds", "[3 2]", "DataBoundsPredicate"},        {"PatchFaces", "[1 2 NaN; 3 4 5]", nullptr},
      {"PatchFaces", "[0 1 2]", "PatchFacesRange"},
      {"PrimitiveVertexData", "single([0 1 2 3 4; 0 1 2 3 4; 0 1 2 3 -Inf])", "Inf"},
      {"PrimitiveNormalsData", "single([0; 0; Inf])", "PrimitiveNormalsDataRange"},
      // The range over the elements comes before the finite test, so NaN is out of range too.
      {"PrimitiveNormalsData", "single([NaN; 0; 2])", "PrimitiveNormalsDataRange"},
      {"PrimitiveNormalsData", "single([0 0; 0.5 0; 1 -1])", nullptr},
      {"PrimitiveVertexIndices", "uint32([1 0 2])", "PrimitiveVertexIndicesRange"},
      {"PrimitiveVertexIndices", "[1 2 3]", "PrimitiveVertexIndicesType"},
      {"CompositeColorData", "zeros(2,2,4)", "CompositeColorDataSize"}, {"VectorData", "zeros(1,1,5)", nullptr},
      {"Limits", "zeros(0,0)", "LimitsSize"},                {"Limits", "[2 1]", "LimitsPredicate"},
      {"Limits", "[0 Inf]", "LimitsPredicate"},              {"Limits", "uint8([0 255])", nullptr},
      {"LimitsWithInfs", "[-Inf Inf]", nullptr},             {"LimitsWithInfs", "[Inf Inf]", "LimitsWithInfsPredicate"},
      {"Tick", "[-Inf 0 1 2 3 4 5]", nullptr},               {"Tick", "[0 1 2 3 3 4 5]", "TickPredicate"},
      {"Tick", "[1 NaN 2]", "TickPredicate"},                {"Tick", "[-Inf Inf]", "TickPredicate"},
      {"Tick", "zeros(2,2)", "TickSize"},                    {"TickLength", "[-1; 2]", nullptr},
      {"TickLength", "[0.01 NaN]", "NaN"},                   {"TickLength", "[1 2 3]", "TickLengthSize"},
      {"TextPosition", "zeros(2,2)", "TextPositionSize"},
  };
  // clang-format on
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.type) + " = " + c.literal);
    EXPECT_EQ(outcome(c.type, c.literal), c.leaf == nullptr ? "" : std::string("Korvax:orb:shaped_arrays:") + c.leaf);
  }
}

TEST_F(ShapedArrays, EqualityStopsAt32000ElementsAndReadBackSharesTheInput) {
  const auto ramp = [](zxSize count) {
    gui_objects::ZxArrayPtr array(zxCreateDoubleMatrix(1, count, zxREAL));
    for (zxSize i = 0; i < count; ++i) zxGetWritablePr(array.get())[i] = static_cast<double>(i);
    return array;
  };
  for (const zxSize count : {32000, 32001}) {
    const Held a = set("Tick", ramp(count).get());
    const Held b = set("Tick", ramp(count).get());
    EXPECT_EQ(a.dataType.isEqual(a.value, b.value), count == 32000) << count;
  }
  const Held nan = set("ColorMap", "[0 NaN 1]");
  EXPECT_FALSE(nan.dataType.isEqual(nan.value, nan.value));

  const gui_objects::ZxArrayPtr input = cmdlang::readLiteral("zeros(256,3)");
  const Held value = set("ColorMap", input.get());
  const gui_objects::ZxArrayPtr readBack(arraysOf("ColorMap").to(value.value).as<zxArray>());
  EXPECT_EQ(zxGetData(value.array()), zxGetData(input.get()));
  EXPECT_EQ(zxGetData(readBack.get()), zxGetData(input.get()));
}

TEST_F(ShapedArrays, PredicatesArePublicInBothForms) {
  const gui_objects::ZxArrayPtr doubles = cmdlang::readLiteral("[0 0 2]");
  boost::exception_ptr failure;
  EXPECT_FALSE(ColorMap::isNormalizedColorMap(doubles.get(), failure));
  EXPECT_THAT([&] { zxReThrowException(failure); }, RaisesId("Korvax:orb:shaped_arrays:ColorMapRange"));
  EXPECT_FALSE(ColorMap::isUINT8ColorMap(doubles.get(), failure));
  EXPECT_THAT([&] { zxReThrowException(failure); }, RaisesId("Korvax:orb:shaped_arrays:ColorMapType"));
  const ColorMap bytes(cmdlang::readLiteral("uint8([0 128 255])").get());
  EXPECT_TRUE(bytes.isUINT8ColorMap());
  EXPECT_FALSE(bytes.isNormalizedColorMap());

  // Wide integers are compared as themselves, not as doubles; equal neighbours pass only where allowed.
  const std::uint64_t wide[] = {std::uint64_t{1} << 63, (std::uint64_t{1} << 63) + 1};
  const float equal[] = {3, 3};
  EXPECT_TRUE(Tick::isIncreasing(wide, 2));
  EXPECT_TRUE(Tick::isIncreasing<double>(nullptr, 5));
  EXPECT_FALSE(Tick::isIncreasing(equal, 2));
  EXPECT_TRUE(DataBounds::isEqualOrIncreasing(equal, 2));
}

// Every row of the family table, so that a new row brings these checks.
struct Member {
  const char* name;
  const shaped::Row& (*row)();
};
constexpr Member kMembers[] = {
#define ORB_SHAPED_ARRAY(T, ...) {#T, &T::row},
#include "datatype/arrays/shaped_arrays.def"
};

TEST_F(ShapedArrays, EveryRowChecksSparseAndComplexAsItsRowSaysAndReadsBackEmptyValuesCanonically) {
  const gui_objects::ZxArrayPtr zeroByZero = cmdlang::readLiteral("zeros(0,0)");
  for (const Member& member : kMembers) {
    const std::string name = member.name;
    const std::string own = "Korvax:orb:shaped_arrays:" + name;
    const shaped::Row& row = member.row();
    SCOPED_TRACE(name);
    if (row.checks & shaped::sparseCheck) {
      EXPECT_EQ(outcome(name, "sparse(1)"), "Korvax:orb:shaped_arrays:Sparse");
    }
    const bool complexRefused = outcome(name, "complex(1,1)") == "Korvax:orb:shaped_arrays:Complex";
    EXPECT_EQ(complexRefused, (row.checks & shaped::complexCheck) != 0);

    const Held nothing(name, textsOf(name).from(COSValue("[]")));
    EXPECT_EQ(nothing.array(), nullptr);
    EXPECT_TRUE(textsOf(name).to(nothing.value).isEmpty());
    const gui_objects::ZxArrayPtr none(arraysOf(name).to(nothing.value).as<zxArray>());
    EXPECT_EQ(shapeOf(none.get()), shapeOf(zxCreateNumericMatrix(0, 0, row.parseClass, zxREAL)));
    if (!row.emptyShortcut) {
      EXPECT_EQ(outcome(name, "zeros(0,0)"), own + "Size");
      continue;
    }
    const Held value = set(name, zeroByZero.get());
    const gui_objects::ZxArrayPtr readBack(arraysOf(name).to(value.value).as<zxArray>());
    const shaped::EmptyForm& form = row.emptyForm;
    const zxArray* expected =
        form.canonical ? zxCreateNumericArray(3, form.dims, form.classID, zxREAL) : zeroByZero.get();
    EXPECT_EQ(shapeOf(readBack.get()), shapeOf(expected));
  }
}

}  // namespace
