// Matching a user's text against a list of names.
#include "datatype/enums/name_matcher.h"

#include <locale>
#include <string>

namespace graphics::datatype {
namespace {

// Case folding and white space follow the process's global locale, so the rule agrees with the
// host's own text handling.
struct Folder {
  std::locale locale;
  const std::ctype<char>& ctype = std::use_facet<std::ctype<char>>(locale);

  std::string_view trim(std::string_view text) const {
    while (!text.empty() && ctype.is(std::ctype_base::space, text.front())) text.remove_prefix(1);
    while (!text.empty() && ctype.is(std::ctype_base::space, text.back())) text.remove_suffix(1);
    return text;
  }
  bool equalFolded(std::string_view a, std::string_view b) const {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
      if (ctype.toupper(a[i]) != ctype.toupper(b[i])) return false;
    }
    return true;
  }
  bool startsWithFolded(std::string_view name, std::string_view prefix) const {
    return name.size() >= prefix.size() && equalFolded(name.substr(0, prefix.size()), prefix);
  }
};

}  // namespace

std::optional<std::size_t> matchName(std::span<const std::string_view> names, std::string_view text) {
  const Folder folder;
  const std::string_view wanted = folder.trim(text);
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (folder.equalFolded(names[i], wanted)) return i;
  }
  std::optional<std::size_t> match;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (!folder.startsWithFolded(names[i], wanted)) continue;
    if (match) return std::nullopt;
    match = i;
  }
  return match;
}

}  // namespace graphics::datatype
