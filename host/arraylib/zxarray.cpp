// The host's array value: headers that share reference-counted element storage, copy on write,
// and temporaries tracked by the innermost call frame.
#include "arraylib/zxarray.h"

#include <algorithm>
#include <boost/container/small_vector.hpp>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "arraylib/zxdispatch.h"
#include "arraylib/zxerror.h"
#include "foundationlib/except.h"
#include "foundationlib/i18n/unicode.h"
#include "utillib/ut.h"

namespace {

// Element storage, shared between the headers of shared-data copies.
struct Payload {
  void* real = nullptr;
  void* imag = nullptr;
  std::vector<zxSize> ir;  // sparse: row index of each stored value
  std::vector<zxSize> jc;  // sparse: start of each column in ir, n + 1 entries
  zxSize nzmax = 0;
  std::vector<zxArray*> elements;  // cells: one per element; structs: element-major, nfields each
  std::vector<std::string> fieldNames;
  std::string name;  // function name, or object class name
  std::vector<void*> objects;
  const zxObjectOps* ops = nullptr;

  Payload() = default;
  Payload(const Payload&) = delete;
  Payload& operator=(const Payload&) = delete;
  ~Payload();
};

using Dims = boost::container::small_vector<zxSize, 4>;

}  // namespace

struct zxArray {
  zxClassID classID = zxUNKNOWN_CLASS;
  Dims dims;
  zxSize numel = 0;
  bool complex = false;
  bool sparse = false;
  std::shared_ptr<Payload> payload;
  // Membership in a call frame's list of temporaries.
  zx::CallFrame* frame = nullptr;
  zxArray* prevTemporary = nullptr;
  zxArray* nextTemporary = nullptr;
};

namespace zx {

// The frame bookkeeping that the array functions need from CallFrame.
struct FrameAccess {
  static thread_local CallFrame* current;

  static void link(zxArray* array) {
    CallFrame* frame = current;
    if (frame == nullptr || array->frame != nullptr) return;
    array->frame = frame;
    array->prevTemporary = nullptr;
    array->nextTemporary = frame->temporaries_;
    if (frame->temporaries_ != nullptr) frame->temporaries_->prevTemporary = array;
    frame->temporaries_ = array;
  }

  static void unlink(zxArray* array) {
    CallFrame* frame = array->frame;
    if (frame == nullptr) return;
    if (array->prevTemporary != nullptr) {
      array->prevTemporary->nextTemporary = array->nextTemporary;
    } else {
      frame->temporaries_ = array->nextTemporary;
    }
    if (array->nextTemporary != nullptr) array->nextTemporary->prevTemporary = array->prevTemporary;
    array->frame = nullptr;
    array->prevTemporary = array->nextTemporary = nullptr;
  }

  static void enter(CallFrame* frame) {
    frame->parent_ = current;
    current = frame;
  }

  static void leave(CallFrame* frame) {
    while (frame->temporaries_ != nullptr) zxDestroyArray(frame->temporaries_);
    current = frame->parent_;
  }

  static std::size_t count(const CallFrame* frame) {
    std::size_t n = 0;
    for (const zxArray* a = frame->temporaries_; a != nullptr; a = a->nextTemporary) ++n;
    return n;
  }
};

thread_local CallFrame* FrameAccess::current = nullptr;

CallFrame::CallFrame() : parent_(nullptr) { FrameAccess::enter(this); }
CallFrame::~CallFrame() { FrameAccess::leave(this); }
std::size_t CallFrame::temporaryCount() const { return FrameAccess::count(this); }
bool inCallFrame() { return FrameAccess::current != nullptr; }

}  // namespace zx

namespace {

using zx::FrameAccess;

constexpr const char* kClassNames[] = {"unknown", "cell",   "struct", "logical", "char",           "void",
                                       "double",  "single", "int8",   "uint8",   "int16",          "uint16",
                                       "int32",   "uint32", "int64",  "uint64",  "function_handle"};

zxSize elementSizeOf(zxClassID classID) {
  switch (classID) {
    case zxLOGICAL_CLASS:
    case zxINT8_CLASS:
    case zxUINT8_CLASS: return 1;
    case zxCHAR_CLASS:
    case zxINT16_CLASS:
    case zxUINT16_CLASS: return 2;
    case zxSINGLE_CLASS:
    case zxINT32_CLASS:
    case zxUINT32_CLASS: return 4;
    case zxDOUBLE_CLASS:
    case zxINT64_CLASS:
    case zxUINT64_CLASS: return 8;
    case zxCELL_CLASS:
    case zxSTRUCT_CLASS:
    case zxFUNCTION_CLASS:
    case zxOBJECT_CLASS: return sizeof(void*);
    case zxUNKNOWN_CLASS:
    case zxVOID_CLASS: return 0;
  }
  return 0;
}

bool holdsValues(zxClassID classID) {
  return zxIsNumericArrayType(classID) || classID == zxLOGICAL_CLASS || classID == zxCHAR_CLASS;
}

zxSize checkedProduct(zxSize a, zxSize b) {
  zxSize product = 0;
  if (__builtin_mul_overflow(a, b, &product)) zxErrMsg(zxINVALID_DIMENSIONS);
  return product;
}

void* allocateZeroed(zxSize count, zxSize size) {
  if (count == 0 || size == 0) return nullptr;
  checkedProduct(count, size);
  void* block = utCalloc(count, size);
  if (block == nullptr) throw fl::except::bad_alloc();
  return block;
}

void* copyBlock(const void* source, zxSize bytes) {
  if (source == nullptr || bytes == 0) return nullptr;
  void* block = utMalloc(bytes);
  if (block == nullptr) throw fl::except::bad_alloc();
  std::memcpy(block, source, bytes);
  return block;
}

Dims normalizedDims(zxSize ndim, const zxSize* dims) {
  Dims result(dims, dims + ndim);
  while (result.size() < 2) result.push_back(1);
  while (result.size() > 2 && result.back() == 1) result.pop_back();
  return result;
}

zxSize productOf(const Dims& dims) {
  zxSize product = 1;
  for (zxSize d : dims) product = checkedProduct(product, d);
  return product;
}

Payload::~Payload() {
  utFree(real);
  utFree(imag);
  for (zxArray* element : elements) zxDestroyArray(element);
  if (ops != nullptr && ops->release != nullptr) {
    for (void* object : objects) {
      if (object != nullptr) ops->release(object);
    }
  }
}

zxSize valueCount(const zxArray* array) { return array->sparse ? array->payload->nzmax : array->numel; }

// A header over new storage, not yet in any frame.
zxArray* newHeader(zxClassID classID, Dims dims) {
  auto array = std::make_unique<zxArray>();
  array->classID = classID;
  array->dims = std::move(dims);
  array->numel = productOf(array->dims);
  array->payload = std::make_shared<Payload>();
  return array.release();
}

// A new dense array of a value class (numeric, logical, char), zero-filled, in the current frame.
zxArray* newValueArray(zxClassID classID, Dims dims, zxComplexity complexity) {
  std::unique_ptr<zxArray> array(newHeader(classID, std::move(dims)));
  const zxSize size = elementSizeOf(classID);
  array->complex = complexity == zxCOMPLEX;
  array->payload->real = allocateZeroed(array->numel, size);
  if (array->complex) array->payload->imag = allocateZeroed(array->numel, size);
  FrameAccess::link(array.get());
  return array.release();
}

zxArray* shareHeader(const zxArray* source) {
  auto copy = std::make_unique<zxArray>();
  copy->classID = source->classID;
  copy->dims = source->dims;
  copy->numel = source->numel;
  copy->complex = source->complex;
  copy->sparse = source->sparse;
  copy->payload = source->payload;
  return copy.release();
}

zxArray* duplicateHeader(const zxArray* source);

// A payload of its own with the same contents. Nested arrays are shared-data copies (deep == false)
// or deep copies.
std::shared_ptr<Payload> copyPayload(const zxArray* source, bool deep) {
  const Payload& from = *source->payload;
  auto to = std::make_shared<Payload>();
  const zxSize bytes = valueCount(source) * elementSizeOf(source->classID);
  if (holdsValues(source->classID)) {
    to->real = copyBlock(from.real, bytes);
    to->imag = copyBlock(from.imag, bytes);
  }
  to->ir = from.ir;
  to->jc = from.jc;
  to->nzmax = from.nzmax;
  to->fieldNames = from.fieldNames;
  to->name = from.name;
  to->elements.reserve(from.elements.size());
  for (const zxArray* element : from.elements) {
    to->elements.push_back(element == nullptr ? nullptr : deep ? duplicateHeader(element) : shareHeader(element));
  }
  to->ops = from.ops;
  to->objects = from.objects;
  if (to->ops != nullptr && to->ops->retain != nullptr) {
    for (void* object : to->objects) {
      if (object != nullptr) to->ops->retain(object);
    }
  }
  return to;
}

zxArray* duplicateHeader(const zxArray* source) {
  std::unique_ptr<zxArray> copy(shareHeader(source));
  copy->payload = copyPayload(source, true);
  return copy.release();
}

// Gives the array storage of its own before a write.
Payload& ownPayload(zxArray* array) {
  if (array->payload.use_count() > 1) array->payload = copyPayload(array, false);
  return *array->payload;
}

zxSize checkedIndex(const zxArray* array, zxSize index) {
  if (index >= array->numel) zxErrMsg(zxINDEX_OUT_OF_RANGE);
  return index;
}

void requireClass(const zxArray* array, zxClassID classID) {
  if (array == nullptr || array->classID != classID) zxErrMsg(zxWRONG_CLASS);
}

// The array becomes part of a container: it leaves its frame and belongs to the container.
void adopt(zxArray* value) {
  if (value != nullptr) FrameAccess::unlink(value);
}

double valueAsDouble(zxClassID classID, const void* data, zxSize index) {
  if (classID == zxCHAR_CLASS) return static_cast<const zxChar*>(data)[index];
  double value = 0.0;
  zx::dispatchNumericOrLogical(classID, [&](auto type) {
    using T = typename decltype(type)::type;
    value = static_cast<double>(static_cast<const T*>(data)[index]);
  });
  return value;
}

zxArray* newStructArray(Dims dims, int nfields, const char* const* fieldNames) {
  std::unique_ptr<zxArray> array(newHeader(zxSTRUCT_CLASS, std::move(dims)));
  auto& names = array->payload->fieldNames;
  names.reserve(static_cast<zxSize>(std::max(nfields, 0)));
  // Views of the caller's names, which outlive this call, keep repeated names out in linear time.
  std::unordered_set<std::string_view> seen;
  for (int f = 0; f < nfields; ++f) {
    if (seen.insert(fieldNames[f]).second) names.emplace_back(fieldNames[f]);
  }
  array->payload->elements.assign(checkedProduct(array->numel, array->payload->fieldNames.size()), nullptr);
  FrameAccess::link(array.get());
  return array.release();
}

zxArray* newCellArray(Dims dims) {
  std::unique_ptr<zxArray> array(newHeader(zxCELL_CLASS, std::move(dims)));
  array->payload->elements.assign(array->numel, nullptr);
  FrameAccess::link(array.get());
  return array.release();
}

zxArray* newSparse(zxClassID classID, zxSize m, zxSize n, zxSize nzmax, zxComplexity complexity) {
  std::unique_ptr<zxArray> array(newHeader(classID, Dims{m, n}));
  array->sparse = true;
  array->complex = complexity == zxCOMPLEX;
  Payload& payload = *array->payload;
  payload.nzmax = nzmax;
  payload.real = allocateZeroed(nzmax, elementSizeOf(classID));
  if (array->complex) payload.imag = allocateZeroed(nzmax, elementSizeOf(classID));
  payload.ir.assign(nzmax, 0);
  payload.jc.assign(n + 1, 0);
  FrameAccess::link(array.get());
  return array.release();
}

zxArray* newCharArray(Dims dims, const std::u16string& text) {
  zxArray* array = newValueArray(zxCHAR_CLASS, std::move(dims), zxREAL);
  if (!text.empty()) std::memcpy(array->payload->real, text.data(), text.size() * sizeof(zxChar));
  return array;
}

}  // namespace

zxArray* zxCreateDoubleMatrix(zxSize m, zxSize n, zxComplexity complexity) {
  return newValueArray(zxDOUBLE_CLASS, Dims{m, n}, complexity);
}

zxArray* zxCreateDoubleScalar(double value) {
  zxArray* array = newValueArray(zxDOUBLE_CLASS, Dims{1, 1}, zxREAL);
  *static_cast<double*>(array->payload->real) = value;
  return array;
}

zxArray* zxCreateNumericMatrix(zxSize m, zxSize n, zxClassID classID, zxComplexity complexity) {
  const zxSize dims[] = {m, n};
  return zxCreateNumericArray(2, dims, classID, complexity);
}

zxArray* zxCreateNumericArray(zxSize ndim, const zxSize* dims, zxClassID classID, zxComplexity complexity) {
  if (!zxIsNumericArrayType(classID) && classID != zxLOGICAL_CLASS) zxErrMsg(zxWRONG_CLASS);
  return newValueArray(classID, normalizedDims(ndim, dims), classID == zxLOGICAL_CLASS ? zxREAL : complexity);
}

zxArray* zxCreateLogicalMatrix(zxSize m, zxSize n) { return newValueArray(zxLOGICAL_CLASS, Dims{m, n}, zxREAL); }

zxArray* zxCreateLogicalArray(zxSize ndim, const zxSize* dims) {
  return newValueArray(zxLOGICAL_CLASS, normalizedDims(ndim, dims), zxREAL);
}

zxArray* zxCreateLogicalScalar(bool value) {
  zxArray* array = newValueArray(zxLOGICAL_CLASS, Dims{1, 1}, zxREAL);
  *static_cast<zxLogical*>(array->payload->real) = value;
  return array;
}

zxArray* zxCreateString(const char* utf8) {
  const std::u16string text = fl::i18n::utf8ToUtf16(utf8 != nullptr ? utf8 : "");
  return text.empty() ? newCharArray(Dims{0, 0}, text) : newCharArray(Dims{1, text.size()}, text);
}

zxArray* zxCreateStringFromUTF16(const zxChar* units, zxSize count) {
  const std::u16string text(units, units + count);
  return text.empty() ? newCharArray(Dims{0, 0}, text) : newCharArray(Dims{1, count}, text);
}

zxArray* zxCreateCharMatrixFromStrings(zxSize m, const char* const* rows) {
  std::vector<std::u16string> texts;
  texts.reserve(m);
  zxSize width = 0;
  for (zxSize i = 0; i < m; ++i) {
    texts.push_back(fl::i18n::utf8ToUtf16(rows[i] != nullptr ? rows[i] : ""));
    width = std::max<zxSize>(width, texts.back().size());
  }
  zxArray* array = newValueArray(zxCHAR_CLASS, Dims{m, width}, zxREAL);
  auto* chars = static_cast<zxChar*>(array->payload->real);
  for (zxSize i = 0; i < m; ++i) {
    for (zxSize j = 0; j < width; ++j) chars[i + j * m] = j < texts[i].size() ? texts[i][j] : u' ';
  }
  return array;
}

zxArray* zxCreateCharArray(zxSize ndim, const zxSize* dims) {
  return newValueArray(zxCHAR_CLASS, normalizedDims(ndim, dims), zxREAL);
}

zxArray* zxCreateCellMatrix(zxSize m, zxSize n) { return newCellArray(Dims{m, n}); }

zxArray* zxCreateCellArray(zxSize ndim, const zxSize* dims) { return newCellArray(normalizedDims(ndim, dims)); }

zxArray* zxCreateStructMatrix(zxSize m, zxSize n, int nfields, const char* const* fieldNames) {
  return newStructArray(Dims{m, n}, nfields, fieldNames);
}

zxArray* zxCreateStructArray(zxSize ndim, const zxSize* dims, int nfields, const char* const* fieldNames) {
  return newStructArray(normalizedDims(ndim, dims), nfields, fieldNames);
}

zxArray* zxCreateSparse(zxSize m, zxSize n, zxSize nzmax, zxComplexity complexity) {
  return newSparse(zxDOUBLE_CLASS, m, n, nzmax, complexity);
}

zxArray* zxCreateSparseLogicalMatrix(zxSize m, zxSize n, zxSize nzmax) {
  return newSparse(zxLOGICAL_CLASS, m, n, nzmax, zxREAL);
}

zxArray* zxCreateFunctionHandle(const char* functionName) {
  std::unique_ptr<zxArray> array(newHeader(zxFUNCTION_CLASS, Dims{1, 1}));
  array->payload->name = functionName != nullptr ? functionName : "";
  FrameAccess::link(array.get());
  return array.release();
}

zxArray* zxCreateObjectArray(const char* className, zxSize ndim, const zxSize* dims, const zxObjectOps* ops) {
  std::unique_ptr<zxArray> array(newHeader(zxOBJECT_CLASS, normalizedDims(ndim, dims)));
  array->payload->name = className != nullptr ? className : "";
  array->payload->ops = ops;
  array->payload->objects.assign(array->numel, nullptr);
  FrameAccess::link(array.get());
  return array.release();
}

zxArray* zxCreateSharedDataCopy(const zxArray* source) {
  if (source == nullptr) return nullptr;
  zxArray* copy = shareHeader(source);
  FrameAccess::link(copy);
  return copy;
}

zxArray* zxDuplicateArray(const zxArray* source) {
  if (source == nullptr) return nullptr;
  zxArray* copy = duplicateHeader(source);
  FrameAccess::link(copy);
  return copy;
}

zxArray* zxMustBeFull(const zxArray* source) {
  if (source == nullptr) return nullptr;
  if (!source->sparse) return zxCreateSharedDataCopy(source);
  const zxSize m = source->dims[0];
  const zxSize n = source->dims[1];
  zxArray* full = newValueArray(source->classID, Dims{m, n}, source->complex ? zxCOMPLEX : zxREAL);
  const Payload& from = *source->payload;
  const zxSize size = elementSizeOf(source->classID);
  auto* real = static_cast<char*>(full->payload->real);
  auto* imag = static_cast<char*>(full->payload->imag);
  for (zxSize j = 0; j < n; ++j) {
    for (zxSize k = from.jc[j]; k < from.jc[j + 1]; ++k) {
      const zxSize target = (from.ir[k] + j * m) * size;
      std::memcpy(real + target, static_cast<const char*>(from.real) + k * size, size);
      if (imag != nullptr) std::memcpy(imag + target, static_cast<const char*>(from.imag) + k * size, size);
    }
  }
  return full;
}

void zxDestroyArray(zxArray* array) {
  if (array == nullptr) return;
  FrameAccess::unlink(array);
  delete array;
}

void zxSetArrayScope(zxArray* array, zxArrayScope scope) {
  if (array == nullptr) return;
  if (scope == zxPERSISTENT) {
    FrameAccess::unlink(array);
  } else {
    FrameAccess::link(array);
  }
}

zxClassID zxGetClassID(const zxArray* array) { return array != nullptr ? array->classID : zxUNKNOWN_CLASS; }

const char* zxGetClassName(const zxArray* array) {
  if (array == nullptr) return kClassNames[zxUNKNOWN_CLASS];
  if (array->classID == zxOBJECT_CLASS) return array->payload->name.c_str();
  return kClassNames[array->classID];
}

bool zxIsClass(const zxArray* array, const char* className) {
  return className != nullptr && std::strcmp(zxGetClassName(array), className) == 0;
}

zxSize zxGetM(const zxArray* array) { return array->dims[0]; }

zxSize zxGetN(const zxArray* array) {
  return array->dims[0] == 0 ? productOf(Dims(array->dims.begin() + 1, array->dims.end()))
                             : array->numel / array->dims[0];
}

zxSize zxGetNumberOfDimensions(const zxArray* array) { return array->dims.size(); }

const zxSize* zxGetDimensions(const zxArray* array) { return array->dims.data(); }

zxSize zxGetNumberOfElements(const zxArray* array) { return array->numel; }

zxSize zxGetElementSize(const zxArray* array) { return elementSizeOf(array->classID); }

bool zxIsEmpty(const zxArray* array) { return array->numel == 0; }

bool zxIsScalar(const zxArray* array) { return array->numel == 1; }

bool zxIsVector(const zxArray* array) {
  return std::count_if(array->dims.begin(), array->dims.end(), [](zxSize d) { return d != 1; }) <= 1;
}

bool zxIsVector2D(const zxArray* array) {
  return array->dims.size() == 2 && (array->dims[0] == 1 || array->dims[1] == 1);
}

bool zxIsNumericArrayType(zxClassID classID) { return classID >= zxDOUBLE_CLASS && classID <= zxUINT64_CLASS; }

bool zxIsNumeric(const zxArray* array) { return zxIsNumericArrayType(array->classID); }
bool zxIsComplex(const zxArray* array) { return array->complex; }
bool zxIsSparse(const zxArray* array) { return array->sparse; }
bool zxIsChar(const zxArray* array) { return array->classID == zxCHAR_CLASS; }
bool zxIsCell(const zxArray* array) { return array->classID == zxCELL_CLASS; }
bool zxIsStruct(const zxArray* array) { return array->classID == zxSTRUCT_CLASS; }
bool zxIsLogical(const zxArray* array) { return array->classID == zxLOGICAL_CLASS; }
bool zxIsDouble(const zxArray* array) { return array->classID == zxDOUBLE_CLASS; }
bool zxIsSingle(const zxArray* array) { return array->classID == zxSINGLE_CLASS; }
bool zxIsFunctionHandle(const zxArray* array) { return array->classID == zxFUNCTION_CLASS; }
bool zxIsObject(const zxArray* array) { return array->classID == zxOBJECT_CLASS; }

const double* zxGetPr(const zxArray* array) {
  return array->classID == zxDOUBLE_CLASS ? static_cast<const double*>(array->payload->real) : nullptr;
}

const double* zxGetPi(const zxArray* array) {
  return array->classID == zxDOUBLE_CLASS ? static_cast<const double*>(array->payload->imag) : nullptr;
}

const void* zxGetData(const zxArray* array) { return holdsValues(array->classID) ? array->payload->real : nullptr; }

const void* zxGetImagData(const zxArray* array) { return holdsValues(array->classID) ? array->payload->imag : nullptr; }

const zxChar* zxGetChars(const zxArray* array) {
  return array->classID == zxCHAR_CLASS ? static_cast<const zxChar*>(array->payload->real) : nullptr;
}

const zxLogical* zxGetLogicals(const zxArray* array) {
  return array->classID == zxLOGICAL_CLASS ? static_cast<const zxLogical*>(array->payload->real) : nullptr;
}

void* zxGetWritableData(zxArray* array) { return holdsValues(array->classID) ? ownPayload(array).real : nullptr; }

void* zxGetWritableImagData(zxArray* array) { return holdsValues(array->classID) ? ownPayload(array).imag : nullptr; }

double* zxGetWritablePr(zxArray* array) {
  return array->classID == zxDOUBLE_CLASS ? static_cast<double*>(zxGetWritableData(array)) : nullptr;
}

double* zxGetWritablePi(zxArray* array) {
  return array->classID == zxDOUBLE_CLASS ? static_cast<double*>(zxGetWritableImagData(array)) : nullptr;
}

zxChar* zxGetWritableChars(zxArray* array) {
  return array->classID == zxCHAR_CLASS ? static_cast<zxChar*>(zxGetWritableData(array)) : nullptr;
}

zxLogical* zxGetWritableLogicals(zxArray* array) {
  return array->classID == zxLOGICAL_CLASS ? static_cast<zxLogical*>(zxGetWritableData(array)) : nullptr;
}

double zxGetScalar(const zxArray* array) {
  if (array == nullptr || array->numel == 0 || !holdsValues(array->classID)) return 0.0;
  if (array->sparse) {
    const Payload& payload = *array->payload;
    const bool stored = payload.jc.size() > 1 && payload.jc[1] > 0 && payload.ir[0] == 0;
    return stored ? valueAsDouble(array->classID, payload.real, 0) : 0.0;
  }
  // Doubles, the common case of every scalar property, skip the dispatch by class.
  if (array->classID == zxDOUBLE_CLASS) return *static_cast<const double*>(array->payload->real);
  return valueAsDouble(array->classID, array->payload->real, 0);
}

const zxSize* zxGetIr(const zxArray* array) { return array->sparse ? array->payload->ir.data() : nullptr; }
const zxSize* zxGetJc(const zxArray* array) { return array->sparse ? array->payload->jc.data() : nullptr; }
zxSize* zxGetWritableIr(zxArray* array) { return array->sparse ? ownPayload(array).ir.data() : nullptr; }
zxSize* zxGetWritableJc(zxArray* array) { return array->sparse ? ownPayload(array).jc.data() : nullptr; }
zxSize zxGetNzmax(const zxArray* array) { return array->sparse ? array->payload->nzmax : 0; }

const zxArray* zxGetCell(const zxArray* cell, zxSize index) {
  requireClass(cell, zxCELL_CLASS);
  return cell->payload->elements[checkedIndex(cell, index)];
}

void zxSetCell(zxArray* cell, zxSize index, zxArray* value) {
  requireClass(cell, zxCELL_CLASS);
  checkedIndex(cell, index);
  zxArray*& slot = ownPayload(cell).elements[index];
  if (slot == value) return;
  adopt(value);
  zxDestroyArray(std::exchange(slot, value));
}

int zxGetNumberOfFields(const zxArray* array) {
  return array->classID == zxSTRUCT_CLASS ? static_cast<int>(array->payload->fieldNames.size()) : 0;
}

const char* zxGetFieldNameByNumber(const zxArray* array, int field) {
  if (field < 0 || field >= zxGetNumberOfFields(array)) return nullptr;
  return array->payload->fieldNames[static_cast<zxSize>(field)].c_str();
}

int zxGetFieldNumber(const zxArray* array, const char* name) {
  if (array->classID != zxSTRUCT_CLASS || name == nullptr) return -1;
  const auto& names = array->payload->fieldNames;
  const auto found = std::find(names.begin(), names.end(), name);
  return found == names.end() ? -1 : static_cast<int>(found - names.begin());
}

const zxArray* zxGetFieldByNumber(const zxArray* array, zxSize index, int field) {
  requireClass(array, zxSTRUCT_CLASS);
  if (field < 0 || field >= zxGetNumberOfFields(array)) return nullptr;
  const zxSize nfields = array->payload->fieldNames.size();
  return array->payload->elements[checkedIndex(array, index) * nfields + static_cast<zxSize>(field)];
}

const zxArray* zxGetField(const zxArray* array, zxSize index, const char* name) {
  return zxGetFieldByNumber(array, index, zxGetFieldNumber(array, name));
}

void zxSetFieldByNumber(zxArray* array, zxSize index, int field, zxArray* value) {
  requireClass(array, zxSTRUCT_CLASS);
  checkedIndex(array, index);
  if (field < 0 || field >= zxGetNumberOfFields(array)) zxErrMsg(zxINDEX_OUT_OF_RANGE);
  const zxSize nfields = array->payload->fieldNames.size();
  zxArray*& slot = ownPayload(array).elements[index * nfields + static_cast<zxSize>(field)];
  if (slot == value) return;
  adopt(value);
  zxDestroyArray(std::exchange(slot, value));
}

void zxSetField(zxArray* array, zxSize index, const char* name, zxArray* value) {
  int field = zxGetFieldNumber(array, name);
  if (field < 0) field = zxAddField(array, name);
  zxSetFieldByNumber(array, index, field, value);
}

int zxAddField(zxArray* array, const char* name) {
  requireClass(array, zxSTRUCT_CLASS);
  const int existing = zxGetFieldNumber(array, name);
  if (existing >= 0) return existing;
  Payload& payload = ownPayload(array);
  const zxSize oldFields = payload.fieldNames.size();
  std::vector<zxArray*> widened(array->numel * (oldFields + 1), nullptr);
  for (zxSize i = 0; i < array->numel; ++i) {
    std::copy_n(payload.elements.begin() + static_cast<std::ptrdiff_t>(i * oldFields), oldFields,
                widened.begin() + static_cast<std::ptrdiff_t>(i * (oldFields + 1)));
  }
  payload.elements = std::move(widened);
  payload.fieldNames.emplace_back(name);
  return static_cast<int>(oldFields);
}

const char* zxGetFunctionName(const zxArray* array) {
  return array->classID == zxFUNCTION_CLASS ? array->payload->name.c_str() : nullptr;
}

void* zxGetObjectElement(const zxArray* array, zxSize index) {
  requireClass(array, zxOBJECT_CLASS);
  return array->payload->objects[checkedIndex(array, index)];
}

const zxObjectOps* zxGetObjectOps(const zxArray* array) {
  requireClass(array, zxOBJECT_CLASS);
  return array->payload->ops;
}

void zxSetObjectElement(zxArray* array, zxSize index, void* object) {
  requireClass(array, zxOBJECT_CLASS);
  checkedIndex(array, index);
  Payload& payload = ownPayload(array);
  void*& slot = payload.objects[index];
  if (slot == object) return;
  if (payload.ops != nullptr && object != nullptr && payload.ops->retain != nullptr) payload.ops->retain(object);
  void* previous = std::exchange(slot, object);
  if (payload.ops != nullptr && previous != nullptr && payload.ops->release != nullptr) payload.ops->release(previous);
}

char* zxArrayToString(const zxArray* array) {
  if (array == nullptr || array->classID != zxCHAR_CLASS) return nullptr;
  const auto* chars = static_cast<const zxChar*>(array->payload->real);
  const std::string text = fl::i18n::utf16ToUtf8(std::u16string_view(chars, chars == nullptr ? 0 : array->numel));
  auto* result = static_cast<char*>(utMalloc(text.size() + 1));
  if (result == nullptr) throw fl::except::bad_alloc();
  std::memcpy(result, text.c_str(), text.size() + 1);
  return result;
}

void* zxMalloc(zxSize bytes) { return utMalloc(bytes); }
void* zxCalloc(zxSize count, zxSize size) { return utCalloc(count, size); }
void zxFree(void* block) { utFree(block); }
