// orbdt's session host: graphics objects made, set, read, deleted and clicked line by line
// ("orbdt run FILE", "orbdt repl"), and the same operations as batch requests.
#pragma once

#include <iosfwd>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "cmdlanglib/budget.h"
#include "guilib/auto_ptr.h"
#include "orbdt/requests.h"

namespace orbdt {

// Variables and the objects they name live as long as the session. Lines:
//   f = figure                      a new object; class(Name=Value, ...) sets properties in order
//   l = line(Parent=f, Color='r')
//   l.Color = [0 0 1]               set(l, 'Color', [0 0 1]) does the same
//   l.Parent                        get(l, 'Parent'); get(l) lists every property
//   delete(l)
//   click(l)                        runs l's ButtonDownFcn with the object's handle and []
//   disp(X)                         any registered function; x = LITERAL, x
// '%' starts a comment line. A refusal prints "error: IDENTIFIER: text" and the session goes on.
class Session {
 public:
  explicit Session(std::ostream& out);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Runs one line inside its own host call frame; false when it was refused. Never throws.
  bool runLine(std::string_view line);
  // Deletes every object the session made that is still alive.
  void deleteAll();

 private:
  gui_objects::ZxArrayPtr evaluate(std::string_view expression);
  gui_objects::ZxArrayPtr call(const std::string& name, std::string_view arguments);
  void assign(std::string_view target, gui_objects::ZxArrayPtr value);

  std::ostream& out_;
  std::map<std::string, gui_objects::ZxArrayPtr, std::less<>> variables_;
};

// Reads lines until the stream ends, running each; with a prompt, ">> " before every line. Returns
// 0 when every line ran, 1 when any was refused.
int runSession(std::istream& in, std::ostream& out, bool prompt);

// The batch requests on objects, one function each: {"op":"new","class":"line","props":{"Parent":"1"}},
// {"op":"setprop","handle":H,"property":"Color","value":"'r'"}, {"op":"getprop","handle":H,
// "property":"Color"}, {"op":"delete","handle":H}. A refusal by the host answers {"ok":false,"error":...}
// with exit status 1; a malformed request throws UsageError.
Response runNewObject(const nlohmann::json& request, cmdlang::ByteBudget& budget);
Response runSetProperty(const nlohmann::json& request, cmdlang::ByteBudget& budget);
Response runGetProperty(const nlohmann::json& request, cmdlang::ByteBudget& budget);
Response runDeleteObject(const nlohmann::json& request, cmdlang::ByteBudget& budget);

}  // namespace orbdt
