// The built-in conversions from text to the host's scalar types.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>

#include "objsys/cos_type_conversion.h"
#include "support.h"
#include "utillib/ut.h"

namespace {

using objsys::COSValue;
using orbtest::RaisesId;

class BuiltinStringConversions : public orbtest::DataTypeTest {
 protected:
  // The text read by the conversion to target, written back by the same conversion.
  std::string roundTrip(const char* target, const char* text) {
    const objsys::COSTypeConversion* conversion = objsys::COSTypeRepository::getConversion("asciiString", target);
    const COSValue value = conversion->from(COSValue(text));
    const COSValue back = conversion->to(value);
    std::string written = back.as<const char>();
    utFree(value.pointer());
    utFree(back.pointer());
    return written;
  }
};

TEST_F(BuiltinStringConversions, EachTargetReadsOneValueOfItsClass) {
  struct Case {
    const char* target;
    const char* text;
    const char* written;
  };
  const Case cases[] = {
      {"int8 scalar", "-128", "-128"},
      {"int16 scalar", " +42 ", "42"},
      {"int32 scalar", "2147483647", "2147483647"},
      {"int64 scalar", "-9223372036854775808", "-9223372036854775808"},
      {"uint8 scalar", "255", "255"},
      {"uint16 scalar", "65535", "65535"},
      {"uint32 scalar", "4294967295", "4294967295"},
      {"uint64 scalar", "18446744073709551615", "18446744073709551615"},
      {"single scalar", "0.1", "0.1"},
      {"double scalar", "[2.5e3]", "2500"},
      {"double scalar", "-inf", "-Inf"},
      {"logical scalar", "TRUE", "true"},
      {"asciiString", " kept as is ", " kept as is "},
      {"int", "-7", "-7"},
      {"uint64_T", "5", "5"},
      {"single", "NaN", "NaN"},
      {"float", "1e-3", "0.001"},
      {"double", "0.1", "0.1"},
      {"logical", "0", "false"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.target) + " <- " + c.text);
    EXPECT_EQ(roundTrip(c.target, c.text), c.written);
  }
}

TEST_F(BuiltinStringConversions, TextOutsideTheClassIsRefused) {
  struct Case {
    const char* target;
    const char* text;
  };
  const Case cases[] = {
      {"int8 scalar", "128"}, {"uint8 scalar", "-1"}, {"int32 scalar", "1.5"}, {"int", ""},
      {"double", "abc"},      {"logical", "yes"},     {"uint64_T", "1e3"},     {"single scalar", "1 2"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.target) + " <- " + c.text);
    const objsys::COSTypeConversion* conversion = objsys::COSTypeRepository::getConversion("asciiString", c.target);
    EXPECT_THAT([&] { conversion->from(COSValue(c.text)); }, RaisesId("Korvax:class:KorvaxConversionError"));
  }
}

}  // namespace
