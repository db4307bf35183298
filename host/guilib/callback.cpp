// Callbacks, native functions and the code evaluator hook.
#include "guilib/callback.h"

#include <algorithm>
#include <map>
#include <memory>
#include <new>

#include "arraylib/zxcompare.h"
#include "arraylib/zxerror.h"
#include "foundationlib/except.h"
#include "utillib/ut.h"

namespace gui_objects {
namespace {

std::map<std::string, NativeFunction, std::less<>>& functions() {
  static auto* registered = new std::map<std::string, NativeFunction, std::less<>>();
  return *registered;
}

CodeEvaluator evaluator = nullptr;

bool isCharRow(const zxArray* array) {
  return zxIsChar(array) && zxGetNumberOfDimensions(array) == 2 && zxGetM(array) == 1;
}

std::string textOf(const zxArray* array) {
  char* text = zxArrayToString(array);
  std::string copy = text != nullptr ? text : "";
  zxFree(text);
  return copy;
}

// The function a function handle or a function-name text names.
std::string functionNameOf(const zxArray* array) {
  return zxIsFunctionHandle(array) ? zxGetFunctionName(array) : textOf(array);
}

zxArray* keep(const zxArray* array) {
  zxArray* copy = zxCreateSharedDataCopy(array);
  zxSetArrayScope(copy, zxPERSISTENT);
  return copy;
}

}  // namespace

void registerFunction(const std::string& name, NativeFunction function) { functions()[name] = std::move(function); }

void unregisterFunction(const std::string& name) { functions().erase(name); }

bool isFunctionRegistered(std::string_view name) { return functions().find(name) != functions().end(); }

std::vector<std::string> registeredFunctionNames() {
  std::vector<std::string> names;
  for (const auto& entry : functions()) names.push_back(entry.first);
  return names;
}

void callFunction(std::string_view name, const std::vector<const zxArray*>& arguments) {
  const auto found = functions().find(name);
  if (found == functions().end()) {
    const std::string missing(name);
    zxErrMsgIdAndTxt("Korvax:UndefinedFunction", "Undefined function '%s'.", missing.c_str());
  }
  // A copy, so that a function that re-registers itself while running stays alive.
  const NativeFunction function = found->second;
  // A function never receives a null array: an absent argument (an unset cell of a callback) is [].
  if (std::ranges::find(arguments, nullptr) == arguments.end()) {
    function(arguments);
    return;
  }
  const std::unique_ptr<zxArray, decltype(&zxDestroyArray)> empty(zxCreateDoubleMatrix(0, 0, zxREAL), &zxDestroyArray);
  std::vector<const zxArray*> present(arguments);
  std::ranges::replace(present, nullptr, empty.get());
  function(present);
}

void setCodeEvaluator(CodeEvaluator codeEvaluator) { evaluator = codeEvaluator; }

MCallback::MCallback(const zxArray* array) {
  if (array == nullptr) throw InvalidCallbackException("a callback cannot be made of no array");
  if (zxIsEmpty(array)) return;
  if (isCharRow(array)) {
    code_ = textOf(array);
    return;
  }
  if (zxIsFunctionHandle(array) && zxIsScalar(array)) {
    kind_ = Kind::Function;
  } else if (zxIsCell(array) && zxIsVector2D(array)) {
    const zxArray* first = zxGetCell(array, 0);
    if (first == nullptr ||
        !((zxIsFunctionHandle(first) && zxIsScalar(first)) || (isCharRow(first) && !zxIsEmpty(first)))) {
      throw InvalidCallbackException("the first element of a callback cell must be a function handle or name");
    }
    kind_ = Kind::FunctionWithArguments;
  } else {
    throw InvalidCallbackException(std::string("a callback cannot be made of a ") + zxGetClassName(array));
  }
  array_ = keep(array);
}

MCallback* MCallback::createFromString(const char* text) {
  if (text == nullptr) throw InvalidCallbackException("a callback cannot be made of no text");
  auto* callback = new MCallback();
  callback->code_ = text;
  return callback;
}

MCallback::MCallback(const MCallback& other)
    : kind_(other.kind_), code_(other.code_), array_(other.array_ != nullptr ? keep(other.array_) : nullptr) {}

MCallback::~MCallback() { zxDestroyArray(array_); }

MCallback* MCallback::clone() const { return new MCallback(*this); }

bool MCallback::isEqual(const MCallback& a, const MCallback& b) {
  return a.kind_ == b.kind_ && a.code_ == b.code_ && zx::arraysEqual(a.array_, b.array_);
}

zxArray* MCallback::convertToKorvaxArray(bool persistent) const {
  zxArray* array = array_ != nullptr ? zxCreateSharedDataCopy(array_) : zxCreateString(code_.c_str());
  if (persistent) zxSetArrayScope(array, zxPERSISTENT);
  return array;
}

void MCallback::execute(const zxArray* source, const zxArray* event) const {
  std::vector<const zxArray*> arguments{source, event};
  switch (kind_) {
    case Kind::Code:
      if (code_.empty()) return;
      if (evaluator == nullptr) zxErrMsgIdAndTxt("Korvax:callback:NoEvaluator", "There is no evaluator to run code.");
      evaluator(code_);
      return;
    case Kind::Function: callFunction(zxGetFunctionName(array_), arguments); return;
    case Kind::FunctionWithArguments:
      for (zxSize i = 1; i < zxGetNumberOfElements(array_); ++i) arguments.push_back(zxGetCell(array_, i));
      callFunction(functionNameOf(zxGetCell(array_, 0)), arguments);
      return;
  }
}

void* MCallback::operator new(std::size_t size) {
  void* block = utCalloc(1, size);
  if (block == nullptr) throw fl::except::bad_alloc();
  return block;
}

void MCallback::operator delete(void* block) { utFree(block); }

}  // namespace gui_objects
