// Tests of the class system: names, the repository, packages, its own types, object arrays and
// their references, numeric handles, and graphics objects without any registered type.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "arraylib/zxarray.h"
#include "arraylib/zxerror.h"
#include "objsys/builtin_types.h"
#include "objsys/cos_package.h"
#include "objsys/cos_type_conversion.h"
#include "objsys/graphics_objects.h"
#include "objsys/handles.h"
#include "objsys/object_arrays.h"
#include "utillib/ut.h"

namespace {

using namespace objsys;

class NamedType : public COSDataType {
 public:
  const char* getDeclarationName() const override { return "Thing"; }
  const char* getName() const override { return "Thing"; }
  COSValue getDefaultValue() const override { return COSValue(); }
  bool isEqual(COSValue a, COSValue b) const override { return a == b; }
  COSValue copy(COSValue value) override { return value; }
  void destroy(COSValue) const override {}
};

struct NoConversion : COSTypeConversion {
  COSValue to(COSValue value) const override { return value; }
  COSValue from(COSValue value) const override { return value; }
};

struct Info : COSPackageInfo {
  explicit Info(const char* text) : name(text) {}
  const char* getName() const override { return name; }
  const char* getDescription() const override { return ""; }
  const char* getDetails() const override { return ""; }
  const char* name;
};

struct Thing : COSInterface {
  const char* getClassName() const override { return "test.Thing"; }
};

TEST(COSNameID, EqualTextsAreOneInternedName) {
  EXPECT_EQ(COSNameID("korvax.graphics").c_str(), COSNameID(std::string("korvax.") + "graphics").c_str());
  EXPECT_FALSE(COSNameID("a") == COSNameID("b"));
}

TEST(COSTypeRepository, ConversionsAreFoundByTheirPairReplacedAndRemoved) {
  static NoConversion first, second;
  COSTypeRepository::addConversion("test.source", "test.target", &first);
  EXPECT_EQ(COSTypeRepository::getConversion("test.source", "test.target"), &first);
  EXPECT_EQ(COSTypeRepository::getConversion("test.target", "test.source"), nullptr) << "pairs are ordered";
  COSTypeRepository::addConversion("test.source", "test.target", &second);
  EXPECT_EQ(COSTypeRepository::getConversion("test.source", "test.target"), &second);
  COSTypeRepository::removeConversion("test.source", "test.target");
  EXPECT_EQ(COSTypeRepository::getConversion("test.source", "test.target"), nullptr);
}

TEST(COSPackage, SubPackagesHaveDottedFullNamesAndTheirTypesAreRegisteredByFullName) {
  COSPackage* top = COSPackage::addPackage(new Info("testtop"));
  COSPackage* child = top->addSubPackage(new Info("child"));
  ASSERT_NE(child, nullptr);
  EXPECT_EQ(child->getFullName(), "testtop.child");
  EXPECT_EQ(COSPackage::getPackage("testtop.child"), child);
  EXPECT_EQ(top->addSubPackage(new Info("child")), child) << "adding a package twice keeps the first";
  EXPECT_EQ(top->getSubPackages().size(), 1u);
  EXPECT_EQ(top->addSubPackage(nullptr), nullptr);

  static NamedType type;
  child->addDataType(&type);
  EXPECT_EQ(COSTypeRepository::getType("testtop.child.Thing"), &type);
  EXPECT_EQ(COSTypeRepository::getType("Thing"), nullptr) << "package types are not global";
}

TEST(BuiltinTypes, AnyToTextGivesTheCanonicalTextAndBack) {
  registerBuiltinTypes();
  zx::CallFrame frame;
  const COSTypeConversion* text = COSTypeRepository::getConversion("any", "asciiString");
  ASSERT_NE(text, nullptr);
  zxArray* row = zxCreateDoubleMatrix(1, 3, zxREAL);
  zxGetWritablePr(row)[1] = 1;
  zxGetWritablePr(row)[2] = 0.5;
  const COSValue written = text->from(COSValue(row));
  EXPECT_STREQ(written.as<const char>(), "[0 1 0.5]");
  utFree(written.pointer());
  EXPECT_TRUE(text->from(COSValue()).isEmpty());

  const COSValue back = text->to(COSValue("abc"));
  char* chars = zxArrayToString(back.as<const zxArray>());
  EXPECT_STREQ(chars, "abc");
  zxFree(chars);
  AnyDataType::instance()->destroy(back);
}

TEST(BuiltinTypes, AnyValuesAreSharedPersistentCopies) {
  registerBuiltinTypes();
  AnyDataType& any = *AnyDataType::instance();
  EXPECT_EQ(COSTypeRepository::getType("any"), &any);
  COSValue held;
  {
    zx::CallFrame frame;
    zxArray* source = zxCreateDoubleScalar(4);
    held = any.valueFromArray(source);
    EXPECT_EQ(zxGetPr(AnyDataType::arrayOf(held)), zxGetPr(source)) << "no element copy";
  }
  EXPECT_EQ(zxGetScalar(AnyDataType::arrayOf(held)), 4.0) << "the value outlives the frame";
  const COSValue copy = any.copy(held);
  EXPECT_TRUE(any.isEqual(held, copy));
  any.destroy(copy);
  any.destroy(held);
}

TEST(ObjectArrays, ElementsHoldOneReferenceEachAndCopiesShareIt) {
  const std::size_t live = COSInterface::liveCount();
  auto* thing = new Thing();
  {
    const COSInterfacePtr held(thing);
    zxArray* scalar = omCreateOBJSYSScalar(thing);
    EXPECT_EQ(thing->referenceCount(), 2);
    EXPECT_STREQ(zxGetClassName(scalar), "test.Thing");
    EXPECT_TRUE(omIsOBJSYS(scalar));
    zxArray* external = objsysConvertArrayToExternal(scalar);
    zxDestroyArray(scalar);
    EXPECT_EQ(omGetArrayElement(external, 0).get(), thing);
    EXPECT_FALSE(omGetArrayElement(external, 1));
    zxDestroyArray(external);
    EXPECT_EQ(thing->referenceCount(), 1);
  }
  EXPECT_EQ(COSInterface::liveCount(), live);
}

TEST(ObjectArrays, OnlyTheClassSystemsObjectArraysAreRecognised) {
  zxArray* empty = omCreateOBJSYSEmpty(nullptr);
  EXPECT_STREQ(zxGetClassName(empty), kPlaceholderClassName);
  EXPECT_TRUE(zxIsEmpty(empty) && omIsOBJSYS(empty));
  const zxSize one[2] = {1, 1};
  zxArray* foreign = zxCreateObjectArray("test.Thing", 2, one, nullptr);
  zxArray* number = zxCreateDoubleScalar(1);
  for (const zxArray* array : {static_cast<zxArray*>(nullptr), foreign, number}) {
    EXPECT_FALSE(omIsOBJSYS(array) || omGetArrayElement(array, 0));
  }
  for (zxArray* array : {empty, foreign, number}) zxDestroyArray(array);
}

TEST(ObjectArrays, TheAnyTypeListsObjectsInsideCellsAndStructs) {
  const COSInterfacePtr first(new Thing()), second(new Thing());
  zxArray* cell = zxCreateCellMatrix(1, 3);
  zxSetCell(cell, 0, omCreateOBJSYSScalar(first.get()));
  const char* field = "f";
  zxArray* record = zxCreateStructMatrix(1, 1, 1, &field);
  zxSetField(record, 0, "f", omCreateOBJSYSScalar(second.get()));
  zxSetCell(cell, 1, record);
  zxSetCell(cell, 2, zxCreateDoubleScalar(3));
  AnyDataType& any = *AnyDataType::instance();
  const COSValue value = any.valueFromArray(cell);
  EXPECT_TRUE(any.canContainInterfaces());
  COSEnumerationRef objects(any.getInterfaces(value));
  ASSERT_TRUE(objects->hasMoreElements());
  EXPECT_EQ(objects->nextElement().as<COSInterface>(), first.get());
  EXPECT_EQ(objects->nextElement().as<COSInterface>(), second.get());
  EXPECT_FALSE(objects->hasMoreElements());
  COSEnumerationRef arrays(any.getKXArrays(value));
  EXPECT_EQ(arrays->nextElement().as<const zxArray>(), AnyDataType::arrayOf(value));
  any.destroy(value);
  zxDestroyArray(cell);
}

// Figures take the lowest free whole number, other objects the next free half; freed numbers are
// taken again.
TEST(HandleTable, FiguresTakeTheLowestFreeNumberOtherObjectsANewFraction) {
  HandleTable table;
  const COSInterfacePtr a(new Thing()), b(new Thing()), c(new Thing()), d(new Thing());
  const double added[] = {table.add(a.get(), HandleKind::Integer), table.add(b.get(), HandleKind::Fraction),
                          table.add(c.get(), HandleKind::Integer), table.add(d.get(), HandleKind::Fraction)};
  EXPECT_THAT(added, ::testing::ElementsAre(1, 0.5, 2, 1.5));
  table.remove(1);
  table.remove(0.5);
  for (const double gone : {1.0, 0.5, std::nan("")}) EXPECT_FALSE(table.find(gone));
  EXPECT_EQ(table.find(2).get(), c.get());
  EXPECT_EQ(table.handleOf(d.get()), 1.5);
  EXPECT_EQ(table.add(a.get(), HandleKind::Integer), 1);
  EXPECT_EQ(table.add(b.get(), HandleKind::Fraction), 2.5);
  EXPECT_EQ(table.handles(), (std::vector<double>{1, 1.5, 2, 2.5}));
}

// With no data type registered an object has no properties, but it still lives, dies and is found.
TEST(GraphicsObjectsAlone, ObjectsWithoutRegisteredTypesHaveNoPropertiesYet) {
  const std::size_t live = COSInterface::liveCount();
  GraphicsObject* figure = GraphicsObject::create("figure");
  EXPECT_TRUE(figure->propertyNames().empty());
  EXPECT_EQ(GraphicsObject::fromHandle(figure->handle()), figure);
  EXPECT_THROW(figure->get("Color"), zx::HostError);
  EXPECT_THROW(GraphicsObject::create("teapot"), zx::HostError);
  figure->deleteObject();
  EXPECT_EQ(COSInterface::liveCount(), live);
}

}  // namespace
