// The Java bridge on a real Java machine: the closest-match conversions both ways, Java exceptions and
// unconvertible values as host errors, and global references that balance.
#include "javabridgelib/java_bridge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "../../raises_id.h"
#include "arraylib/zxerror.h"
#include "cmdlanglib/literal.h"
#include "javabridgelib/closest_match.h"
#include "objsys/cos_interface.h"
#include "objsys/java_type_conversion.h"

namespace {

using orbtest::RaisesId;

class JavaBridge : public ::testing::Test {
 protected:
  void SetUp() override {
    env = GetJNIEnv();
    refsBefore = kxjLiveGlobalRefs();
    objectsBefore = objsys::COSInterface::liveCount();
  }
  void TearDown() override {
    EXPECT_EQ(kxjLiveGlobalRefs(), refsBefore) << "global references leaked";
    EXPECT_EQ(objsys::COSInterface::liveCount(), objectsBefore) << "objects leaked";
  }
  zx::CallFrame frame;
  JNIEnv* env = nullptr;
  std::size_t refsBefore = 0;
  std::size_t objectsBefore = 0;
};

TEST_F(JavaBridge, ArraysCrossAsTheirClosestJavaObjectAndComeBack) {
  struct Case {
    const char* literal;
    const char* javaClass;
    const char* javaText;
    const char* back;  // the literal of the array it comes back as
  };
  constexpr Case kCases[] = {
      {"[]", "null", "null", "[]"},
      {"0.5", "java.lang.Double", "0.5", "0.5"},
      {"[1 2 3]", "[D", "[1.0, 2.0, 3.0]", "[1 2 3]"},
      {"[1 2;3 4]", "[[D", "[[1.0, 2.0], [3.0, 4.0]]", "[1 2;3 4]"},
      {"zeros(0,3)", "korvax.graphics.types.OrbEmpty", "OrbEmpty[0x3 double]", "zeros(0,3)"},
      {"zeros(2,0)", "[[D", "[[], []]", "zeros(2,0)"},
      {"cell(0,2)", "korvax.graphics.types.OrbEmpty", "OrbEmpty[0x2 cell]", "cell(0,2)"},
      {"reshape([1 2 3 4 5 6 7 8],2,2,2)", "[[[D", "[[[1.0, 5.0], [3.0, 7.0]], [[2.0, 6.0], [4.0, 8.0]]]",
       "reshape([1 2 3 4 5 6 7 8],2,2,2)"},
      {"single(2.5)", "java.lang.Float", "2.5", "single(2.5)"},
      {"int8([-1 2])", "[B", "[-1, 2]", "int8([-1 2])"},
      {"uint8(200)", "korvax.graphics.types.OrbUnsigned", "OrbUnsigned[uint8 [200]]", "uint8(200)"},
      {"uint64(18446744073709551615)", "korvax.graphics.types.OrbUnsigned", "OrbUnsigned[uint64 [-1]]",
       "uint64(18446744073709551615)"},
      {"[true false]", "[Z", "[true, false]", "[true false]"},
      {"''", "java.lang.String", "", "''"},
      {"['ab';'cd']", "[Ljava.lang.String;", "[ab, cd]", "{'ab','cd'}"},
      {"{1,'a'}", "[Ljava.lang.Object;", "[1.0, a]", "{1,'a'}"},
      {"{1;'a'}", "[[Ljava.lang.Object;", "[[1.0], [a]]", "{1;'a'}"},
      {"struct('x',1,'y','z')", "java.util.LinkedHashMap", "{x=1.0, y=z}", "struct('x',1,'y','z')"},
      {"@disp", "korvax.graphics.types.OrbFunctionHandle", "OrbFunctionHandle[@disp]", "@disp"},
      {"sparse([0 2])", "[D", "[0.0, 2.0]", "[0 2]"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.literal);
    JavaLocalFrame local(env);
    const gui_objects::ZxArrayPtr array = cmdlang::readLiteral(c.literal);
    jobject object = javaConvertKorvaxToClosestJavaObject(array.get());
    EXPECT_EQ(kxjClassName(env, object), c.javaClass);
    EXPECT_EQ(kxjToString(env, object), c.javaText);
    const gui_objects::ZxArrayPtr back(javaConvertJavaObjectToClosestKorvaxArray(kxjNewGlobalRef(object, 0)));
    const gui_objects::ZxArrayPtr expected = cmdlang::readLiteral(c.back);
    EXPECT_EQ(cmdlang::writeLiteral(back.get()), cmdlang::writeLiteral(expected.get()));
  }
}

TEST_F(JavaBridge, AJavaObjectWithoutAHostFormIsCarriedInAnObjectArrayAndComesBackItself) {
  JavaLocalFrame local(env);
  jobject original = kxjNewObject(env, "java/lang/StringBuilder", "()V");
  {
    const gui_objects::ZxArrayPtr array(kxjClosestKorvaxArray(env, original));
    EXPECT_STREQ(zxGetClassName(array.get()), "java.lang.StringBuilder");
    EXPECT_EQ(kxjLiveGlobalRefs(), refsBefore + 1);
    jobject again = javaConvertKorvaxToClosestJavaObject(array.get());
    EXPECT_TRUE(env->IsSameObject(again, original));
  }
  // The array's end released the object's global reference (checked by TearDown).
}

TEST_F(JavaBridge, ValuesWithoutAFormOnTheOtherSideAreRefusedWithTheirIdentifiers) {
  const gui_objects::ZxArrayPtr complexNumber = cmdlang::readLiteral("complex(1, 2)");
  EXPECT_THAT([&] { javaConvertKorvaxToClosestJavaObject(complexNumber.get()); },
              RaisesId("Korvax:class:JavaConversionError"));
  const gui_objects::ZxArrayPtr nestedComplex = cmdlang::readLiteral("{1, complex(1, 2)}");
  EXPECT_THAT([&] { javaConvertKorvaxToClosestJavaObject(nestedComplex.get()); },
              RaisesId("Korvax:class:JavaConversionError"));

  JavaLocalFrame local(env);
  // double[][] {{1, 2}, {3}}: a ragged matrix has no host form.
  jclass rowClass = env->FindClass("[D");
  jobjectArray ragged = env->NewObjectArray(2, rowClass, nullptr);
  for (jsize row = 0; row < 2; ++row) {
    jdoubleArray values = env->NewDoubleArray(2 - row);
    env->SetObjectArrayElement(ragged, row, values);
  }
  EXPECT_THAT([&] { kxjClosestKorvaxArray(env, ragged); }, RaisesId("Korvax:class:KorvaxConversionError"));
  // A map whose key is not a String.
  jobject map = kxjNewObject(env, "java/util/HashMap", "()V");
  jmethodID put =
      env->GetMethodID(env->GetObjectClass(map), "put", "(Ljava/lang/Object;Ljava/lang/Object;)Ljava/lang/Object;");
  env->CallObjectMethod(map, put, kxjNewObject(env, "java/lang/Integer", "(I)V", 1), nullptr);
  EXPECT_THAT([&] { kxjClosestKorvaxArray(env, map); }, RaisesId("Korvax:class:KorvaxConversionError"));
}

TEST_F(JavaBridge, AJavaExceptionBecomesAHostErrorAndIsCleared) {
  JavaLocalFrame local(env);
  jstring notANumber = env->NewStringUTF("x");
  EXPECT_THAT([&] { kxjNewObject(env, "java/lang/Integer", "(Ljava/lang/String;)V", notANumber); },
              RaisesId("Korvax:javabridge:JavaException"));
  EXPECT_FALSE(env->ExceptionCheck());
  EXPECT_THAT([&] { kxjFindClass(env, "no/such/Class"); }, RaisesId("Korvax:javabridge:JavaException"));
}

TEST_F(JavaBridge, ManyElementsCrossWithoutRunningOutOfLocalReferences) {
  // 100,000 cells of text: a local reference per element would exhaust a frame's capacity.
  const gui_objects::ZxArrayPtr cells(zxCreateCellMatrix(1, 100000));
  for (zxSize i = 0; i < 100000; ++i) zxSetCell(cells.get(), i, zxCreateString("x"));
  JavaLocalFrame local(env);
  jobject object = javaConvertKorvaxToClosestJavaObject(cells.get());
  const gui_objects::ZxArrayPtr back(kxjClosestKorvaxArray(env, object));
  EXPECT_EQ(zxGetNumberOfElements(back.get()), 100000U);
}

TEST_F(JavaBridge, GlobalReferencesAreCountedAndNullIsHarmless) {
  EXPECT_EQ(kxjNewGlobalRef(nullptr, 0), nullptr);
  kxjDeleteGlobalRef(nullptr);
  JavaLocalFrame local(env);
  jobject global = kxjNewGlobalRef(env->NewStringUTF("kept"), 0);
  EXPECT_EQ(kxjLiveGlobalRefs(), refsBefore + 1);
  kxjDeleteGlobalRef(global);
}

TEST_F(JavaBridge, TheClassSystemsConversionForAnyIsTheClosestMatch) {
  const objsys::JavaTypeConversion* any = objsys::JavaTypeConversion::getConversion(objsys::COSNameID("any"));
  ASSERT_NE(any, nullptr);
  JavaLocalFrame local(env);
  const gui_objects::ZxArrayPtr array = cmdlang::readLiteral("[1 2 3]");
  jobject object = any->toJava(objsys::COSValue(array.get()));
  EXPECT_EQ(kxjClassName(env, object), "[D");
  const gui_objects::ZxArrayPtr back(any->fromJava(object).as<zxArray>());
  EXPECT_EQ(cmdlang::writeLiteral(back.get()), "[1 2 3]");
}

}  // namespace
