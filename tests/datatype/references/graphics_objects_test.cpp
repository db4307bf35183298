// The host's graphics objects on the library's types: property slots that refuse without change,
// parents and children, deletion, and reference counts that balance.
#include "objsys/graphics_objects.h"

#include <string>
#include <tuple>

#include "../support.h"
#include "cmdlanglib/literal.h"
#include "foundationlib/i18n/catalog.h"
#include "objsys/cos_package.h"
#include "objsys/handles.h"
#include "objsys/object_arrays.h"

namespace {

using objsys::COSValue;
using objsys::GraphicsObject;
using orbtest::RaisesId;

class GraphicsObjects : public orbtest::DataTypeTest {
 protected:
  void SetUp() override { liveBefore = objsys::COSInterface::liveCount(); }
  void TearDown() override { EXPECT_EQ(objsys::COSInterface::liveCount(), liveBefore) << "objects leaked"; }
  static void set(GraphicsObject* object, const char* property, const std::string& literal) {
    const gui_objects::ZxArrayPtr array = cmdlang::readLiteral(literal);
    object->set(property, array.get());
  }
  static std::string get(GraphicsObject* object, const char* property) {
    const gui_objects::ZxArrayPtr array(object->get(property));
    return cmdlang::writeLiteral(array.get());
  }
  static std::string handleText(const GraphicsObject* object) { return std::to_string(object->handle()); }
  // A figure holding axes holding a line.
  static std::tuple<GraphicsObject*, GraphicsObject*, GraphicsObject*> makeTree() {
    GraphicsObject* figure = GraphicsObject::create("figure");
    GraphicsObject* axes = GraphicsObject::create("axes");
    GraphicsObject* line = GraphicsObject::create("line");
    set(axes, "Parent", handleText(figure));
    set(line, "Parent", handleText(axes));
    return {figure, axes, line};
  }

  std::size_t liveBefore = 0;
};

// Every registered type, as a property added to one object: a refused assignment leaves the value
// that was there, the very same slot.
TEST_F(GraphicsObjects, EveryRegisteredTypeKeepsItsValueOnAnObjectWhenABadOneIsRefused) {
  GraphicsObject* line = GraphicsObject::create("line");
  int swept = 0;
  for (const objsys::COSDataType* registered :
       objsys::COSPackage::getPackage("korvax.graphics.datatype")->getDataTypes()) {
    const std::string typeName = registered->getName();
    // The color table takes every array: a struct extends it, anything else leaves it as it is.
    if (typeName == "ColorTable") continue;
    SCOPED_TRACE(typeName);
    const std::string property = "Sweep" + typeName;
    line->addProperty(property, typeName);
    objsys::COSDataType& type = line->propertyType(property);
    const COSValue held = line->propertyValue(property);
    const COSValue before = type.copy(held);
    // A Java peer takes every array with a Java form (a struct is a Map); a complex number has none.
    const char* bad = typeName == "JavaPeer" ? "complex(1, 2)" : "struct('bad', 1)";
    try {
      set(line, property.c_str(), bad);
      ADD_FAILURE() << bad << " was stored";
    } catch (const fl::except::IMsgIDException& error) {
      EXPECT_TRUE(fl::i18n::MessageCatalog::instance().find(error.get_error_id()).has_value() ||
                  std::string(error.get_error_id()).rfind("Korvax:", 0) == 0)
          << error.get_error_id();
    }
    EXPECT_EQ(line->propertyValue(property), held);
    EXPECT_TRUE(type.isEqual(line->propertyValue(property), before));
    type.destroy(before);
    ++swept;
  }
  EXPECT_GT(swept, 130);
  EXPECT_THAT([&] { line->addProperty("SweepPositive", "Positive"); }, RaisesId("Korvax:objsys:DuplicateProperty"));
  EXPECT_THAT([&] { line->addProperty("Other", "NoSuchType"); }, RaisesId("Korvax:objsys:NoConversion"));
  line->deleteObject();
}

TEST_F(GraphicsObjects, EveryPropertyKeepsItsValueWhenABadOneIsRefused) {
  for (const std::string& className : GraphicsObject::classNames()) {
    GraphicsObject* object = GraphicsObject::create(className);
    EXPECT_FALSE(object->propertyNames().empty());
    for (const std::string& property : object->propertyNames()) {
      SCOPED_TRACE(className + "." + property);
      objsys::COSDataType& type = object->propertyType(property);
      const COSValue before = type.copy(object->propertyValue(property));
      try {
        set(object, property.c_str(), "struct('bad', 1)");
        ADD_FAILURE() << "a struct was stored";
      } catch (const fl::except::IMsgIDException& error) {
        EXPECT_NE(std::string(error.get_error_id()).rfind("Korvax:", 0), std::string::npos) << error.get_error_id();
      }
      EXPECT_TRUE(type.isEqual(object->propertyValue(property), before));
      type.destroy(before);
    }
    object->deleteObject();
  }
}

TEST_F(GraphicsObjects, PropertiesStoreReadBackAndMatchInAnyCase) {
  GraphicsObject* line = GraphicsObject::create("line");
  set(line, "linewidth", "2");
  EXPECT_EQ(get(line, "LineWidth"), "2");
  EXPECT_THAT([&] { set(line, "LineWidth", "0"); }, RaisesId("Korvax:datatypes:valueOutsideValidRange"));
  EXPECT_EQ(get(line, "LineWidth"), "2");
  EXPECT_THAT([&] { set(line, "NoSuchProperty", "1"); }, RaisesId("Korvax:objsys:UnknownProperty"));
  EXPECT_THAT([] { GraphicsObject::create("teapot"); }, RaisesId("Korvax:objsys:UnknownClass"));
  // A reference held elsewhere keeps the deleted object, which refuses every access.
  const objsys::COSInterfacePtr kept(line);
  line->deleteObject();
  EXPECT_THAT([&] { get(line, "LineWidth"); }, RaisesId("Korvax:objsys:DeletedObject"));
  EXPECT_THAT([&] { set(line, "LineWidth", "1"); }, RaisesId("Korvax:objsys:DeletedObject"));
}

TEST_F(GraphicsObjects, ParentsListTheirChildrenAndRefuseCycles) {
  GraphicsObject *figure, *axes, *line;
  std::tie(figure, axes, line) = makeTree();
  EXPECT_EQ(line->parent(), axes);
  EXPECT_EQ(figure->children(), std::vector<GraphicsObject*>{axes});
  const gui_objects::ZxArrayPtr parent(line->get("Parent"));
  EXPECT_EQ(objsys::omGetArrayElement(parent.get(), 0).get(), axes);

  EXPECT_THAT([&] { set(figure, "Parent", handleText(line)); }, RaisesId("Korvax:objsys:InvalidParent"));
  EXPECT_THAT([&] { set(axes, "Parent", handleText(axes)); }, RaisesId("Korvax:objsys:InvalidParent"));
  EXPECT_THAT([&] { set(line, "Parent", "'figure'"); },
              RaisesId("Korvax:datatypes:handleoremptydatatype:InvalidOrbHandle"));
  EXPECT_EQ(line->parent(), axes);
  EXPECT_EQ(figure->parent(), nullptr);

  // Moving a child and clearing a parent update both sides.
  set(line, "Parent", handleText(figure));
  EXPECT_EQ(figure->children().size(), 2u);
  EXPECT_TRUE(axes->children().empty());
  set(line, "Parent", "[]");
  EXPECT_EQ(line->parent(), nullptr);
  line->deleteObject();
  figure->deleteObject();
}

TEST_F(GraphicsObjects, DeletingAnObjectDeletesItsDescendantsAndFreesTheirHandles) {
  GraphicsObject *figure, *axes, *line;
  std::tie(figure, axes, line) = makeTree();
  const double lineHandle = line->handle();
  const objsys::COSInterfacePtr kept(line);
  figure->deleteObject();
  EXPECT_TRUE(line->isDeleted());
  EXPECT_EQ(GraphicsObject::fromHandle(lineHandle), nullptr);
  GraphicsObject* other = GraphicsObject::create("line");
  EXPECT_THAT([&] { set(other, "Parent", std::to_string(lineHandle)); },
              RaisesId("Korvax:datatypes:handleoremptydatatype:InvalidOrbHandle"));
  other->deleteObject();
}

TEST_F(GraphicsObjects, FiguresAreNumberedAndOtherHandlesAreNeverGivenAgain) {
  GraphicsObject* first = GraphicsObject::create("figure");
  GraphicsObject* second = GraphicsObject::create("figure");
  GraphicsObject* line = GraphicsObject::create("line");
  EXPECT_EQ(second->handle(), first->handle() + 1);
  const double lineHandle = line->handle();
  EXPECT_NE(lineHandle, static_cast<double>(static_cast<long long>(lineHandle)));
  first->deleteObject();
  line->deleteObject();
  GraphicsObject* again = GraphicsObject::create("figure");
  GraphicsObject* newLine = GraphicsObject::create("line");
  EXPECT_EQ(again->handle(), 1.0);
  EXPECT_GT(newLine->handle(), lineHandle);
  for (GraphicsObject* object : {second, again, newLine}) object->deleteObject();
}

TEST_F(GraphicsObjects, CallbacksHoldingObjectsAreReleasedWithTheirOwner) {
  GraphicsObject* figure = GraphicsObject::create("figure");
  GraphicsObject* line = GraphicsObject::create("line");
  const gui_objects::ZxArrayPtr cell(zxCreateCellMatrix(1, 2));
  zxSetCell(cell.get(), 0, zxCreateFunctionHandle("disp"));
  zxSetCell(cell.get(), 1, objsys::omCreateOBJSYSScalar(figure));
  line->set("ButtonDownFcn", cell.get());
  set(figure, "ButtonDownFcn", "{@disp, " + handleText(line) + "}");
  line->deleteObject();
  figure->deleteObject();
}

}  // namespace
