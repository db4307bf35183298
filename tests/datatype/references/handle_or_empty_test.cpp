// HandleOrEmpty and COSInterface on live, deleted and unknown objects, and the numeric-handle
// conversion.
#include "datatype/references/handle_or_empty.h"

#include <string>

#include "../support.h"
#include "cmdlanglib/literal.h"
#include "datatype/references/invalid_double_handle.h"
#include "datatype/references/object_reference_conversion.h"
#include "objsys/builtin_types.h"
#include "objsys/graphics_objects.h"
#include "objsys/object_arrays.h"

namespace {

using namespace graphics::datatype;
using objsys::COSInterfacePtr;
using objsys::COSValue;
using orbtest::RaisesId;

constexpr const char* kInvalid = "Korvax:datatypes:handleoremptydatatype:InvalidOrbHandle";

class HandleOrEmptyTest : public orbtest::DataTypeTest {
 protected:
  void TearDown() override {
    figure->deleteObject();
    EXPECT_EQ(objsys::COSInterface::liveCount(), liveBefore) << "objects leaked";
  }
  // The literal with "H" standing for the figure's handle.
  static gui_objects::ZxArrayPtr literal(std::string text, double handle) {
    if (const auto at = text.find('H'); at != std::string::npos) text.replace(at, 1, std::to_string(handle));
    return cmdlang::readLiteral(text);
  }

  const std::size_t liveBefore = objsys::COSInterface::liveCount();
  objsys::GraphicsObject* figure = objsys::GraphicsObject::create("figure");
};

TEST_F(HandleOrEmptyTest, ArraysGiveTheirObjectNoObjectOrARefusal) {
  struct Case {
    const char* literal;  // H: the figure's handle
    bool refersToFigure;
    bool refused;
  };
  constexpr Case kCases[] = {
      {"[]", false, false},           {"''", false, false},           {"zeros(0,3,'uint8')", false, false},
      {"cell(0)", false, false},      {"H", true, false},             {"[H 5 6]", true, false},
      {"[H; 7]", true, false},        {"complex(H, 1)", true, false}, {"'abc'", false, true},
      {"true", false, true},          {"int32(1)", false, true},      {"{H}", false, true},
      {"struct('a', H)", false, true}, {"123456", false, true},       {"NaN", false, true},
      {"-H", false, true},            {"@disp", false, true},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.literal);
    const gui_objects::ZxArrayPtr array = literal(c.literal, figure->handle());
    if (c.refused) {
      EXPECT_THAT([&] { HandleOrEmpty value(array.get()); }, RaisesId(kInvalid));
      continue;
    }
    const HandleOrEmpty value(array.get());
    EXPECT_EQ(value.getCOSReference().get(), c.refersToFigure ? figure : nullptr);
    EXPECT_TRUE(objsys::omIsOBJSYS(value.getHandle()));
    if (!c.refersToFigure) {
      EXPECT_STREQ(zxGetClassName(value.getHandle()), objsys::kPlaceholderClassName);
    }
  }
}

TEST_F(HandleOrEmptyTest, NoArrayIsNoObjectAndEqualsEveryOtherEmptyValue) {
  const gui_objects::ZxArrayPtr emptyChar = cmdlang::readLiteral("''");
  const HandleOrEmpty none(static_cast<const zxArray*>(nullptr));
  EXPECT_FALSE(none.getCOSReference());
  EXPECT_TRUE(none == HandleOrEmpty(emptyChar.get()));
  EXPECT_TRUE(none == HandleOrEmpty());
  EXPECT_FALSE(none == HandleOrEmpty(COSInterfacePtr(figure)));
}

TEST_F(HandleOrEmptyTest, TheObjectArrayAndTheHandleOfOneObjectAreEqual) {
  const gui_objects::ZxArrayPtr byObject(objsys::omCreateOBJSYSScalar(figure));
  const gui_objects::ZxArrayPtr byHandle = literal("H", figure->handle());
  EXPECT_TRUE(HandleOrEmpty(byObject.get()) == HandleOrEmpty(byHandle.get()));
  objsys::GraphicsObject* other = objsys::GraphicsObject::create("figure");
  EXPECT_FALSE(HandleOrEmpty(byObject.get()) == HandleOrEmpty(COSInterfacePtr(other)));
  other->deleteObject();
}

TEST_F(HandleOrEmptyTest, ADeletedObjectsHandleIsRefusedWhileValuesKeepTheObject) {
  objsys::GraphicsObject* line = objsys::GraphicsObject::create("line");
  const double handle = line->handle();
  HandleOrEmpty kept{COSInterfacePtr(line)};
  line->deleteObject();
  const gui_objects::ZxArrayPtr stale = literal("H", handle);
  EXPECT_THAT([&] { HandleOrEmpty value(stale.get()); }, RaisesId(kInvalid));
  // The value that held it still refers to the deleted object, whose status says so.
  ASSERT_TRUE(kept.getCOSReference());
  EXPECT_TRUE(kept.getCOSReference()->isDeleted());
}

TEST_F(HandleOrEmptyTest, ARefusedHandleLeavesThePreviousReference) {
  HandleOrEmpty value{COSInterfacePtr(figure)};
  const gui_objects::ZxArrayPtr text = cmdlang::readLiteral("'abc'");
  EXPECT_THAT([&] { value.setHandle(text.get()); }, RaisesId(kInvalid));
  EXPECT_EQ(value.getCOSReference().get(), figure);
}

TEST_F(HandleOrEmptyTest, CopiesAssignmentsAndReplacementsBalanceReferenceCounts) {
  const int base = figure->referenceCount();
  objsys::GraphicsObject* line = objsys::GraphicsObject::create("line");
  {
    HandleOrEmpty first{COSInterfacePtr(figure)};
    EXPECT_GT(figure->referenceCount(), base);
    HandleOrEmpty second(first);
    HandleOrEmpty third;
    third = second;
    HandleOrEmpty& alias = third;
    third = alias;
    second = HandleOrEmpty(COSInterfacePtr(line));
    HandleOrEmptyDataType& type = *HandleOrEmptyDataType::getType();
    const COSValue copy = type.copy(COSValue(&first));
    first.setHandle(nullptr);
    third.setHandle(nullptr);
    // The copy alone holds the figure now.
    EXPECT_GT(figure->referenceCount(), base);
    type.destroy(copy);
    EXPECT_EQ(figure->referenceCount(), base);
  }
  line->deleteObject();
  EXPECT_EQ(figure->referenceCount(), base);
}

TEST_F(HandleOrEmptyTest, TheDataTypeListsTheObjectAndComparesByIdentity) {
  HandleOrEmptyDataType& type = *HandleOrEmptyDataType::getType();
  HandleOrEmpty value{COSInterfacePtr(figure)};
  objsys::COSEnumerationRef objects(type.getInterfaces(COSValue(&value)));
  ASSERT_TRUE(objects->hasMoreElements());
  EXPECT_EQ(objects->nextElement().as<objsys::COSInterface>(), figure);
  EXPECT_FALSE(objects->hasMoreElements());
  EXPECT_TRUE(type.canContainInterfaces());
  EXPECT_TRUE(type.isEqual(COSValue(), COSValue()));
  EXPECT_FALSE(type.isEqual(COSValue(&value), COSValue()));
  HandleOrEmpty none;
  EXPECT_FALSE(type.isEqual(COSValue(&value), COSValue(&none)));
  EXPECT_TRUE(type.isEqual(type.getDefaultValue(), COSValue(&none)));
}

TEST_F(HandleOrEmptyTest, ObjectReferencesHaveNoTextForm) {
  for (const char* name : {"korvax.graphics.datatype.HandleOrEmpty", "korvax.graphics.datatype.COSInterface"}) {
    SCOPED_TRACE(name);
    const objsys::COSTypeConversion* texts = objsys::COSTypeRepository::getConversion("asciiString", name);
    objsys::COSDataType* type = objsys::COSTypeRepository::getType(name);
    EXPECT_THAT([&] { texts->from(COSValue("1")); },
                RaisesId("Korvax:datatypes:handleoremptydatatype:StringToDataType"));
    EXPECT_THAT([&] { texts->to(type->getDefaultValue()); },
                RaisesId("Korvax:datatypes:handleoremptydatatype:DataTypeToString"));
  }
}

TEST_F(HandleOrEmptyTest, TheNumericHandleConversionResolvesLiveHandlesOnly) {
  const objsys::COSTypeConversion* conversion = objsys::COSTypeRepository::getConversion("double", kObjectReferenceTypeName);
  ASSERT_NE(conversion, nullptr);
  COSInterfaceDataType& type = *COSInterfaceDataType::getType();
  const COSValue handle = objsys::DoubleDataType::makeValue(figure->handle());
  const COSValue object = conversion->from(handle);
  EXPECT_EQ(object.as<COSInterfacePtr>()->get(), figure);
  const COSValue back = conversion->to(object);
  EXPECT_EQ(*back.as<double>(), figure->handle());
  type.destroy(object);
  objsys::DoubleDataType::instance()->destroy(back);
  objsys::DoubleDataType::instance()->destroy(handle);

  const COSValue unknown = objsys::DoubleDataType::makeValue(0.25);
  try {
    conversion->from(unknown);
    ADD_FAILURE() << "an unknown handle resolved";
  } catch (const InvalidDoubleHandleException& error) {
    EXPECT_STREQ(error.GetID(), "Korvax:orb:dt_conv:Matrix_to_HObject:BadHandle");
    EXPECT_EQ(error.GetUnicodeMessageTxt(), L"Invalid object handle");
  }
  objsys::DoubleDataType::instance()->destroy(unknown);
}

TEST_F(HandleOrEmptyTest, ConvertValueReadsTheObjectOfAnyReferenceType) {
  HandleOrEmpty value{COSInterfacePtr(figure)};
  EXPECT_EQ(HandleOrEmpty::convertValue(HandleOrEmptyDataType::getDataTypeName(), COSValue(&value)).get(), figure);
  COSInterfacePtr bare(figure);
  EXPECT_EQ(HandleOrEmpty::convertValue(COSInterfaceDataType::getDataTypeName(), COSValue(&bare)).get(), figure);
  HandleOrEmpty none;
  EXPECT_FALSE(HandleOrEmpty::convertValue(HandleOrEmptyDataType::getDataTypeName(), COSValue(&none)));
  EXPECT_FALSE(HandleOrEmpty::convertValue("no.such.Type", COSValue(&value)));
}

}  // namespace
