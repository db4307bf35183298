// Tests of the class system: names, the repository, packages and its own types.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "arraylib/zxarray.h"
#include "arraylib/zxerror.h"
#include "objsys/builtin_types.h"
#include "objsys/cos_package.h"
#include "objsys/cos_type_conversion.h"
#include "objsys/java_type_conversion.h"
#include "utillib/ut.h"

namespace {

using namespace objsys;

class NamedType : public COSDataType {
 public:
  explicit NamedType(const char* name) : name_(name) {}
  const char* getDeclarationName() const override { return name_; }
  const char* getName() const override { return name_; }
  COSValue getDefaultValue() const override { return COSValue(); }
  bool isEqual(COSValue a, COSValue b) const override { return a == b; }
  COSValue copy(COSValue value) override { return value; }
  void destroy(COSValue) const override {}

 private:
  const char* name_;
};

class NoConversion : public COSTypeConversion {
 public:
  COSValue to(COSValue value) const override { return value; }
  COSValue from(COSValue value) const override { return value; }
};

class Info : public COSPackageInfo {
 public:
  explicit Info(const char* name) : name_(name) {}
  const char* getName() const override { return name_; }
  const char* getDescription() const override { return ""; }
  const char* getDetails() const override { return ""; }

 private:
  const char* name_;
};

TEST(COSNameID, EqualTextsAreOneInternedName) {
  const std::string built = std::string("korvax.") + "graphics";
  EXPECT_EQ(COSNameID("korvax.graphics"), COSNameID(built));
  EXPECT_EQ(COSNameID("korvax.graphics").c_str(), COSNameID(built).c_str());
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
  ASSERT_NE(top, nullptr);
  COSPackage* child = top->addSubPackage(new Info("child"));
  ASSERT_NE(child, nullptr);
  EXPECT_EQ(child->getFullName(), "testtop.child");
  EXPECT_EQ(COSPackage::getPackage("testtop.child"), child);
  EXPECT_EQ(top->addSubPackage(new Info("child")), child) << "adding a package twice keeps the first";
  EXPECT_EQ(top->getSubPackages().size(), 1u);
  EXPECT_EQ(top->addSubPackage(nullptr), nullptr);

  static NamedType type("Thing");
  child->addDataType(&type);
  EXPECT_EQ(COSTypeRepository::getType("testtop.child.Thing"), &type);
  EXPECT_EQ(COSTypeRepository::getType("Thing"), nullptr) << "package types are not global";
  EXPECT_EQ(child->getInfo()->getName(), std::string("child"));
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
  EXPECT_EQ(COSTypeRepository::getType("any"), AnyDataType::instance());
  COSValue held;
  {
    zx::CallFrame frame;
    zxArray* source = zxCreateDoubleScalar(4);
    held = AnyDataType::instance()->valueFromArray(source);
    EXPECT_EQ(zxGetPr(AnyDataType::arrayOf(held)), zxGetPr(source)) << "no element copy";
  }
  EXPECT_EQ(zxGetScalar(AnyDataType::arrayOf(held)), 4.0) << "the value outlives the frame";
  const COSValue copy = AnyDataType::instance()->copy(held);
  EXPECT_TRUE(AnyDataType::instance()->isEqual(held, copy));
  AnyDataType::instance()->destroy(copy);
  AnyDataType::instance()->destroy(held);
}

}  // namespace
