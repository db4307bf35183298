// Tests of the class system's objects: object arrays and their references, numeric handles, the
// "any" type's object listing, and graphics objects without any registered type.
#include <gtest/gtest.h>

#include <cmath>

#include "arraylib/zxerror.h"
#include "objsys/builtin_types.h"
#include "objsys/graphics_objects.h"
#include "objsys/handles.h"
#include "objsys/object_arrays.h"

namespace {

using namespace objsys;

class Thing : public COSInterface {
 public:
  const char* getClassName() const override { return "test.Thing"; }
};

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
  EXPECT_TRUE(zxIsEmpty(empty));
  EXPECT_TRUE(omIsOBJSYS(empty));
  const zxSize one[2] = {1, 1};
  zxArray* foreign = zxCreateObjectArray("test.Thing", 2, one, nullptr);
  zxArray* number = zxCreateDoubleScalar(1);
  for (const zxArray* array : {static_cast<const zxArray*>(nullptr), static_cast<const zxArray*>(foreign),
                               static_cast<const zxArray*>(number)}) {
    EXPECT_FALSE(omIsOBJSYS(array));
    EXPECT_FALSE(omGetArrayElement(array, 0));
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

TEST(HandleTable, FiguresTakeTheLowestFreeNumberOtherObjectsANewFraction) {
  HandleTable table;
  const COSInterfacePtr a(new Thing()), b(new Thing()), c(new Thing()), d(new Thing());
  struct Step {
    COSInterface* object;
    HandleKind kind;
    double handle;
  };
  const Step kSteps[] = {{a.get(), HandleKind::Integer, 1},
                         {b.get(), HandleKind::Fraction, 0.5},
                         {c.get(), HandleKind::Integer, 2},
                         {d.get(), HandleKind::Fraction, 1.5}};
  for (const Step& step : kSteps) EXPECT_EQ(table.add(step.object, step.kind), step.handle);
  table.remove(1);
  table.remove(0.5);
  EXPECT_FALSE(table.find(1));
  EXPECT_FALSE(table.find(0.5));
  EXPECT_FALSE(table.find(std::nan("")));
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
