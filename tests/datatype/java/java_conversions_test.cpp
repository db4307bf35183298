// Every registered type on a real Java machine: its values cross to their Java form and back equal,
// refusals from Java carry the type's identifiers, JavaPeer keeps identity, and global references
// balance.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "../support.h"
#include "cmdlanglib/literal.h"
#include "datatype/all/all_types.h"
#include "guilib/callback.h"
#include "javabridgelib/java_bridge.h"
#include "objsys/cos_enumeration.h"
#include "objsys/cos_type_conversion.h"
#include "objsys/java_type_conversion.h"

namespace {

using namespace graphics::datatype;
using objsys::COSValue;
using orbtest::RaisesId;

// Values of many families; each type takes those it accepts.
constexpr const char* kSamples[] = {
    "0.5",
    "3",
    "-2",
    "[1 0 0]",
    "[1 0 0 0.5]",
    "[0.1 0.2 0.3 0.4]",
    "[1 2]",
    "[1 2 3]",
    "uint8([255 0 0])",
    "[1 0 0 0;0 1 0 0;0 0 1 0;0 0 0 1]",
    "[0 0 0;1 1 1]",
    "[0 1;1 0;0.5 0.5]",
    "[1 2 3 4 5]",
    "'red'",
    "'none'",
    "'flat'",
    "'--'",
    "'on'",
    "'text'",
    "{'a';'bc'}",
    "{'-','--'}",
    "struct('mauve',[0.5 0.2 0.7])",
    "{@disp,'x'}",
    "'%d'",
    "int32(7)",
    "true",
    "[]",
};

class JavaConversions : public orbtest::DataTypeTest {
 protected:
  void SetUp() override {
    env = GetJNIEnv();
    refsBefore = kxjLiveGlobalRefs();
  }
  void TearDown() override { EXPECT_EQ(kxjLiveGlobalRefs(), refsBefore) << "global references leaked"; }

  // The value to Java and back; true when the value made again equals it.
  static bool crossesBackEqual(objsys::COSDataType& type, const objsys::JavaTypeConversion& java, COSValue value,
                               std::string& javaClass) {
    JNIEnv* env = GetJNIEnv();
    const JavaLocalFrame local(env);
    jobject object = java.toJava(value);
    javaClass = kxjClassName(env, object);
    const COSValue back = java.fromJava(object);
    const bool equal = type.isEqual(value, back);
    type.destroy(back);
    return equal;
  }

  JNIEnv* env = nullptr;
  std::size_t refsBefore = 0;
};

TEST_F(JavaConversions, EveryTypesValuesCrossToTheirJavaFormAndBackEqual) {
  for (const TypeRow& row : kEveryType) {
    SCOPED_TRACE(row.name);
    objsys::COSDataType& type = *row.dataType();
    const objsys::JavaTypeConversion* java = objsys::JavaTypeConversion::getConversion(row.fullName());
    const objsys::COSTypeConversion* arrays = objsys::COSTypeRepository::getConversion("any", row.fullName());
    ASSERT_NE(java, nullptr);
    ASSERT_NE(arrays, nullptr);
    EXPECT_STREQ(java->javaClassName(), javaClassOf(row.facts));
    if (!row.facts.javaRoundTripEqual) continue;  // identity, below
    std::vector<COSValue> values;
    if (!type.getDefaultValue().isEmpty()) values.push_back(type.copy(type.getDefaultValue()));
    for (const char* sample : kSamples) {
      const gui_objects::ZxArrayPtr array = cmdlang::readLiteral(sample);
      try {
        const COSValue value = arrays->from(COSValue(array.get()));
        if (!value.isEmpty()) values.push_back(value);
      } catch (const fl::except::IMsgIDException&) {
      }
    }
    if (type.isPossibleValuesFinite()) {
      objsys::COSEnumerationRef possible(type.getPossibleValues());
      while (possible->hasMoreElements()) values.push_back(type.copy(possible->nextElement()));
    }
    EXPECT_FALSE(values.empty());
    // A value crosses as its array form, so the values compared are those their array form makes once it
    // has settled: an empty default reads back as [], which a shaped type stores and reads back in its
    // own empty shape.
    for (int pass = 0; pass < 2; ++pass) {
      for (COSValue& value : values) {
        const gui_objects::ZxArrayPtr form(arrays->to(value).as<zxArray>());
        type.destroy(value);
        value = arrays->from(COSValue(form.get()));
      }
    }
    for (const COSValue value : values) {
      std::string javaClass;
      try {
        EXPECT_TRUE(crossesBackEqual(type, *java, value, javaClass))
            << cmdlang::writeLiteral(gui_objects::ZxArrayPtr(arrays->to(value).as<zxArray>()).get()) << " through "
            << javaClass;
      } catch (const fl::except::IMsgIDException& error) {
        ADD_FAILURE() << error.get_error_id() << ": " << error.get_message_text();
      }
      type.destroy(value);
    }
  }
}

TEST_F(JavaConversions, RefusalsFromJavaCarryTheTypesIdentifiers) {
  const auto fromJava = [](const char* type, jobject object) {
    const std::string fullName = std::string("korvax.graphics.datatype.") + type;
    objsys::JavaTypeConversion::getConversion(fullName.c_str())->fromJava(object);
  };
  const JavaLocalFrame local(env);
  jobject minusOne = kxjNewObject(env, "korvax/graphics/types/OrbDouble", "(D)V", -1.0);
  EXPECT_THAT([&] { fromJava("Positive", minusOne); }, RaisesId("Korvax:datatypes:valueOutsideValidRange"));
  EXPECT_THAT([&] { fromJava("PositiveInteger", nullptr); }, RaisesId("Korvax:class:KorvaxConversionError"));
  jobject translucentGray = kxjNewObject(env, "korvax/graphics/types/OrbColor", "(DDDD)V", 0.5, 0.5, 0.5, 0.5);
  EXPECT_THAT([&] { fromJava("MeshColor", translucentGray); },
              RaisesId("Korvax:datatypes:MeshColor:ValueMustBe3ElementVector"));
  jobject word = env->NewStringUTF("dashdot");
  EXPECT_THAT([&] { fromJava("LineStyle", word); }, RaisesId("Korvax:datatypes:InvalidEnumValue"));
}

TEST_F(JavaConversions, AnOrbCallbackFiredFromJavaRunsItsCallbackInTheHost) {
  std::vector<std::string> seen;
  gui_objects::registerFunction("recordFired", [&](const std::vector<const zxArray*>& arguments) {
    for (const zxArray* argument : arguments) seen.push_back(cmdlang::writeLiteral(argument));
  });
  const char* callbackType = CallbackDataType::getDataTypeName();
  const objsys::JavaTypeConversion& java = *objsys::JavaTypeConversion::getConversion(callbackType);
  const objsys::COSTypeConversion& arrays = *objsys::COSTypeRepository::getConversion("any", callbackType);
  const auto fired = [&](const char* literal, jobject source) {
    const gui_objects::ZxArrayPtr array = cmdlang::readLiteral(literal);
    const COSValue value = arrays.from(COSValue(array.get()));
    jobject peer = java.toJava(value);
    CallbackDataType::getType()->destroy(value);
    jmethodID fire = env->GetMethodID(env->GetObjectClass(peer), "fire", "(Ljava/lang/Object;Ljava/lang/Object;)V");
    env->CallVoidMethod(peer, fire, source, nullptr);
    jthrowable thrown = env->ExceptionOccurred();
    env->ExceptionClear();
    return thrown == nullptr ? std::string() : kxjToString(env, thrown);
  };
  const JavaLocalFrame local(env);
  EXPECT_EQ(fired("{@recordFired, 5}", kxjNewObject(env, "java/lang/Double", "(D)V", 1.0)), "");
  EXPECT_THAT(seen, ::testing::ElementsAre("1", "[]", "5"));
  EXPECT_THAT(fired("{'noSuchFunction'}", nullptr), ::testing::HasSubstr("Korvax:UndefinedFunction"));
  gui_objects::unregisterFunction("recordFired");
}

class JavaPeerTest : public JavaConversions {
 protected:
  JavaPeerDataType& type = *JavaPeerDataType::getType();
};

TEST_F(JavaPeerTest, ValuesCompareByJavaIdentity) {
  const JavaLocalFrame local(env);
  jobject first = kxjNewObject(env, "java/lang/StringBuilder", "()V");
  jobject twin = kxjNewObject(env, "java/lang/StringBuilder", "()V");
  const COSValue a = newValueBlock<JavaPeer>(first);
  const COSValue b = newValueBlock<JavaPeer>(first);
  const COSValue c = newValueBlock<JavaPeer>(twin);
  const COSValue nothing = newValueBlock<JavaPeer>();
  EXPECT_TRUE(type.isEqual(a, b));
  EXPECT_EQ(type.compare(a, b), objsys::cosEqual);
  EXPECT_FALSE(type.isEqual(a, c));
  EXPECT_FALSE(type.isEqual(a, COSValue()));
  EXPECT_TRUE(type.isEqual(COSValue(), COSValue()));
  // An empty slot equals only an empty slot, not a value that refers to nothing.
  EXPECT_FALSE(type.isEqual(nothing, COSValue()));
  EXPECT_TRUE(type.isEqual(nothing, nothing));
  EXPECT_EQ(kxjLiveGlobalRefs(), refsBefore + 3);
  for (COSValue value : {a, b, c, nothing}) type.destroy(value);
}

TEST_F(JavaPeerTest, ACopySurvivesTheDestructionOfTheValueItCopied) {
  const JavaLocalFrame local(env);
  jobject builder = kxjNewObject(env, "java/lang/StringBuilder", "(Ljava/lang/String;)V", env->NewStringUTF("kept"));
  const COSValue original = newValueBlock<JavaPeer>(builder);
  const COSValue copy = type.copy(original);
  EXPECT_EQ(kxjLiveGlobalRefs(), refsBefore + 2) << "each copy holds a global reference of its own";
  type.destroy(original);
  EXPECT_EQ(kxjToString(env, copy.as<JavaPeer>()->get_jobject().get()), "kept");
  type.destroy(copy);
}

TEST_F(JavaPeerTest, ConversionsGoThroughTheClosestMatchAndTextMakesNothing) {
  const objsys::COSTypeConversion& arrays =
      *objsys::COSTypeRepository::getConversion("any", JavaPeerDataType::getDataTypeName());
  const objsys::COSTypeConversion& texts =
      *objsys::COSTypeRepository::getConversion("asciiString", JavaPeerDataType::getDataTypeName());
  const objsys::JavaTypeConversion& java =
      *objsys::JavaTypeConversion::getConversion(JavaPeerDataType::getDataTypeName());
  EXPECT_TRUE(texts.from(COSValue("anything")).isEmpty());
  const gui_objects::ZxArrayPtr none(arrays.to(COSValue()).as<zxArray>());
  EXPECT_EQ(cmdlang::writeLiteral(none.get()), "[]");

  const JavaLocalFrame local(env);
  jobject builder = kxjNewObject(env, "java/lang/StringBuilder", "()V");
  const COSValue value = java.fromJava(builder);
  EXPECT_TRUE(env->IsSameObject(java.toJava(value), builder)) << "an object without a host form comes back itself";
  const gui_objects::ZxArrayPtr array(arrays.to(value).as<zxArray>());
  EXPECT_STREQ(zxGetClassName(array.get()), "java.lang.StringBuilder");
  const COSValue again = arrays.from(COSValue(array.get()));
  EXPECT_TRUE(type.isEqual(value, again));
  const gui_objects::ZxArrayPtr numbers = cmdlang::readLiteral("[1 2 3]");
  const COSValue fromNumbers = arrays.from(COSValue(numbers.get()));
  EXPECT_EQ(kxjClassName(env, fromNumbers.as<JavaPeer>()->get_jobject().get()), "[D");
  for (COSValue made : {value, again, fromNumbers}) type.destroy(made);
}

}  // namespace
