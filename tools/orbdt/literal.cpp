// Host literals: the reader that turns one literal into a new host array and the writer that turns an
// array back into a literal the reader accepts.
#include "orbdt/literal.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "arraylib/zxdispatch.h"
#include "arraylib/zxformat.h"
#include "foundationlib/i18n/unicode.h"

namespace orbdt {

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

// Keeps a typo such as zeros(1e9,1e9) from reaching the allocator.
constexpr zxSize kMaxElements = zxSize{1} << 40;
// Keeps deeply nested brackets from exhausting the stack.
constexpr int kMaxDepth = 256;

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

std::string columnText(std::size_t at) { return " at column " + std::to_string(at + 1); }

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

// A 1-by-1 array of the given class holding the number written by token.
ZxArrayPtr numberOf(zxClassID classID, std::string_view token, bool whole) {
  ZxArrayPtr result(zxCreateNumericMatrix(1, 1, classID, zxREAL));
  zx::dispatchNumericOrLogical(classID, [&](auto type) {
    using T = typename decltype(type)::type;
    T& value = *static_cast<T*>(zxGetWritableData(result.get()));
    if constexpr (std::is_same_v<T, float>) {
      value = readFloat<float>(token);
    } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, zxLogical>) {
      value = whole ? readInteger<T>(token) : convertElement<T>(readFloat<double>(token));
    } else {
      value = convertElement<T>(readFloat<double>(token));
    }
  });
  return result;
}

ZxArrayPtr scalarOf(zxClassID classID, double value) {
  ZxArrayPtr result(zxCreateNumericMatrix(1, 1, classID, zxREAL));
  convertValues(zxDOUBLE_CLASS, &value, classID, zxGetWritableData(result.get()), 1, kSamePlace);
  return result;
}

struct Item {
  ZxArrayPtr value;
  std::size_t column;
};

struct Row {
  std::size_t column;
  std::vector<Item> items;
};

// One function call being built: its name, where it starts and its arguments.
struct Call {
  std::string_view name;
  std::size_t column;
  std::vector<Item> args;

  [[noreturn]] void fail(const std::string& what, std::size_t at) const {
    throw LiteralError(std::string(name) + ": " + what + columnText(at));
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
    if (!(value >= 0 && value <= static_cast<double>(kMaxElements) && std::floor(value) == value)) {
      fail("a dimension must be a non-negative whole number", args[i].column);
    }
    return static_cast<zxSize>(value);
  }

  // The dimensions given by arguments [first, last); one dimension d means d-by-d.
  std::vector<zxSize> dimensions(std::size_t first, std::size_t last) const {
    std::vector<zxSize> dims;
    zxSize count = 1;
    for (std::size_t i = first; i < last; ++i) {
      dims.push_back(dimension(i));
      if (dims.back() != 0 && count > kMaxElements / dims.back()) fail("too many elements", args[i].column);
      count = count * dims.back();
    }
    if (dims.size() == 1) {
      if (dims[0] != 0 && dims[0] > kMaxElements / dims[0]) fail("too many elements", args[first].column);
      dims.push_back(dims[0]);
    }
    return dims;
  }
};

std::string dimsText(const std::vector<zxSize>& dims) {
  std::string text;
  for (const zxSize d : dims) text += (text.empty() ? "" : "x") + std::to_string(d);
  return text;
}

ZxArrayPtr buildCast(const Call& call, zxClassID classID) {
  call.requireCount(1, 1);
  const zxArray* x = call.arg(0);
  if (!isValueArray(x) || zxIsSparse(x)) call.fail("needs a full numeric or logical argument", call.args[0].column);
  if (classID == zxLOGICAL_CLASS) {
    if (zxIsComplex(x)) call.fail("complex values cannot become logical", call.args[0].column);
    if (hasNaN(x)) call.fail("NaN cannot become logical", call.args[0].column);
  }
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
  return ZxArrayPtr(zxCreateCellArray(dims.size(), dims.data()));
}

ZxArrayPtr buildReshape(Call& call) {
  call.requireCount(3, std::numeric_limits<std::size_t>::max());
  const zxArray* x = call.arg(0);
  if (!(isValueArray(x) || zxIsChar(x) || zxIsCell(x)) || zxIsSparse(x)) {
    call.fail("can reshape only full numeric, logical, text and cell arrays", call.args[0].column);
  }
  const std::vector<zxSize> dims = call.dimensions(1, call.args.size());
  zxSize count = 1;
  for (const zxSize d : dims) count *= d;
  if (count != zxGetNumberOfElements(x)) {
    call.fail("cannot reshape " + std::to_string(zxGetNumberOfElements(x)) + " elements into " + dimsText(dims));
  }
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
  ZxArrayPtr result(zxCreateNumericArray(dims.size(), dims.data(), classID, zxCOMPLEX));
  const zxSize count = zxGetNumberOfElements(re);
  convertValues(zxGetClassID(re), zxGetData(re), classID, zxGetWritableData(result.get()), count, kSamePlace);
  convertValues(zxGetClassID(im), zxGetData(im), classID, zxGetWritableImagData(result.get()), count, kSamePlace);
  return result;
}

ZxArrayPtr buildSparse(Call& call) {
  call.requireCount(1, 1);
  const zxArray* x = call.arg(0);
  if (zxIsSparse(x)) return ZxArrayPtr(zxCreateSharedDataCopy(x));
  if (!(zxIsDouble(x) || zxIsLogical(x)) || zxGetNumberOfDimensions(x) != 2) {
    call.fail("needs a 2-D double or logical argument", call.args[0].column);
  }
  return makeSparse(x);
}

ZxArrayPtr buildStruct(Call& call) {
  if (call.args.size() % 2 != 0) call.fail("needs name and value pairs");
  std::vector<std::string> names;
  for (std::size_t i = 0; i < call.args.size(); i += 2) {
    std::string name = call.textArg(i, "a field name");
    if (!isFieldName(name)) call.fail("invalid field name '" + name + "'", call.args[i].column);
    if (std::find(names.begin(), names.end(), name) != names.end()) {
      call.fail("duplicate field '" + name + "'", call.args[i].column);
    }
    names.push_back(std::move(name));
  }
  std::vector<const char*> pointers;
  for (const std::string& name : names) pointers.push_back(name.c_str());
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

// The class that wins when brackets concatenate elements of classes a and b.
zxClassID combinedClass(zxClassID a, zxClassID b, std::size_t at) {
  if (a == b) return a;
  if (a == zxCHAR_CLASS || b == zxCHAR_CLASS) throw LiteralError("text and numbers cannot be mixed" + columnText(at));
  if (isIntegerClass(a) && isIntegerClass(b)) {
    throw LiteralError("different integer classes cannot be mixed" + columnText(at));
  }
  if (isIntegerClass(a)) return a;
  if (isIntegerClass(b)) return b;
  if (a == zxSINGLE_CLASS || b == zxSINGLE_CLASS) return zxSINGLE_CLASS;
  return zxDOUBLE_CLASS;
}

ZxArrayPtr concatenate(const std::vector<Row>& rows) {
  std::optional<zxClassID> classID;
  bool complex = false;
  for (const Row& row : rows) {
    for (const Item& item : row.items) {
      const zxArray* v = item.value.get();
      if (!(isValueArray(v) || zxIsChar(v))) {
        throw LiteralError("brackets hold numbers, logicals and text only" + columnText(item.column));
      }
      if (zxIsSparse(v)) throw LiteralError("sparse arrays cannot be concatenated" + columnText(item.column));
      if (zxGetNumberOfDimensions(v) > 2) {
        throw LiteralError("N-D arrays cannot be concatenated" + columnText(item.column));
      }
      classID = classID ? combinedClass(*classID, zxGetClassID(v), item.column) : zxGetClassID(v);
      complex = complex || zxIsComplex(v);
    }
  }
  if (!classID) return ZxArrayPtr(zxCreateDoubleMatrix(0, 0, zxREAL));

  constexpr zxSize kUnset = std::numeric_limits<zxSize>::max();
  zxSize height = 0;
  zxSize width = kUnset;
  for (const Row& row : rows) {
    zxSize rowHeight = kUnset;
    zxSize rowWidth = 0;
    for (const Item& item : row.items) {
      const zxArray* v = item.value.get();
      if (isZeroByZero(v)) continue;
      if (rowHeight != kUnset && zxGetM(v) != rowHeight) {
        throw LiteralError("elements of one row differ in height" + columnText(item.column));
      }
      rowHeight = zxGetM(v);
      rowWidth += zxGetN(v);
    }
    if (rowHeight == kUnset) continue;
    if (width != kUnset && rowWidth != width) throw LiteralError("ragged rows" + columnText(row.column));
    width = rowWidth;
    height += rowHeight;
  }
  if (width == kUnset) width = 0;

  const zxSize dims[] = {height, width};
  ZxArrayPtr result(*classID == zxCHAR_CLASS ? zxCreateCharArray(2, dims)
                                             : zxCreateNumericArray(2, dims, *classID, complex ? zxCOMPLEX : zxREAL));
  zxSize top = 0;
  for (const Row& row : rows) {
    zxSize left = 0;
    zxSize rowHeight = 0;
    for (const Item& item : row.items) {
      const zxArray* v = item.value.get();
      if (isZeroByZero(v)) continue;
      rowHeight = zxGetM(v);
      convertInto(v, result.get(), [&](zxSize i) { return top + i % rowHeight + (left + i / rowHeight) * height; });
      left += zxGetN(v);
    }
    top += rowHeight;
  }
  return result;
}

ZxArrayPtr cellOf(std::vector<Row>& rows) {
  if (rows.empty()) return ZxArrayPtr(zxCreateCellMatrix(0, 0));
  const zxSize m = rows.size();
  const zxSize n = rows.front().items.size();
  for (const Row& row : rows) {
    if (row.items.size() != n) throw LiteralError("ragged rows" + columnText(row.column));
  }
  ZxArrayPtr result(zxCreateCellMatrix(m, n));
  for (zxSize r = 0; r < m; ++r) {
    for (zxSize c = 0; c < n; ++c) zxSetCell(result.get(), r + c * m, rows[r].items[c].value.release());
  }
  return result;
}

// A recursive-descent reader over the text; positions are byte offsets, reported 1-based.
class Parser {
 public:
  explicit Parser(std::string_view text) : text_(text) {}

  ZxArrayPtr parseAll() {
    skipBlanks();
    if (atEnd()) fail("expected a literal", pos_);
    ZxArrayPtr result = parseValue(zxDOUBLE_CLASS);
    skipBlanks();
    if (!atEnd()) fail("unexpected text after literal", pos_);
    return result;
  }

 private:
  [[noreturn]] static void fail(const std::string& what, std::size_t at) { throw LiteralError(what + columnText(at)); }
  [[noreturn]] void failUnbalanced(std::size_t open) const {
    fail(std::string("unbalanced '") + text_[open] + "'", open);
  }

  bool atEnd() const { return pos_ >= text_.size(); }
  char peek() const { return atEnd() ? '\0' : text_[pos_]; }
  static bool isNameStart(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }
  static bool isNameChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }
  static bool isDigit(char c) { return c >= '0' && c <= '9'; }

  // Returns whether any blank was skipped.
  bool skipBlanks() {
    const std::size_t start = pos_;
    while (!atEnd() && std::isspace(static_cast<unsigned char>(text_[pos_])) != 0) ++pos_;
    return pos_ != start;
  }

  // numberClass is the class in which bare numbers are read: that of the innermost cast for single
  // and the integer classes, double everywhere else.
  ZxArrayPtr parseValue(zxClassID numberClass) {
    if (depth_ >= kMaxDepth) fail("literal nested too deeply", pos_);
    ++depth_;
    ZxArrayPtr result = parseValueAt(numberClass);
    --depth_;
    return result;
  }

  ZxArrayPtr parseValueAt(zxClassID numberClass) {
    const char c = peek();
    if (atEnd()) fail("expected a literal", pos_);
    if (isDigit(c) || c == '.' || c == '+' || c == '-') return parseNumber(numberClass);
    if (c == '\'') return parseText();
    if (c == '[') {
      const std::size_t open = pos_++;
      return concatenate(parseRows(']', open, numberClass));
    }
    if (c == '{') {
      const std::size_t open = pos_++;
      std::vector<Row> rows = parseRows('}', open, zxDOUBLE_CLASS);
      return cellOf(rows);
    }
    if (isNameStart(c)) return parseName(numberClass);
    fail(std::string("unexpected '") + c + "'", pos_);
  }

  ZxArrayPtr parseNumber(zxClassID numberClass) {
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
    std::string bytes;
    for (;;) {
      if (atEnd()) fail("unterminated text", start);
      const char c = text_[pos_++];
      if (c == '\'') {
        if (peek() != '\'') break;
        ++pos_;
      }
      bytes += c;
    }
    const std::u16string units = fl::i18n::utf8ToUtf16(bytes);
    return ZxArrayPtr(zxCreateStringFromUTF16(units.data(), units.size()));
  }

  // Rows of a bracket or brace opened at open, up to and including its closing character.
  std::vector<Row> parseRows(char close, std::size_t open, zxClassID numberClass) {
    std::vector<Row> rows;
    skipBlanks();
    if (peek() == close) {
      ++pos_;
      return rows;
    }
    rows.push_back(Row{pos_, {}});
    for (;;) {
      if (atEnd()) failUnbalanced(open);
      const std::size_t column = pos_;
      rows.back().items.push_back(Item{parseValue(numberClass), column});
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
        if (c == ';') rows.push_back(Row{pos_, {}});
      } else if (c == ']' || c == '}' || c == ')') {
        fail(std::string("'") + c + "' does not close '" + text_[open] + "' from column " + std::to_string(open + 1),
             pos_);
      } else if (!blank) {
        fail("expected ',' or a blank between elements", pos_);
      }
    }
  }

  ZxArrayPtr parseName(zxClassID numberClass) {
    const std::size_t start = pos_;
    const std::string_view name = scanName();
    if (name == "true" || name == "false") return ZxArrayPtr(zxCreateLogicalScalar(name == "true"));
    if (equalsIgnoringCase(name, "nan") || equalsIgnoringCase(name, "inf")) {
      pos_ = start;
      return parseNumber(numberClass);
    }
    const std::optional<zxClassID> cast = valueClassNamed(name);
    const Function* function = cast ? nullptr : functionNamed(name);
    if (!cast && function == nullptr) fail("unknown function '" + std::string(name) + "'", start);
    skipBlanks();
    if (peek() != '(') fail("expected '(' after '" + std::string(name) + "'", pos_);
    const std::size_t open = pos_++;
    const bool readsInClass = cast && (*cast == zxSINGLE_CLASS || isIntegerClass(*cast));
    Call call{name, start, parseArguments(open, readsInClass ? *cast : zxDOUBLE_CLASS)};
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
      const std::size_t column = pos_;
      args.push_back(Item{parseValue(numberClass), column});
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
  ZxArrayPtr result = Parser(text).parseAll();
  zxSetArrayScope(result.get(), zxPERSISTENT);
  return result;
}

std::string writeLiteral(const zxArray* array) {
  std::string out;
  appendLiteral(out, array);
  return out;
}

}  // namespace orbdt
