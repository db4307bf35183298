// Tests of ARRAY objects: the JSON written for each class, the round trip through JSON text, and the
// refusals of malformed objects.
#include "orbdt/json_array.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "array_samples.h"

namespace orbdt::test {

using cmdlang::LiteralError;
using cmdlang::readLiteral;
using cmdlang::test::sameArray;
using cmdlang::test::Sample;
using cmdlang::test::sampleArrays;
using gui_objects::ZxArrayPtr;
using nlohmann::json;

namespace {

TEST(ArrayToJsonTest, WritesEachClassInItsForm) {
  static const struct {
    const char* literal;
    const char* json;
  } kCases[] = {
      {"int64([-9223372036854775808 9223372036854775807])",
       R"({"class":"int64","dims":[1,2],"re":[-9223372036854775808,9223372036854775807]})"},
      {"uint64(18446744073709551615)", R"({"class":"uint64","dims":[1,1],"re":[18446744073709551615]})"},
      {"single([0.1 NaN -Inf])", R"({"class":"single","dims":[1,3],"re":[0.10000000149011612,"NaN","-Inf"]})"},
      {"[true false]", R"({"class":"logical","dims":[1,2],"re":[1,0]})"},
      {"complex(1, Inf)", R"({"class":"double","dims":[1,1],"re":[1],"im":["Inf"]})"},
      {"sparse([0 2])", R"({"class":"double","dims":[1,2],"re":[0,2],"sparse":true})"},
      {"zeros(1, 0, 2)", R"({"class":"double","dims":[1,0,2],"re":[]})"},
      {"['h\xC3\xA9';'ab']", R"({"class":"char","dims":[2,2],"rows":["h\u00e9","ab"]})"},
      {"cell(1, 2)", R"({"class":"cell","dims":[1,2],"cells":[null,null]})"},
      {"struct('a', true)",
       R"({"class":"struct","dims":[1,1],"fields":["a"],
           "elements":[{"a":{"class":"logical","dims":[1,1],"re":[1]}}]})"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.literal);
    EXPECT_EQ(arrayToJson(readLiteral(c.literal).get()), json::parse(c.json));
  }
}

TEST(ArrayToJsonTest, DescribesObjectsAndFunctionHandles) {
  const zxSize dims[] = {1, 2};
  const ZxArrayPtr objects(zxCreateObjectArray("Figure", 2, dims, nullptr));
  const ZxArrayPtr handle(zxCreateFunctionHandle("sin"));
  EXPECT_EQ(arrayToJson(objects.get()), json::parse(R"({"class":"object","className":"Figure","dims":[1,2]})"));
  EXPECT_EQ(arrayToJson(handle.get()), json::parse(R"({"class":"function_handle","dims":[1,1],"function":"sin"})"));
}

TEST(ArrayFromJsonTest, EveryArrayReadsBackEqualThroughJsonText) {
  for (const Sample& sample : sampleArrays()) {
    SCOPED_TRACE(sample.name);
    const std::string text = arrayToJson(sample.array.get()).dump();
    SCOPED_TRACE(text);
    EXPECT_TRUE(sameArray(arrayFromJson(json::parse(text)).get(), sample.array.get()));
  }
}

TEST(ArrayFromJsonTest, AcceptsLenientSpellingsOfExactValues) {
  static const struct {
    const char* json;
    const char* literal;
  } kCases[] = {
      {R"({"class":"logical","dims":[1,2],"re":[true,0]})", "logical([1 0])"},
      {R"({"class":"int8","dims":[1,1],"re":[-3.0]})", "int8(-3)"},
      {R"({"class":"uint64","dims":[1,1],"re":[1e19]})", "uint64(10000000000000000000)"},
      {R"({"class":"logical","dims":[2,1],"re":[0,1],"sparse":true})", "sparse(logical([0;1]))"},
      {R"({"class":"char","dims":[1,2],"rows":["\ud83d\ude00"]})", "'\xF0\x9F\x98\x80'"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.json);
    EXPECT_TRUE(sameArray(arrayFromJson(json::parse(c.json)).get(), readLiteral(c.literal).get()));
  }
}

TEST(ArrayFromJsonTest, RefusesMalformedObjectsNamingTheMember) {
  static const struct {
    const char* json;
    const char* message;
  } kCases[] = {
      {"[1]", "$: expected an ARRAY object"},
      {R"({"dims":[1,1]})", "missing member 'class'"},
      {R"({"class":"quad","dims":[1,1]})", "unknown class 'quad'"},
      {R"({"class":"object","dims":[1,1],"className":"Figure"})", "cannot be recreated"},
      {R"({"class":"function_handle","dims":[1,1],"function":"sin"})", "cannot be recreated"},
      {R"({"class":"double","dims":[1]})", "$.dims: must list at least two"},
      {R"({"class":"double","dims":[1,2],"re":[1]})", "$.re: has 1 entries where the dims need 2"},
      {R"({"class":"double","dims":[1,1],"re":[1],"extra":0})", "unexpected member 'extra'"},
      {R"({"class":"double","dims":[1,1],"re":["nan"]})", "$.re[0]: expected a number"},
      {R"({"class":"uint8","dims":[1,2],"re":[0,256]})", "$.re[1]: 256 is out of range"},
      {R"({"class":"uint64","dims":[1,1],"re":[-1]})", "out of range"},
      {R"({"class":"int64","dims":[1,1],"re":[9223372036854775808]})", "out of range"},
      {R"({"class":"int64","dims":[1,1],"re":[9.3e18]})", "out of range"},
      {R"({"class":"int32","dims":[1,1],"re":[1.5]})", "not a whole number"},
      {R"({"class":"int32","dims":[1,1],"re":["NaN"]})", "expected an integer"},
      {R"({"class":"single","dims":[1,1],"re":[1e39]})", "out of range for single"},
      {R"({"class":"logical","dims":[1,1],"re":[2]})", "must be 0 or 1"},
      {R"({"class":"logical","dims":[1,1],"re":[1],"im":[0]})", "cannot be complex"},
      {R"({"class":"int8","dims":[1,1],"re":[1],"sparse":true})", "only 2-D double and logical"},
      {R"({"class":"char","dims":[2,2],"rows":["ab","c"]})", "$.rows[1]: has 1 UTF-16 units"},
      {R"({"class":"cell","dims":[1,1],"cells":[{"class":"int8","dims":[1,1],"re":[300]}]})", "$.cells[0].re[0]"},
      {R"({"class":"struct","dims":[1,1],"fields":["a","a"],"elements":[{}]})", "duplicate field"},
      {R"({"class":"struct","dims":[1,1],"fields":["a"],"elements":[{"b":null}]})", "unknown field 'b'"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.json);
    try {
      arrayFromJson(json::parse(c.json));
      ADD_FAILURE() << "accepted";
    } catch (const LiteralError& error) {
      EXPECT_THAT(error.what(), ::testing::HasSubstr(c.message));
    }
  }
}

TEST(ArrayFromJsonTest, RefusesSizesBeyondTheBudgetBeforeMakingThem) {
  static const struct {
    const char* json;
    std::size_t needed;  // SIZE_MAX: more than any count
    const char* message;
  } kCases[] = {
      {R"({"class":"double","dims":[1000000,1000000],"re":[]})", 8000000000000, "$: a 1000000x1000000 double array"},
      {R"({"class":"double","dims":[20,20],"re":[],"im":[]})", 6400, "$: a 20x20 double array"},
      {R"({"class":"cell","dims":[1000000,1000000],"cells":[]})", 8000000000000, "$: a 1000000x1000000 cell array"},
      {R"({"class":"char","dims":[1,1000000000000],"rows":[""]})", 4000000000000, "$: a 1x1000000000000 char array"},
      {R"({"class":"struct","dims":[100000,100000],"fields":["a","b"],"elements":[]})", 160000000000,
       "$: a 100000x100000 struct array"},
      {R"({"class":"int8","dims":[4611686018427387904,4],"re":[]})", SIZE_MAX, "needs more than"},
      {R"({"class":"cell","dims":[1,1],"cells":[{"class":"uint16","dims":[1000,1000],"re":[]}]})", 2000000,
       "$.cells[0]: a 1000x1000 uint16 array"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.json);
    cmdlang::ByteBudget budget(1000);
    try {
      arrayFromJson(json::parse(c.json), budget);
      ADD_FAILURE() << "accepted";
    } catch (const cmdlang::TooLargeError& error) {
      EXPECT_EQ(error.needed(), c.needed);
      EXPECT_EQ(error.limit(), 1000U);
      EXPECT_THAT(error.what(), ::testing::HasSubstr(c.message));
    }
  }
}

TEST(ArrayFromJsonTest, RefusesEmptyArraysWhoseDimensionsOverflow) {
  cmdlang::ByteBudget budget(1 << 20);
  EXPECT_THROW(arrayFromJson(json::parse(R"({"class":"double","dims":[0,4294967296,4294967296],"re":[]})"), budget),
               LiteralError);
}

TEST(ArrayFromJsonTest, NestsArraysAsDeeplyAsLiterals) {
  const auto nestedCells = [](int depth) {
    json value = {{"class", "double"}, {"dims", {0u, 0u}}, {"re", json::array()}};
    for (int i = 1; i < depth; ++i) value = {{"class", "cell"}, {"dims", {1u, 1u}}, {"cells", {value}}};
    return value;
  };
  EXPECT_NO_THROW(arrayFromJson(nestedCells(cmdlang::kMaxLiteralDepth)));
  EXPECT_THROW(arrayFromJson(nestedCells(cmdlang::kMaxLiteralDepth + 1)), LiteralError);
}

}  // namespace
}  // namespace orbdt::test
