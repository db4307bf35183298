// Callbacks of graphics objects (MCallback): code that an object runs on an event, given as a string
// of code, a function handle, or a cell of a function and its arguments; and the native functions
// and command evaluator that run them.
#pragma once

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "arraylib/zxarray.h"
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace gui_objects {

// A native function as the host calls it: the arguments in order (none of them null).
using NativeFunction = std::function<void(const std::vector<const zxArray*>& arguments)>;

// Registers name for the process, replacing an earlier function of the same name.
void registerFunction(const std::string& name, NativeFunction function);
void unregisterFunction(const std::string& name);
bool isFunctionRegistered(std::string_view name);
// The names of the registered functions, sorted.
std::vector<std::string> registeredFunctionNames();
// Calls the registered function; raises "Korvax:UndefinedFunction" when none has the name.
void callFunction(std::string_view name, const std::vector<const zxArray*>& arguments);

// Runs a string of code. The host's command language installs one; without one, running code raises
// "Korvax:callback:NoEvaluator".
using CodeEvaluator = void (*)(std::string_view code);
void setCodeEvaluator(CodeEvaluator evaluator);

// An array that cannot be a callback.
class KX_HOST_API InvalidCallbackException : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
};

// A callback. Accepted arrays: a char row (or any empty array) is code, "" doing nothing; a 1-by-1
// function handle; a non-empty cell row or column whose first element is a function handle or a
// function name (a char row), followed by the arguments. Anything else is refused with
// InvalidCallbackException, and nothing is kept.
class KX_HOST_API MCallback {
 public:
  enum class Kind { Code, Function, FunctionWithArguments };

  // The callback of empty code, which does nothing.
  MCallback() = default;
  explicit MCallback(const zxArray* array);
  // A callback of code; null text is refused with InvalidCallbackException.
  static MCallback* createFromString(const char* text);
  MCallback(const MCallback& other);
  MCallback& operator=(const MCallback&) = delete;
  virtual ~MCallback();
  virtual MCallback* clone() const;

  // Same kind and same code, function name, or (for a cell) equal arguments; objects among the
  // arguments compare by identity.
  static bool isEqual(const MCallback& a, const MCallback& b);
  friend bool operator==(const MCallback& a, const MCallback& b) { return isEqual(a, b); }
  // A new array of the callback: the code as a char row, or the function handle or cell it was made
  // from. persistent: the array outlives the current host call frame.
  zxArray* convertToKorvaxArray(bool persistent) const;
  // Callbacks here never name nested functions.
  bool isNestedFunction() const { return false; }
  // Runs the callback: code through the command evaluator; a function with the source and event
  // arrays first, then the cell's arguments. Errors of the function pass to the caller.
  void execute(const zxArray* source, const zxArray* event) const;

  Kind kind() const { return kind_; }
  const std::string& code() const { return code_; }
  // The function handle or cell the callback was made from; null for code.
  const zxArray* getArray() const { return array_; }

  static void* operator new(std::size_t size);
  static void operator delete(void* block);

 private:
  Kind kind_ = Kind::Code;
  std::string code_;
  zxArray* array_ = nullptr;  // persistent shared-data copy, owned
};

}  // namespace gui_objects

KX_HOST_API_END
