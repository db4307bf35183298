// Matching a user's text against a list of names.
#include "datatype/enums/name_matcher.h"

#include <algorithm>
#include <cstring>

namespace graphics::datatype {

void NameMatcher::add(std::string_view name) {
  names_.emplace_back(name);
  longest_ = std::max(longest_, name.size());
  foldedWith_ = nullptr;
}

// The facet identifies the locale's rules; keeping the locale itself keeps the facet alive.
void NameMatcher::refold(const std::ctype<char>& ctype) const {
  folded_ = names_;
  for (std::string& name : folded_) ctype.toupper(name.data(), name.data() + name.size());
  foldedWith_ = &ctype;
}

std::optional<std::size_t> NameMatcher::find(std::string_view text) const {
  // Comparing locales is a pointer comparison while the global locale stays the one folded for.
  const std::locale locale;
  if (foldedWith_ == nullptr || !(locale == foldedLocale_)) {
    refold(std::use_facet<std::ctype<char>>(locale));
    foldedLocale_ = locale;
  }
  const std::ctype<char>& ctype = *foldedWith_;
  while (!text.empty() && ctype.is(std::ctype_base::space, text.front())) text.remove_prefix(1);
  while (!text.empty() && ctype.is(std::ctype_base::space, text.back())) text.remove_suffix(1);
  if (text.size() > longest_) return std::nullopt;  // longer than every name: neither equal nor a prefix

  char buffer[256];
  std::string heap;
  char* wanted = buffer;
  if (text.size() > sizeof buffer) {
    heap.assign(text);
    wanted = heap.data();
  } else {
    std::memcpy(buffer, text.data(), text.size());
  }
  ctype.toupper(wanted, wanted + text.size());
  const std::string_view folded(wanted, text.size());

  // One pass: an exact name returns at once; abbreviations are only counted, since an exact name later
  // in the list still wins over them.
  std::optional<std::size_t> match;
  bool ambiguous = false;
  for (std::size_t i = 0; i < folded_.size(); ++i) {
    const std::string_view name = folded_[i];
    if (name.size() < folded.size() || name.compare(0, folded.size(), folded) != 0) continue;
    if (name.size() == folded.size()) return i;
    ambiguous = ambiguous || match.has_value();
    if (!match) match = i;
  }
  if (ambiguous) return std::nullopt;
  return match;
}

}  // namespace graphics::datatype
