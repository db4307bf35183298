// orbdt's requests and their responses.
#include "orbdt/requests.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <new>
#include <optional>
#include <typeinfo>

#include "arraylib/zxerror.h"
#include "foundationlib/except.h"
#include "orbdt/json_array.h"
#include "orbdt/literal.h"
#include "utillib/ut.h"

namespace orbdt {
namespace {

using nlohmann::json;
using objsys::COSValue;

json errorObject(const std::string& id, const std::string& message) { return {{"id", id}, {"message", message}}; }

// A refusal by the type: the error the conversion raised.
struct Refusal {
  std::string id;
  std::string message;
};

// Runs fn, turning whatever the library raises into a refusal.
template <class Fn>
std::optional<Refusal> guarded(Fn&& fn) {
  try {
    fn();
  } catch (const fl::except::IMsgIDException& error) {
    return Refusal{error.get_error_id(), error.get_message_text()};
  } catch (const std::bad_alloc&) {
    return Refusal{"orbdt:OutOfMemory", "Out of memory."};
  } catch (const std::exception& error) {
    return Refusal{"orbdt:UnexpectedError", error.what()};
  }
  return std::nullopt;
}

std::string requireString(const json& request, const char* member) {
  const auto found = request.find(member);
  if (found == request.end() || !found->is_string()) {
    throw UsageError("orbdt:BadRequest", std::string("member \"") + member + "\" must be a string");
  }
  return found->get<std::string>();
}

// The array a request gives: a literal string, an ARRAY object, or null (no array at all).
gui_objects::ZxArrayPtr arrayOfInput(const json& input) {
  try {
    if (input.is_null()) return nullptr;
    if (input.is_string()) return readLiteral(input.get<std::string>());
    if (input.is_object()) return arrayFromJson(input);
  } catch (const LiteralError& error) {
    throw UsageError("orbdt:BadLiteral", error.what());
  }
  throw UsageError("orbdt:BadRequest", "a value must be a literal string, an ARRAY object or null");
}

// Owns a value made by a conversion and destroys it through its data type.
class HeldValue {
 public:
  HeldValue(objsys::COSDataType* type, COSValue value) : type_(type), value_(value) {}
  ~HeldValue() {
    if (!value_.isEmpty()) type_->destroy(value_);
  }
  HeldValue(const HeldValue&) = delete;
  HeldValue& operator=(const HeldValue&) = delete;
  COSValue get() const { return value_; }

 private:
  objsys::COSDataType* type_;
  COSValue value_;
};

// A value read back: its ARRAY object and its literal, or the error reading it raised.
struct ArrayReadBack {
  json value;  // ARRAY, or null
  std::string literal;
  std::optional<Refusal> error;
};

ArrayReadBack readBackArray(const TypeHandle& handle, COSValue value) {
  ArrayReadBack back{nullptr, "(no array conversion)", std::nullopt};
  if (handle.arrays == nullptr) return back;
  back.error = guarded([&] {
    const gui_objects::ZxArrayPtr array(handle.arrays->to(value).as<zxArray>());
    back.value = arrayToJson(array.get());
    back.literal = writeLiteral(array.get());
  });
  return back;
}

struct TextReadBack {
  json text;  // string, or null
  std::optional<Refusal> error;
};

TextReadBack readBackText(const TypeHandle& handle, COSValue value) {
  TextReadBack back{nullptr, std::nullopt};
  if (handle.texts == nullptr) return back;
  back.error = guarded([&] {
    const COSValue text = handle.texts->to(value);
    if (!text.isEmpty()) back.text = text.as<const char>();
    utFree(text.pointer());
  });
  return back;
}

json warningList(std::string& text) {
  json list = json::array();
  for (const zx::Warning& warning : zx::warnings()) {
    list.push_back(errorObject(warning.id, warning.text));
    text += "warning: " + warning.id + ": " + warning.text + "\n";
  }
  return list;
}

Response refused(const TypeHandle& handle, const Refusal& refusal) {
  Response response;
  response.json = {{"ok", false}, {"type", handle.fullName}, {"error", errorObject(refusal.id, refusal.message)}};
  response.json["warnings"] = warningList(response.text);
  response.text += "error: " + refusal.id + ": " + refusal.message + "\n";
  response.exitStatus = 1;
  return response;
}

// The response to a stored value (set and parse): what the type gives back for it.
Response stored(const TypeHandle& handle, COSValue value) {
  Response response;
  const ArrayReadBack array = readBackArray(handle, value);
  const TextReadBack text = readBackText(handle, value);
  response.json = {
      {"ok", true}, {"type", handle.fullName}, {"empty", value.isEmpty()}, {"value", array.value}, {"text", text.text}};
  response.valueLiteral = array.literal;
  if (array.error) response.json["valueError"] = errorObject(array.error->id, array.error->message);
  if (text.error) response.json["textError"] = errorObject(text.error->id, text.error->message);
  response.json["warnings"] = warningList(response.text);
  response.text +=
      "value: " + (array.error ? "error: " + array.error->id + ": " + array.error->message : array.literal);
  response.text += value.isEmpty() ? " (empty)\n" : "\n";
  response.text += "text:  ";
  if (text.error) {
    response.text += "error: " + text.error->id + ": " + text.error->message + "\n";
  } else {
    response.text += text.text.is_null() ? "(none)\n" : text.text.get<std::string>() + "\n";
  }
  return response;
}

// Converts an array to a value of the type; the value (or the refusal) goes to the caller.
std::optional<Refusal> valueFromArray(const TypeHandle& handle, const json& input, COSValue& value) {
  if (handle.arrays == nullptr) {
    throw UsageError("orbdt:BadRequest", handle.fullName + " has no array conversion");
  }
  const gui_objects::ZxArrayPtr array = arrayOfInput(input);
  return guarded([&] { value = handle.arrays->from(COSValue(array.get())); });
}

Response runSet(const HostSession& host, const json& request) {
  const TypeHandle handle = host.resolve(requireString(request, "type"));
  if (!request.contains("value")) throw UsageError("orbdt:BadRequest", "member \"value\" is missing");
  COSValue value;
  if (auto refusal = valueFromArray(handle, request["value"], value)) return refused(handle, *refusal);
  const HeldValue held(handle.type, value);
  return stored(handle, value);
}

Response runParse(const HostSession& host, const json& request) {
  const TypeHandle handle = host.resolve(requireString(request, "type"));
  const json text = request.contains("text") ? request["text"] : json();
  if (!text.is_null() && !text.is_string()) throw UsageError("orbdt:BadRequest", "\"text\" must be a string or null");
  if (handle.texts == nullptr) throw UsageError("orbdt:BadRequest", handle.fullName + " has no string conversion");
  COSValue value;
  const std::string chars = text.is_null() ? "" : text.get<std::string>();
  const auto refusal =
      guarded([&] { value = handle.texts->from(text.is_null() ? COSValue() : COSValue(chars.c_str())); });
  if (refusal) return refused(handle, *refusal);
  const HeldValue held(handle.type, value);
  return stored(handle, value);
}

Response runEqual(const HostSession& host, const json& request) {
  const TypeHandle handle = host.resolve(requireString(request, "type"));
  if (!request.contains("a") || !request.contains("b")) {
    throw UsageError("orbdt:BadRequest", "members \"a\" and \"b\" are required");
  }
  COSValue a, b;
  if (auto refusal = valueFromArray(handle, request["a"], a)) return refused(handle, *refusal);
  const HeldValue heldA(handle.type, a);
  if (auto refusal = valueFromArray(handle, request["b"], b)) return refused(handle, *refusal);
  const HeldValue heldB(handle.type, b);
  bool equal = false;
  int order = 0;
  if (auto refusal = guarded([&] {
        equal = handle.type->isEqual(a, b);
        order = handle.type->compare(a, b);
      })) {
    return refused(handle, *refusal);
  }
  Response response;
  response.json = {{"ok", true}, {"type", handle.fullName}, {"equal", equal}, {"compare", order}};
  response.text = std::string("equal:   ") + (equal ? "true" : "false") + "\ncompare: " + std::to_string(order) + "\n";
  return response;
}

// The value class behind a data type as the class system sees it: its dynamic type's name.
std::string classNameOf(const objsys::COSDataType& type) {
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> demangled(
      abi::__cxa_demangle(typeid(type).name(), nullptr, nullptr, &status), &std::free);
  std::string name = status == 0 ? demangled.get() : typeid(type).name();
  const std::string prefix = "graphics::datatype::";
  for (std::size_t at; (at = name.find(prefix)) != std::string::npos;) name.erase(at, prefix.size());
  return name;
}

Response runDescribe(const HostSession& host, const json& request) {
  const TypeHandle handle = host.resolve(requireString(request, "type"));
  objsys::COSDataType& type = *handle.type;
  Response response;
  json& out = response.json;
  out = {{"ok", true},
         {"type", handle.fullName},
         {"name", type.getName()},
         {"declarationName", type.getDeclarationName()},
         {"className", classNameOf(type)},
         {"category", type.getCategoryName()},
         {"storageType", type.getStorageType()},
         {"sizeInBits", type.getSizeInBits()},
         {"valueSizeInBytes", type.getValueSizeInBytes(COSValue())}};
  std::string defaultLiteral = "(none)";
  std::string defaultText = "(none)";
  const auto refusal = guarded([&] {
    const COSValue value = type.getDefaultValue();
    const ArrayReadBack array = readBackArray(handle, value);
    const TextReadBack text = readBackText(handle, value);
    out["default"] = array.value;
    out["defaultText"] = text.text;
    if (!array.error && handle.arrays != nullptr) defaultLiteral = array.literal;
    if (!text.error && text.text.is_string()) defaultText = text.text.get<std::string>();
  });
  if (refusal) return refused(handle, *refusal);
  out["possibleValuesFinite"] = type.isPossibleValuesFinite();
  out["possibleValues"] = nullptr;
  if (type.isPossibleValuesFinite()) {
    json names = json::array();
    guarded([&] {
      objsys::COSEnumerationRef values(type.getPossibleValues());
      while (values && values->hasMoreElements()) {
        const TextReadBack text = readBackText(handle, values->nextElement());
        if (text.text.is_string()) names.push_back(text.text);
      }
    });
    out["possibleValues"] = names;
  }
  std::string& text = response.text;
  text += "type:             " + handle.fullName + "\n";
  text += "name:             " + out["name"].get<std::string>() + "\n";
  text += "declaration name: " + out["declarationName"].get<std::string>() + "\n";
  text += "class name:       " + out["className"].get<std::string>() + "\n";
  text += "category:         " + out["category"].get<std::string>() + "\n";
  text += "storage type:     " + std::to_string(type.getStorageType()) + "\n";
  text += "size:             " + std::to_string(type.getSizeInBits()) + " bits, " +
          std::to_string(type.getValueSizeInBytes(COSValue())) + " bytes\n";
  text += "default:          " + defaultLiteral + "\n";
  text += "default text:     " + defaultText + "\n";
  if (out["possibleValues"].is_array()) {
    text += "possible values:";
    for (const json& name : out["possibleValues"]) text += " '" + name.get<std::string>() + "'";
    text += "\n";
  }
  return response;
}

Response runTypes(const HostSession& host) {
  Response response;
  response.json = {{"ok", true}, {"types", host.typeNames()}};
  for (const std::string& name : host.typeNames()) response.text += name + "\n";
  return response;
}

Response dispatch(const HostSession& host, const json& request) {
  if (!request.is_object()) throw UsageError("orbdt:BadRequest", "a request must be a JSON object");
  const std::string op = requireString(request, "op");
  if (op == "set") return runSet(host, request);
  if (op == "parse") return runParse(host, request);
  if (op == "equal") return runEqual(host, request);
  if (op == "describe") return runDescribe(host, request);
  if (op == "types") return runTypes(host);
  throw UsageError("orbdt:BadRequest", "unknown op \"" + op + "\"");
}

}  // namespace

Response runRequest(const HostSession& host, const nlohmann::json& request) {
  Response response;
  {
    zx::clearWarnings();
    zx::CallFrame frame;
    try {
      response = dispatch(host, request);
    } catch (const UsageError& error) {
      response.json = {{"ok", false}, {"error", errorObject(error.id(), error.what())}};
      response.text = "error: " + error.id() + ": " + error.what() + "\n";
      response.exitStatus = 2;
    }
  }
  zx::clearWarnings();
  if (request.is_object() && request.contains("id")) response.json["id"] = request["id"];
  return response;
}

}  // namespace orbdt
