// The host's graphics objects on the library's types and the references to them: property slots,
// parents, deletion, reference types, the numeric-handle conversion, balanced counts, and Callback.
#include "objsys/graphics_objects.h"

#include <pthread.h>

#include <cmath>
#include <string>
#include <vector>

#include "../support.h"
#include "cmdlanglib/evaluator.h"
#include "cmdlanglib/literal.h"
#include "datatype/references/callback.h"
#include "datatype/references/handle_or_empty.h"
#include "datatype/references/invalid_double_handle.h"
#include "datatype/references/object_reference_conversion.h"
#include "objsys/builtin_types.h"
#include "objsys/handles.h"
#include "objsys/object_arrays.h"

namespace {

using namespace graphics::datatype;
using objsys::COSInterfacePtr;
using objsys::COSValue;
using objsys::GraphicsObject;
using orbtest::RaisesId;
using ::testing::ElementsAre;

constexpr const char* kInvalid = "Korvax:datatypes:handleoremptydatatype:InvalidOrbHandle";

// What an enumeration lists; it is released here.
template <class T>
std::vector<T*> listed(objsys::COSEnumeration* adopted) {
  objsys::COSEnumerationRef all(adopted);
  std::vector<T*> items;
  while (all->hasMoreElements()) items.push_back(all->nextElement().as<T>());
  return items;
}

// Each test has a figure of its own; every object it makes must be gone when it ends.
class Objects : public orbtest::DataTypeTest {
 protected:
  void TearDown() override {
    figure->deleteObject();
    EXPECT_EQ(objsys::COSInterface::liveCount(), liveBefore) << "objects leaked";
  }
  static void set(GraphicsObject* object, const char* property, const std::string& literal) {
    object->set(property, cmdlang::readLiteral(literal).get());
  }
  static std::string handleText(const GraphicsObject* object) { return std::to_string(object->handle()); }
  // The literal with "H" standing for the handle.
  static gui_objects::ZxArrayPtr literal(std::string text, double handle) {
    if (const auto at = text.find('H'); at != std::string::npos) text.replace(at, 1, std::to_string(handle));
    return cmdlang::readLiteral(text);
  }

  const std::size_t liveBefore = objsys::COSInterface::liveCount();
  GraphicsObject* figure = GraphicsObject::create("figure");
};

// Properties are matched in any case. A refused assignment leaves the very slot that was there; a
// deleted object refuses every access while a reference held elsewhere keeps it.
TEST_F(Objects, PropertiesStoreReadBackAndRefuseWithoutChange) {
  GraphicsObject* line = GraphicsObject::create("line");
  set(line, "linewidth", "2");
  const COSValue held = line->propertyValue("LineWidth");
  EXPECT_THAT([&] { set(line, "LineWidth", "0"); }, RaisesId("Korvax:datatypes:valueOutsideValidRange"));
  EXPECT_EQ(line->propertyValue("LineWidth"), held);
  EXPECT_EQ(cmdlang::writeLiteral(gui_objects::ZxArrayPtr(line->get("LineWidth")).get()), "2");
  EXPECT_THAT([&] { set(line, "NoSuchProperty", "1"); }, RaisesId("Korvax:objsys:UnknownProperty"));
  EXPECT_THAT([] { GraphicsObject::create("teapot"); }, RaisesId("Korvax:objsys:UnknownClass"));
  EXPECT_THAT([&] { line->addProperty("Other", "NoSuchType"); }, RaisesId("Korvax:objsys:NoConversion"));
  line->addProperty("Extra", "Positive");
  EXPECT_THAT([&] { line->addProperty("extra", "Positive"); }, RaisesId("Korvax:objsys:DuplicateProperty"));
  const COSInterfacePtr kept(line);
  line->deleteObject();
  EXPECT_THAT([&] { line->get("LineWidth"); }, RaisesId("Korvax:objsys:DeletedObject"));
  EXPECT_THAT([&] { set(line, "LineWidth", "1"); }, RaisesId("Korvax:objsys:DeletedObject"));
}

// Parents list their children and refuse cycles; deleting an object deletes its descendants. A
// figure's number is given again, another object's handle never is.
TEST_F(Objects, ParentsListTheirChildrenRefuseCyclesAndTakeThemAlongWhenDeleted) {
  GraphicsObject* axes = GraphicsObject::create("axes");
  GraphicsObject* line = GraphicsObject::create("line");
  set(axes, "Parent", handleText(figure));
  set(line, "Parent", handleText(axes));
  EXPECT_EQ(figure->children(), std::vector<GraphicsObject*>{axes});
  const gui_objects::ZxArrayPtr parent(line->get("Parent"));
  EXPECT_EQ(objsys::omGetArrayElement(parent.get(), 0).get(), axes);
  EXPECT_THAT([&] { set(figure, "Parent", handleText(line)); }, RaisesId("Korvax:objsys:InvalidParent"));
  EXPECT_THAT([&] { set(axes, "Parent", handleText(axes)); }, RaisesId("Korvax:objsys:InvalidParent"));
  // Moving a child and clearing a parent update both sides.
  set(line, "Parent", handleText(figure));
  EXPECT_EQ(figure->children().size(), 2u);
  EXPECT_TRUE(axes->children().empty());
  set(line, "Parent", "[]");
  EXPECT_EQ(line->parent(), nullptr);
  set(line, "Parent", handleText(axes));

  const double lineHandle = line->handle();
  EXPECT_NE(lineHandle, std::floor(lineHandle));
  // A value holding the line keeps it once deleted, but its handle is refused from then on.
  const HandleOrEmpty kept{COSInterfacePtr(line)};
  axes->deleteObject();
  EXPECT_TRUE(kept.getCOSReference()->isDeleted());
  EXPECT_TRUE(figure->children().empty());
  EXPECT_EQ(GraphicsObject::fromHandle(lineHandle), nullptr);
  EXPECT_THAT([&] { HandleOrEmpty stale(literal("H", lineHandle).get()); }, RaisesId(kInvalid));
  GraphicsObject* other = GraphicsObject::create("line");
  EXPECT_GT(other->handle(), lineHandle);
  GraphicsObject* second = GraphicsObject::create("figure");
  const double number = second->handle();
  second->deleteObject();
  GraphicsObject* again = GraphicsObject::create("figure");
  EXPECT_EQ(again->handle(), number);
  other->deleteObject();
  again->deleteObject();
}

// A callback holding an object lists it and keeps it alive until the callback's owner is deleted.
// A chain of objects, each the parent of the next, far deeper than a small stack could follow by
// recursion, is deleted from a thread with a 256 KiB stack; the root's figure number is given again.
TEST_F(Objects, ADeepChainIsDeletedOnASmallStack) {
  GraphicsObject* root = GraphicsObject::create("figure");
  const double rootNumber = root->handle();
  GraphicsObject* parent = root;
  for (int i = 0; i < 100000; ++i) {
    GraphicsObject* child = GraphicsObject::create("axes");
    child->set("Parent", gui_objects::ZxArrayPtr(zxCreateDoubleScalar(parent->handle())).get());
    parent = child;
  }
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, 256 * 1024);
  pthread_t thread;
  ASSERT_EQ(pthread_create(
                &thread, &attributes,
                [](void* chainRoot) -> void* {
                  static_cast<GraphicsObject*>(chainRoot)->deleteObject();
                  return nullptr;
                },
                root),
            0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
  EXPECT_EQ(objsys::HandleTable::current().handles().size(), 1U) << "only the fixture's figure is left";
  GraphicsObject* again = GraphicsObject::create("figure");
  EXPECT_EQ(again->handle(), rootNumber) << "a freed figure number is given again";
  again->deleteObject();
}

TEST_F(Objects, CallbacksHoldingObjectsListThemAndReleaseThemWithTheirOwner) {
  GraphicsObject* line = GraphicsObject::create("line");
  const int before = figure->referenceCount();
  {
    const gui_objects::ZxArrayPtr cell(zxCreateCellMatrix(1, 2));
    zxSetCell(cell.get(), 0, zxCreateFunctionHandle("disp"));
    zxSetCell(cell.get(), 1, objsys::omCreateOBJSYSScalar(figure));
    line->set("ButtonDownFcn", cell.get());
    EXPECT_THAT(listed<objsys::COSInterface>(
                    line->propertyType("ButtonDownFcn").getInterfaces(line->propertyValue("ButtonDownFcn"))),
                ElementsAre(figure));
  }
  EXPECT_GT(figure->referenceCount(), before);
  line->deleteObject();
  EXPECT_EQ(figure->referenceCount(), before);
}

// H: the figure's handle; a double array stands for the object its first element is the handle of.
TEST_F(Objects, ArraysGiveTheirObjectNoObjectOrARefusal) {
  for (const char* given : {"[]", "zeros(0,3,'uint8')", "cell(0)", "H", "[H 5 6]", "complex(H, 1)"}) {
    SCOPED_TRACE(given);
    const HandleOrEmpty value(literal(given, figure->handle()).get());
    const bool refersToFigure = std::string(given).find('H') != std::string::npos;
    EXPECT_EQ(value.getCOSReference().get(), refersToFigure ? figure : nullptr);
    EXPECT_TRUE(objsys::omIsOBJSYS(value.getHandle()));
    if (!refersToFigure) {
      EXPECT_STREQ(zxGetClassName(value.getHandle()), objsys::kPlaceholderClassName);
    }
  }
  for (const char* refused : {"'abc'", "true", "int32(1)", "{H}", "struct('a', H)", "123456", "NaN", "-H", "@disp"}) {
    const gui_objects::ZxArrayPtr array = literal(refused, figure->handle());
    EXPECT_THAT([&] { HandleOrEmpty value(array.get()); }, RaisesId(kInvalid)) << refused;
  }
}

// Values are equal when both refer to no object (however it was given) or to the same object.
TEST_F(Objects, ValuesAreEqualByTheObjectTheyReferToAndListIt) {
  GraphicsObject* other = GraphicsObject::create("figure");
  HandleOrEmpty none(static_cast<const zxArray*>(nullptr)), value{COSInterfacePtr(figure)};
  EXPECT_FALSE(none.getCOSReference());
  EXPECT_TRUE(none == HandleOrEmpty(cmdlang::readLiteral("''").get()));
  EXPECT_FALSE(none == value);
  EXPECT_TRUE(value == HandleOrEmpty(literal("H", figure->handle()).get()));
  EXPECT_FALSE(value == HandleOrEmpty(COSInterfacePtr(other)));
  HandleOrEmptyDataType& type = *HandleOrEmptyDataType::getType();
  EXPECT_TRUE(type.isEqual(COSValue(), COSValue()));
  EXPECT_FALSE(type.isEqual(COSValue(&value), COSValue(&none)));
  EXPECT_THAT(listed<objsys::COSInterface>(type.getInterfaces(COSValue(&value))), ElementsAre(figure));
  other->deleteObject();
}

// A refused handle leaves the previous reference; copies, assignments and replacements balance.
TEST_F(Objects, RefusalsCopiesAssignmentsAndReplacementsBalanceReferenceCounts) {
  const int base = figure->referenceCount();
  GraphicsObject* line = GraphicsObject::create("line");
  {
    HandleOrEmpty first{COSInterfacePtr(figure)};
    EXPECT_GT(figure->referenceCount(), base);
    EXPECT_THAT([&] { first.setHandle(cmdlang::readLiteral("'abc'").get()); }, RaisesId(kInvalid));
    EXPECT_EQ(first.getCOSReference().get(), figure);
    HandleOrEmpty second(first), third;
    third = second;
    HandleOrEmpty& alias = third;
    third = alias;
    second = HandleOrEmpty(COSInterfacePtr(line));
    HandleOrEmptyDataType& type = *HandleOrEmptyDataType::getType();
    const COSValue copy = type.copy(COSValue(&first));
    first.setHandle(nullptr);
    third.setHandle(nullptr);
    EXPECT_GT(figure->referenceCount(), base) << "the copy alone holds the figure now";
    type.destroy(copy);
    EXPECT_EQ(figure->referenceCount(), base);
  }
  line->deleteObject();
  EXPECT_EQ(figure->referenceCount(), base);
}

// Object references are never read from text nor written as text, not even an empty slot; any
// reference type's value gives its object.
TEST_F(Objects, ReferencesHaveNoTextAndGiveTheirObject) {
  for (const char* name : {"korvax.graphics.datatype.HandleOrEmpty", "korvax.graphics.datatype.COSInterface"}) {
    const objsys::COSTypeConversion& texts = *objsys::COSTypeRepository::getConversion("asciiString", name);
    EXPECT_THAT([&] { texts.from(COSValue("1")); }, RaisesId("Korvax:datatypes:handleoremptydatatype:StringToDataType"))
        << name;
    EXPECT_THAT([&] { texts.to(COSValue()); }, RaisesId("Korvax:datatypes:handleoremptydatatype:DataTypeToString"))
        << name;
  }
  HandleOrEmpty value{COSInterfacePtr(figure)}, none;
  COSInterfacePtr bare(figure);
  EXPECT_EQ(HandleOrEmpty::convertValue(HandleOrEmptyDataType::getDataTypeName(), COSValue(&value)).get(), figure);
  EXPECT_EQ(HandleOrEmpty::convertValue(COSInterfaceDataType::getDataTypeName(), COSValue(&bare)).get(), figure);
  EXPECT_FALSE(HandleOrEmpty::convertValue(HandleOrEmptyDataType::getDataTypeName(), COSValue(&none)));
  EXPECT_FALSE(HandleOrEmpty::convertValue("no.such.Type", COSValue(&value)));
}

TEST_F(Objects, TheNumericHandleConversionResolvesLiveHandlesOnly) {
  const objsys::COSTypeConversion* conversion =
      objsys::COSTypeRepository::getConversion("double", kObjectReferenceTypeName);
  ASSERT_NE(conversion, nullptr);
  objsys::DoubleDataType& doubles = *objsys::DoubleDataType::instance();
  const COSValue handle = objsys::DoubleDataType::makeValue(figure->handle());
  const COSValue object = conversion->from(handle);
  EXPECT_EQ(object.as<COSInterfacePtr>()->get(), figure);
  const COSValue back = conversion->to(object);
  EXPECT_EQ(*back.as<double>(), figure->handle());
  COSInterfaceDataType::getType()->destroy(object);
  const COSValue unknown = objsys::DoubleDataType::makeValue(0.25);
  try {
    conversion->from(unknown);
    ADD_FAILURE() << "an unknown handle resolved";
  } catch (const InvalidDoubleHandleException& error) {
    EXPECT_STREQ(error.GetID(), "Korvax:orb:dt_conv:Matrix_to_HObject:BadHandle");
  }
  for (const COSValue value : {back, handle, unknown}) doubles.destroy(value);
}

class CallbackTest : public orbtest::DataTypeTest {
 protected:
  void SetUp() override {
    cmdlang::installEvaluator();
    gui_objects::registerFunction("record", [this](const std::vector<const zxArray*>& arguments) {
      std::string call;
      for (const zxArray* argument : arguments) call += cmdlang::writeLiteral(argument) + " ";
      calls.push_back(call);
    });
  }
  void TearDown() override { gui_objects::unregisterFunction("record"); }

  COSValue fromLiteral(const char* text) { return arrays.from(COSValue(cmdlang::readLiteral(text).get())); }
  std::string readBack(COSValue value) {
    return cmdlang::writeLiteral(gui_objects::ZxArrayPtr(arrays.to(value).as<zxArray>()).get());
  }

  CallbackDataType& type = *CallbackDataType::getType();
  const objsys::COSTypeConversion& arrays =
      *objsys::COSTypeRepository::getConversion("any", CallbackDataType::getDataTypeName());
  std::vector<std::string> calls;
};

// No callback equals the empty string, so clearing a callback with '' is not a change; it reads back
// as '' and no callback has a text form. Only an array form is listed among the kept arrays.
TEST_F(CallbackTest, NoCallbackEqualsTheEmptyStringAndNothingElse) {
  const objsys::COSTypeConversion& texts =
      *objsys::COSTypeRepository::getConversion("asciiString", CallbackDataType::getDataTypeName());
  const COSValue empty = texts.from(COSValue(""));
  const COSValue code = texts.from(COSValue("record(1)"));
  const COSValue cell = fromLiteral("{@record, 1}");
  EXPECT_TRUE(type.isEqual(COSValue(), empty));
  EXPECT_TRUE(type.isEqual(empty, COSValue()));
  EXPECT_FALSE(type.isEqual(COSValue(), code));
  EXPECT_EQ(readBack(COSValue()), "''");
  EXPECT_TRUE(texts.to(code).isEmpty());
  EXPECT_TRUE(listed<const zxArray>(type.getKXArrays(code)).empty());
  const std::vector<const zxArray*> kept = listed<const zxArray>(type.getKXArrays(cell));
  ASSERT_EQ(kept.size(), 1u);
  EXPECT_TRUE(zxIsCell(kept[0]));
  for (COSValue value : {empty, code, cell}) type.destroy(value);
}

// Each accepted array reads back and runs its function or code. Code runs only when every statement
// can; an unknown function is found only when it is called, after the statements before it ran.
TEST_F(CallbackTest, ArraysBecomeCallbacksThatReadBackAndRunOrAreRefused) {
  const gui_objects::ZxArrayPtr source = cmdlang::readLiteral("7");
  const gui_objects::ZxArrayPtr event = cmdlang::readLiteral("[]");
  const struct {
    const char* literal;
    const char* readBack;
    std::vector<std::string> calls;
    const char* error = nullptr;
  } kCases[] = {{"@record", "@record", {"7 [] "}},
                {"{@record, 1, 'a'}", "{@record,1,'a'}", {"7 [] 1 'a' "}},
                {"{'record'; [1 2]}", "{'record';[1 2]}", {"7 [] [1 2] "}},
                {"'record(1, ''x''); record'", "'record(1, ''x''); record'", {"1 'x' ", ""}},
                {"[]", "''", {}},
                {"{}", "''", {}},
                {"'record(1); x = 1'", "'record(1); x = 1'", {}, "Korvax:cmdlang:CannotEvaluate"},
                {"'record(1) + 2'", "'record(1) + 2'", {}, "Korvax:cmdlang:CannotEvaluate"},
                {"'record(1); nosuch(1)'", "'record(1); nosuch(1)'", {"1 "}, "Korvax:UndefinedFunction"}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.literal);
    calls.clear();
    const COSValue value = fromLiteral(c.literal);
    EXPECT_EQ(readBack(value), c.readBack);
    const auto run = [&] { value.as<gui_objects::MCallback>()->execute(source.get(), event.get()); };
    if (c.error != nullptr) {
      EXPECT_THAT(run, RaisesId(c.error));
    } else {
      run();
    }
    EXPECT_EQ(calls, c.calls);
    type.destroy(value);
  }
  for (const char* refused : {"{1, @record}", "{''}", "5", "['ab'; 'cd']", "struct('f', @record)"}) {
    EXPECT_THAT([&] { fromLiteral(refused); }, RaisesId("Korvax:datatypes:callback:CreateCallback")) << refused;
  }
}

}  // namespace
