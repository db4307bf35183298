// ArrayBase, its exception and MinMaxArrayBase.
#include "datatype/arrays/array_base.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <utility>

#include "arraylib/zxcompare.h"
#include "arraylib/zxdispatch.h"
#include "datatype/data_type_base.h"
#include "datatype/errors.h"
#include "datatype/java_conversion.h"
#include "datatype/value_block.h"
#include "foundationlib/except.h"
#include "objsys/cos_type_conversion.h"
#include "utillib/ut.h"

namespace graphics::datatype {
namespace {

// The quiet NaN with the sign bit set: what min and max hold when there is nothing to report.
const double kNoExtreme = std::bit_cast<double>(std::uint64_t{0xFFF8000000000000});

// A new real empty array of the class and dimensions of an empty numeric array.
zxArray* freshEmptyLike(const zxArray* array) {
  const zxSize ndim = zxGetNumberOfDimensions(array);
  const zxSize* dims = zxGetDimensions(array);
  const zxClassID classID = zxGetClassID(array);
  if (ndim == 0) return nullptr;
  if (ndim > 2) return zxCreateNumericArray(ndim, dims, classID, zxREAL);
  return zxCreateNumericMatrix(dims[0], ndim == 2 ? dims[1] : 0, classID, zxREAL);
}

// The copy that every value keeps and hands out: shared wherever the array library can share; only
// zero-row text, empty numeric arrays and sparse arrays are rebuilt.
zxArray* normalisedCopy(const zxArray* array) {
  if (array == nullptr) return nullptr;
  if (zxIsChar(array)) {
    if (zxIsEmpty(array) && zxGetM(array) == 0) return zxCreateString("");
    return zxCreateSharedDataCopy(array);
  }
  if (zxIsEmpty(array)) {
    const bool numeric = zxIsNumericArrayType(zxGetClassID(array)) && !zxIsObject(array);
    return numeric ? freshEmptyLike(array) : zxCreateSharedDataCopy(array);
  }
  if (zxIsSparse(array)) return zxMustBeFull(array);
  return zxCreateSharedDataCopy(array);
}

// A normalised copy that no call frame reclaims.
zxArray* keptCopy(const zxArray* array) {
  zxArray* copy = normalisedCopy(array);
  zxSetArrayScope(copy, zxPERSISTENT);
  return copy;
}

struct Extremes {
  double min;
  double max;
  bool allFinite;
};

template <class E>
Extremes scanElements(const E* values, zxSize count, bool stopAtNonFinite) {
  double lo = std::numeric_limits<double>::infinity();
  double hi = -lo;
  bool allFinite = true;
  for (zxSize i = 0; i < count; ++i) {
    const double x = static_cast<double>(values[i]);
    if (!std::isfinite(x)) {
      allFinite = false;
      if (stopAtNonFinite) return {kNoExtreme, kNoExtreme, false};
      continue;
    }
    if (x < lo) lo = x;
    if (x > hi) hi = x;
  }
  return {lo, hi, allFinite};
}

}  // namespace

ArrayBase::InvalidArrayException::InvalidArrayException(const char* id, const char* message)
    : id_(id != nullptr ? id : ""), message_(message != nullptr ? message : "") {}

ArrayBase::ArrayBase(const zxArray* array) : array_(keptCopy(array)) {}

ArrayBase::ArrayBase(const ArrayBase& other) : array_(keptCopy(other.array_)) {}

ArrayBase::ArrayBase(ArrayBase&& other) noexcept : array_(std::exchange(other.array_, nullptr)) {}

ArrayBase& ArrayBase::operator=(const ArrayBase& other) {
  zxArray* copy = keptCopy(other.array_);
  zxDestroyArray(array_);
  array_ = copy;
  return *this;
}

ArrayBase::~ArrayBase() { zxDestroyArray(array_); }

bool ArrayBase::isValid(const zxArray*, boost::exception_ptr&) const { return true; }

unsigned ArrayBase::getMaxNumberOfValuesToCompare() const { return 0; }

void ArrayBase::setPtr(const zxArray* array) { array_ = keptCopy(array); }

gui_objects::ZxArrayPtr ArrayBase::getSharedDataCopy() const { return gui_objects::ZxArrayPtr(normalisedCopy(array_)); }

bool ArrayBase::isEmpty(const zxArray* array) { return array == nullptr || zxIsEmpty(array); }

bool ArrayBase::operator==(const ArrayBase& other) const {
  return zx::arraysEqual(array_, other.array_,
                         {.numbers = zx::NumberEquality::ieee,
                          .shape = zx::ShapeEquality::rowsAndColumns,
                          .realPartsOnly = true,
                          .numbersOnly = true,
                          .maxElements = getMaxNumberOfValuesToCompare()});
}

char* ArrayBase::convert_to_string() const {
  if (array_ == nullptr) return nullptr;
  static const objsys::COSNameID any("any");
  static const objsys::COSNameID text("asciiString");
  const objsys::COSTypeConversion* conversion = objsys::COSTypeRepository::getConversion(any, text);
  if (conversion == nullptr) {
    raiseWithText<Korvax::class_::KorvaxConversionError>("The class system has no conversion from any to asciiString.");
  }
  return conversion->from(objsys::COSValue(array_)).as<char>();
}

void ArrayBase::swap(ArrayBase& other) noexcept { std::swap(array_, other.array_); }

void* ArrayBase::operator new(std::size_t size) { return allocateValueBlock(size); }

void* ArrayBase::operator new[](std::size_t size) { return operator new(size); }

void ArrayBase::operator delete(void* block) noexcept { utFree(block); }

void ArrayBase::operator delete[](void* block) noexcept { utFree(block); }

void MinMaxArrayBase::getMinMax(double& min, double& max, bool stopAtNonFinite) const {
  const bool cacheAnswers =
      scanState_ != ScanState::notScanned && !(scanState_ == ScanState::stoppedAtNonFinite && !stopAtNonFinite);
  if (!cacheAnswers) scan(stopAtNonFinite);
  min = min_;
  max = max_;
}

bool MinMaxArrayBase::hasFinite() const {
  if (scanState_ == ScanState::notScanned) scan(true);
  return scanState_ == ScanState::empty || scanState_ == ScanState::allFinite;
}

void MinMaxArrayBase::swapMinMax(MinMaxArrayBase& other) noexcept {
  swap(other);
  std::swap(min_, other.min_);
  std::swap(max_, other.max_);
  std::swap(scanState_, other.scanState_);
}

void MinMaxArrayBase::scan(bool stopAtNonFinite) const {
  const zxArray* array = getPtr();
  if (array == nullptr) {
    min_ = max_ = kNoExtreme;
    scanState_ = ScanState::empty;
    return;
  }
  Extremes found{kNoExtreme, kNoExtreme, true};
  const bool served = zx::dispatchNumericOrLogical(zxGetClassID(array), [&](auto type) {
    using E = typename decltype(type)::type;
    if (zxIsEmpty(array)) return;
    found = scanElements(static_cast<const E*>(zxGetData(array)), zxGetNumberOfElements(array), stopAtNonFinite);
  });
  if (!served) {
    // Text, cells and the like have no extremes; they count as all finite.
    min_ = max_ = 0.0;
    scanState_ = ScanState::allFinite;
    return;
  }
  min_ = found.min;
  max_ = found.max;
  if (zxIsEmpty(array)) {
    scanState_ = ScanState::empty;
  } else if (!found.allFinite) {
    scanState_ = stopAtNonFinite ? ScanState::stoppedAtNonFinite : ScanState::someNonFinite;
  } else {
    scanState_ = ScanState::allFinite;
  }
}

objsys::JavaTypeConversion* ArrayBase::createJavaConverter(const objsys::COSDataType* type, const char* javaForm) {
  return new PeerJavaConversion(std::string(kPackageName) + "." + type->getName(), nullptr, javaForm);
}

}  // namespace graphics::datatype
