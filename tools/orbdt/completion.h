// Completion of a session line at the cursor: names, properties after "h." and inside set(h, '...'),
// and inside the quotes of a value the values its property's type offers. Every answer comes from
// the session and the library through a CompletionSource; this file knows only where the cursor is.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace orbdt {

// What completion asks of a session.
class CompletionSource {
 public:
  virtual ~CompletionSource() = default;
  // Variables, the session's functions and the classes of objects.
  virtual std::vector<std::string> names() const = 0;
  // The properties of the object a variable names (none for anything else).
  virtual std::vector<std::string> propertiesOf(std::string_view variable) const = 0;
  // The properties a new object of the class has.
  virtual std::vector<std::string> propertiesOfClass(std::string_view className) const = 0;
  // The values the type of a property offers by name, of the object a variable names or, when owner
  // is a class, of its new objects.
  virtual std::vector<std::string> valuesOf(std::string_view owner, std::string_view property) const = 0;
};

// What may replace the text from start to the cursor; candidates in the source's order, those that
// begin with the typed text (names exactly, properties and values in any case). closingQuote is the
// quote a value was opened with, for the editor to close a single candidate with.
struct Completion {
  std::size_t start = 0;
  std::vector<std::string> candidates;
  char closingQuote = '\0';
};

// line is the text before the cursor.
Completion complete(std::string_view line, const CompletionSource& source);

// The longest text that every candidate begins with, in any case (written as the first has it).
std::string commonPrefix(const std::vector<std::string>& candidates);

}  // namespace orbdt
