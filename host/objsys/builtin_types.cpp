// The class system's own data types ("any", "double", "asciiString") and the conversion from any
// array to its text.
#include "objsys/builtin_types.h"

#include <cstring>
#include <new>
#include <string>

#include "arraylib/zxarray.h"
#include "arraylib/zxformat.h"
#include "foundationlib/except.h"
#include "objsys/cos_type_conversion.h"
#include "objsys/object_arrays.h"
#include "utillib/ut.h"

namespace objsys {
namespace {

// Values are NUL-terminated strings allocated with utMalloc.
class AsciiStringDataType : public COSDataType {
 public:
  const char* getDeclarationName() const override { return "asciiString"; }
  const char* getName() const override { return "asciiString"; }
  COSValue getDefaultValue() const override { return COSValue(""); }
  bool isEqual(COSValue a, COSValue b) const override {
    if (a.isEmpty() || b.isEmpty()) return a == b;
    return std::strcmp(a.as<const char>(), b.as<const char>()) == 0;
  }
  COSValue copy(COSValue value) override {
    return value.isEmpty() ? COSValue() : COSValue(utStrdup(value.as<const char>()));
  }
  void destroy(COSValue value) const override { utFree(value.pointer()); }
};

class AnyToTextConversion : public COSTypeConversion {
 public:
  COSValue to(COSValue text) const override {
    if (text.isEmpty()) return COSValue();
    zxArray* array = zxCreateString(text.as<const char>());
    zxSetArrayScope(array, zxPERSISTENT);
    return COSValue(array);
  }
  COSValue from(COSValue array) const override {
    if (array.isEmpty()) return COSValue();
    const std::string text = zx::canonicalText(array.as<const zxArray>());
    char* copy = utStrdup(text.c_str());
    if (copy == nullptr) throw fl::except::bad_alloc();
    return COSValue(copy);
  }
};

}  // namespace

AnyDataType* AnyDataType::instance() {
  static auto* type = new AnyDataType();
  return type;
}

COSValue AnyDataType::valueFromArray(const zxArray* array) const {
  if (array == nullptr) return COSValue();
  zxArray* copy = zxCreateSharedDataCopy(array);
  zxSetArrayScope(copy, zxPERSISTENT);
  return COSValue(copy);
}

const char* AnyDataType::getDeclarationName() const { return "any"; }
const char* AnyDataType::getName() const { return "any"; }

COSValue AnyDataType::getDefaultValue() const {
  static const COSValue empty = [] {
    zxArray* array = zxCreateDoubleMatrix(0, 0, zxREAL);
    zxSetArrayScope(array, zxPERSISTENT);
    return COSValue(array);
  }();
  return empty;
}

bool AnyDataType::isEqual(COSValue a, COSValue b) const {
  if (a.isEmpty() || b.isEmpty()) return a == b;
  return a == b || zx::canonicalText(arrayOf(a)) == zx::canonicalText(arrayOf(b));
}

COSValue AnyDataType::copy(COSValue value) { return valueFromArray(arrayOf(value)); }

void AnyDataType::destroy(COSValue value) const { zxDestroyArray(value.as<zxArray>()); }

bool AnyDataType::isKorvaxArrayType() const { return true; }

bool AnyDataType::canContainInterfaces() { return true; }

COSEnumeration* AnyDataType::getInterfaces(COSValue value) {
  auto* cursor = new COSValueListEnumeration();
  for (COSInterfacePtr& object : interfacesIn(arrayOf(value))) cursor->addObject(std::move(object));
  return cursor;
}

COSEnumeration* AnyDataType::getKXArrays(COSValue value) {
  auto* cursor = new COSValueListEnumeration();
  if (!value.isEmpty()) cursor->addArray(arrayOf(value));
  return cursor;
}

DoubleDataType* DoubleDataType::instance() {
  static auto* type = new DoubleDataType();
  return type;
}

COSValue DoubleDataType::makeValue(double number) {
  auto* block = static_cast<double*>(utCalloc(1, sizeof(double)));
  if (block == nullptr) throw fl::except::bad_alloc();
  *block = number;
  return COSValue(block);
}

const char* DoubleDataType::getDeclarationName() const { return "double"; }
const char* DoubleDataType::getName() const { return "double"; }

COSValue DoubleDataType::getDefaultValue() const {
  static const COSValue zero = makeValue(0.0);
  return zero;
}

bool DoubleDataType::isEqual(COSValue a, COSValue b) const {
  if (a.isEmpty() || b.isEmpty()) return a == b;
  return *a.as<const double>() == *b.as<const double>();
}

COSValue DoubleDataType::copy(COSValue value) {
  return value.isEmpty() ? COSValue() : makeValue(*value.as<const double>());
}

void DoubleDataType::destroy(COSValue value) const { utFree(value.pointer()); }

// A plain flag rather than a guarded static: registering reaches the repository, which calls this again
// when it is first made, and that inner call must return at once (the class system runs on one thread).
void registerBuiltinTypes() {
  static bool registered = false;
  if (registered) return;
  registered = true;
  COSTypeRepository::addGlobalType(AnyDataType::instance());
  COSTypeRepository::addGlobalType(DoubleDataType::instance());
  COSTypeRepository::addGlobalType(new AsciiStringDataType());
  COSTypeRepository::addConversion("any", "asciiString", new AnyToTextConversion());
}

}  // namespace objsys
