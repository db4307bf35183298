// PrintfFormat: each conversion accepted or refused, and the number it writes.
#include "datatype/text/printf_format.h"

#include <cmath>
#include <limits>
#include <string>

#include "../support.h"
#include "../user_view.h"

namespace {

using graphics::datatype::PrintfFormat;
using userview::setting;

class PrintfFormats : public orbtest::DataTypeTest {};

// What constructing the format raises ("" when accepted), by the key after the type's catalog.
std::string refusal(const char* format) {
  try {
    PrintfFormat accepted(format);
  } catch (const fl::except::IMsgIDException& error) {
    const std::string id = error.get_error_id();
    return id.substr(id.rfind(':') + 1);
  }
  return "";
}

TEST_F(PrintfFormats, EachConversionIsTakenOrRefused) {
  struct Case {
    const char* format;
    const char* key;
  };
  const Case cases[] = {
      {"%d", ""},
      {"%i", ""},
      {"%u", ""},
      {"%o", ""},
      {"%x", ""},
      {"%X", ""},
      {"%f", ""},
      {"%F", ""},
      {"%e", ""},
      {"%E", ""},
      {"%g", ""},
      {"%G", ""},
      {"%c", "UnsupportedType"},
      {"%s", "UnsupportedType"},
      {"%p", "UnsupportedType"},
      {"%n", "UnsupportedType"},
      {"%a", "UnsupportedType"},
      {"%A", "UnsupportedType"},
      {"%q", "InvalidFormat"},
      {"%ld", "InvalidFormat"},
      {"%1$d", "InvalidFormat"},
      {"%", "InvalidFormat"},
      {"100%", "InvalidFormat"},
      {"abc", "InvalidFormat"},
      {"", "InvalidFormat"},
      {"%d %d", "InvalidFormat"},
      {"%%d", "InvalidFormat"},
      {"%*d", "DynamicNumber"},
      {"%.*f", "DynamicNumber"},
      {"%101d", "NumberTooLarge"},
      {"%.101f", "NumberTooLarge"},
      {"%99999999999999999999d", "NumberTooLarge"},
      {"%-+ 0#100.100e", ""},
      {"%5.f", ""},
      {"%d%%", ""},
      {"x = %8.3f mm", ""},
  };
  for (const Case& c : cases) EXPECT_EQ(refusal(c.format), c.key) << c.format;
}

TEST_F(PrintfFormats, WriteOneNumberByEachConversion) {
  struct Case {
    const char* format;
    double number;
    const char* written;
  };
  const double inf = std::numeric_limits<double>::infinity();
  const Case cases[] = {
      {"%d", 2.6, "3"},
      {"%i", -2.5, "-2"},
      {"%u", 7, "7"},
      {"%u", -7, "-7"},
      {"%o", 8, "10"},
      {"%x", 255, "ff"},
      {"%X", 255, "FF"},
      {"%#x", 255, "0xff"},
      {"%05d", 42, "00042"},
      {"%-4d|", 42, "42  |"},
      {"%+d", 42, "+42"},
      {"%d", inf, "inf"},
      {"%5d", NAN, "  nan"},
      {"%.2f", 3.14159, "3.14"},
      {"%F", inf, "INF"},
      {"%e", 1234.5, "1.234500e+03"},
      {"%.1E", 0.05, "5.0E-02"},
      {"%g", 1e-5, "1e-05"},
      {"%G", 1e20, "1E+20"},
      {"%g%%", 50, "50%"},
      {"x = %.1f mm", 2, "x = 2.0 mm"},
  };
  for (const Case& c : cases) EXPECT_EQ(PrintfFormat(c.format).format(c.number), c.written) << c.format;
}

TEST_F(PrintfFormats, ArraysMustBeOneRowOfText) {
  EXPECT_EQ(setting("PrintfFormat", "'%.3g'"), "'%.3g' | %.3g");
  for (const char* literal : {"['%d';'%d']", "5", "{'%d'}", "''"}) {
    EXPECT_EQ(setting("PrintfFormat", literal), "error: Korvax:datatypes:PrintfFormatDataType:InvalidFormat")
        << literal;
  }
}

}  // namespace
