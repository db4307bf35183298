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
#include "orbdt/completion.h"
#include "orbdt/host_session.h"
#include "orbdt/requests.h"
#include "orbdt/statement.h"

namespace objsys {
class GraphicsObject;
}

namespace orbdt {

// Variables and the objects they name live as long as the session. Lines:
//   f = figure                      a new object; class(Name=Value, ...) sets properties in order
//   l = line(Parent=f, Color='r')
//   l.Color = [0 0 1]               set(l, 'Color', [0 0 1]) does the same
//   l.Parent                        get(l, 'Parent'); get(l) lists every property
//   delete(l)
//   click(l)                        runs l's ButtonDownFcn with the object's handle and []
//   disp(X)                         any registered function; x = LITERAL, x
//   help, help TYPE, help l.Color   what the session takes, what a type or property takes
//   who, properties(l)              the variables; an object's properties and their types
// '%' starts a comment; "name word ..." calls name with the words as text (help Color). Each line is one
// request: what it reads and shows is charged to a budget of maxRequestBytes, and what it keeps
// (variables, property values) to the process's holdings. A refusal prints "error: IDENTIFIER: text",
// and for a name that names nothing "hint: did you mean ...?", changes nothing, and the session goes on.
// The session also answers what completion asks of it.
class Session : public CompletionSource {
 public:
  Session(const HostSession& host, std::ostream& out, std::size_t maxRequestBytes);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Runs one line inside its own host call frame; false when it was refused. Never throws. What the
  // line printed is flushed before it returns. With a file named (setSource), a refusal says where:
  // "FILE:LINE:COLUMN: error: ...".
  bool runLine(std::string_view line, std::size_t lineNumber = 0);
  void setSource(std::string file) { source_ = std::move(file); }
  // Deletes every object the session made that is still alive.
  void deleteAll();

  std::vector<std::string> names() const override;
  std::vector<std::string> propertiesOf(std::string_view variable) const override;
  std::vector<std::string> propertiesOfClass(std::string_view className) const override;
  std::vector<std::string> valuesOf(std::string_view owner, std::string_view property) const override;

 private:
  gui_objects::ZxArrayPtr evaluate(const Expression& expression, cmdlang::ByteBudget& budget);
  gui_objects::ZxArrayPtr valueOf(const Expression& expression, cmdlang::ByteBudget& budget);
  gui_objects::ZxArrayPtr literal(const Expression& expression, cmdlang::ByteBudget& budget);
  // wordsAreText: the arguments are the words of command syntax, each taken as text.
  gui_objects::ZxArrayPtr call(const Expression& expression, cmdlang::ByteBudget& budget, bool wordsAreText = false);
  void run(const Statement& statement, cmdlang::ByteBudget& budget);
  void show(std::string_view name, const zxArray* value, cmdlang::ByteBudget& budget);
  void help(const std::vector<std::string>& topics, cmdlang::ByteBudget& budget);
  void who();
  // The object a variable names, or null.
  objsys::GraphicsObject* objectNamed(std::string_view variable) const;
  // Raises Korvax:UndefinedFunction for the name, with the nearest names as the line's hint.
  [[noreturn]] void undefined(std::string_view name, const char* what);

  const HostSession& host_;
  std::ostream& out_;
  std::string source_;
  // Where in the line the work that may fail began (a statement, then a literal), in bytes.
  std::size_t offset_ = 0;
  // What the refusal of the line being run was probably meant to say instead, shown after its error.
  std::string hint_;
  std::size_t maxRequestBytes_;
  std::map<std::string, gui_objects::ZxArrayPtr, std::less<>> variables_;
};

// Where a session's lines come from: a file descriptor read as a script, or, when it is a terminal,
// lines typed with editing, history (kept in historyFile unless it is empty) and completion.
struct SessionInput {
  int fd;
  bool terminal = false;
  std::string historyFile;
  std::string source;  // the script's file name, which refusals name with their line and column
};

// Runs the lines of the input until it ends, each one a request as Session says; a line longer than
// maxRequestBytes is refused as orbdt:TooLarge without being kept. At a terminal, ">> " before every
// line. Ctrl-C interrupts the statement that runs, or drops the line being typed, and the session goes
// on. Returns 0 when every line ran, 1 when any was refused.
int runSession(const HostSession& host, const SessionInput& input, std::ostream& out, std::size_t maxRequestBytes);

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
