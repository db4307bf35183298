// Callback: the accepted forms, equality with the deliberate empty string, read-back and execution.
#include "datatype/references/callback.h"

#include <string>
#include <vector>

#include "../support.h"
#include "cmdlanglib/evaluator.h"
#include "cmdlanglib/literal.h"
#include "objsys/graphics_objects.h"
#include "objsys/object_arrays.h"
#include "utillib/ut.h"

namespace {

using namespace graphics::datatype;
using objsys::COSValue;
using orbtest::RaisesId;

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

  COSValue fromLiteral(const char* text) {
    const gui_objects::ZxArrayPtr array = cmdlang::readLiteral(text);
    return arrays.from(COSValue(array.get()));
  }
  std::string readBack(COSValue value) {
    const gui_objects::ZxArrayPtr array(arrays.to(value).as<zxArray>());
    return cmdlang::writeLiteral(array.get());
  }

  CallbackDataType& type = *CallbackDataType::getType();
  const objsys::COSTypeConversion& arrays =
      *objsys::COSTypeRepository::getConversion("any", CallbackDataType::getDataTypeName());
  const objsys::COSTypeConversion& texts =
      *objsys::COSTypeRepository::getConversion("asciiString", CallbackDataType::getDataTypeName());
  std::vector<std::string> calls;
};

TEST_F(CallbackTest, ArraysBecomeCallbacksThatReadBackOrAreRefused) {
  struct Case {
    const char* literal;
    const char* readBack;  // null: refused
  };
  constexpr Case kCases[] = {
      {"'record(1)'", "'record(1)'"},
      {"''", "''"},
      {"[]", "''"},
      {"@record", "@record"},
      {"{@record, 1, 'a'}", "{@record,1,'a'}"},
      {"{'record'; 2}", "{'record';2}"},
      {"{1, @record}", nullptr},
      {"{}", "''"},
      {"{''}", nullptr},
      {"5", nullptr},
      {"['ab'; 'cd']", nullptr},
      {"struct('f', @record)", nullptr},
      {"true", nullptr},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.literal);
    if (c.readBack == nullptr) {
      EXPECT_THAT([&] { fromLiteral(c.literal); }, RaisesId("Korvax:datatypes:callback:CreateCallback"));
      continue;
    }
    const COSValue value = fromLiteral(c.literal);
    EXPECT_EQ(readBack(value), c.readBack);
    type.destroy(value);
  }
}

TEST_F(CallbackTest, NoCallbackEqualsTheEmptyStringAndNothingElse) {
  const COSValue empty = texts.from(COSValue(""));
  const COSValue code = texts.from(COSValue("record(1)"));
  EXPECT_TRUE(type.isEqual(COSValue(), empty));
  EXPECT_TRUE(type.isEqual(empty, COSValue()));
  EXPECT_FALSE(type.isEqual(COSValue(), code));
  EXPECT_EQ(type.compare(code, COSValue()), objsys::cosUnordered);
  const COSValue copy = type.copy(code);
  EXPECT_TRUE(type.isEqual(copy, code));
  const COSValue handle = fromLiteral("@record");
  const COSValue cell = fromLiteral("{@record, 1}");
  const COSValue otherCell = fromLiteral("{@record, 2}");
  EXPECT_FALSE(type.isEqual(handle, cell));
  EXPECT_FALSE(type.isEqual(cell, otherCell));
  for (COSValue value : {empty, code, copy, handle, cell, otherCell}) type.destroy(value);
}

TEST_F(CallbackTest, NoCallbackReadsBackAsEmptyTextAndACallbackHasNoText) {
  EXPECT_EQ(readBack(COSValue()), "''");
  const COSValue code = texts.from(COSValue("record(1)"));
  EXPECT_TRUE(texts.to(code).isEmpty());
  EXPECT_TRUE(texts.from(COSValue()).isEmpty());
  EXPECT_TRUE(type.getDefaultValue().isEmpty());
  type.destroy(code);
}

TEST_F(CallbackTest, OnlyAnArrayFormIsListedAmongTheKeptArrays) {
  const COSValue code = texts.from(COSValue("record(1)"));
  const COSValue cell = fromLiteral("{@record, 1}");
  objsys::COSEnumerationRef none(type.getKXArrays(code));
  EXPECT_FALSE(none->hasMoreElements());
  objsys::COSEnumerationRef one(type.getKXArrays(cell));
  ASSERT_TRUE(one->hasMoreElements());
  EXPECT_TRUE(zxIsCell(one->nextElement().as<const zxArray>()));
  EXPECT_FALSE(one->hasMoreElements());
  type.destroy(code);
  type.destroy(cell);
}

TEST_F(CallbackTest, ObjectsAmongTheArgumentsAreListedAndKeptAlive) {
  objsys::GraphicsObject* figure = objsys::GraphicsObject::create("figure");
  const gui_objects::ZxArrayPtr cell(zxCreateCellMatrix(1, 2));
  zxSetCell(cell.get(), 0, zxCreateFunctionHandle("record"));
  zxSetCell(cell.get(), 1, objsys::omCreateOBJSYSScalar(figure));
  const int before = figure->referenceCount();
  const COSValue value = arrays.from(COSValue(cell.get()));
  {
    objsys::COSEnumerationRef objects(type.getInterfaces(value));
    ASSERT_TRUE(objects->hasMoreElements());
    EXPECT_EQ(objects->nextElement().as<objsys::COSInterface>(), figure);
    EXPECT_FALSE(objects->hasMoreElements());
  }
  type.destroy(value);
  EXPECT_EQ(figure->referenceCount(), before);
  figure->deleteObject();
}

TEST_F(CallbackTest, CallbacksRunTheirFunctionOrCode) {
  const gui_objects::ZxArrayPtr source = cmdlang::readLiteral("7");
  const gui_objects::ZxArrayPtr event = cmdlang::readLiteral("[]");
  struct Case {
    const char* literal;
    std::vector<std::string> calls;
  };
  const Case kCases[] = {
      {"@record", {"7 [] "}},
      {"{@record, 1, 'a'}", {"7 [] 1 'a' "}},
      {"{'record', [1 2]}", {"7 [] [1 2] "}},
      {"'record(1, ''x''); record'", {"1 'x' ", ""}},
      {"''", {}},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.literal);
    calls.clear();
    const COSValue value = fromLiteral(c.literal);
    value.as<gui_objects::MCallback>()->execute(source.get(), event.get());
    EXPECT_EQ(calls, c.calls);
    type.destroy(value);
  }
}

TEST_F(CallbackTest, CodeThatCannotRunRunsNothingAndSaysWhy) {
  struct Case {
    const char* code;
    const char* id;
  };
  constexpr Case kCases[] = {
      {"record(1); x = 1", "Korvax:cmdlang:CannotEvaluate"},
      {"record(1); record(y)", "Korvax:cmdlang:CannotEvaluate"},
      {"record(1); nosuch(1)", "Korvax:UndefinedFunction"},
      {"record(1) + 2", "Korvax:cmdlang:CannotEvaluate"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.code);
    calls.clear();
    EXPECT_THAT([&] { cmdlang::evaluate(c.code); }, RaisesId(c.id));
    // An unknown function is found only when it is called, after the statements before it ran.
    EXPECT_EQ(calls.size(), std::string(c.id) == "Korvax:UndefinedFunction" ? 1u : 0u);
  }
}

}  // namespace
