// Tests of ARRAY objects: the JSON written for each class, the round trip through JSON text, the
// refusals of malformed objects, and the bound on the bytes of a value's read-back.
#include "orbdt/json_array.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <tuple>
#include <utility>

#include "array_samples.h"
#include "cmdlanglib/literal.h"
#include "orbdt/response_size.h"

namespace orbdt::test {

using cmdlang::LiteralError;
using cmdlang::readLiteral;
using cmdlang::test::sameArray;
using cmdlang::test::Sample;
using cmdlang::test::sampleArrays;
using gui_objects::ZxArrayPtr;
using nlohmann::json;
using ::testing::HasSubstr;

namespace {

TEST(ArrayToJsonTest, WritesEachClassInItsForm) {
  const std::pair<const char*, const char*> cases[] = {
      // literal, JSON
      {"int64([-9223372036854775808 9223372036854775807])",
       R"({"class":"int64","dims":[1,2],"re":[-9223372036854775808,9223372036854775807]})"},
      {"single([0.1 NaN -Inf])", R"({"class":"single","dims":[1,3],"re":[0.10000000149011612,"NaN","-Inf"]})"},
      {"[true false]", R"({"class":"logical","dims":[1,2],"re":[1,0]})"},
      {"complex(1, Inf)", R"({"class":"double","dims":[1,1],"re":[1],"im":["Inf"]})"},
      {"sparse([0 2])", R"({"class":"double","dims":[1,2],"re":[0,2],"sparse":true})"},
      {"zeros(1, 0, 2)", R"({"class":"double","dims":[1,0,2],"re":[]})"},
      {"['h\xC3\xA9';'ab']", R"({"class":"char","dims":[2,2],"rows":["h\u00e9","ab"]})"},
      {"struct('a', true)",
       R"({"class":"struct","dims":[1,1],"fields":["a"],
           "elements":[{"a":{"class":"logical","dims":[1,1],"re":[1]}}]})"},
  };
  for (const auto& [literal, text] : cases) {
    SCOPED_TRACE(literal);
    EXPECT_EQ(arrayToJson(readLiteral(literal).get()), json::parse(text));
  }
  const zxSize dims[] = {1, 2};
  const ZxArrayPtr objects(zxCreateObjectArray("Figure", 2, dims, nullptr));
  const ZxArrayPtr handle(zxCreateFunctionHandle("sin"));
  EXPECT_EQ(arrayToJson(objects.get()), json::parse(R"({"class":"object","className":"Figure","dims":[1,2]})"));
  EXPECT_EQ(arrayToJson(handle.get()), json::parse(R"({"class":"function_handle","dims":[1,1],"function":"sin"})"));
}

TEST(ArrayFromJsonTest, EveryArrayReadsBackEqualThroughJsonText) {
  for (const Sample& sample : sampleArrays()) {
    const std::string text = arrayToJson(sample.array.get()).dump();
    SCOPED_TRACE(sample.name + ": " + text);
    EXPECT_TRUE(sameArray(arrayFromJson(json::parse(text)).get(), sample.array.get()));
  }
}

TEST(ArrayFromJsonTest, AcceptsLenientSpellingsOfExactValues) {
  const std::pair<const char*, const char*> cases[] = {
      // JSON, literal
      {R"({"class":"logical","dims":[1,2],"re":[true,0]})", "logical([1 0])"},
      {R"({"class":"int8","dims":[1,1],"re":[-3.0]})", "int8(-3)"},
      {R"({"class":"uint64","dims":[1,1],"re":[1e19]})", "uint64(10000000000000000000)"},
      {R"({"class":"logical","dims":[2,1],"re":[0,1],"sparse":true})", "sparse(logical([0;1]))"},
      {R"({"class":"char","dims":[1,2],"rows":["\ud83d\ude00"]})", "'\xF0\x9F\x98\x80'"},
  };
  for (const auto& [text, literal] : cases) {
    SCOPED_TRACE(text);
    EXPECT_TRUE(sameArray(arrayFromJson(json::parse(text)).get(), readLiteral(literal).get()));
  }
}

TEST(ArrayFromJsonTest, RefusesMalformedObjectsNamingTheMember) {
  const std::pair<const char*, const char*> cases[] = {
      // JSON, part of the message
      {"[1]", "$: expected an ARRAY object"},
      {R"({"dims":[1,1]})", "missing member 'class'"},
      {R"({"class":"quad","dims":[1,1]})", "unknown class 'quad'"},
      {R"({"class":"object","dims":[1,1],"className":"Figure"})", "cannot be recreated"},
      {R"({"class":"double","dims":[1]})", "$.dims: must list at least two"},
      {R"({"class":"double","dims":[1,2],"re":[1]})", "$.re: has 1 entries where the dims need 2"},
      {R"({"class":"double","dims":[1,1],"re":[1],"extra":0})", "unexpected member 'extra'"},
      {R"({"class":"uint8","dims":[1,2],"re":[0,256]})", "$.re[1]: 256 is out of range"},
      {R"({"class":"char","dims":[2,2],"rows":["ab","c"]})", "$.rows[1]: has 1 UTF-16 units"},
      {R"({"class":"cell","dims":[1,1],"cells":[{"class":"int8","dims":[1,1],"re":[300]}]})", "$.cells[0].re[0]"},
      {R"({"class":"struct","dims":[1,1],"fields":["a"],"elements":[{"b":null}]})", "unknown field 'b'"},
  };
  for (const auto& [text, message] : cases) {
    SCOPED_TRACE(text);
    EXPECT_THAT([text = text] { arrayFromJson(json::parse(text)); },
                ::testing::ThrowsMessage<LiteralError>(HasSubstr(message)));
  }
}

TEST(ArrayFromJsonTest, RefusesSizesBeyondTheBudgetBeforeMakingThem) {
  // JSON, the bytes needed (SIZE_MAX: more than any count), part of the message.
  const std::tuple<const char*, std::size_t, const char*> cases[] = {
      {R"({"class":"double","dims":[20,20],"re":[],"im":[]})", 6400, "$: a 20x20 double array"},
      {R"({"class":"cell","dims":[1000000,1000000],"cells":[]})", 8000000000000, "$: a 1000000x1000000 cell array"},
      {R"({"class":"char","dims":[1,1000000000000],"rows":[""]})", 4000000000000, "$: a 1x1000000000000 char array"},
      {R"({"class":"int8","dims":[4611686018427387904,4],"re":[]})", SIZE_MAX, "needs more than"},
      {R"({"class":"cell","dims":[1,1],"cells":[{"class":"uint16","dims":[1000,1000],"re":[]}]})", 2000000,
       "$.cells[0]: a 1000x1000 uint16 array"},
  };
  for (const auto& [text, needed, message] : cases) {
    SCOPED_TRACE(text);
    cmdlang::ByteBudget budget(1000);
    const auto read = [&budget, text = text] { arrayFromJson(json::parse(text), budget); };
    using namespace ::testing;
    EXPECT_THAT(read,
                Throws<cmdlang::TooLargeError>(AllOf(Property(&cmdlang::TooLargeError::needed, needed),
                                                     Property(&cmdlang::TooLargeError::limit, 1000U),
                                                     Property(&cmdlang::TooLargeError::what, HasSubstr(message)))));
  }
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

// The bound with one text copy is at least the longer of the JSON text and the literal, and each
// further copy adds at least that much again; arrays of every class and the longest element texts.
TEST(ReadBackBytesTest, BoundsTheTextsOfEveryArray) {
  std::vector<Sample> arrays = sampleArrays();
  for (const char* literal : {"[-2.2250738585072014e-308 -1.7976931348623157e308 0.1 -999999999999999]",
                              "complex([-0.1 2.5e-300], [NaN 1e300])", "['\x01\x02\x1f' ; '\"\\a']"}) {
    arrays.push_back({literal, readLiteral(literal)});
  }
  for (const Sample& sample : arrays) {
    SCOPED_TRACE(sample.name);
    const std::size_t text =
        std::max(arrayToJson(sample.array.get()).dump().size(), cmdlang::writeLiteral(sample.array.get()).size());
    EXPECT_GE(readBackBytes(sample.array.get(), 1), text);
    EXPECT_GE(readBackBytes(sample.array.get(), 4), 3 * text);
  }
}

TEST(ReadBackBytesTest, SaturatesInsteadOfWrapping) {
  EXPECT_EQ(readBackBytes(nullptr, 4), 0U);
  const ZxArrayPtr array(readLiteral("zeros(100, 100)"));
  constexpr std::size_t kMax = std::numeric_limits<std::size_t>::max();
  EXPECT_EQ(readBackBytes(array.get(), kMax), kMax);
}

}  // namespace
}  // namespace orbdt::test
