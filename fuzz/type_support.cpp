// Starting the library for the conversion fuzzers and checking what the conversions store.
#include "type_support.h"

#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

#include "arraylib/zxcompare.h"
#include "arraylib/zxerror.h"
#include "datatype/all/all_types.h"
#include "datatype/color/color_base.h"
#include "datatype/library.h"
#include "foundationlib/i18n/catalog.h"
#include "fuzz_support.h"
#include "guilib/auto_ptr.h"
#include "javabridgelib/java_bridge.h"
#include "objsys/builtin_types.h"
#include "utillib/ut.h"

namespace orbfuzz {

namespace {

using objsys::COSValue;
using namespace graphics::datatype;

std::vector<FuzzType> startLibrary() {
  // The library's warnings and messages would only slow the fuzzer down.
  static ut::PrintCapture quiet([](std::string_view) {});
  objsys::registerBuiltinTypes();
  // A Java peer would start a Java machine inside the fuzzer; here its conversions refuse instead.
  kxjDisableJavaStartup();
  KXInitialize_orbdatatypes(nullptr);
  std::vector<FuzzType> types;
  for (const TypeRow& row : kEveryType) {
    const char* fullName = row.fullName();
    FuzzType type{row.name, &row.facts, row.dataType(), objsys::COSTypeRepository::getConversion("any", fullName),
                  objsys::COSTypeRepository::getConversion("asciiString", fullName)};
    if (type.type == nullptr || type.arrays == nullptr || type.texts == nullptr) {
      fail("a type of the master list is not registered with both conversions", row.name);
    }
    types.push_back(type);
  }
  return types;
}

std::string context(const FuzzType& type, const char* what, const std::string& input) {
  return std::string(type.name) + ", " + what + ", input " + input;
}

void checkCataloged(const FuzzType& type, const char* what, const std::string& input,
                    const fl::except::IMsgIDException& error) {
  const char* id = error.get_error_id();
  if (!fl::i18n::MessageCatalog::instance().find(id).has_value()) {
    fail("a refusal carries an identifier missing from the catalog", context(type, what, input) + ": " + id);
  }
  // A refusal made through the host's error path is a host error: it has a text for the user.
  ORB_FUZZ_CHECK(!error.get_message_text().empty(), context(type, what, input) + ": " + id);
}

// The text a text conversion reads a value back as, or nullopt for a type without text, which gives
// none or refuses with a cataloged identifier, as its facts say.
std::optional<std::string> textOf(const FuzzType& type, COSValue value) {
  COSValue text;
  try {
    text = type.texts->to(value);
  } catch (const fl::except::IMsgIDException& error) {
    checkCataloged(type, "text read-back", "", error);
    ORB_FUZZ_CHECK(type.facts->text == TextForm::refused,
                   context(type, "text read-back refused", error.get_error_id()));
    return std::nullopt;
  }
  ORB_FUZZ_CHECK(type.facts->text != TextForm::refused, context(type, "text read-back not refused", ""));
  if (text.isEmpty()) return std::nullopt;
  ORB_FUZZ_CHECK(type.facts->text != TextForm::none, context(type, "a text from a type without one", ""));
  std::string copy = text.as<const char>();
  utFree(text.pointer());
  return copy;
}

void checkArrayReadBack(const FuzzType& type, COSValue value, const std::string& input, bool storedFromArray) {
  const gui_objects::ZxArrayPtr readBack(type.arrays->to(value).as<zxArray>());
  ORB_FUZZ_CHECK(readBack != nullptr, context(type, "array read-back", input));
  const COSValue again =
      convertOrRefuse(type, "array read-back stored again", input + " read back as " + describeArray(readBack.get()),
                      [&] { return type.arrays->from(COSValue(readBack.get())); });
  // A value holding nothing reads back as an empty array, which types that refuse empty arrays
  // refuse; anything else read back must be taken again.
  if (storedFromArray && !zxIsEmpty(readBack.get())) {
    ORB_FUZZ_CHECK(!again.isEmpty(),
                   context(type, "array read-back refused", input) + " read back as " + describeArray(readBack.get()));
  }
  const gui_objects::ZxArrayPtr second(type.arrays->to(again).as<zxArray>());
  type.type->destroy(again);
  const COSValue third = convertOrRefuse(type, "second array read-back stored again", describeArray(second.get()),
                                         [&] { return type.arrays->from(COSValue(second.get())); });
  const gui_objects::ZxArrayPtr last(type.arrays->to(third).as<zxArray>());
  type.type->destroy(third);
  const std::string difference = zx::arrayDifference(second.get(), last.get());
  if (!difference.empty()) {
    fail("an array read back does not settle", context(type, difference.c_str(), input) + ": " +
                                                   describeArray(second.get()) + " then " + describeArray(last.get()));
  }
}

// Whether two texts are numbers (or rows of them) that read as the same doubles.
bool sameAsDoubles(const std::string& a, const std::string& b) {
  const char* p = a.c_str();
  const char* q = b.c_str();
  for (;;) {
    while (*p != '\0' && std::strchr(" \t\r\n[],;", *p) != nullptr) ++p;
    while (*q != '\0' && std::strchr(" \t\r\n[],;", *q) != nullptr) ++q;
    if (*p == '\0' || *q == '\0') return *p == *q;
    char* pEnd = nullptr;
    char* qEnd = nullptr;
    const double x = std::strtod(p, &pEnd);
    const double y = std::strtod(q, &qEnd);
    if (pEnd == p || qEnd == q || !(x == y)) return false;
    p = pEnd;
    q = qEnd;
  }
}

void checkTextReadBack(const FuzzType& type, COSValue value, const std::string& input) {
  const std::optional<std::string> text = textOf(type, value);
  // A held array of a class without a text form shows as its description ("<0x0 struct>"), which
  // is for people and not meant to be read back.
  if (!text || text->starts_with('<')) return;
  // A text its rule fixes may be refused when read back (an array's text is read in the type's parse
  // class: a uint8 or single array reads back as numbers that parse as doubles), so only the refusal's
  // identifier is checked; a text of ours must be taken.
  const COSValue again = convertOrRefuse(type, "text read-back stored again", input + " read back as " + *text,
                                         [&] { return type.texts->from(COSValue(text->c_str())); });
  if (type.facts->text == TextForm::ours) {
    ORB_FUZZ_CHECK(!again.isEmpty(), context(type, "a text of ours refused when read back", input) + ": " + *text);
  }
  if (again.isEmpty()) return;
  const std::optional<std::string> textAgain = textOf(type, again);
  type.type->destroy(again);
  // "[]" may store a value holding nothing, which has no text: only a text that comes back must match.
  // Text is read as doubles, so a 64-bit integer beyond 2^53 may come back as its nearest double.
  if (textAgain && textAgain != text && !sameAsDoubles(*text, *textAgain)) {
    fail("a text read back does not read back as itself",
         context(type, "text", input) + ": '" + *text + "' then '" + textAgain.value_or("(no text)") + "'");
  }
}

}  // namespace

namespace {
const ColorNameTable::Entries& initialColorNames() {
  static const ColorNameTable::Entries names = ColorNameTable::getInstance().entries();
  return names;
}
}  // namespace

void restoreProcessTables() {
  ColorNameTable& table = ColorNameTable::getInstance();
  if (table.entries() != initialColorNames()) table.restoreForTests(initialColorNames());
}

const FuzzType& typeChosenBy(ByteReader& input) {
  static const std::vector<FuzzType> types = startLibrary();
  initialColorNames();
  if (input.peek() == '@') {
    const std::string_view name = input.line().substr(1);
    for (const FuzzType& type : types) {
      if (name == type.name) return type;
    }
  }
  const unsigned selector = input.byte() | (input.byte() << 8);
  return types[selector % types.size()];
}

COSValue convertOrRefuse(const FuzzType& type, const char* what, const std::string& input,
                         const std::function<COSValue()>& convert) {
  try {
    return convert();
  } catch (const fl::except::IMsgIDException& error) {
    checkCataloged(type, what, input, error);
  }
  return COSValue();
}

void checkStoredValue(const FuzzType& type, COSValue value, const std::string& input, bool storedFromArray) {
  if (value.isEmpty()) return;
  objsys::COSDataType& dataType = *type.type;
  const COSValue copy = dataType.copy(value);
  ORB_FUZZ_CHECK(!copy.isEmpty() && copy != value, context(type, "copy", input));
  // A value holding a NaN is deliberately unequal even to itself, and infinities may make one (the
  // width of a box from -Inf to -Inf).
  const gui_objects::ZxArrayPtr shown(type.arrays->to(value).as<zxArray>());
  const std::optional<std::string> text = textOf(type, value);
  bool nonFinite = containsNonFinite(shown.get());
  for (const char* word : {"NaN", "nan", "Inf", "inf"}) {
    nonFinite = nonFinite || (text && text->find(word) != std::string::npos);
  }
  if (!nonFinite) {
    ORB_FUZZ_CHECK(dataType.isEqual(value, value), context(type, "equal to itself", input));
    ORB_FUZZ_CHECK(dataType.isEqual(copy, value) && dataType.isEqual(value, copy), context(type, "copy equal", input));
    ORB_FUZZ_CHECK(dataType.compare(copy, value) == objsys::cosEqual, context(type, "copy compares equal", input));
  } else {
    // Still both ways alike.
    ORB_FUZZ_CHECK(dataType.isEqual(copy, value) == dataType.isEqual(value, copy), context(type, "symmetry", input));
  }
  (void)dataType.getValueSizeInBytes(value);
  checkArrayReadBack(type, value, input, storedFromArray);
  checkTextReadBack(type, value, input);
  // The copy outlives the original, so a copy that shared storage with it would fault here.
  dataType.destroy(value);
  checkTextReadBack(type, copy, input);
  dataType.destroy(copy);
}

}  // namespace orbfuzz
