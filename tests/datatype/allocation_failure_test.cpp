// Every allocation fails once, on purpose: each conversion of every type, and a sample of richer
// values of every family, runs with its 1st, 2nd, ... allocation failing until it runs through. A
// failure must raise the foundation library's bad-allocation error (or, for the types whose rules
// turn every failure into one identifier, that identifier), store nothing and leak nothing; a failure
// the code recovers from must give the same result as no failure. This program routes operator new through utillib, so
// the library's and the host's C++ allocations fail too.
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "cmdlanglib/literal.h"
#include "datatype/all_types.h"
#include "support.h"
#include "user_view.h"
#include "utillib/ut.h"

namespace {

using namespace graphics::datatype;
using objsys::COSValue;

// What one attempt gave: the read-back literal and text of the value stored, an identifier, or
// "bad_alloc"; anything else raised is a fault.
std::string attempt(const std::string& type, const std::function<COSValue()>& convert, std::size_t failing) {
  zx::CallFrame frame;
  COSValue value;
  std::exception_ptr raised;
  utFailNthAllocation(failing);
  try {
    value = convert();
  } catch (...) {
    raised = std::current_exception();
  }
  utFailNthAllocation(0);
  if (!raised) return userview::outcome([&] { return userview::seen(type, value); });
  try {
    std::rethrow_exception(raised);
  } catch (const fl::except::bad_alloc_impl&) {
    return "bad_alloc";
  } catch (const fl::except::IMsgIDException& error) {
    return std::string("error: ") + error.get_error_id();
  } catch (const std::exception& other) {
    return std::string("unexpected exception: ") + other.what();
  }
}

// Runs convert with its 1st, 2nd, ... allocation failing until one run has no failure left to inject,
// and checks each outcome against the run without any failure. substitute is the identifier the
// type's rules raise in place of any failure, if they do.
void failEachAllocation(const std::string& type, const std::string& what, const std::function<COSValue()>& convert,
                        const std::string& substitute = "") {
  SCOPED_TRACE(type + " from " + what);
  const std::string expected = attempt(type, convert, 0);
  for (std::size_t failing = 1; failing < 10000; ++failing) {
    const std::string got = attempt(type, convert, failing);
    if (!utInjectedFailureHappened()) {
      EXPECT_EQ(got, expected) << "with no allocation left to fail";
      return;
    }
    if (got == "bad_alloc" || got == expected) continue;
    if (!substitute.empty() && got == "error: " + substitute) continue;
    ADD_FAILURE() << "allocation " << failing << " failing gave " << got << " instead of bad_alloc or " << expected;
  }
  ADD_FAILURE() << "still allocating after 10000 allocations";
}

class AllocationFailure : public orbtest::DataTypeTest {
 protected:
  static const objsys::COSTypeConversion& arrays(const std::string& type) {
    return *objsys::COSTypeRepository::getConversion("any", userview::fullNameOf(type).c_str());
  }
  static const objsys::COSTypeConversion& texts(const std::string& type) {
    return *objsys::COSTypeRepository::getConversion("asciiString", userview::fullNameOf(type).c_str());
  }
  // Callbacks turn every failure to build one into one identifier, and the style lists a text they
  // cannot take into the out-of-memory identifier.
  static std::string substituteFor(const std::string& type) {
    if (type == "Callback") return "Korvax:datatypes:callback:CreateCallback";
    if (type == "LineStyleArray" || type == "MarkerStyleArray") return "Korvax:orb:datatypes:OutOfMemory";
    return "";
  }
  // The conversions are looked up before any allocation is made to fail.
  void fromLiteral(const std::string& type, const char* literal) {
    const gui_objects::ZxArrayPtr array = cmdlang::readLiteral(literal);
    const objsys::COSTypeConversion& conversion = arrays(type);
    failEachAllocation(
        type, literal, [&] { return conversion.from(COSValue(array.get())); }, substituteFor(type));
  }
  void fromText(const std::string& type, const char* text) {
    const objsys::COSTypeConversion& conversion = texts(type);
    failEachAllocation(
        type, std::string("text ") + text, [&] { return conversion.from(COSValue(text)); }, substituteFor(type));
  }
};

// The default of every type: made, copied, read back as an array and as text, and stored again from
// both, each with every allocation failing in turn.
TEST_F(AllocationFailure, EveryConversionOfEveryTypeOnItsDefault) {
  for (const TypeRow& row : kEveryType) {
    objsys::COSDataType& type = *row.dataType();
    const std::string name = type.getName();
    const COSValue defaultValue = type.getDefaultValue();
    failEachAllocation(name, "a copy of the default", [&] { return type.copy(defaultValue); });

    const objsys::COSTypeConversion& arrayConversion = arrays(name);
    const objsys::COSTypeConversion& textConversion = texts(name);
    const gui_objects::ZxArrayPtr array(arrayConversion.to(defaultValue).as<zxArray>());
    failEachAllocation(
        name, "the default's array", [&] { return arrayConversion.from(COSValue(array.get())); }, substituteFor(name));
    COSValue text;
    try {
      text = textConversion.to(defaultValue);
    } catch (const fl::except::IMsgIDException&) {
      // A type without a text form refuses to write one, on purpose.
    }
    if (!text.isEmpty()) {
      fromText(name, text.as<const char>());
      utFree(text.pointer());
    }
    // The read-backs themselves: what they give without a failure (a text form may be refused on
    // purpose), or bad_alloc; nothing leaks either way.
    for (const objsys::COSTypeConversion* conversion : {&arrayConversion, &textConversion}) {
      const bool asText = conversion == &textConversion;
      failEachAllocation(name, asText ? "the text read-back" : "the array read-back", [&] {
        const COSValue readBack = conversion->to(defaultValue);
        if (asText) {
          utFree(readBack.pointer());
        } else {
          zxDestroyArray(readBack.as<zxArray>());
        }
        return COSValue();
      });
    }
  }
}

// Values beyond the defaults, one or more per family, and refusals, which must stay refusals.
TEST_F(AllocationFailure, ValuesOfEveryFamily) {
  const struct {
    const char* type;
    const char* literal;
  } arraysCases[] = {
      {"Positive", "uint8(5)"},
      {"LineStyle", "'xyz'"},
      {"ColorMap", "[0 0 0; 0.5 0.5 0.5; 1 1 1]"},
      {"ColorMap", "[0 0 2]"},
      {"TextString", "{'one'; 'two'}"},
      {"UTF16String", "'h\xC3\xA9llo'"},
      {"NumericOrString", "'abc'"},
      {"RGBAColor", "uint8([255 0 0])"},
      {"RGBAColor", "'purple'"},
      {"RGBMatrixFlatNoneColor", "[1 0 0; 0 1 0]"},
      {"MeshAlpha", "'interp'"},
      {"LineStyleArray", "{'-', '--', ':'}"},
      {"NLineStyles", "{'-', ':'}"},
      {"ScreenPosition", "int32([1 1 100 50])"},
      {"Point3", "[1 NaN 1]"},
      {"BoundingVolume", "[0 0 0; 1 1 1]"},
      {"HandleOrEmpty", "'abc'"},
      {"Callback", "{@disp, 1, 'a'}"},
  };
  for (const auto& c : arraysCases) fromLiteral(c.type, c.literal);

  const struct {
    const char* type;
    const char* text;
  } textCases[] = {
      {"LineStyle", " Dotted "}, {"RGBAColor", "0 0 0 0.5"},      {"RGBAColor", "purple"},   {"PrintfFormat", "%*d"},
      {"Tick", "[0 1 2]"},       {"Position", "0.1 0.1 0.8 0.8"}, {"Callback", "disp('x')"},
  };
  for (const auto& c : textCases) fromText(c.type, c.text);
}

// Extending the color table is all or nothing: a failure while it adds entries leaves it as it was.
// (One that strikes after the table is extended, in allocating the value's block, leaves it extended
// in full.)
TEST_F(AllocationFailure, AColorTableIsExtendedInFullOrNotAtAll) {
  const gui_objects::ZxArrayPtr entries = cmdlang::readLiteral("struct('teal', [0 0.5 0.5], 'g', [0 0.75 0])");
  const objsys::COSTypeConversion& conversion = arrays("ColorTable");
  const std::string before = userview::setting("ColorTable", "[]");
  std::string extended;
  for (std::size_t failing = 1; failing < 10000; ++failing) {
    zx::CallFrame frame;
    utFailNthAllocation(failing);
    try {
      ColorTableDataType::getType()->destroy(conversion.from(COSValue(entries.get())));
    } catch (const fl::except::bad_alloc_impl&) {
    }
    utFailNthAllocation(0);
    const std::string now = userview::setting("ColorTable", "[]");
    if (!utInjectedFailureHappened()) {
      EXPECT_NE(now, before);
      if (!extended.empty()) {
        EXPECT_EQ(now, extended);
      }
      return;
    }
    if (now == before) continue;
    if (extended.empty()) extended = now;
    EXPECT_EQ(now, extended) << "allocation " << failing << " failing left the table partly extended";
  }
}

}  // namespace
