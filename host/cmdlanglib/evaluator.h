// The host's small command evaluator: runs code made of calls of registered native functions with
// literal arguments, such as "disp('clicked'); beep". It runs the code of callbacks.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace cmdlang {

// The parts of text between the separators that stand outside quotes, brackets, braces and
// parentheses, with blanks trimmed. Empty parts are kept.
std::vector<std::string_view> splitTopLevel(std::string_view text, std::string_view separators);

// Whether text is a name: a letter followed by letters, digits and underscores.
bool isName(std::string_view text);

// Runs the statements of code, separated by ';', ',' or line ends, in order: each is "name",
// "name()" or "name(literal, ...)" naming a registered function. Anything else raises
// "Korvax:cmdlang:CannotEvaluate" saying what could not be run, before any statement runs; a
// function's own error stops the code there.
void evaluate(std::string_view code);

// Makes evaluate the evaluator of callbacks' code.
void installEvaluator();

// The memory the literals of one run of code may take (unlimited until a host sets it); code whose
// literals would take more is refused with a TooLargeError before any statement runs.
void setCodeByteLimit(std::size_t bytes);

}  // namespace cmdlang

KX_HOST_API_END
