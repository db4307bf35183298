// The type catalogue, written from orbdt's own requests so that it shows exactly what a user of
// orbdt sees: each type is reached by name and every figure is the type's own answer.
#include "orbdt/catalog.h"

#include <cctype>
#include <map>
#include <string>
#include <vector>

#include "cmdlanglib/literal.h"
#include "orbdt/json_array.h"
#include "orbdt/requests.h"

namespace orbdt {
namespace {

using nlohmann::json;

// The sample values every type is given: each kind of input a property meets, good for some types
// and refused by others, so that the table shows what a type takes and how it says no.
constexpr const char* kSampleArrays[] = {
    "[]",         "0",          "0.5",  "-1",     "NaN",   "[0 0.5 1]",  "[1;2;3]",
    "zeros(4,4)", "uint8(255)", "true", "'none'", "'red'", "{'-', ':'}", "struct('a', 1)",
};
constexpr const char* kSampleTexts[] = {"0.5", "0.1 0.2 0.3", "none", "xyz", ""};

// Long read-backs are cut here; the catalogue shows their start.
constexpr std::size_t kMaxCellChars = 48;

// Text for one Markdown table cell inside backticks.
std::string code(std::string text) {
  if (text.size() > kMaxCellChars) text = text.substr(0, kMaxCellChars) + "...";
  std::string cell;
  for (const char c : text) {
    if (c == '|') {
      cell += "\\|";
    } else if (c == '\n') {
      cell += ' ';
    } else {
      cell += c;
    }
  }
  return cell.empty() ? "(empty)" : "`" + cell + "`";
}

// The default as a literal; an object array, which JSON cannot carry back, as its description.
std::string defaultLiteral(const json& array) {
  if (array.value("class", "") != "object") return cmdlang::writeLiteral(arrayFromJson(array).get());
  std::string dims;
  for (const json& d : array["dims"]) dims += (dims.empty() ? "" : "x") + std::to_string(d.get<std::size_t>());
  return "<" + dims + " " + array.value("className", "object") + ">";
}

json ask(const HostSession& host, json request, std::string* literal = nullptr) {
  cmdlang::ByteBudget budget(std::size_t{1} << 26);
  Response response = runRequest(host, std::move(request), budget, Form::Text);
  if (literal != nullptr) *literal = response.valueLiteral;
  return std::move(response.json);
}

// What a type made of one sample: the read-back of a stored value, or the identifier it raised.
struct Outcome {
  std::string sample;
  bool stored = false;
  std::string result;  // the read-back for a stored value, the identifier for a refusal
};

Outcome outcomeOf(std::string sample, const json& response, const std::string& literal) {
  if (!response.value("ok", false)) return {std::move(sample), false, response["error"].value("id", "")};
  std::string result = literal.empty() ? "a value" : code(literal);
  if (response.value("empty", false)) result += " (empty)";
  if (response["text"].is_string()) result += ", text " + code(response["text"].get<std::string>());
  return {std::move(sample), true, result};
}

// Stored samples one per row with what they read back as; refused ones grouped by identifier.
void writeOutcomes(const std::vector<Outcome>& outcomes, std::ostream& out) {
  bool anyStored = false;
  for (const Outcome& o : outcomes) {
    if (!o.stored) continue;
    if (!anyStored) out << "\n| Sample | Stored as |\n|---|---|\n";
    anyStored = true;
    out << "| " << o.sample << " | " << o.result << " |\n";
  }
  std::map<std::string, std::vector<std::string>> refusals;
  for (const Outcome& o : outcomes) {
    if (!o.stored) refusals[o.result].push_back(o.sample);
  }
  if (!refusals.empty()) out << "\n";
  for (const auto& [id, samples] : refusals) {
    out << "- Refused with `" << id << "`:";
    for (const std::string& sample : samples) out << " " << sample;
    out << "\n";
  }
}

// A type without the conversion a request needs answers orbdt:BadRequest; its samples are skipped.
bool isBadRequest(const json& response) {
  return response.contains("error") && response["error"].value("id", "") == "orbdt:BadRequest";
}

void writeType(const HostSession& host, const std::string& fullName, std::ostream& out) {
  const json about = ask(host, {{"op", "describe"}, {"type", fullName}});
  out << "\n## " << about.value("name", fullName) << "\n\n";
  if (!about.value("ok", false)) {
    out << "Not described: `" << about["error"].value("id", "") << "`.\n";
    return;
  }
  out << "- Full name: `" << fullName << "`\n";
  out << "- Value class: `" << about["className"].get<std::string>() << "`; category "
      << about["category"].get<std::string>() << "; storage type " << about["storageType"].get<int>() << "\n";
  out << "- Size: " << about["sizeInBits"].get<int>() << " bits; a value takes " << about["valueSizeInBytes"].get<int>()
      << " bytes\n";
  if (about.contains("default") && !about["default"].is_null()) {
    out << "- Default: " << code(defaultLiteral(about["default"]));
    if (about["defaultText"].is_string()) out << ", text " << code(about["defaultText"].get<std::string>());
    out << "\n";
  }
  if (about["textForm"].is_string()) out << "- Text form: " << about["textForm"].get<std::string>() << "\n";
  if (about["defaultHoldsValue"] == false) out << "- The default holds no value\n";
  if (about["javaPeer"].is_string()) out << "- Java form: " << about["javaPeer"].get<std::string>() << "\n";
  if (about["possibleValues"].is_array()) {
    out << "- Possible values:";
    for (const json& name : about["possibleValues"]) out << " " << code(name.get<std::string>());
    out << "\n";
  }

  std::vector<Outcome> outcomes;
  for (const char* sample : kSampleArrays) {
    std::string literal;
    const json response = ask(host, {{"op", "set"}, {"type", fullName}, {"value", sample}}, &literal);
    if (isBadRequest(response)) break;
    outcomes.push_back(outcomeOf(code(sample), response, literal));
  }
  for (const char* sample : kSampleTexts) {
    std::string literal;
    const json response = ask(host, {{"op", "parse"}, {"type", fullName}, {"text", sample}}, &literal);
    if (isBadRequest(response)) break;
    outcomes.push_back(outcomeOf("text " + code(std::string("\"") + sample + "\""), response, literal));
  }
  writeOutcomes(outcomes, out);
}

}  // namespace

void writeCatalog(const HostSession& host, std::ostream& out) {
  const std::vector<std::string> names = host.typeNames();
  out << "# Property data types\n\n"
      << "Every data type the library registers, as `orbdt` sees it: its names, value class, sizes,\n"
      << "default and possible values, and what it does with the same sample values, given as host\n"
      << "literals (`orbdt set`) and as text (`orbdt parse`). A refusal shows the identifier the type\n"
      << "raises. Written by `orbdt catalog`; `scripts/update-catalog.sh` rewrites this file, and a test\n"
      << "fails when it is out of date.\n\n"
      << names.size() << " types:";
  for (const std::string& name : names) {
    const std::string shortName = name.substr(name.rfind('.') + 1);
    std::string anchor;
    for (const char c : shortName) anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    out << " [" << shortName << "](#" << anchor << ")";
  }
  out << "\n";
  for (const std::string& name : names) writeType(host, name, out);
}

}  // namespace orbdt
