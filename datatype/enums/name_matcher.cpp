// Matching a user's text against a list of names.
#include "datatype/enums/name_matcher.h"

#include <algorithm>

namespace graphics::datatype {

void NameMatcher::add(std::string_view name) {
  names_.emplace_back(name);
  longest_ = std::max(longest_, name.size());
  foldedGeneration_ = 0;
}

void NameMatcher::refold(const CaseTables& tables) const {
  folded_ = names_;
  firstFolded_.clear();
  for (std::string& name : folded_) {
    for (char& c : name) c = tables.upper(c);
    firstFolded_ += name.empty() ? '\0' : name[0];
  }
  foldedGeneration_ = tables.generation();
}

std::optional<std::size_t> NameMatcher::find(std::string_view text) const {
  const CaseTables& tables = CaseTables::current();
  if (foldedGeneration_ != tables.generation()) refold(tables);

  while (!text.empty() && tables.space(text.front())) text.remove_prefix(1);
  while (!text.empty() && tables.space(text.back())) text.remove_suffix(1);
  const std::size_t length = text.size();
  if (length > longest_) return std::nullopt;  // longer than every name: neither equal nor a prefix

  // Folded on the fly: a name matches when its first length characters equal the folded text.
  const auto beginsWithText = [&](const std::string& name) {
    if (name.size() < length) return false;
    for (std::size_t i = 0; i < length; ++i) {
      if (name[i] != tables.upper(text[i])) return false;
    }
    return true;
  };

  // One pass: an exact name returns at once; abbreviations are only counted, since an exact name later
  // in the list still wins over them.
  std::optional<std::size_t> match;
  bool ambiguous = false;
  const char first = length > 0 ? tables.upper(text[0]) : '\0';
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
