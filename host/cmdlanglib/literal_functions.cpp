// The functions a literal may call (zeros, ones, cell, reshape, complex, sparse, struct) and the
// argument handling they share with the casts.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "cmdlanglib/literal.h"
#include "cmdlanglib/literal_internal.h"

namespace cmdlang {
namespace literal_detail {
namespace {

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

// The bytes one element of the array takes (both parts when complex); a cell element costs an array
// of its own, since copies of cells copy every element's header.
std::size_t elementBytes(const zxArray* array) {
  if (zxIsCell(array)) return sizeof(zxArray*) + kArrayCost;
  return zxGetElementSize(array) * (zxIsComplex(array) ? 2 : 1);
}

}  // namespace

void Call::requireCount(std::size_t least, std::size_t most) const {
  if (args.size() < least || args.size() > most) {
    fail(least == most
             ? "takes " + std::to_string(least) + " argument(s), not " + std::to_string(args.size())
             : "takes at least " + std::to_string(least) + " argument(s), not " + std::to_string(args.size()));
  }
}

std::string Call::textArg(std::size_t i, const char* what) const {
  if (!isTextRow(arg(i))) fail(std::string(what) + " must be text", args[i].column);
  return textOf(arg(i));
}

zxSize Call::dimension(std::size_t i) const {
  const zxArray* a = arg(i);
  const double value = isValueArray(a) && zxIsScalar(a) && !zxIsComplex(a) ? zxGetScalar(a) : -1.0;
  // 2^64 as a double: the first whole number that zxSize cannot hold.
  constexpr double kBeyondSize = 18446744073709551616.0;
  if (!(value >= 0 && value < kBeyondSize && std::floor(value) == value)) {
    fail("a dimension must be a non-negative whole number below 2^64", args[i].column);
  }
  return static_cast<zxSize>(value);
}

std::vector<zxSize> Call::dimensions(std::size_t first, std::size_t last) const {
  std::vector<zxSize> dims;
  for (std::size_t i = first; i < last; ++i) dims.push_back(dimension(i));
  if (dims.size() == 1) dims.push_back(dims[0]);
  return dims;
}

void Call::chargeArray(const std::vector<zxSize>& dims, std::size_t bytesEach, std::string_view className) const {
  const auto describe = [&] {
    return std::string(name) + source.columnText(column) + ": a " + dimsText(dims) + " " + std::string(className) +
           " array";
  };
  source.charge(saturatingMultiply(elementCount(dims), bytesEach), describe);
  source.charge(kArrayCost, describe);
  if (extentCount(dims) > kMaxElements) fail("too many elements");
}

namespace {

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
  FunctionBuilder build;
};

constexpr Function kFunctions[] = {
    {"zeros", buildZeros},     {"ones", buildOnes},     {"cell", buildCell},     {"reshape", buildReshape},
    {"complex", buildComplex}, {"sparse", buildSparse}, {"struct", buildStruct},
};

}  // namespace

FunctionBuilder functionNamed(std::string_view name) {
  const auto* found =
      std::find_if(std::begin(kFunctions), std::end(kFunctions), [&](const Function& f) { return f.name == name; });
  return found != std::end(kFunctions) ? found->build : nullptr;
}

}  // namespace literal_detail

using namespace literal_detail;

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

}  // namespace cmdlang
