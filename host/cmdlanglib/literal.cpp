// The command language's literals: the reader that turns one literal into a new host array and the
// writer that turns an array back into a literal the reader accepts.
#include "cmdlanglib/literal.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <type_traits>
#include <unordered_set>
#include <utility>
#include <vector>

#include "arraylib/zxdispatch.h"
#include "arraylib/zxformat.h"
#include "cmdlanglib/utf8.h"
#include "foundationlib/i18n/unicode.h"

namespace cmdlang {

using gui_objects::ZxArrayPtr;

namespace {

struct NamedClass {
  std::string_view name;
  zxClassID classID;
};

constexpr NamedClass kValueClasses[] = {
    {"double", zxDOUBLE_CLASS}, {"single", zxSINGLE_CLASS}, {"int8", zxINT8_CLASS},       {"uint8", zxUINT8_CLASS},
    {"int16", zxINT16_CLASS},   {"uint16", zxUINT16_CLASS}, {"int32", zxINT32_CLASS},     {"uint32", zxUINT32_CLASS},
    {"int64", zxINT64_CLASS},   {"uint64", zxUINT64_CLASS}, {"logical", zxLOGICAL_CLASS},
};

// The most elements an array may span, counting its nonzero dimensions only; within it no product
// of dimensions overflows.
constexpr zxSize kMaxElements = zxSize{1} << 40;

std::string_view valueClassName(zxClassID classID) {
  for (const NamedClass& entry : kValueClasses) {
    if (entry.classID == classID) return entry.name;
  }
  return classID == zxCHAR_CLASS ? "char" : "unknown";
}

bool isIntegerClass(zxClassID classID) {
  return zxIsNumericArrayType(classID) && classID != zxDOUBLE_CLASS && classID != zxSINGLE_CLASS;
}

bool isValueArray(const zxArray* array) { return zxIsNumeric(array) || zxIsLogical(array); }

std::vector<zxSize> dimsOf(const zxArray* array) {
  const zxSize* dims = zxGetDimensions(array);
  return {dims, dims + zxGetNumberOfDimensions(array)};
}

bool isZeroByZero(const zxArray* array) {
  return zxGetNumberOfDimensions(array) == 2 && zxGetM(array) == 0 && zxGetN(array) == 0;
}

// One element converted between classes by the rules of the casts: integers round half away from
// zero and saturate, NaN becomes integer 0, anything nonzero becomes logical 1.
template <class To, class From>
To convertElement(From value) {
  if constexpr (std::is_same_v<To, From>) {
    return value;
  } else if constexpr (std::is_same_v<To, zxLogical>) {
    return value != From{};
  } else if constexpr (std::is_same_v<From, zxLogical>) {
    return static_cast<To>(value ? 1 : 0);
  } else if constexpr (std::is_floating_point_v<To>) {
    if constexpr (std::is_same_v<To, float> && std::is_same_v<From, double>) {
      if (std::isfinite(value) && std::fabs(value) > std::numeric_limits<float>::max()) {
        return value > 0 ? std::numeric_limits<float>::infinity() : -std::numeric_limits<float>::infinity();
      }
    }
    return static_cast<To>(value);
  } else if constexpr (std::is_floating_point_v<From>) {
    if (std::isnan(value)) return 0;
    const double rounded = std::round(static_cast<double>(value));
    // For 64-bit classes the limit as a double is 2^63 or 2^64, one past the limit, so >= saturates
    // exactly the values that do not fit.
    if (rounded <= static_cast<double>(std::numeric_limits<To>::min())) return std::numeric_limits<To>::min();
    if (rounded >= static_cast<double>(std::numeric_limits<To>::max())) return std::numeric_limits<To>::max();
    return static_cast<To>(rounded);
  } else {
    if (std::cmp_less(value, std::numeric_limits<To>::min())) return std::numeric_limits<To>::min();
    if (std::cmp_greater(value, std::numeric_limits<To>::max())) return std::numeric_limits<To>::max();
    return static_cast<To>(value);
  }
}

// Converts count values of one class (numeric, logical or char; char only to char) into another,
// value i landing at to[where(i)].
template <class Where>
void convertValues(zxClassID fromClass, const void* from, zxClassID toClass, void* to, zxSize count, Where where) {
  if (fromClass == zxCHAR_CLASS) {
    for (zxSize i = 0; i < count; ++i) static_cast<zxChar*>(to)[where(i)] = static_cast<const zxChar*>(from)[i];
    return;
  }
  zx::dispatchNumericOrLogical(fromClass, [&](auto source) {
    zx::dispatchNumericOrLogical(toClass, [&](auto target) {
      using From = typename decltype(source)::type;
      using To = typename decltype(target)::type;
      for (zxSize i = 0; i < count; ++i) {
        static_cast<To*>(to)[where(i)] = convertElement<To>(static_cast<const From*>(from)[i]);
      }
    });
  });
}

// Copies every element of source into target, converting its class; the imaginary part goes along
// when both are complex.
template <class Where>
void convertInto(const zxArray* source, zxArray* target, Where where) {
  const zxSize count = zxGetNumberOfElements(source);
  const zxClassID fromClass = zxGetClassID(source);
  const zxClassID toClass = zxGetClassID(target);
  convertValues(fromClass, zxGetData(source), toClass, zxGetWritableData(target), count, where);
  if (zxIsComplex(source) && zxIsComplex(target)) {
    convertValues(fromClass, zxGetImagData(source), toClass, zxGetWritableImagData(target), count, where);
  }
}

constexpr auto kSamePlace = [](zxSize i) { return i; };

// A full numeric or logical array converted to another class, dimensions and complexity kept.
ZxArrayPtr castArray(const zxArray* source, zxClassID classID) {
  const std::vector<zxSize> dims = dimsOf(source);
  ZxArrayPtr result(zxCreateNumericArray(dims.size(), dims.data(), classID, zxIsComplex(source) ? zxCOMPLEX : zxREAL));
  convertInto(source, result.get(), kSamePlace);
  return result;
}

bool hasNaN(const zxArray* array) {
  bool found = false;
  zx::dispatchNumericOrLogical(zxGetClassID(array), [&](auto type) {
    using T = typename decltype(type)::type;
    if constexpr (std::is_floating_point_v<T>) {
      const T* values = static_cast<const T*>(zxGetData(array));
      found = std::any_of(values, values + zxGetNumberOfElements(array), [](T v) { return std::isnan(v); });
    }
  });
  return found;
}

// A copy of a full numeric, logical, char or cell array with new dimensions of the same count.
ZxArrayPtr withDims(const zxArray* source, const std::vector<zxSize>& dims) {
  const zxSize count = zxGetNumberOfElements(source);
  if (zxIsCell(source)) {
    ZxArrayPtr result(zxCreateCellArray(dims.size(), dims.data()));
    for (zxSize i = 0; i < count; ++i) zxSetCell(result.get(), i, zxCreateSharedDataCopy(zxGetCell(source, i)));
    return result;
  }
  ZxArrayPtr result(zxIsChar(source) ? zxCreateCharArray(dims.size(), dims.data())
                                     : zxCreateNumericArray(dims.size(), dims.data(), zxGetClassID(source),
                                                            zxIsComplex(source) ? zxCOMPLEX : zxREAL));
  if (count > 0) {
    const zxSize bytes = count * zxGetElementSize(source);
    std::memcpy(zxGetWritableData(result.get()), zxGetData(source), bytes);
    if (zxIsComplex(source)) std::memcpy(zxGetWritableImagData(result.get()), zxGetImagData(source), bytes);
  }
  return result;
}

std::string textOf(const zxArray* array) {
  char* utf8 = zxArrayToString(array);
  std::string text = utf8 != nullptr ? utf8 : "";
  zxFree(utf8);
  return text;
}

bool isTextRow(const zxArray* array) {
  return zxIsChar(array) && zxGetNumberOfDimensions(array) == 2 && (zxGetM(array) == 1 || zxIsEmpty(array));
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
  });
}

// A number token read as a float type; out-of-range text becomes infinity or zero as strtod gives.
template <class F>
F readFloat(std::string_view token) {
  if (!token.empty() && token.front() == '+') token.remove_prefix(1);
  F value{};
  const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), value);
  if (error == std::errc::result_out_of_range) {
    const std::string copy(token);
    if constexpr (std::is_same_v<F, float>) return std::strtof(copy.c_str(), nullptr);
    return std::strtod(copy.c_str(), nullptr);
  }
  return value;
}

// A whole-number token read directly in an integer class, saturating at its limits.
template <class T>
T readInteger(std::string_view token) {
  if (token.front() == '+') token.remove_prefix(1);
  if (std::is_unsigned_v<T> && token.front() == '-') return 0;
  T value{};
  const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), value);
  if (error == std::errc::result_out_of_range) {
    return token.front() == '-' ? std::numeric_limits<T>::min() : std::numeric_limits<T>::max();
  }
  return value;
}

// Charged for one array beyond its elements, and for one element of a row or argument list while it
// is read (vector growth included).
constexpr std::size_t kArrayCost = kArrayOverhead;
constexpr std::size_t kSlotCost = 64;

// The bytes of one element of a numeric or logical class.
std::size_t classBytes(zxClassID classID) {
  std::size_t bytes = 0;
  zx::dispatchNumericOrLogical(classID, [&](auto type) { bytes = sizeof(typename decltype(type)::type); });
  return bytes;
}

// The bytes one element of the array takes (both parts when complex); a cell element costs an array
// of its own, since copies of cells copy every element's header.
std::size_t elementBytes(const zxArray* array) {
  if (zxIsCell(array)) return sizeof(zxArray*) + kArrayCost;
  return zxGetElementSize(array) * (zxIsComplex(array) ? 2 : 1);
}

zxSize elementCount(const std::vector<zxSize>& dims) {
  zxSize count = 1;
  for (const zxSize d : dims) count = saturatingMultiply(count, d);
  return count;
}

// The product of the nonzero dimensions: what zxGetN and its kin compute even for an empty array.
zxSize extentCount(const std::vector<zxSize>& dims) {
  zxSize count = 1;
  for (const zxSize d : dims) count = d == 0 ? count : saturatingMultiply(count, d);
  return count;
}

std::string dimsText(const std::vector<zxSize>& dims) {
  std::string text;
  for (const zxSize d : dims) text += (text.empty() ? "" : "x") + std::to_string(d);
  return text;
}

// A number or logical value read inside brackets. Concatenation needs only its class and value, so
// it gets no array of its own.
struct Scalar {
  zxClassID classID = zxDOUBLE_CLASS;
  alignas(8) unsigned char value[8] = {};
};

// The number written by token, read in the given class.
Scalar numberOf(zxClassID classID, std::string_view token, bool whole) {
  Scalar scalar{classID};
  zx::dispatchNumericOrLogical(classID, [&](auto type) {
    using T = typename decltype(type)::type;
    T value{};
    if constexpr (std::is_same_v<T, float>) {
      value = readFloat<float>(token);
    } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, zxLogical>) {
      value = whole ? readInteger<T>(token) : convertElement<T>(readFloat<double>(token));
    } else {
      value = convertElement<T>(readFloat<double>(token));
    }
    std::memcpy(scalar.value, &value, sizeof value);
  });
  return scalar;
}

Scalar scalarOf(zxClassID classID, double value) {
  Scalar scalar{classID};
  convertValues(zxDOUBLE_CLASS, &value, classID, scalar.value, 1, kSamePlace);
  return scalar;
}

Scalar logicalOf(bool value) {
  Scalar scalar{zxLOGICAL_CLASS};
  scalar.value[0] = value ? 1 : 0;
  return scalar;
}

ZxArrayPtr arrayOf(const Scalar& scalar) {
  ZxArrayPtr result(zxCreateNumericMatrix(1, 1, scalar.classID, zxREAL));
  std::memcpy(zxGetWritableData(result.get()), scalar.value, classBytes(scalar.classID));
  return result;
}

// One element of a row or argument list: an array, or inside brackets a scalar.
struct Item {
  ZxArrayPtr value;  // null when the element is the scalar
  Scalar scalar;
  std::size_t column;
};

struct Row {
  std::size_t column;
  std::vector<Item> items;
};

// The text being read and the budget its arrays are charged to. Positions are byte offsets into the
// text; messages show them as 1-based character columns.
class Source {
 public:
  Source(std::string_view text, ByteBudget& budget) : text_(text), budget_(budget) {}

  std::string_view text() const { return text_; }
  std::string columnText(std::size_t at) const { return " at column " + std::to_string(utf8Column(text_, at)); }
  [[noreturn]] void fail(const std::string& what, std::size_t at) const { throw LiteralError(what + columnText(at)); }

  // Charges bytes before they are allocated; describe() names what needs them when they do not fit.
  template <class Describe>
  void charge(std::size_t bytes, Describe describe) const {
    if (!budget_.tryCharge(bytes)) budget_.refuse(bytes, describe());
  }

  // Charges an element of a row or argument list, or a small array, made at byte offset at.
  void chargeSmall(std::size_t bytes, std::size_t at) const {
    charge(bytes, [&] { return "the literal" + columnText(at); });
  }

  ByteBudget& budget() const { return budget_; }

 private:
  std::string_view text_;
  ByteBudget& budget_;
};

// One function call being built: its name, where it starts and its arguments.
struct Call {
  const Source& source;
  std::string_view name;
  std::size_t column;
  std::vector<Item> args;

  [[noreturn]] void fail(const std::string& what, std::size_t at) const {
    source.fail(std::string(name) + ": " + what, at);
  }
  [[noreturn]] void fail(const std::string& what) const { fail(what, column); }

  void requireCount(std::size_t least, std::size_t most) const {
    if (args.size() < least || args.size() > most) {
      fail(least == most
               ? "takes " + std::to_string(least) + " argument(s), not " + std::to_string(args.size())
               : "takes at least " + std::to_string(least) + " argument(s), not " + std::to_string(args.size()));
    }
  }

  const zxArray* arg(std::size_t i) const { return args[i].value.get(); }

  std::string textArg(std::size_t i, const char* what) const {
    if (!isTextRow(arg(i))) fail(std::string(what) + " must be text", args[i].column);
    return textOf(arg(i));
  }

  zxSize dimension(std::size_t i) const {
    const zxArray* a = arg(i);
    const double value = isValueArray(a) && zxIsScalar(a) && !zxIsComplex(a) ? zxGetScalar(a) : -1.0;
    // 2^64 as a double: the first whole number that zxSize cannot hold.
    constexpr double kBeyondSize = 18446744073709551616.0;
    if (!(value >= 0 && value < kBeyondSize && std::floor(value) == value)) {
      fail("a dimension must be a non-negative whole number below 2^64", args[i].column);
    }
    return static_cast<zxSize>(value);
  }

  // The dimensions given by arguments [first, last); one dimension d means d-by-d.
  std::vector<zxSize> dimensions(std::size_t first, std::size_t last) const {
    std::vector<zxSize> dims;
    for (std::size_t i = first; i < last; ++i) dims.push_back(dimension(i));
    if (dims.size() == 1) dims.push_back(dims[0]);
    return dims;
  }

  // Charges the array this call makes, dims with elements of bytesEach, before it is allocated,
  // then refuses dimensions whose products would overflow the host's sizes.
  void chargeArray(const std::vector<zxSize>& dims, std::size_t bytesEach, std::string_view className) const {
    const auto describe = [&] {
      return std::string(name) + source.columnText(column) + ": a " + dimsText(dims) + " " + std::string(className) +
             " array";
    };
    source.charge(saturatingMultiply(elementCount(dims), bytesEach), describe);
    source.charge(kArrayCost, describe);
    if (extentCount(dims) > kMaxElements) fail("too many elements");
  }
};

ZxArrayPtr buildCast(const Call& call, zxClassID classID) {
  call.requireCount(1, 1);
  const zxArray* x = call.arg(0);
  if (!isValueArray(x) || zxIsSparse(x)) call.fail("needs a full numeric or logical argument", call.args[0].column);
  if (classID == zxLOGICAL_CLASS) {
    if (zxIsComplex(x)) call.fail("complex values cannot become logical", call.args[0].column);
    if (hasNaN(x)) call.fail("NaN cannot become logical", call.args[0].column);
  }
  const std::size_t parts = zxIsComplex(x) && classID != zxLOGICAL_CLASS ? 2 : 1;
  call.chargeArray(dimsOf(x), classBytes(classID) * parts, valueClassName(classID));
  return castArray(x, classID);
}

ZxArrayPtr buildFilled(const Call& call, bool ones) {
  zxClassID classID = zxDOUBLE_CLASS;
  std::size_t dimCount = call.args.size();
  if (dimCount > 0 && zxIsChar(call.arg(dimCount - 1))) {
    const std::string name = call.textArg(dimCount - 1, "the class");
    const std::optional<zxClassID> named = valueClassNamed(name);
    if (!named) call.fail("unknown class '" + name + "'", call.args[dimCount - 1].column);
    classID = *named;
    --dimCount;
  }
  if (dimCount == 0) call.fail("needs at least one dimension");
  const std::vector<zxSize> dims = call.dimensions(0, dimCount);
  call.chargeArray(dims, classBytes(classID), valueClassName(classID));
  ZxArrayPtr result(zxCreateNumericArray(dims.size(), dims.data(), classID, zxREAL));
  if (ones) {
    zx::dispatchNumericOrLogical(classID, [&](auto type) {
      using T = typename decltype(type)::type;
      T* values = static_cast<T*>(zxGetWritableData(result.get()));
      std::fill_n(values, zxGetNumberOfElements(result.get()), T{1});
    });
  }
  return result;
}

ZxArrayPtr buildZeros(Call& call) { return buildFilled(call, false); }
ZxArrayPtr buildOnes(Call& call) { return buildFilled(call, true); }

ZxArrayPtr buildCell(Call& call) {
  if (call.args.empty()) call.fail("needs at least one dimension");
  const std::vector<zxSize> dims = call.dimensions(0, call.args.size());
  call.chargeArray(dims, sizeof(zxArray*), "cell");
  return ZxArrayPtr(zxCreateCellArray(dims.size(), dims.data()));
}

ZxArrayPtr buildReshape(Call& call) {
  call.requireCount(3, std::numeric_limits<std::size_t>::max());
  const zxArray* x = call.arg(0);
  if (!(isValueArray(x) || zxIsChar(x) || zxIsCell(x)) || zxIsSparse(x)) {
    call.fail("can reshape only full numeric, logical, text and cell arrays", call.args[0].column);
  }
  const std::vector<zxSize> dims = call.dimensions(1, call.args.size());
  if (elementCount(dims) != zxGetNumberOfElements(x)) {
    call.fail("cannot reshape " + std::to_string(zxGetNumberOfElements(x)) + " elements into " + dimsText(dims));
  }
  call.chargeArray(dims, elementBytes(x), zxGetClassName(x));
  return withDims(x, dims);
}

ZxArrayPtr buildComplex(Call& call) {
  call.requireCount(2, 2);
  for (std::size_t i = 0; i < 2; ++i) {
    const zxArray* part = call.arg(i);
    if (!zxIsNumeric(part) || zxIsComplex(part) || zxIsSparse(part)) {
      call.fail("needs full real numeric parts", call.args[i].column);
    }
  }
  const zxArray* re = call.arg(0);
  const zxArray* im = call.arg(1);
  const std::vector<zxSize> dims = dimsOf(re);
  if (dims != dimsOf(im)) call.fail("the parts differ in size", call.args[1].column);
  const zxClassID classID = zxGetClassID(re) == zxGetClassID(im) ? zxGetClassID(re) : zxDOUBLE_CLASS;
  call.chargeArray(dims, 2 * classBytes(classID), valueClassName(classID));
  ZxArrayPtr result(zxCreateNumericArray(dims.size(), dims.data(), classID, zxCOMPLEX));
  const zxSize count = zxGetNumberOfElements(re);
  convertValues(zxGetClassID(re), zxGetData(re), classID, zxGetWritableData(result.get()), count, kSamePlace);
  convertValues(zxGetClassID(im), zxGetData(im), classID, zxGetWritableImagData(result.get()), count, kSamePlace);
  return result;
}

ZxArrayPtr buildSparse(Call& call) {
  call.requireCount(1, 1);
  const zxArray* x = call.arg(0);
  if (zxIsSparse(x)) {
    call.source.chargeSmall(kArrayCost, call.column);
    return ZxArrayPtr(zxCreateSharedDataCopy(x));
  }
  if (!(zxIsDouble(x) || zxIsLogical(x)) || zxGetNumberOfDimensions(x) != 2) {
    call.fail("needs a 2-D double or logical argument", call.args[0].column);
  }
  return makeSparse(x, call.source.budget());
}

ZxArrayPtr buildStruct(Call& call) {
  if (call.args.size() % 2 != 0) call.fail("needs name and value pairs");
  const std::size_t fieldCount = call.args.size() / 2;
  // Each field costs its slot, its name and the lookups that keep names unique.
  constexpr std::size_t kFieldCost = 160;
  std::size_t nameBytes = 0;
  for (std::size_t i = 0; i < call.args.size(); i += 2) nameBytes += zxGetNumberOfElements(call.arg(i));
  call.source.charge(saturatingAdd(saturatingMultiply(fieldCount, kFieldCost), 3 * nameBytes), [&] {
    return "struct" + call.source.columnText(call.column) + ": " + std::to_string(fieldCount) + " fields";
  });
  std::vector<std::string> names;
  names.reserve(fieldCount);
  std::unordered_set<std::string_view> seen;
  for (std::size_t i = 0; i < call.args.size(); i += 2) {
    std::string name = call.textArg(i, "a field name");
    if (!isFieldName(name)) call.fail("invalid field name '" + name + "'", call.args[i].column);
    names.push_back(std::move(name));
    // names never reallocates (it was reserved), so the view stays valid.
    if (!seen.insert(names.back()).second) call.fail("duplicate field '" + names.back() + "'", call.args[i].column);
  }
  std::vector<const char*> pointers;
  pointers.reserve(names.size());
  for (const std::string& name : names) pointers.push_back(name.c_str());
  call.source.chargeSmall(kArrayCost, call.column);
  ZxArrayPtr result(zxCreateStructMatrix(1, 1, static_cast<int>(pointers.size()), pointers.data()));
  for (std::size_t i = 1; i < call.args.size(); i += 2) {
    zxSetFieldByNumber(result.get(), 0, static_cast<int>(i / 2), call.args[i].value.release());
  }
  return result;
}

struct Function {
  std::string_view name;
  ZxArrayPtr (*build)(Call&);
};

constexpr Function kFunctions[] = {
    {"zeros", buildZeros},     {"ones", buildOnes},     {"cell", buildCell},     {"reshape", buildReshape},
    {"complex", buildComplex}, {"sparse", buildSparse}, {"struct", buildStruct},
};

const Function* functionNamed(std::string_view name) {
  const auto* found =
      std::find_if(std::begin(kFunctions), std::end(kFunctions), [&](const Function& f) { return f.name == name; });
  return found != std::end(kFunctions) ? found : nullptr;
}

// What concatenation reads of one element, an array or a scalar alike.
struct Element {
  zxClassID classID;
  bool valueOrText;
  bool complex;
  bool sparse;
  zxSize ndims;
  zxSize m;
  zxSize n;
  const void* re;
  const void* im;

  bool isZeroByZero() const { return ndims == 2 && m == 0 && n == 0; }
};

Element elementOf(const Item& item) {
  const zxArray* v = item.value.get();
  if (v == nullptr) return {item.scalar.classID, true, false, false, 2, 1, 1, item.scalar.value, nullptr};
  const bool valueOrText = isValueArray(v) || zxIsChar(v);
  return {zxGetClassID(v),
          valueOrText,
          zxIsComplex(v),
          zxIsSparse(v),
          zxGetNumberOfDimensions(v),
          zxGetM(v),
          valueOrText ? zxGetN(v) : 0,
          zxGetData(v),
          zxGetImagData(v)};
}

// The class that wins when brackets concatenate elements of classes a and b.
zxClassID combinedClass(const Source& source, zxClassID a, zxClassID b, std::size_t at) {
  if (a == b) return a;
  if (a == zxCHAR_CLASS || b == zxCHAR_CLASS) source.fail("text and numbers cannot be mixed", at);
  if (isIntegerClass(a) && isIntegerClass(b)) source.fail("different integer classes cannot be mixed", at);
  if (isIntegerClass(a)) return a;
  if (isIntegerClass(b)) return b;
  if (a == zxSINGLE_CLASS || b == zxSINGLE_CLASS) return zxSINGLE_CLASS;
  return zxDOUBLE_CLASS;
}

// The array that brackets opened at byte offset open make of their rows.
ZxArrayPtr concatenate(const Source& source, const std::vector<Row>& rows, std::size_t open) {
  std::optional<zxClassID> classID;
  bool complex = false;
  for (const Row& row : rows) {
    for (const Item& item : row.items) {
      const Element v = elementOf(item);
      if (!v.valueOrText) source.fail("brackets hold numbers, logicals and text only", item.column);
      if (v.sparse) source.fail("sparse arrays cannot be concatenated", item.column);
      if (v.ndims > 2) source.fail("N-D arrays cannot be concatenated", item.column);
      classID = classID ? combinedClass(source, *classID, v.classID, item.column) : v.classID;
      complex = complex || v.complex;
    }
  }
  if (!classID) {
    source.chargeSmall(kArrayCost, open);
    return ZxArrayPtr(zxCreateDoubleMatrix(0, 0, zxREAL));
  }

  constexpr zxSize kUnset = std::numeric_limits<zxSize>::max();
  zxSize height = 0;
  zxSize width = kUnset;
  for (const Row& row : rows) {
    zxSize rowHeight = kUnset;
    zxSize rowWidth = 0;
    for (const Item& item : row.items) {
      const Element v = elementOf(item);
      if (v.isZeroByZero()) continue;
      if (rowHeight != kUnset && v.m != rowHeight) source.fail("elements of one row differ in height", item.column);
      rowHeight = v.m;
      rowWidth = saturatingAdd(rowWidth, v.n);
    }
    if (rowHeight == kUnset) continue;
    if (width != kUnset && rowWidth != width) source.fail("ragged rows", row.column);
    width = rowWidth;
    height = saturatingAdd(height, rowHeight);
  }
  if (width == kUnset) width = 0;

  const std::vector<zxSize> dims = {height, width};
  const std::size_t bytesEach = *classID == zxCHAR_CLASS ? sizeof(zxChar) : classBytes(*classID) * (complex ? 2 : 1);
  const auto describe = [&] {
    return "brackets" + source.columnText(open) + ": a " + dimsText(dims) + " " +
           std::string(valueClassName(*classID)) + " array";
  };
  source.charge(saturatingMultiply(elementCount(dims), bytesEach), describe);
  source.charge(kArrayCost, describe);
  if (extentCount(dims) > kMaxElements) source.fail("too many elements", open);
  ZxArrayPtr result(*classID == zxCHAR_CLASS
                        ? zxCreateCharArray(2, dims.data())
                        : zxCreateNumericArray(2, dims.data(), *classID, complex ? zxCOMPLEX : zxREAL));
  zxSize top = 0;
  for (const Row& row : rows) {
    zxSize left = 0;
    zxSize rowHeight = 0;
    for (const Item& item : row.items) {
      const Element v = elementOf(item);
      if (v.isZeroByZero()) continue;
      rowHeight = v.m;
      const auto where = [&](zxSize i) { return top + i % rowHeight + (left + i / rowHeight) * height; };
      convertValues(v.classID, v.re, *classID, zxGetWritableData(result.get()), v.m * v.n, where);
      if (v.complex && complex) {
        convertValues(v.classID, v.im, *classID, zxGetWritableImagData(result.get()), v.m * v.n, where);
      }
      left += v.n;
    }
    top += rowHeight;
  }
  return result;
}

// The cell that braces opened at byte offset open make of their rows.
ZxArrayPtr cellOf(const Source& source, std::vector<Row>& rows, std::size_t open) {
  if (rows.empty()) {
    source.chargeSmall(kArrayCost, open);
    return ZxArrayPtr(zxCreateCellMatrix(0, 0));
  }
  const zxSize m = rows.size();
  const zxSize n = rows.front().items.size();
  for (const Row& row : rows) {
    if (row.items.size() != n) source.fail("ragged rows", row.column);
  }
  source.chargeSmall(saturatingAdd(m * n * sizeof(zxArray*), kArrayCost), open);
  ZxArrayPtr result(zxCreateCellMatrix(m, n));
  for (zxSize r = 0; r < m; ++r) {
    for (zxSize c = 0; c < n; ++c) zxSetCell(result.get(), r + c * m, rows[r].items[c].value.release());
  }
  return result;
}

// A recursive-descent reader over the text.
class Parser {
 public:
  explicit Parser(const Source& source) : source_(source), text_(source.text()) {}

  ZxArrayPtr parseAll() {
    skipBlanks();
    if (atEnd()) fail("expected a literal", pos_);
    ZxArrayPtr result = parseValue(zxDOUBLE_CLASS);
    skipBlanks();
    if (!atEnd()) fail("unexpected text after literal", pos_);
    return result;
  }

 private:
  [[noreturn]] void fail(const std::string& what, std::size_t at) const { source_.fail(what, at); }
  [[noreturn]] void failUnbalanced(std::size_t open) const {
    fail(std::string("unbalanced '") + text_[open] + "'", open);
  }

  bool atEnd() const { return pos_ >= text_.size(); }
  char peek() const { return atEnd() ? '\0' : text_[pos_]; }
  static bool isNameStart(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }
  static bool isNameChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }
  static bool isDigit(char c) { return c >= '0' && c <= '9'; }
  static bool isNumberStart(char c) { return isDigit(c) || c == '.' || c == '+' || c == '-'; }

  // Returns whether any blank was skipped.
  bool skipBlanks() {
    const std::size_t start = pos_;
    while (!atEnd() && std::isspace(static_cast<unsigned char>(text_[pos_])) != 0) ++pos_;
    return pos_ != start;
  }

  void checkDepth() const {
    if (depth_ >= kMaxLiteralDepth) fail("literal nested too deeply", pos_);
  }

  // numberClass is the class in which bare numbers are read: that of the innermost cast for single
  // and the integer classes, double everywhere else.
  ZxArrayPtr parseValue(zxClassID numberClass) {
    checkDepth();
    ++depth_;
    ZxArrayPtr result = parseValueAt(numberClass);
    --depth_;
    return result;
  }

  ZxArrayPtr parseValueAt(zxClassID numberClass) {
    const std::size_t start = pos_;
    if (std::optional<Scalar> scalar = parseScalar(numberClass)) {
      source_.chargeSmall(kArrayCost + sizeof scalar->value, start);
      return arrayOf(*scalar);
    }
    const char c = peek();
    if (c == '\'') return parseText();
    if (c == '[') {
      const std::size_t open = pos_++;
      return concatenate(source_, parseRows(']', open, numberClass, true), open);
    }
    if (c == '{') {
      const std::size_t open = pos_++;
      std::vector<Row> rows = parseRows('}', open, zxDOUBLE_CLASS, false);
      return cellOf(source_, rows, open);
    }
    if (isNameStart(c)) return parseCall();
    if (c == '@') return parseFunctionHandle();
    fail("unexpected " + quotedCharacter(pos_), pos_);
  }

  // "@name": a function handle naming the function.
  ZxArrayPtr parseFunctionHandle() {
    const std::size_t at = pos_++;
    if (!isNameStart(peek())) fail("expected a function name after '@'", pos_);
    const std::string name(scanName());
    source_.chargeSmall(kArrayCost + name.size(), at);
    return ZxArrayPtr(zxCreateFunctionHandle(name.c_str()));
  }

  // The character at byte offset at, whole, for a message.
  std::string quotedCharacter(std::size_t at) const {
    if (utf8CharacterLength(text_, at) == 0) return utf8CharacterText(text_, at);
    return "'" + utf8CharacterText(text_, at) + "'";
  }

  // A number, NaN, Inf, true or false; nullopt, having read nothing, for anything else.
  std::optional<Scalar> parseScalar(zxClassID numberClass) {
    if (atEnd()) fail("expected a literal", pos_);
    if (isNumberStart(peek())) return parseNumber(numberClass);
    if (!isNameStart(peek())) return std::nullopt;
    const std::size_t start = pos_;
    const std::string_view name = scanName();
    pos_ = start;
    if (name == "true" || name == "false") {
      pos_ += name.size();
      return logicalOf(name == "true");
    }
    if (equalsIgnoringCase(name, "nan") || equalsIgnoringCase(name, "inf")) return parseNumber(numberClass);
    return std::nullopt;
  }

  Scalar parseNumber(zxClassID numberClass) {
    const std::size_t start = pos_;
    bool negative = false;
    if (peek() == '+' || peek() == '-') negative = text_[pos_++] == '-';
    if (isNameStart(peek())) {
      const std::string_view name = scanName();
      if (equalsIgnoringCase(name, "nan")) return scalarOf(numberClass, std::numeric_limits<double>::quiet_NaN());
      if (equalsIgnoringCase(name, "inf")) {
        const double inf = std::numeric_limits<double>::infinity();
        return scalarOf(numberClass, negative ? -inf : inf);
      }
      fail("expected a number", start);
    }
    bool whole = true;
    std::size_t digits = scanDigits();
    if (peek() == '.') {
      whole = false;
      ++pos_;
      digits += scanDigits();
    }
    if (digits == 0) fail("expected a number", start);
    if (peek() == 'e' || peek() == 'E') {
      const std::size_t mark = pos_++;
      if (peek() == '+' || peek() == '-') ++pos_;
      if (scanDigits() == 0) {
        pos_ = mark;
      } else {
        whole = false;
      }
    }
    return numberOf(numberClass, text_.substr(start, pos_ - start), whole);
  }

  std::size_t scanDigits() {
    const std::size_t start = pos_;
    while (isDigit(peek())) ++pos_;
    return pos_ - start;
  }

  std::string_view scanName() {
    const std::size_t start = pos_;
    while (isNameChar(peek())) ++pos_;
    return text_.substr(start, pos_ - start);
  }

  ZxArrayPtr parseText() {
    const std::size_t start = pos_++;
    // The closing quote is found first, so that the text's arrays are charged before they are made.
    std::size_t end = pos_;
    std::size_t length = 0;
    for (;; ++end, ++length) {
      if (end >= text_.size()) fail("unterminated text", start);
      if (text_[end] != '\'') continue;
      if (end + 1 >= text_.size() || text_[end + 1] != '\'') break;
      ++end;
    }
    // The UTF-8 bytes, their UTF-16 units and the array's copy of them.
    source_.charge(saturatingAdd(5 * length, kArrayCost), [&] { return "text" + source_.columnText(start); });
    std::string bytes;
    bytes.reserve(length);
    for (; pos_ < end; ++pos_) {
      bytes += text_[pos_];
      if (text_[pos_] == '\'') ++pos_;
    }
    pos_ = end + 1;
    const std::u16string units = fl::i18n::utf8ToUtf16(bytes);
    return ZxArrayPtr(zxCreateStringFromUTF16(units.data(), units.size()));
  }

  // One element of a row or argument list. Inside brackets (scalars true) numbers, NaN, Inf, true and
  // false stay scalars.
  Item parseItem(zxClassID numberClass, bool scalars) {
    const std::size_t column = pos_;
    source_.chargeSmall(kSlotCost, column);
    if (scalars) {
      checkDepth();
      if (std::optional<Scalar> scalar = parseScalar(numberClass)) return Item{nullptr, *scalar, column};
    }
    return Item{parseValue(numberClass), {}, column};
  }

  // Rows of a bracket or brace opened at open, up to and including its closing character.
  std::vector<Row> parseRows(char close, std::size_t open, zxClassID numberClass, bool scalars) {
    std::vector<Row> rows;
    skipBlanks();
    if (peek() == close) {
      ++pos_;
      return rows;
    }
    source_.chargeSmall(kSlotCost, pos_);
    rows.push_back(Row{pos_, {}});
    for (;;) {
      if (atEnd()) failUnbalanced(open);
      rows.back().items.push_back(parseItem(numberClass, scalars));
      const bool blank = skipBlanks();
      if (atEnd()) failUnbalanced(open);
      const char c = peek();
      if (c == close) {
        ++pos_;
        return rows;
      }
      if (c == ',' || c == ';') {
        ++pos_;
        skipBlanks();
        if (c == ';') {
          source_.chargeSmall(kSlotCost, pos_);
          rows.push_back(Row{pos_, {}});
        }
      } else if (c == ']' || c == '}' || c == ')') {
        fail(std::string("'") + c + "' does not close '" + text_[open] + "' from column " +
                 std::to_string(utf8Column(text_, open)),
             pos_);
      } else if (!blank) {
        fail("expected ',' or a blank between elements", pos_);
      }
    }
  }

  ZxArrayPtr parseCall() {
    const std::size_t start = pos_;
    const std::string_view name = scanName();
    const std::optional<zxClassID> cast = valueClassNamed(name);
    const Function* function = cast ? nullptr : functionNamed(name);
    if (!cast && function == nullptr) fail("unknown function '" + std::string(name) + "'", start);
    skipBlanks();
    if (peek() != '(') fail("expected '(' after '" + std::string(name) + "'", pos_);
    const std::size_t open = pos_++;
    const bool readsInClass = cast && (*cast == zxSINGLE_CLASS || isIntegerClass(*cast));
    Call call{source_, name, start, parseArguments(open, readsInClass ? *cast : zxDOUBLE_CLASS)};
    return cast ? buildCast(call, *cast) : function->build(call);
  }

  std::vector<Item> parseArguments(std::size_t open, zxClassID numberClass) {
    std::vector<Item> args;
    skipBlanks();
    if (peek() == ')') {
      ++pos_;
      return args;
    }
    for (;;) {
      if (atEnd()) failUnbalanced(open);
      args.push_back(parseItem(numberClass, false));
      skipBlanks();
      if (atEnd()) failUnbalanced(open);
      if (peek() == ')') {
        ++pos_;
        return args;
      }
      if (peek() != ',') fail("expected ',' or ')'", pos_);
      ++pos_;
      skipBlanks();
    }
  }

  const Source& source_;
  std::string_view text_;
  std::size_t pos_ = 0;
  int depth_ = 0;
};

// --- Writing ---

void appendDimList(std::string& out, const zxArray* array) {
  const std::vector<zxSize> dims = dimsOf(array);
  for (std::size_t i = 0; i < dims.size(); ++i) {
    if (i > 0) out += ',';
    out += std::to_string(dims[i]);
  }
}

void appendQuoted(std::string& out, std::u16string_view units) {
  out += '\'';
  for (const char c : fl::i18n::utf16ToUtf8(units)) {
    if (c == '\'') out += '\'';
    out += c;
  }
  out += '\'';
}

// Writes the N-D wrapper around a 2-D view written by body: "reshape(<body>,d1,d2,d3)".
template <class Body>
void appendShaped(std::string& out, const zxArray* array, Body body) {
  const bool nd = zxGetNumberOfDimensions(array) > 2;
  if (nd) out += "reshape(";
  body();
  if (nd) {
    out += ',';
    appendDimList(out, array);
    out += ')';
  }
}

void appendLiteral(std::string& out, const zxArray* array);

// One part (real or imaginary) of a full numeric or logical array, in a form that reads back in its
// own class.
void appendPart(std::string& out, const zxArray* array, const void* data) {
  const zxClassID classID = zxGetClassID(array);
  const zxSize count = zxGetNumberOfElements(array);
  if (count == 0) {
    if (classID == zxDOUBLE_CLASS && isZeroByZero(array)) {
      out += "[]";
      return;
    }
    out += "zeros(";
    appendDimList(out, array);
    if (classID != zxDOUBLE_CLASS) out += ",'" + std::string(zxGetClassName(array)) + "'";
    out += ')';
    return;
  }
  if (classID == zxLOGICAL_CLASS && count == 1) {
    out += *static_cast<const zxLogical*>(data) ? "true" : "false";
    return;
  }
  appendShaped(out, array, [&] {
    const bool wrap = classID != zxDOUBLE_CLASS;
    if (wrap) out += std::string(zxGetClassName(array)) + '(';
    zx::dispatchNumericOrLogical(classID, [&](auto type) {
      using T = typename decltype(type)::type;
      const T* values = static_cast<const T*>(data);
      const zxSize rows = zxGetM(array);
      const zxSize cols = zxGetN(array);
      if (count == 1) {
        zx::appendElementText(out, values[0]);
        return;
      }
      out += '[';
      for (zxSize r = 0; r < rows; ++r) {
        if (r > 0) out += ';';
        for (zxSize c = 0; c < cols; ++c) {
          if (c > 0) out += ' ';
          zx::appendElementText(out, values[r + c * rows]);
        }
      }
      out += ']';
    });
    if (wrap) out += ')';
  });
}

void appendValues(std::string& out, const zxArray* array) {
  if (zxIsSparse(array)) {
    const ZxArrayPtr full(zxMustBeFull(array));
    out += "sparse(";
    appendValues(out, full.get());
    out += ')';
  } else if (zxIsComplex(array)) {
    out += "complex(";
    appendPart(out, array, zxGetData(array));
    out += ',';
    appendPart(out, array, zxGetImagData(array));
    out += ')';
  } else {
    appendPart(out, array, zxGetData(array));
  }
}

// Writes an empty array as its 0-by-0 literal, or as the call that makes its shape; false when the
// array is not empty.
bool appendIfEmpty(std::string& out, const zxArray* array, const char* zeroByZero, const char* shapedCall) {
  if (!zxIsEmpty(array)) return false;
  if (isZeroByZero(array)) {
    out += zeroByZero;
  } else {
    out += shapedCall;
    appendDimList(out, array);
    out += ')';
  }
  return true;
}

void appendText(std::string& out, const zxArray* array) {
  if (appendIfEmpty(out, array, "''", "reshape('',")) return;
  appendShaped(out, array, [&] {
    const zxSize rows = zxGetM(array);
    const zxSize cols = zxGetN(array);
    const zxChar* chars = zxGetChars(array);
    if (rows > 1) out += '[';
    std::u16string units;
    for (zxSize r = 0; r < rows; ++r) {
      if (r > 0) out += ';';
      units.clear();
      for (zxSize c = 0; c < cols; ++c) units += chars[r + c * rows];
      appendQuoted(out, units);
    }
    if (rows > 1) out += ']';
  });
}

void appendCell(std::string& out, const zxArray* array) {
  if (appendIfEmpty(out, array, "{}", "cell(")) return;
  appendShaped(out, array, [&] {
    const zxSize rows = zxGetM(array);
    const zxSize cols = zxGetN(array);
    out += '{';
    for (zxSize r = 0; r < rows; ++r) {
      if (r > 0) out += ';';
      for (zxSize c = 0; c < cols; ++c) {
        if (c > 0) out += ',';
        appendLiteral(out, zxGetCell(array, r + c * rows));
      }
    }
    out += '}';
  });
}

void appendStruct(std::string& out, const zxArray* array) {
  out += "struct(";
  for (int f = 0; f < zxGetNumberOfFields(array); ++f) {
    if (f > 0) out += ',';
    const std::string name = zxGetFieldNameByNumber(array, f);
    appendQuoted(out, fl::i18n::utf8ToUtf16(name));
    out += ',';
    appendLiteral(out, zxGetFieldByNumber(array, 0, f));
  }
  out += ')';
}

// Absent elements (null) are written as "[]".
void appendLiteral(std::string& out, const zxArray* array) {
  if (array == nullptr) {
    out += "[]";
  } else if (isValueArray(array)) {
    appendValues(out, array);
  } else if (zxIsChar(array)) {
    appendText(out, array);
  } else if (zxIsCell(array)) {
    appendCell(out, array);
  } else if (zxIsStruct(array) && zxIsScalar(array)) {
    appendStruct(out, array);
  } else if (zxIsFunctionHandle(array)) {
    out += '@';
    out += zxGetFunctionName(array);
  } else {
    out += zx::canonicalText(array);
  }
}

}  // namespace

std::optional<zxClassID> valueClassNamed(std::string_view name) {
  for (const NamedClass& entry : kValueClasses) {
    if (entry.name == name) return entry.classID;
  }
  return std::nullopt;
}

bool isFieldName(std::string_view name) {
  const auto isAsciiLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  return !name.empty() && isAsciiLetter(name.front()) && std::all_of(name.begin(), name.end(), [&](char c) {
    return isAsciiLetter(c) || (c >= '0' && c <= '9') || c == '_';
  });
}

ZxArrayPtr makeSparse(const zxArray* full) {
  ByteBudget unlimited;
  return makeSparse(full, unlimited);
}

ZxArrayPtr makeSparse(const zxArray* full, ByteBudget& budget) {
  if (!(zxIsDouble(full) || zxIsLogical(full)) || zxIsSparse(full) || zxGetNumberOfDimensions(full) != 2) {
    throw LiteralError("only full 2-D double and logical arrays can become sparse");
  }
  const zxSize m = zxGetM(full);
  const zxSize n = zxGetN(full);
  ZxArrayPtr result;
  zx::dispatchNumericOrLogical(zxGetClassID(full), [&](auto type) {
    using T = typename decltype(type)::type;
    const T* re = static_cast<const T*>(zxGetData(full));
    const T* im = static_cast<const T*>(zxGetImagData(full));
    const auto nonzero = [&](zxSize i) { return re[i] != T{} || (im != nullptr && im[i] != T{}); };
    zxSize stored = 0;
    for (zxSize i = 0; i < m * n; ++i) stored += nonzero(i) ? 1 : 0;
    // Each stored value keeps its row index; each column its start.
    const std::size_t bytesEach = sizeof(T) * (im != nullptr ? 2 : 1) + sizeof(zxSize);
    budget.charge(saturatingAdd(saturatingAdd(stored * bytesEach, (n + 1) * sizeof(zxSize)), kArrayCost),
                  "a " + std::to_string(m) + "x" + std::to_string(n) + " sparse array with " + std::to_string(stored) +
                      " nonzero elements");
    result.reset(zxIsLogical(full) ? zxCreateSparseLogicalMatrix(m, n, stored)
                                   : zxCreateSparse(m, n, stored, zxIsComplex(full) ? zxCOMPLEX : zxREAL));
    zxSize* rowOf = zxGetWritableIr(result.get());
    zxSize* columnStart = zxGetWritableJc(result.get());
    T* toRe = static_cast<T*>(zxGetWritableData(result.get()));
    T* toIm = static_cast<T*>(zxGetWritableImagData(result.get()));
    zxSize k = 0;
    for (zxSize c = 0; c < n; ++c) {
      columnStart[c] = k;
      for (zxSize r = 0; r < m; ++r) {
        const zxSize i = r + c * m;
        if (!nonzero(i)) continue;
        rowOf[k] = r;
        toRe[k] = re[i];
        if (toIm != nullptr) toIm[k] = im[i];
        ++k;
      }
    }
    columnStart[n] = k;
  });
  return result;
}

ZxArrayPtr readLiteral(std::string_view text) {
  ByteBudget unlimited;
  return readLiteral(text, unlimited);
}

ZxArrayPtr readLiteral(std::string_view text, ByteBudget& budget) {
  const Source source(text, budget);
  ZxArrayPtr result = Parser(source).parseAll();
  zxSetArrayScope(result.get(), zxPERSISTENT);
  return result;
}

std::string writeLiteral(const zxArray* array) {
  std::string out;
  appendLiteral(out, array);
  return out;
}

}  // namespace cmdlang
