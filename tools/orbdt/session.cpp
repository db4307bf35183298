// orbdt's session host and the batch requests on objects.
#include "orbdt/session.h"

#include <signal.h>
#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <iostream>
#include <optional>
#include <sstream>
#include <vector>

#include "arraylib/zxerror.h"
#include "cmdlanglib/evaluator.h"
#include "cmdlanglib/literal.h"
#include "cmdlanglib/utf8.h"
#include "guilib/callback.h"
#include "objsys/graphics_objects.h"
#include "objsys/handles.h"
#include "objsys/object_arrays.h"
#include "orbdt/hints.h"
#include "orbdt/holdings.h"
#include "orbdt/line_editor.h"
#include "orbdt/request_line.h"
#include "orbdt/response_size.h"
#include "utillib/ut.h"

namespace orbdt {
namespace {

using gui_objects::ZxArrayPtr;
using objsys::GraphicsObject;

// What an object holds beside its property values: its slots, each a copy of its type's default (an
// axes, the largest class, takes about 2.5 KiB).
constexpr std::size_t kObjectBytes = 4 * 1024;

// An array the session keeps beyond the current call frame.
ZxArrayPtr kept(zxArray* array) {
  zxSetArrayScope(array, zxPERSISTENT);
  return ZxArrayPtr(array);
}

std::string handleText(double handle) {
  std::ostringstream text;
  text << handle;
  return text.str();
}

// How people see a value: objects by class and handle, everything else as a literal.
std::string display(const zxArray* array) {
  if (!objsys::omIsOBJSYS(array)) return cmdlang::writeLiteral(array);
  if (zxIsEmpty(array)) return "[] (no object)";
  std::string text;
  for (zxSize i = 0; i < zxGetNumberOfElements(array); ++i) {
    const objsys::COSInterfacePtr object = objsys::omGetArrayElement(array, i);
    const auto* graphics = dynamic_cast<const GraphicsObject*>(object.get());
    text += i > 0 ? ", " : "";
    text += std::string(object ? object->getClassName() : "?");
    if (graphics != nullptr) text += graphics->isDeleted() ? " (deleted)" : " " + handleText(graphics->handle());
  }
  return text;
}

// The live object a value names: an object array's first element or a numeric handle.
GraphicsObject& objectOf(const zxArray* value) {
  GraphicsObject* object = nullptr;
  if (objsys::omIsOBJSYS(value) && !zxIsEmpty(value)) {
    object = dynamic_cast<GraphicsObject*>(objsys::omGetArrayElement(value, 0).get());
  } else if (value != nullptr && zxIsDouble(value) && zxIsScalar(value)) {
    object = GraphicsObject::fromHandle(zxGetScalar(value));
  }
  if (object == nullptr || object->isDeleted()) {
    zxErrMsgIdAndTxt("Korvax:orb:dt_conv:Matrix_to_HObject:BadHandle", "Invalid object handle");
  }
  return *object;
}

// The text of a char row argument, such as a property name.
std::string textOf(const zxArray* value, const char* what) {
  if (value == nullptr || !zxIsChar(value)) zxErrMsgIdAndTxt("orbdt:BadArgument", "%s must be text", what);
  const std::unique_ptr<char, decltype(&zxFree)> text(zxArrayToString(value), &zxFree);
  return text.get();
}

std::string lowered(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return lower;
}

// Raises the pending interrupt (Ctrl-C) as a refusal of the statement that runs, and clears it.
void stopIfInterrupted() {
  if (!utIsInterruptPending()) return;
  utSetInterruptHandled(true);
  zxErrMsgIdAndTxt("orbdt:Interrupted", "Interrupted (Ctrl-C): the statement stopped.");
}

// A property set: the value is charged to the request (what the conversion makes of it) and, once
// the object took it, held for the session in place of the property's previous value.
void setProperty(GraphicsObject& object, std::string_view property, const zxArray* value, cmdlang::ByteBudget& budget) {
  const std::size_t bytes = valueBytes(value);
  const std::string key = objectKey(object.handle(), lowered(property));
  const std::string what = "the value of " + std::string(property);
  budget.charge(bytes, what);
  holdings().requireRoom(key, bytes, what);
  object.set(property, value);
  holdings().hold(key, bytes, what);
}

// The hint for a property the object may not have: its nearest property names; empty when it has it.
std::string propertyHint(const GraphicsObject& object, std::string_view property) {
  const std::vector<std::string> declared = object.propertyNames();
  if (std::ranges::any_of(declared, [&](const std::string& name) { return lowered(name) == lowered(property); }))
    return {};
  return didYouMean(nearestNames(property, declared));
}

// Deletes the object and its subtree and releases what they held.
void deleteWithHoldings(GraphicsObject& object) {
  std::vector<const GraphicsObject*> subtree{&object};
  for (std::size_t i = 0; i < subtree.size(); ++i) {
    for (const GraphicsObject* child : subtree[i]->children()) subtree.push_back(child);
  }
  std::vector<double> handles;
  for (const GraphicsObject* member : subtree) handles.push_back(member->handle());
  object.deleteObject();
  for (const double handle : handles) holdings().releasePrefix(objectKey(handle));
}

// A new object with its Name=Value settings in order; a refused setting makes nothing.
template <class Settings>
GraphicsObject& newObject(std::string_view className, const Settings& settings, cmdlang::ByteBudget& budget) {
  holdings().requireRoom({}, kObjectBytes, "a new object");
  GraphicsObject* object = GraphicsObject::create(className);
  holdings().hold(objectKey(object->handle()), kObjectBytes, "a new object");
  try {
    for (const auto& [property, value] : settings) setProperty(*object, property, value, budget);
  } catch (...) {
    deleteWithHoldings(*object);
    throw;
  }
  return *object;
}

void printAll(std::ostream& out, const GraphicsObject& object, cmdlang::ByteBudget& budget) {
  for (const std::string& property : object.propertyNames()) {
    const ZxArrayPtr value(object.get(property));
    budget.charge(readBackBytes(value.get(), 2), "the value of " + property);
    out << "  " << property << ": " << display(value.get()) << "\n";
  }
}

bool isClassName(std::string_view name) {
  const std::vector<std::string> classes = GraphicsObject::classNames();
  return std::ranges::find(classes, name) != classes.end();
}

// The session's own functions, with what help says of them; the classes make objects, and the
// registered native functions (disp) are called as they are.
struct SessionFunction {
  std::string_view name;
  const char* usage;
};
constexpr SessionFunction kSessionFunctions[] = {
    {"get", "get(h) lists h's properties and values; get(h, 'Name') gives one, as h.Name does"},
    {"set", "set(h, 'Name', value) sets a property, as h.Name = value does"},
    {"delete", "delete(h) deletes h and the objects under it"},
    {"click", "click(h) runs h's ButtonDownFcn with h's handle and []"},
    {"properties", "properties(h) lists h's properties with their types"},
    {"who", "who lists the variables"},
    {"help", "help TYPE, help h.Name: what a type, or a property's type, takes"},
};

const SessionFunction* sessionFunction(std::string_view name) {
  const auto* found = std::ranges::find(kSessionFunctions, name, &SessionFunction::name);
  return found == std::end(kSessionFunctions) ? nullptr : found;
}

// The names a call or a name runs instead of reading them as a literal.
bool isSessionFunction(std::string_view name) {
  return isClassName(name) || sessionFunction(name) != nullptr || gui_objects::isFunctionRegistered(name);
}

// "help Color": a session function's name, blanks, and words that are not an assignment or a call's
// parentheses; the words as texts. nullopt for anything else.
std::optional<std::pair<std::string_view, std::vector<std::string_view>>> commandSyntax(std::string_view text) {
  std::size_t nameEnd = 0;
  while (nameEnd < text.size() &&
         (std::isalnum(static_cast<unsigned char>(text[nameEnd])) != 0 || text[nameEnd] == '_')) {
    ++nameEnd;
  }
  const std::string_view name = text.substr(0, nameEnd);
  if (!isName(name) || nameEnd == text.size() || (text[nameEnd] != ' ' && text[nameEnd] != '\t')) return std::nullopt;
  if (!isSessionFunction(name) || isClassName(name)) return std::nullopt;
  std::vector<std::string_view> words;
  for (std::size_t at = nameEnd; at < text.size();) {
    while (at < text.size() && (text[at] == ' ' || text[at] == '\t')) ++at;
    std::size_t end = at;
    while (end < text.size() && text[end] != ' ' && text[end] != '\t') ++end;
    if (end > at) words.push_back(text.substr(at, end - at));
    at = end;
  }
  if (!words.empty() && (words.front().front() == '=' || words.front().front() == '(')) return std::nullopt;
  return std::make_pair(name, words);
}

void requireCount(std::string_view name, std::size_t given, std::size_t least, std::size_t most) {
  if (given < least || given > most) {
    const std::string function(name);
    zxErrMsgIdAndTxt("orbdt:BadArgument", "%s takes %zu to %zu arguments", function.c_str(), least, most);
  }
}

// The session's functions: disp, and callbacks' code (whose literals get a request's budget).
void registerSessionFunctions(std::ostream& out) {
  gui_objects::registerFunction("disp", [&out](const std::vector<const zxArray*>& arguments) {
    for (const zxArray* argument : arguments) {
      out << (zxIsChar(argument) ? textOf(argument, "text") : display(argument)) << "\n";
    }
  });
  cmdlang::installEvaluator();
}

// A batch request's value: a host literal in a string; a malformed literal is a bad request.
ZxArrayPtr requestLiteral(const nlohmann::json& value, cmdlang::ByteBudget& budget) {
  if (!value.is_string()) throw UsageError("orbdt:BadRequest", "values are host literals in strings");
  try {
    return cmdlang::readLiteral(value.get<std::string>(), budget);
  } catch (const cmdlang::LiteralError& error) {
    throw UsageError("orbdt:BadLiteral", error.what());
  }
}

GraphicsObject& objectNamed(const nlohmann::json& request) {
  const auto handle = request.find("handle");
  if (handle == request.end() || !handle->is_number()) {
    throw UsageError("orbdt:BadRequest", "member \"handle\" must be a number");
  }
  const ZxArrayPtr number(zxCreateDoubleScalar(handle->get<double>()));
  return objectOf(number.get());
}

std::string propertyNamed(const nlohmann::json& request) {
  const auto name = request.find("property");
  if (name == request.end() || !name->is_string()) {
    throw UsageError("orbdt:BadRequest", "member \"property\" must be a string");
  }
  return name->get<std::string>();
}

// The response {"ok":true} with what fill adds, or the host's refusal in its place.
template <class Fill>
Response objectResponse(Fill fill) {
  Response response;
  response.json = {{"ok", true}};
  try {
    fill(response.json);
  } catch (const fl::except::IMsgIDException& error) {
    response.json = {{"ok", false}, {"error", {{"id", error.get_error_id()}, {"message", error.get_message_text()}}}};
    response.exitStatus = 1;
  }
  return response;
}

void onInterrupt(int) { utSetInterruptPending(true); }

// Ctrl-C sets the host's interrupt flag while a session runs, instead of ending the process.
class InterruptHandler {
 public:
  InterruptHandler() {
    struct sigaction action {};
    action.sa_handler = &onInterrupt;
    sigemptyset(&action.sa_mask);
    // No SA_RESTART: a read waiting for the next line returns, so the prompt can come back.
    sigaction(SIGINT, &action, &previous_);
  }
  ~InterruptHandler() { sigaction(SIGINT, &previous_, nullptr); }
  InterruptHandler(const InterruptHandler&) = delete;
  InterruptHandler& operator=(const InterruptHandler&) = delete;

 private:
  struct sigaction previous_ {};
};

}  // namespace

Session::Session(const HostSession& host, std::ostream& out, std::size_t maxRequestBytes)
    : host_(host), out_(out), maxRequestBytes_(maxRequestBytes) {
  registerSessionFunctions(out_);
  cmdlang::setCodeByteLimit(maxRequestBytes);
}

Session::~Session() {
  deleteAll();
  gui_objects::unregisterFunction("disp");
}

void Session::deleteAll() {
  for (const auto& [name, value] : variables_) holdings().release("variable " + name);
  variables_.clear();
  objsys::HandleTable& table = objsys::HandleTable::current();
  for (const double handle : table.handles()) {
    if (GraphicsObject* object = GraphicsObject::fromHandle(handle); object != nullptr && object->parent() == nullptr) {
      deleteWithHoldings(*object);
    }
  }
}

bool Session::runLine(std::string_view line, std::size_t lineNumber) {
  bool ran = false;
  hint_.clear();
  offset_ = 0;
  std::size_t errorOffset = std::string_view::npos;
  // What starts an error line: where it happened, when the line comes from a file.
  const auto error = [&]() -> std::ostream& {
    if (!source_.empty()) {
      const std::size_t at = std::min(errorOffset != std::string_view::npos ? errorOffset : offset_, line.size());
      out_ << source_ << ":" << lineNumber << ":" << cmdlang::utf8Column(line, at) << ": ";
    }
    return out_ << "error: ";
  };
  try {
    const zx::CallFrame frame;
    cmdlang::ByteBudget budget(maxRequestBytes_);
    budget.charge(cmdlang::saturatingMultiply(line.size(), 1 + kParseBytesPerCharacter), "the statement");
    for (const Statement& statement : parseLine(line)) run(statement, budget);
    ran = true;
  } catch (const fl::except::IMsgIDException& failure) {
    error() << failure.get_error_id() << ": " << cmdlang::utf8Printable(failure.get_message_text()) << "\n";
  } catch (const StatementError& failure) {
    errorOffset = failure.column() - 1;
    error() << "orbdt:BadStatement: " << cmdlang::utf8Printable(failure.what()) << "\n";
  } catch (const cmdlang::LiteralError& failure) {
    if (failure.offset() != cmdlang::LiteralError::kNoOffset) errorOffset = offset_ + failure.offset();
    error() << "orbdt:BadLiteral: " << cmdlang::utf8Printable(failure.what()) << "\n";
  } catch (const cmdlang::InterruptedError& failure) {
    error() << "orbdt:Interrupted: " << failure.what() << "\n";
  } catch (const cmdlang::TooLargeError& failure) {
    error() << "orbdt:TooLarge: " << failure.what()
            << " (--max-request-bytes and --max-session-bytes set the limits)\n";
  } catch (const std::bad_alloc&) {
    error() << "orbdt:OutOfMemory: Out of memory.\n";
  } catch (const std::exception& failure) {
    error() << "orbdt:UnexpectedError: " << cmdlang::utf8Printable(failure.what()) << "\n";
  }
  if (!ran && !hint_.empty()) out_ << "hint: " << cmdlang::utf8Printable(hint_) << "\n";
  // An interrupt that came too late to stop the statement does not stop the next one.
  utSetInterruptHandled(true);
  out_ << std::flush;
  return ran;
}

void Session::run(const Statement& statement, cmdlang::ByteBudget& budget) {
  offset_ = statement.column - 1;
  switch (statement.kind) {
    case Statement::Kind::empty: return;
    case Statement::Kind::expression:
      if (const ZxArrayPtr value = evaluate(statement.value, budget); value && !statement.quiet) {
        show("ans", value.get(), budget);
      }
      return;
    case Statement::Kind::assignVariable: {
      ZxArrayPtr value = valueOf(statement.value, budget);
      const std::string name(statement.target);
      const std::string key = "variable " + name;
      holdings().requireRoom(key, valueBytes(value.get()), "the variable " + name);
      if (!statement.quiet) show(name, value.get(), budget);
      holdings().hold(key, valueBytes(value.get()), "the variable " + name);
      variables_.insert_or_assign(name, kept(value.release()));
      return;
    }
    case Statement::Kind::assignProperty: {
      const ZxArrayPtr value = valueOf(statement.value, budget);
      const auto found = variables_.find(statement.target);
      if (found == variables_.end()) undefined(statement.target, "variable");
      GraphicsObject& object = objectOf(found->second.get());
      hint_ = propertyHint(object, statement.property);
      setProperty(object, statement.property, value.get(), budget);
      hint_.clear();
      return;
    }
  }
}

void Session::show(std::string_view name, const zxArray* value, cmdlang::ByteBudget& budget) {
  // The literal, and the line that holds it: at most the longest number's text per element.
  constexpr std::size_t kElementText = 26;
  budget.charge(cmdlang::saturatingMultiply(valueBytes(value), 1 + kElementText / kNativeBytesPerElement),
                "showing " + std::string(name));
  out_ << name << " = " << display(value) << "\n";
}

ZxArrayPtr Session::literal(const Expression& expression, cmdlang::ByteBudget& budget) {
  offset_ = expression.column - 1;
  return cmdlang::readLiteral(expression.text, budget);
}

ZxArrayPtr Session::valueOf(const Expression& expression, cmdlang::ByteBudget& budget) {
  ZxArrayPtr value = evaluate(expression, budget);
  if (!value) {
    const std::string text(expression.name.empty() ? expression.text : expression.name);
    zxErrMsgIdAndTxt("orbdt:NoValue", "'%s' gives no value to use here.", text.c_str());
  }
  return value;
}

ZxArrayPtr Session::evaluate(const Expression& expression, cmdlang::ByteBudget& budget) {
  stopIfInterrupted();
  switch (expression.kind) {
    case Expression::Kind::name: {
      if (const auto found = variables_.find(expression.name); found != variables_.end()) {
        return ZxArrayPtr(zxCreateSharedDataCopy(found->second.get()));
      }
      if (isSessionFunction(expression.name)) return call(expression, budget);
      // The names that are literals: true, false, NaN and Inf (in any case), classes such as uint8.
      try {
        return literal(expression, budget);
      } catch (const cmdlang::LiteralError&) {
        undefined(expression.name, "function or variable");
      }
    }
    case Expression::Kind::property: {
      const auto found = variables_.find(expression.name);
      if (found == variables_.end()) undefined(expression.name, "variable");
      GraphicsObject& object = objectOf(found->second.get());
      hint_ = propertyHint(object, expression.property);
      ZxArrayPtr value(object.get(expression.property));
      hint_.clear();
      budget.charge(valueBytes(value.get()), "the value of " + std::string(expression.property));
      return value;
    }
    case Expression::Kind::call:
      if (isSessionFunction(expression.name)) return call(expression, budget);
      return literal(expression, budget);
    case Expression::Kind::literal:
      if (const auto command = commandSyntax(expression.text)) {
        Expression call;
        call.kind = Expression::Kind::call;
        call.name = command->first;
        call.text = expression.text;
        for (const std::string_view word : command->second) {
          // Each word as text: its own characters, whatever quotes they hold.
          Argument argument;
          argument.value.kind = Expression::Kind::literal;
          argument.value.text = word;
          call.arguments.push_back(std::move(argument));
        }
        return this->call(call, budget, true);
      }
      return literal(expression, budget);
  }
  return nullptr;
}

ZxArrayPtr Session::call(const Expression& expression, cmdlang::ByteBudget& budget, bool wordsAreText) {
  const std::string name(expression.name);
  if (!expression.argumentsParsed) {
    zxErrMsgIdAndTxt("orbdt:BadStatement", "Calls nest more than %d deep in this statement.", kMaxStatementDepth);
  }
  std::vector<ZxArrayPtr> arguments;
  std::vector<std::pair<std::string, const zxArray*>> settings;  // Name=Value arguments
  std::vector<ZxArrayPtr> settingValues;
  for (const Argument& argument : expression.arguments) {
    ZxArrayPtr value = wordsAreText ? ZxArrayPtr(zxCreateString(std::string(argument.value.text).c_str()))
                                    : valueOf(argument.value, budget);
    if (argument.name.empty()) {
      arguments.push_back(std::move(value));
    } else {
      settings.emplace_back(std::string(argument.name), value.get());
      settingValues.push_back(std::move(value));
    }
  }
  if (isClassName(name)) {
    if (!arguments.empty()) zxErrMsgIdAndTxt("orbdt:BadArgument", "%s takes Name=Value arguments only", name.c_str());
    std::string unknown;
    const auto declared = GraphicsObject::classProperties(name);
    for (const auto& setting : settings) {
      const std::string wanted = lowered(setting.first);
      const bool known = std::ranges::any_of(declared, [&](const auto& p) { return lowered(p.first) == wanted; });
      if (!known && unknown.empty()) unknown = setting.first;
    }
    if (!unknown.empty()) {
      std::vector<std::string> declaredNames;
      for (const auto& [property, type] : GraphicsObject::classProperties(name)) declaredNames.push_back(property);
      hint_ = didYouMean(nearestNames(unknown, declaredNames));
    }
    return ZxArrayPtr(zxCreateDoubleScalar(newObject(name, settings, budget).handle()));
  }
  if (!settings.empty()) zxErrMsgIdAndTxt("orbdt:BadArgument", "%s takes no Name=Value arguments", name.c_str());
  if (name == "get") {
    requireCount(name, arguments.size(), 1, 2);
    GraphicsObject& object = objectOf(arguments[0].get());
    if (arguments.size() == 2) {
      const std::string property = textOf(arguments[1].get(), "a property name");
      hint_ = propertyHint(object, property);
      ZxArrayPtr value(object.get(property));
      hint_.clear();
      budget.charge(valueBytes(value.get()), "the value of " + property);
      return value;
    }
    out_ << object.getClassName() << " " << handleText(object.handle()) << ":\n";
    printAll(out_, object, budget);
    return nullptr;
  }
  if (name == "set") {
    requireCount(name, arguments.size(), 3, 3);
    GraphicsObject& object = objectOf(arguments[0].get());
    const std::string property = textOf(arguments[1].get(), "a property name");
    hint_ = propertyHint(object, property);
    setProperty(object, property, arguments[2].get(), budget);
    hint_.clear();
    return nullptr;
  }
  if (name == "delete") {
    requireCount(name, arguments.size(), 1, 1);
    deleteWithHoldings(objectOf(arguments[0].get()));
    return nullptr;
  }
  if (name == "click") {
    requireCount(name, arguments.size(), 1, 1);
    GraphicsObject& object = objectOf(arguments[0].get());
    const ZxArrayPtr code(object.get("ButtonDownFcn"));
    const ZxArrayPtr source(zxCreateDoubleScalar(object.handle()));
    const ZxArrayPtr event(zxCreateDoubleMatrix(0, 0, zxREAL));
    gui_objects::MCallback(code.get()).execute(source.get(), event.get());
    return nullptr;
  }
  if (name == "properties") {
    requireCount(name, arguments.size(), 1, 1);
    const GraphicsObject& object = objectOf(arguments[0].get());
    for (const std::string& property : object.propertyNames()) {
      out_ << "  " << property << ": " << object.propertyType(property).getName() << "\n";
    }
    return nullptr;
  }
  if (name == "who") {
    requireCount(name, arguments.size(), 0, 0);
    who();
    return nullptr;
  }
  if (name == "help") {
    std::vector<std::string> topics;
    for (const ZxArrayPtr& argument : arguments) topics.push_back(textOf(argument.get(), "a topic"));
    help(topics, budget);
    return nullptr;
  }
  std::vector<const zxArray*> plain;
  for (const ZxArrayPtr& argument : arguments) plain.push_back(argument.get());
  gui_objects::callFunction(name, plain);
  return nullptr;
}

void Session::who() {
  if (variables_.empty()) {
    out_ << "no variables\n";
    return;
  }
  for (const auto& [name, value] : variables_) {
    std::string shown = display(value.get());
    constexpr std::size_t kShown = 60;
    if (shown.size() > kShown) shown = cmdlang::utf8Shortened(shown, kShown);
    out_ << "  " << name << " = " << shown << "\n";
  }
}

void Session::help(const std::vector<std::string>& topics, cmdlang::ByteBudget& budget) {
  if (topics.empty()) {
    out_ << "Statements: x = VALUE; h.Name = VALUE; h.Name; a call f(...); 'f word' calls f with the word as text.\n"
            "Objects: ";
    for (const std::string& className : GraphicsObject::classNames()) out_ << className << "(Name=Value, ...) ";
    out_ << "\n";
    for (const SessionFunction& function : kSessionFunctions) out_ << "  " << function.usage << "\n";
    for (const std::string& native : gui_objects::registeredFunctionNames()) {
      out_ << "  " << native << "(...) a function of the host\n";
    }
    out_ << "Values are literals: 1, [1 0 0], 'red' or \"red\", {'-', ':'}, uint8([0 255]), @disp.\n"
            "Tab completes names, properties and the values a property's type offers.\n";
    return;
  }
  for (const std::string& topic : topics) {
    std::string typeName = topic;
    const std::size_t dot = topic.find('.');
    if (dot != std::string::npos && isName(std::string_view(topic).substr(0, dot))) {
      const GraphicsObject* object = objectNamed(std::string_view(topic).substr(0, dot));
      if (object == nullptr) undefined(std::string_view(topic).substr(0, dot), "variable");
      const std::string property = topic.substr(dot + 1);
      hint_ = propertyHint(*object, property);
      typeName = object->propertyType(property).getName();
      hint_.clear();
      out_ << topic << " holds a " << typeName << "\n";
    } else if (const SessionFunction* function = sessionFunction(topic)) {
      out_ << function->usage << "\n";
      continue;
    } else if (isClassName(topic)) {
      out_ << topic << "(Name=Value, ...) makes a " << topic << "; its properties:\n";
      for (const auto& [property, type] : GraphicsObject::classProperties(topic)) {
        out_ << "  " << property << ": " << type->getName() << "\n";
      }
      continue;
    }
    try {
      host_.resolve(typeName);
    } catch (const UsageError& error) {
      hint_ = error.hint();
      zxErrMsgIdAndTxt("orbdt:UnknownTopic",
                       "There is no help for '%s': it names no type, variable, class or function.",
                       cmdlang::utf8Shortened(topic, 200).c_str());
    }
    out_ << runRequest(host_, {{"op", "describe"}, {"type", typeName}}, budget, Form::Text).text;
  }
}

GraphicsObject* Session::objectNamed(std::string_view variable) const {
  const auto found = variables_.find(variable);
  if (found == variables_.end()) return nullptr;
  const zxArray* value = found->second.get();
  GraphicsObject* object = nullptr;
  if (objsys::omIsOBJSYS(value) && !zxIsEmpty(value)) {
    object = dynamic_cast<GraphicsObject*>(objsys::omGetArrayElement(value, 0).get());
  } else if (zxIsDouble(value) && zxIsScalar(value)) {
    object = GraphicsObject::fromHandle(zxGetScalar(value));
  }
  return object != nullptr && !object->isDeleted() ? object : nullptr;
}

void Session::undefined(std::string_view name, const char* what) {
  hint_ = didYouMean(nearestNames(name, names()));
  if (hint_.empty()) hint_ = "text is written in quotes: '" + std::string(name) + "'";
  const std::string text(name);
  zxErrMsgIdAndTxt("Korvax:UndefinedFunction", "Undefined %s '%s'.", what, text.c_str());
}

std::vector<std::string> Session::names() const {
  std::vector<std::string> all;
  for (const auto& [name, value] : variables_) all.push_back(name);
  for (const SessionFunction& function : kSessionFunctions) all.emplace_back(function.name);
  for (std::string& className : GraphicsObject::classNames()) all.push_back(std::move(className));
  for (std::string& native : gui_objects::registeredFunctionNames()) all.push_back(std::move(native));
  return all;
}

std::vector<std::string> Session::propertiesOf(std::string_view variable) const {
  const GraphicsObject* object = objectNamed(variable);
  return object != nullptr ? object->propertyNames() : std::vector<std::string>{};
}

std::vector<std::string> Session::propertiesOfClass(std::string_view className) const {
  std::vector<std::string> properties;
  for (const auto& [property, type] : GraphicsObject::classProperties(className)) properties.push_back(property);
  return properties;
}

std::vector<std::string> Session::valuesOf(std::string_view owner, std::string_view property) const {
  const objsys::COSDataType* type = nullptr;
  if (const GraphicsObject* object = objectNamed(owner)) {
    for (const std::string& name : object->propertyNames()) {
      if (lowered(name) == lowered(property)) type = &object->propertyType(name);
    }
  } else {
    for (const auto& [name, declared] : GraphicsObject::classProperties(owner)) {
      if (lowered(name) == lowered(property)) type = declared;
    }
  }
  if (type == nullptr) return {};
  try {
    const TypeHandle handle = host_.resolve(type->getName());
    std::vector<std::string> values = host_.offeredNames(handle);
    if (handle.facts != nullptr && handle.facts->takesColorNames) {
      for (std::string& color : host_.colorNames()) values.push_back(std::move(color));
    }
    return values;
  } catch (const UsageError&) {
    return {};
  }
}

int runSession(const HostSession& host, const SessionInput& input, std::ostream& out, std::size_t maxRequestBytes) {
  const InterruptHandler interrupts;
  Session session(host, out, maxRequestBytes);
  const bool prompt = input.terminal;
  session.setSource(input.source);
  std::size_t lineNumber = 0;
  LineReader lines(input.fd, maxRequestBytes, true);
  std::optional<LineEditor> editor;
  if (input.terminal) editor.emplace(session, input.historyFile, maxRequestBytes);
  bool allRan = true;
  for (;;) {
    out << std::flush;
    const std::optional<InputLine> line = editor ? editor->read(">> ") : lines.next();
    if (!line) break;
    ++lineNumber;
    if (line->interrupted) {
      // Ctrl-C while a line is typed drops what was typed, and the prompt comes back on a line of its own.
      utSetInterruptHandled(true);
      if (prompt) out << "\n";
      continue;
    }
    if (line->truncated) {
      if (!input.source.empty()) out << input.source << ":" << lineNumber << ":1: ";
      out << "error: orbdt:TooLarge: a line of " << cmdlang::byteCountText(line->length)
          << " is longer than the limit of " << cmdlang::byteCountText(maxRequestBytes)
          << " (--max-request-bytes sets it)\n"
          << std::flush;
      allRan = false;
      continue;
    }
    allRan = session.runLine(line->text, lineNumber) && allRan;
  }
  if (prompt) out << "\n";
  return allRan ? 0 : 1;
}

Response runNewObject(const nlohmann::json& request, cmdlang::ByteBudget& budget) {
  return objectResponse([&](nlohmann::json& out) {
    static const nlohmann::json kNoProps = nlohmann::json::object();
    const auto found = request.find("props");
    const nlohmann::json& props = found != request.end() ? *found : kNoProps;
    if (!props.is_object()) throw UsageError("orbdt:BadRequest", "member \"props\" must be an object");
    std::vector<ZxArrayPtr> values;
    std::vector<std::pair<std::string, const zxArray*>> settings;
    for (const auto& [name, value] : props.items()) {
      values.push_back(requestLiteral(value, budget));
      settings.emplace_back(name, values.back().get());
    }
    out["handle"] = newObject(request.value("class", ""), settings, budget).handle();
  });
}

Response runSetProperty(const nlohmann::json& request, cmdlang::ByteBudget& budget) {
  return objectResponse([&](nlohmann::json&) {
    const ZxArrayPtr value = requestLiteral(request.value("value", nlohmann::json()), budget);
    setProperty(objectNamed(request), propertyNamed(request), value.get(), budget);
  });
}

Response runGetProperty(const nlohmann::json& request, cmdlang::ByteBudget& budget) {
  return objectResponse([&](nlohmann::json& out) {
    const std::string property = propertyNamed(request);
    const ZxArrayPtr value(objectNamed(request).get(property));
    budget.charge(readBackBytes(value.get(), 4), "the value of " + property);
    out["value"] = display(value.get());
  });
}

Response runDeleteObject(const nlohmann::json& request, cmdlang::ByteBudget&) {
  return objectResponse([&](nlohmann::json&) { deleteWithHoldings(objectNamed(request)); });
}

}  // namespace orbdt
