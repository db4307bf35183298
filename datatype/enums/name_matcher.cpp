// Matching a user's text against a list of names.
#include "datatype/enums/name_matcher.h"

#include <algorithm>

namespace graphics::datatype {

void NameMatcher::add(std::string_view name) {
  names_.emplace_back(name);
  longest_ = std::max(longest_, name.size());
  folded_valid_ = false;
}

void NameMatcher::refold(const std::locale& locale) const {
  const auto& ctype = std::use_facet<std::ctype<char>>(locale);
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    upper_[static_cast<std::size_t>(byte)] = ctype.toupper(c);
    space_[static_cast<std::size_t>(byte)] = ctype.is(std::ctype_base::space, c);
  }
  folded_ = names_;
  firstFolded_.clear();
  for (std::string& name : folded_) {
    for (char& c : name) c = upper_[static_cast<unsigned char>(c)];
    firstFolded_ += name.empty() ? '\0' : name[0];
  }
  foldedLocale_ = locale;
  folded_valid_ = true;
}

std::optional<std::size_t> NameMatcher::find(std::string_view text) const {
  // Comparing locales is a pointer comparison while the global locale stays the one folded for.
  const std::locale locale;
  if (!folded_valid_ || !(locale == foldedLocale_)) refold(locale);

  const auto isSpace = [this](char c) { return space_[static_cast<unsigned char>(c)]; };
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && isSpace(text.back())) text.remove_suffix(1);
  const std::size_t length = text.size();
  if (length > longest_) return std::nullopt;  // longer than every name: neither equal nor a prefix

  // Folded on the fly: a name matches when its first length characters equal the folded text.
  const auto beginsWithText = [&](const std::string& name) {
    if (name.size() < length) return false;
    for (std::size_t i = 0; i < length; ++i) {
      if (name[i] != upper_[static_cast<unsigned char>(text[i])]) return false;
    }
    return true;
  };

  // One pass: an exact name returns at once; abbreviations are only counted, since an exact name later
  // in the list still wins over them.
  std::optional<std::size_t> match;
  bool ambiguous = false;
  const char first = length > 0 ? upper_[static_cast<unsigned char>(text[0])] : '\0';
  for (std::size_t i = 0; i < folded_.size(); ++i) {
    if ((length > 0 && firstFolded_[i] != first) || !beginsWithText(folded_[i])) continue;
    if (folded_[i].size() == length) return i;
    ambiguous = ambiguous || match.has_value();
    if (!match) match = i;
  }
  if (ambiguous) return std::nullopt;
  return match;
}

}  // namespace graphics::datatype
