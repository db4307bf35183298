// orbdt's requests and their responses.
#include "orbdt/requests.h"

#include <cxxabi.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <optional>
#include <string_view>
#include <typeinfo>
#include <vector>

#include "arraylib/zxerror.h"
#include "cmdlanglib/literal.h"
#include "cmdlanglib/utf8.h"
#include "foundationlib/except.h"
#include "javabridgelib/java_bridge.h"
#include "objsys/java_type_conversion.h"
#include "orbdt/hints.h"
#include "orbdt/holdings.h"
#include "orbdt/json_array.h"
#include "orbdt/response_size.h"
#include "orbdt/session.h"
#include "orbdt/statement.h"
#include "utillib/ut.h"

namespace orbdt {
namespace {

using nlohmann::json;
using objsys::COSValue;

// Messages are shortened beyond this, so that a value echoed in one cannot swell the response.
constexpr std::size_t kMaxMessageBytes = 4096;

json errorObject(const std::string& id, const std::string& message) {
  return {{"id", id}, {"message", cmdlang::utf8Shortened(message, kMaxMessageBytes)}};
}

std::string tooLargeMessage(const cmdlang::TooLargeError& error) {
  return std::string(error.what()) + " (--max-request-bytes sets the limit)";
}

// A refusal: the error a conversion raised, or orbdt's own when the work was too large.
struct Refusal {
  std::string id;
  std::string message;
};

// Runs fn, turning whatever it raises into a refusal.
template <class Fn>
std::optional<Refusal> guarded(Fn&& fn) {
  try {
    fn();
  } catch (const fl::except::IMsgIDException& error) {
    return Refusal{error.get_error_id(), error.get_message_text()};
  } catch (const cmdlang::TooLargeError& error) {
    return Refusal{"orbdt:TooLarge", tooLargeMessage(error)};
  } catch (const std::bad_alloc&) {
    return Refusal{"orbdt:OutOfMemory", "Out of memory."};
  } catch (const std::exception& error) {
    return Refusal{"orbdt:UnexpectedError", error.what()};
  } catch (...) {
    return Refusal{"orbdt:UnexpectedError", "an exception of unknown type"};
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
gui_objects::ZxArrayPtr arrayOfInput(const json& input, cmdlang::ByteBudget& budget) {
  try {
    if (input.is_null()) return nullptr;
    if (input.is_string()) return cmdlang::readLiteral(input.get_ref<const std::string&>(), budget);
    if (input.is_object()) return arrayFromJson(input, budget);
  } catch (const cmdlang::LiteralError& error) {
    // A bare word was most likely meant as text.
    const std::string& given = input.get_ref<const std::string&>();
    throw UsageError("orbdt:BadLiteral", error.what(),
                     isName(given) ? "text is written in quotes: '" + given + "'" : "");
  }
  throw UsageError("orbdt:BadRequest", "a value must be a literal string, an ARRAY object or null");
}

// The text of a one-row char array, which a type may take as one of its names; nullopt for others.
std::optional<std::string> nameGiven(const zxArray* array) {
  if (array == nullptr || !zxIsChar(array) || zxGetNumberOfDimensions(array) != 2 || zxGetM(array) != 1) {
    return std::nullopt;
  }
  const std::unique_ptr<char, decltype(&zxFree)> text(zxArrayToString(array), &zxFree);
  return std::string(text.get());
}

// Owns a value made by a conversion and destroys it through its data type.
class HeldValue {
 public:
  HeldValue(objsys::COSDataType* type, COSValue value) : type_(type), value_(value) {}
  ~HeldValue() {
    if (!value_.isEmpty()) guarded([&] { type_->destroy(value_); });
  }
  HeldValue(const HeldValue&) = delete;
  HeldValue& operator=(const HeldValue&) = delete;

 private:
  objsys::COSDataType* type_;
  COSValue value_;
};

// A value read back: its ARRAY object and its literal, or the error reading it raised.
struct ArrayReadBack {
  json value;  // ARRAY, or null
  std::string literal;
  std::optional<Refusal> error;
  bool tooLarge = false;
};

// The texts a read-back holds at once at most, in lengths of its longest text: for Json the ARRAY
// object's JSON text, the type's text and its JSON string, and the response line written of them;
// for Text the literal and the lines people see as well.
std::size_t textCopies(Form form) { return form == Form::Json ? 4 : 6; }

// The literal is written for Text only.
ArrayReadBack readBackArray(const TypeHandle& handle, COSValue value, cmdlang::ByteBudget& budget, Form form) {
  ArrayReadBack back{nullptr, "(no array conversion)", std::nullopt};
  if (handle.arrays == nullptr) return back;
  back.error = guarded([&] {
    const gui_objects::ZxArrayPtr array(handle.arrays->to(value).as<zxArray>());
    budget.charge(readBackBytes(array.get(), textCopies(form)), "reading the stored value back");
    back.value = arrayToJson(array.get());
    back.literal = form == Form::Text ? cmdlang::writeLiteral(array.get()) : "";
  });
  back.tooLarge = back.error && back.error->id == "orbdt:TooLarge";
  return back;
}

struct TextReadBack {
  json text;  // string, or null
  std::optional<Refusal> error;
};

// The value's text. When its array was too large to read back, its text would be as large: that
// refusal stands for both.
TextReadBack readBackText(const TypeHandle& handle, COSValue value, const ArrayReadBack* array = nullptr) {
  TextReadBack back{nullptr, std::nullopt};
  if (handle.texts == nullptr) return back;
  if (array != nullptr && array->tooLarge) {
    back.error = array->error;
    return back;
  }
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

// A color type's refusal of text that is neither one of its keywords nor a color.
bool isColorTextRefusal(const std::string& id) {
  return id.ends_with("Color:ParseError") || id.ends_with("Color:AmbiguousName");
}

// The hint for a name a type refused: the nearest of its names, or for a color text the nearest
// color names, or the first few of them when none is near (the table may be large).
std::string hintFor(const HostSession& host, const TypeHandle& handle, const Refusal& refusal,
                    const std::string& name) {
  std::string hint = didYouMean(nearestNames(name, host.offeredNames(handle)));
  if (!hint.empty() || !isColorTextRefusal(refusal.id)) return hint;
  const std::vector<std::string> colors = host.colorNames();
  hint = didYouMean(nearestNames(name, colors));
  if (!hint.empty() || colors.empty()) return hint;
  constexpr std::size_t kShownNames = 8;
  hint = "color names:";
  for (std::size_t i = 0; i < std::min(colors.size(), kShownNames); ++i) hint += " '" + colors[i] + "'";
  if (colors.size() > kShownNames) hint += " and " + std::to_string(colors.size() - kShownNames) + " more";
  return hint + ", or three or four numbers from 0 to 1";
}

// The refusal of a value; when the value was a name the type does not take, the hint names the
// nearest ones it does.
Response refused(const HostSession& host, const TypeHandle& handle, const Refusal& refusal,
                 const std::optional<std::string>& name) {
  Response response;
  response.json = {{"ok", false}, {"type", handle.fullName}, {"error", errorObject(refusal.id, refusal.message)}};
  response.json["warnings"] = warningList(response.text);
  response.text += "error: " + refusal.id + ": " + cmdlang::utf8Printable(cmdlang::utf8Shortened(refusal.message, kMaxMessageBytes)) + "\n";
  if (name) {
    const std::string hint = hintFor(host, handle, refusal, *name);
    if (!hint.empty()) {
      response.json["hint"] = hint;
      response.text += "hint: " + hint + "\n";
    }
  }
  response.exitStatus = 1;
  return response;
}

// What people see of a stored value: its literal and its text.
void describeStored(std::string& out, COSValue value, const ArrayReadBack& array, const TextReadBack& text) {
  out += "value: " + (array.error ? "error: " + array.error->id + ": " + array.error->message : array.literal);
  out += value.isEmpty() ? " (empty)\n" : "\n";
  out += "text:  ";
  if (text.error) {
    out += "error: " + text.error->id + ": " + text.error->message + "\n";
  } else {
    out += text.text.is_null() ? "(none)\n" : text.text.get_ref<const std::string&>() + "\n";
  }
}

// The response to a stored value (set and parse): what the type gives back for it. The read-back
// moves into the response, which may be as large as the request's budget allows.
Response stored(const TypeHandle& handle, COSValue value, cmdlang::ByteBudget& budget, Form form) {
  Response response;
  ArrayReadBack array = readBackArray(handle, value, budget, form);
  TextReadBack text = readBackText(handle, value, &array);
  response.json["warnings"] = warningList(response.text);
  if (form == Form::Text) describeStored(response.text, value, array, text);
  response.json["ok"] = true;
  response.json["type"] = handle.fullName;
  response.json["empty"] = value.isEmpty();
  response.json["value"] = std::move(array.value);
  response.json["text"] = std::move(text.text);
  response.valueLiteral = std::move(array.literal);
  if (array.error) response.json["valueError"] = errorObject(array.error->id, array.error->message);
  if (text.error) response.json["textError"] = errorObject(text.error->id, text.error->message);
  return response;
}

// A value of the type made from a request's input: the value, or the type's refusal with the name
// the input gave when it gave one.
struct Converted {
  COSValue value;
  std::optional<Refusal> refusal;
  std::optional<std::string> name;
};

// What a conversion into the type allocates, charged before it runs; a type that extends a table of the
// process keeps it for the process too.
void chargeValue(const TypeHandle& handle, std::size_t bytes, cmdlang::ByteBudget& budget) {
  budget.charge(bytes, "the value the type makes");
  if (handle.facts != nullptr && handle.facts->growsProcessTable) holdings().keep(bytes, "the table the value extends");
}

Converted valueFromArray(const TypeHandle& handle, const json& input, cmdlang::ByteBudget& budget) {
  if (handle.arrays == nullptr) {
    throw UsageError("orbdt:BadRequest", handle.fullName + " has no array conversion");
  }
  const gui_objects::ZxArrayPtr array = arrayOfInput(input, budget);
  chargeValue(handle, valueBytes(array.get()), budget);
  Converted converted;
  converted.refusal = guarded([&] { converted.value = handle.arrays->from(COSValue(array.get())); });
  if (converted.refusal) converted.name = nameGiven(array.get());
  return converted;
}

Response runSet(const HostSession& host, const json& request, cmdlang::ByteBudget& budget, Form form) {
  const TypeHandle handle = host.resolve(requireString(request, "type"));
  if (!request.contains("value")) throw UsageError("orbdt:BadRequest", "member \"value\" is missing");
  const Converted converted = valueFromArray(handle, request["value"], budget);
  if (converted.refusal) return refused(host, handle, *converted.refusal, converted.name);
  const HeldValue held(handle.type, converted.value);
  return stored(handle, converted.value, budget, form);
}

Response runParse(const HostSession& host, const json& request, cmdlang::ByteBudget& budget, Form form) {
  const TypeHandle handle = host.resolve(requireString(request, "type"));
  const json text = request.contains("text") ? request["text"] : json();
  if (!text.is_null() && !text.is_string()) throw UsageError("orbdt:BadRequest", "\"text\" must be a string or null");
  if (handle.texts == nullptr) throw UsageError("orbdt:BadRequest", handle.fullName + " has no string conversion");
  COSValue value;
  const std::string chars = text.is_null() ? "" : text.get<std::string>();
  chargeValue(handle, cmdlang::saturatingMultiply(chars.size() + 1, kNativeBytesPerElement), budget);
  const auto refusal =
      guarded([&] { value = handle.texts->from(text.is_null() ? COSValue() : COSValue(chars.c_str())); });
  if (refusal)
    return refused(host, handle, *refusal, text.is_null() ? std::nullopt : std::optional<std::string>(chars));
  const HeldValue held(handle.type, value);
  return stored(handle, value, budget, form);
}

Response runEqual(const HostSession& host, const json& request, cmdlang::ByteBudget& budget, Form) {
  const TypeHandle handle = host.resolve(requireString(request, "type"));
  if (!request.contains("a") || !request.contains("b")) {
    throw UsageError("orbdt:BadRequest", "members \"a\" and \"b\" are required");
  }
  const Converted a = valueFromArray(handle, request["a"], budget);
  if (a.refusal) return refused(host, handle, *a.refusal, a.name);
  const HeldValue heldA(handle.type, a.value);
  const Converted b = valueFromArray(handle, request["b"], budget);
  if (b.refusal) return refused(host, handle, *b.refusal, b.name);
  const HeldValue heldB(handle.type, b.value);
  bool equal = false;
  int order = 0;
  if (auto refusal = guarded([&] {
        equal = handle.type->isEqual(a.value, b.value);
        order = handle.type->compare(a.value, b.value);
      })) {
    return refused(host, handle, *refusal, std::nullopt);
  }
  Response response;
  response.json = {{"ok", true}, {"type", handle.fullName}, {"equal", equal}, {"compare", order}};
  response.text = std::string("equal:   ") + (equal ? "true" : "false") + "\ncompare: " + std::to_string(order) + "\n";
  return response;
}

const char* textFormName(graphics::datatype::TextForm form) {
  switch (form) {
    case graphics::datatype::TextForm::ours: return "ours";
    case graphics::datatype::TextForm::fixed: return "fixed";
    case graphics::datatype::TextForm::refused: return "refused";
    case graphics::datatype::TextForm::none: return "none";
  }
  return "";
}

// What a text form means, for people.
std::string textFormMeaning(graphics::datatype::TextForm form) {
  switch (form) {
    case graphics::datatype::TextForm::ours: return "ours; a value's text reads back as the same text";
    case graphics::datatype::TextForm::fixed: return "fixed by the type's rule; it need not read back exactly";
    case graphics::datatype::TextForm::refused: return "none; asking for one is refused";
    case graphics::datatype::TextForm::none: return "none";
  }
  return "";
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

Response runDescribe(const HostSession& host, const json& request, cmdlang::ByteBudget& budget, Form form) {
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
    const ArrayReadBack array = readBackArray(handle, value, budget, form);
    const TextReadBack text = readBackText(handle, value, &array);
    out["default"] = array.value;
    out["defaultText"] = text.text;
    if (!array.error && handle.arrays != nullptr) defaultLiteral = array.literal;
    if (!text.error && text.text.is_string()) defaultText = text.text.get<std::string>();
  });
  if (refusal) return refused(host, handle, *refusal, std::nullopt);
  out["possibleValuesFinite"] = type.isPossibleValuesFinite();
  out["possibleValues"] = nullptr;
  if (type.isPossibleValuesFinite()) out["possibleValues"] = host.offeredNames(handle);
  const objsys::JavaTypeConversion* java =
      objsys::JavaTypeConversion::getConversion(objsys::COSNameID(handle.fullName.c_str()));
  out["javaPeer"] = java != nullptr ? json(java->javaClassName()) : json(nullptr);
  out["textForm"] = nullptr;
  out["defaultHoldsValue"] = nullptr;
  if (handle.facts != nullptr) {
    out["textForm"] = textFormName(handle.facts->text);
    out["defaultHoldsValue"] = handle.facts->defaultHoldsValue;
    out["javaPeer"] = graphics::datatype::javaClassOf(*handle.facts);
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
  if (handle.facts != nullptr) text += "text form:        " + textFormMeaning(handle.facts->text) + "\n";
  text += "java form:        " + (out["javaPeer"].is_string() ? out["javaPeer"].get<std::string>() : "(none)") + "\n";
  if (out["possibleValues"].is_array()) {
    text += "possible values:";
    for (const json& name : out["possibleValues"]) text += " '" + name.get<std::string>() + "'";
    text += "\n";
  }
  return response;
}

// The value through the type's Java conversion to its Java form and back: the Java class, the Java
// object's own text, and the value it makes again (with whether it equals the first).
Response runJava(const HostSession& host, const json& request, cmdlang::ByteBudget& budget, Form form) {
  const TypeHandle handle = host.resolve(requireString(request, "type"));
  if (!request.contains("value")) throw UsageError("orbdt:BadRequest", "member \"value\" is missing");
  const objsys::JavaTypeConversion* java =
      objsys::JavaTypeConversion::getConversion(objsys::COSNameID(handle.fullName.c_str()));
  if (java == nullptr) throw UsageError("orbdt:BadRequest", handle.fullName + " has no Java conversion");
  const Converted converted = valueFromArray(handle, request["value"], budget);
  if (converted.refusal) return refused(host, handle, *converted.refusal, converted.name);
  const HeldValue held(handle.type, converted.value);
  // The Java objects made of the value, and the array and value they make again.
  {
    const gui_objects::ZxArrayPtr arrayForm(handle.arrays->to(converted.value).as<zxArray>());
    budget.charge(cmdlang::saturatingMultiply(valueBytes(arrayForm.get()), 3), "the value's Java form and back");
  }
  std::string javaClass;
  std::string javaText;
  COSValue back;
  const auto refusal = guarded([&] {
    JNIEnv* env = GetJNIEnv();
    const JavaLocalFrame frame(env);
    jobject object = java->toJava(converted.value);
    javaClass = kxjClassName(env, object);
    // The Java object's own text can be as long as its array; people see its beginning.
    javaText = cmdlang::utf8Shortened(kxjToString(env, object), kMaxMessageBytes);
    back = java->fromJava(object);
  });
  if (refusal) return refused(host, handle, *refusal, std::nullopt);
  const HeldValue heldBack(handle.type, back);
  bool equal = false;
  if (auto compared = guarded([&] { equal = handle.type->isEqual(converted.value, back); })) {
    return refused(host, handle, *compared, std::nullopt);
  }
  Response response = stored(handle, back, budget, form);
  response.json["javaClass"] = javaClass;
  response.json["javaText"] = javaText;
  response.json["equal"] = equal;
  if (form == Form::Text) {
    response.text = "java class: " + javaClass + "\njava text:  " + javaText + "\nread back:\n" + response.text +
                    "equal:      " + (equal ? "true" : "false") + "\n";
  }
  return response;
}

Response runTypes(const HostSession& host, const json&, cmdlang::ByteBudget&, Form) {
  Response response;
  response.json = {{"ok", true}, {"types", host.typeNames()}};
  for (const std::string& name : host.typeNames()) response.text += name + "\n";
  return response;
}

// The requests on objects need neither the host's types nor a form.
template <Response (*run)(const json&, cmdlang::ByteBudget&)>
Response onObjects(const HostSession&, const json& request, cmdlang::ByteBudget& budget, Form) {
  return run(request, budget);
}

// Every op a request may name, and what runs it.
struct Operation {
  std::string_view op;
  Response (*run)(const HostSession& host, const json& request, cmdlang::ByteBudget& budget, Form form);
};

constexpr Operation kOperations[] = {
    {"set", runSet},
    {"parse", runParse},
    {"equal", runEqual},
    {"describe", runDescribe},
    {"types", runTypes},
    {"java", runJava},
    {"new", onObjects<runNewObject>},
    {"setprop", onObjects<runSetProperty>},
    {"getprop", onObjects<runGetProperty>},
    {"delete", onObjects<runDeleteObject>},
};

Response dispatch(const HostSession& host, const json& request, cmdlang::ByteBudget& budget, Form form) {
  if (!request.is_object()) throw UsageError("orbdt:BadRequest", "a request must be a JSON object");
  const std::string op = requireString(request, "op");
  const auto* operation = std::ranges::find(kOperations, op, &Operation::op);
  if (operation == std::end(kOperations)) {
    throw UsageError("orbdt:BadRequest", "unknown op \"" + cmdlang::utf8Shortened(op, 64) + "\"");
  }
  return operation->run(host, request, budget, form);
}

// A request orbdt could not run at all, with what was probably meant when that can be told.
Response failed(const std::string& id, const std::string& message, const std::string& hint = {}) {
  Response response;
  response.json = {{"ok", false}, {"error", errorObject(id, message)}};
  response.text = "error: " + id + ": " + cmdlang::utf8Printable(cmdlang::utf8Shortened(message, kMaxMessageBytes)) + "\n";
  if (!hint.empty()) {
    response.json["hint"] = hint;
    response.text += "hint: " + hint + "\n";
  }
  response.exitStatus = 2;
  return response;
}

// Runs fn, which makes a response; whatever it raises becomes the response that it failed.
template <class Fn>
Response answered(Fn&& fn) noexcept {
  try {
    try {
      return fn();
    } catch (const UsageError& error) {
      return failed(error.id(), error.what(), error.hint());
    } catch (const cmdlang::TooLargeError& error) {
      return failed("orbdt:TooLarge", tooLargeMessage(error));
    } catch (const fl::except::IMsgIDException& error) {
      return failed(error.get_error_id(), error.get_message_text());
    } catch (const std::bad_alloc&) {
      return failed("orbdt:OutOfMemory", "Out of memory.");
    } catch (const std::exception& error) {
      return failed("orbdt:UnexpectedError", error.what());
    } catch (...) {
      return failed("orbdt:UnexpectedError", "an exception of unknown type");
    }
  } catch (...) {
    // Even the failure could not be made: an empty response, which responseLine turns into one.
    return Response{};
  }
}

}  // namespace

Response runRequest(const HostSession& host, nlohmann::json request, cmdlang::ByteBudget& budget, Form form) {
  Response response = answered([&] {
    zx::clearWarnings();
    const zx::CallFrame frame;
    return dispatch(host, request, budget, form);
  });
  zx::clearWarnings();
  if (request.is_object() && request.contains("id") && response.json.is_object()) {
    try {
      response.json["id"] = std::move(request["id"]);
    } catch (const std::exception&) {
      // The answer goes out without its id rather than not at all.
    }
  }
  return response;
}

Response runRequestLine(const HostSession& host, const InputLine& line, std::size_t maxRequestBytes) {
  cmdlang::ByteBudget budget(maxRequestBytes);
  std::optional<json> request;
  Response failure = answered([&] {
    request = parseRequestLine(line, budget);
    return Response{};
  });
  if (request) return runRequest(host, std::move(*request), budget, Form::Json);
  // A request refused while it was read still answers with its id, when it has one to give back.
  if (failure.json.is_object()) {
    try {
      if (std::optional<json> id = requestIdOf(line)) failure.json["id"] = std::move(*id);
    } catch (const std::exception&) {
      // The answer goes out without its id rather than not at all.
    }
  }
  return failure;
}

std::string responseLine(const nlohmann::json& response) noexcept {
  static constexpr const char* kUnwritable =
      R"({"ok":false,"error":{"id":"orbdt:OutOfMemory","message":"The response could not be written."}})";
  try {
    if (!response.is_object()) return kUnwritable;
    return response.dump(-1, ' ', false, json::error_handler_t::replace);
  } catch (...) {
    return kUnwritable;
  }
}

}  // namespace orbdt
