// orbdt's session host and the batch requests on objects.
#include "orbdt/session.h"

#include <iostream>
#include <sstream>
#include <vector>

#include "arraylib/zxerror.h"
#include "cmdlanglib/evaluator.h"
#include "cmdlanglib/literal.h"
#include "guilib/callback.h"
#include "objsys/graphics_objects.h"
#include "objsys/handles.h"
#include "objsys/object_arrays.h"

namespace orbdt {
namespace {

using gui_objects::ZxArrayPtr;
using objsys::GraphicsObject;

std::string_view trimmed(std::string_view text) {
  const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  return text;
}

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
  if (objsys::omIsOBJSYS(value)) {
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
  char* text = zxArrayToString(value);
  std::string copy(text);
  zxFree(text);
  return copy;
}

void requireCount(const std::string& name, const std::vector<ZxArrayPtr>& arguments, std::size_t least,
                  std::size_t most) {
  if (arguments.size() < least || arguments.size() > most) {
    zxErrMsgIdAndTxt("orbdt:BadArgument", "%s takes %zu to %zu arguments", name.c_str(), least, most);
  }
}

void printAll(std::ostream& out, const GraphicsObject& object) {
  for (const std::string& property : object.propertyNames()) {
    const ZxArrayPtr value(object.get(property));
    out << "  " << property << ": " << display(value.get()) << "\n";
  }
}

// The session's own functions; a registered native function otherwise.
void registerSessionFunctions(std::ostream& out) {
  gui_objects::registerFunction("disp", [&out](const std::vector<const zxArray*>& arguments) {
    for (const zxArray* argument : arguments) {
      out << (zxIsChar(argument) ? textOf(argument, "text") : display(argument)) << "\n";
    }
  });
  cmdlang::installEvaluator();
}

ZxArrayPtr literalOf(const nlohmann::json& value, cmdlang::ByteBudget& budget) {
  if (!value.is_string()) throw UsageError("orbdt:BadRequest", "values are host literals in strings");
  return cmdlang::readLiteral(value.get<std::string>(), budget);
}

GraphicsObject& objectNamed(const nlohmann::json& request) {
  const auto handle = request.find("handle");
  if (handle == request.end() || !handle->is_number())
    throw UsageError("orbdt:BadRequest", "member \"handle\" must be a number");
  const ZxArrayPtr number(zxCreateDoubleScalar(handle->get<double>()));
  return objectOf(number.get());
}

std::string propertyNamed(const nlohmann::json& request) {
  const auto name = request.find("property");
  if (name == request.end() || !name->is_string())
    throw UsageError("orbdt:BadRequest", "member \"property\" must be a string");
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

}  // namespace

Session::Session(std::ostream& out) : out_(out) { registerSessionFunctions(out_); }

Session::~Session() {
  deleteAll();
  gui_objects::unregisterFunction("disp");
}

void Session::deleteAll() {
  variables_.clear();
  objsys::HandleTable& table = objsys::HandleTable::current();
  for (const double handle : table.handles()) {
    if (GraphicsObject* object = GraphicsObject::fromHandle(handle); object != nullptr && object->parent() == nullptr) {
      object->deleteObject();
    }
  }
}

bool Session::runLine(std::string_view line) {
  line = trimmed(line);
  if (line.empty() || line.front() == '%') return true;
  try {
    const zx::CallFrame frame;
    const std::vector<std::string_view> sides = cmdlang::splitTopLevel(line, "=");
    if (sides.size() == 2 && !sides[0].empty() && !sides[1].empty()) {
      assign(sides[0], evaluate(sides[1]));
    } else if (ZxArrayPtr value = evaluate(line)) {
      out_ << "ans = " << display(value.get()) << "\n";
    }
    return true;
  } catch (const fl::except::IMsgIDException& error) {
    out_ << "error: " << error.get_error_id() << ": " << error.get_message_text() << "\n";
  } catch (const cmdlang::LiteralError& error) {
    out_ << "error: orbdt:BadLiteral: " << error.what() << "\n";
  } catch (const std::exception& error) {
    out_ << "error: orbdt:UnexpectedError: " << error.what() << "\n";
  }
  return false;
}

void Session::assign(std::string_view target, ZxArrayPtr value) {
  const std::size_t dot = target.find('.');
  if (dot == std::string_view::npos) {
    if (!cmdlang::isName(target)) zxErrMsgIdAndTxt("orbdt:BadStatement", "cannot assign to '%s'", std::string(target).c_str());
    out_ << target << " = " << display(value.get()) << "\n";
    variables_.insert_or_assign(std::string(target), kept(value.release()));
    return;
  }
  const ZxArrayPtr object = evaluate(target.substr(0, dot));
  objectOf(object.get()).set(target.substr(dot + 1), value.get());
}

ZxArrayPtr Session::evaluate(std::string_view expression) {
  expression = trimmed(expression);
  if (const auto found = variables_.find(expression); found != variables_.end()) {
    return ZxArrayPtr(zxCreateSharedDataCopy(found->second.get()));
  }
  std::size_t nameEnd = 0;
  while (nameEnd < expression.size() && cmdlang::isName(expression.substr(0, nameEnd + 1))) ++nameEnd;
  const std::string name(expression.substr(0, nameEnd));
  const std::string_view rest = expression.substr(nameEnd);
  if (!name.empty() && rest.size() > 1 && rest.front() == '.' && cmdlang::isName(rest.substr(1)) &&
      variables_.contains(name)) {
    return ZxArrayPtr(objectOf(variables_.find(name)->second.get()).get(rest.substr(1)));
  }
  const bool isCall = !name.empty() && !rest.empty() && rest.front() == '(' && rest.back() == ')';
  if (isCall) return call(name, rest.substr(1, rest.size() - 2));
  if (!name.empty() && rest.empty() && name != "true" && name != "false" && !cmdlang::valueClassNamed(name)) {
    const auto classes = GraphicsObject::classNames();
    if (std::ranges::find(classes, name) != classes.end() || gui_objects::isFunctionRegistered(name)) return call(name, "");
    zxErrMsgIdAndTxt("Korvax:UndefinedFunction", "Undefined function or variable '%s'.", name.c_str());
  }
  return cmdlang::readLiteral(expression);
}

ZxArrayPtr Session::call(const std::string& name, std::string_view argumentText) {
  const auto classes = GraphicsObject::classNames();
  const bool creates = std::ranges::find(classes, name) != classes.end();
  const bool known = creates || name == "get" || name == "set" || name == "delete" || name == "click" ||
                     gui_objects::isFunctionRegistered(name);
  // Anything else (a cast such as uint8(5), zeros(2)) is a literal.
  if (!known) return cmdlang::readLiteral(name + "(" + std::string(argumentText) + ")");

  std::vector<ZxArrayPtr> arguments;
  std::vector<std::pair<std::string, ZxArrayPtr>> settings;  // Name=Value arguments
  if (!trimmed(argumentText).empty()) {
    for (std::string_view argument : cmdlang::splitTopLevel(argumentText, ",")) {
      const std::vector<std::string_view> pair = cmdlang::splitTopLevel(argument, "=");
      if (pair.size() == 2 && cmdlang::isName(pair[0])) {
        settings.emplace_back(std::string(pair[0]), evaluate(pair[1]));
      } else {
        arguments.push_back(evaluate(argument));
      }
    }
  }
  if (creates) {
    if (!arguments.empty()) zxErrMsgIdAndTxt("orbdt:BadArgument", "%s takes Name=Value arguments only", name.c_str());
    GraphicsObject* object = GraphicsObject::create(name);
    try {
      for (const auto& [property, value] : settings) object->set(property, value.get());
    } catch (...) {
      // A refused setting makes nothing.
      object->deleteObject();
      throw;
    }
    return ZxArrayPtr(zxCreateDoubleScalar(object->handle()));
  }
  if (!settings.empty()) zxErrMsgIdAndTxt("orbdt:BadArgument", "%s takes no Name=Value arguments", name.c_str());
  if (name == "get") {
    requireCount(name, arguments, 1, 2);
    GraphicsObject& object = objectOf(arguments[0].get());
    if (arguments.size() == 2) return ZxArrayPtr(object.get(textOf(arguments[1].get(), "a property name")));
    out_ << object.getClassName() << " " << handleText(object.handle()) << ":\n";
    printAll(out_, object);
    return nullptr;
  }
  if (name == "set") {
    requireCount(name, arguments, 3, 3);
    objectOf(arguments[0].get()).set(textOf(arguments[1].get(), "a property name"), arguments[2].get());
    return nullptr;
  }
  if (name == "delete") {
    requireCount(name, arguments, 1, 1);
    objectOf(arguments[0].get()).deleteObject();
    return nullptr;
  }
  if (name == "click") {
    requireCount(name, arguments, 1, 1);
    GraphicsObject& object = objectOf(arguments[0].get());
    const ZxArrayPtr code(object.get("ButtonDownFcn"));
    const ZxArrayPtr source(zxCreateDoubleScalar(object.handle()));
    const ZxArrayPtr event(zxCreateDoubleMatrix(0, 0, zxREAL));
    gui_objects::MCallback(code.get()).execute(source.get(), event.get());
    return nullptr;
  }
  std::vector<const zxArray*> plain;
  for (const ZxArrayPtr& argument : arguments) plain.push_back(argument.get());
  gui_objects::callFunction(name, plain);
  return nullptr;
}

int runSession(std::istream& in, std::ostream& out, bool prompt) {
  Session session(out);
  bool allRan = true;
  std::string line;
  while ((prompt ? out << ">> " << std::flush : out) && std::getline(in, line)) {
    allRan = session.runLine(line) && allRan;
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
    GraphicsObject* object = GraphicsObject::create(request.value("class", ""));
    try {
      for (const auto& [name, value] : props.items()) {
        object->set(name, literalOf(value, budget).get());
      }
    } catch (...) {
      object->deleteObject();
      throw;
    }
    out["handle"] = object->handle();
  });
}

Response runSetProperty(const nlohmann::json& request, cmdlang::ByteBudget& budget) {
  return objectResponse([&](nlohmann::json&) {
    objectNamed(request).set(propertyNamed(request), literalOf(request.value("value", nlohmann::json()), budget).get());
  });
}

Response runGetProperty(const nlohmann::json& request, cmdlang::ByteBudget&) {
  return objectResponse([&](nlohmann::json& out) {
    const ZxArrayPtr value(objectNamed(request).get(propertyNamed(request)));
    out["value"] = display(value.get());
  });
}

Response runDeleteObject(const nlohmann::json& request, cmdlang::ByteBudget&) {
  return objectResponse([&](nlohmann::json&) { objectNamed(request).deleteObject(); });
}

}  // namespace orbdt
