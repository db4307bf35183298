// Every allocation fails once, on purpose: each conversion of every type, and a sample of richer
// values of every family, runs with its 1st, 2nd, ... allocation failing until it runs through. A
// failure must raise the foundation library's bad-allocation error (or, for the types whose rules
// turn every failure into one identifier, that identifier), store nothing and leak nothing; a failure
// the code recovers from must give the same result as no failure. This program routes operator new through utillib, so
// the library's and the host's C++ allocations fail too.
#include <exception>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "cmdlanglib/literal.h"
#include "datatype/all/all_types.h"
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
  // The identifier the type's rules turn every failure into, if they do.
  static std::string substituteFor(const std::string& type) {
    const TypeFacts& facts = factsOf(type);
    return facts.failuresBecome != nullptr ? facts.failuresBecome : "";
  }
  static const TypeFacts& factsOf(const std::string& type) {
    for (const TypeRow& row : kEveryType) {
      if (type == row.name) return row.facts;
    }
    throw std::invalid_argument("no type " + type);
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

// Values beyond the defaults: samples of what every family takes or refuses, tried on every type, so
// that each family meets some value it stores and some it refuses. Refusals must stay refusals.
TEST_F(AllocationFailure, SampleValuesOnEveryType) {
  constexpr const char* kLiterals[] = {
      "uint8(5)",
      "'xyz'",
      "[0 0 0; 0.5 0.5 0.5; 1 1 1]",
      "[0 0 2]",
      "{'one'; 'two'}",
      "'h\xC3\xA9llo'",
      "'purple'",
      "uint8([255 0 0])",
      "[1 0 0; 0 1 0]",
      "'interp'",
      "{'-', '--', ':'}",
      "int32([1 1 100 50])",
      "[1 NaN 1]",
      "[0 0 0; 1 1 1]",
      "{@disp, 1, 'a'}",
  };
  constexpr const char* kTexts[] = {" Dotted ", "0 0 0 0.5",       "purple",   "%*d",
                                    "[0 1 2]",  "0.1 0.1 0.8 0.8", "disp('x')"};
  for (const TypeRow& row : kEveryType) {
    // A Java machine, which such a type would start, allocates outside the failures injected here.
    if (row.facts.arraysUseJava) continue;
    for (const char* literal : kLiterals) fromLiteral(row.name, literal);
    for (const char* text : kTexts) fromText(row.name, text);
  }
}

}  // namespace
