// orbdt's session host: graphics objects made, set, read, deleted and clicked line by line
// ("orbdt run FILE", "orbdt repl"), and the same operations as batch requests.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "cmdlanglib/budget.h"
#include "guilib/auto_ptr.h"
#include "orbdt/requests.h"
#include "orbdt/statement.h"

namespace orbdt {

// Variables and the objects they name live as long as the session. Lines:
//   f = figure                      a new object; class(Name=Value, ...) sets properties in order
//   l = line(Parent=f, Color='r')
//   l.Color = [0 0 1]               set(l, 'Color', [0 0 1]) does the same
//   l.Parent                        get(l, 'Parent'); get(l) lists every property
//   delete(l)
//   click(l)                        runs l's ButtonDownFcn with the object's handle and []
//   disp(X)                         any registered function; x = LITERAL, x
// '%' starts a comment. Each line is one request: what it reads and shows is charged to a budget of
// maxRequestBytes, and what it keeps (variables, property values) to the process's holdings. A refusal
// prints "error: IDENTIFIER: text", changes nothing, and the session goes on.
class Session {
 public:
  Session(std::ostream& out, std::size_t maxRequestBytes);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Runs one line inside its own host call frame; false when it was refused. Never throws. What the
  // line printed is flushed before it returns.
  bool runLine(std::string_view line);
  // Deletes every object the session made that is still alive.
  void deleteAll();

 private:
  gui_objects::ZxArrayPtr evaluate(const Expression& expression, cmdlang::ByteBudget& budget);
  gui_objects::ZxArrayPtr valueOf(const Expression& expression, cmdlang::ByteBudget& budget);
  gui_objects::ZxArrayPtr call(const Expression& expression, cmdlang::ByteBudget& budget);
  void run(const Statement& statement, cmdlang::ByteBudget& budget);
  void show(std::string_view name, const zxArray* value, cmdlang::ByteBudget& budget);

  std::ostream& out_;
  std::size_t maxRequestBytes_;
  std::map<std::string, gui_objects::ZxArrayPtr, std::less<>> variables_;
};

// Runs the lines read from the file descriptor until it ends, each one a request as Session says; a
// line longer than maxRequestBytes is refused as orbdt:TooLarge without being kept. With a prompt,
// ">> " before every line. Ctrl-C interrupts the statement that runs and the session goes on. Returns 0
// when every line ran, 1 when any was refused.
int runSession(int fd, std::ostream& out, bool prompt, std::size_t maxRequestBytes);

// The batch requests on objects, one function each: {"op":"new","class":"line","props":{"Parent":"1"}},
// {"op":"setprop","handle":H,"property":"Color","value":"'r'"}, {"op":"getprop","handle":H,
// "property":"Color"}, {"op":"delete","handle":H}. A refusal by the host answers {"ok":false,"error":...}
// with exit status 1; a malformed request or literal throws UsageError; what they keep is charged to
// the process's holdings.
Response runNewObject(const nlohmann::json& request, cmdlang::ByteBudget& budget);
Response runSetProperty(const nlohmann::json& request, cmdlang::ByteBudget& budget);
Response runGetProperty(const nlohmann::json& request, cmdlang::ByteBudget& budget);
Response runDeleteObject(const nlohmann::json& request, cmdlang::ByteBudget& budget);

}  // namespace orbdt
