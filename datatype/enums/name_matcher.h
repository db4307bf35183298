// Matching a user's text against a list of names: white space trimmed and case folded by the current
// locale, an exact name before a unique abbreviation.
#pragma once

#include <array>
#include <cstddef>
#include <locale>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace graphics::datatype {

// Holds the names in order of addition and their case-folded forms. The folded forms, and the locale's
// case mapping and white space for each byte, are taken from the current locale and taken again when
// the global locale changes, so matching stays exact under any locale while a match costs one pass
// over the text and the names.
class NameMatcher {
 public:
  void add(std::string_view name);
  std::size_t size() const { return names_.size(); }
  const std::string& name(std::size_t index) const { return names_[index]; }
  const std::vector<std::string>& names() const { return names_; }

  // The index of the name the text selects, or nothing. After trimming white space at both ends, the
  // first name equal to the text without regard to case wins; failing that, a name that the text
  // abbreviates wins when no later name also begins with it.
  std::optional<std::size_t> find(std::string_view text) const;

 private:
  void refold(const std::locale& locale) const;

  std::vector<std::string> names_;
  std::size_t longest_ = 0;
  // The locale's case mapping and white space for every byte, and the names folded with it.
  mutable std::array<char, 256> upper_{};
  mutable std::array<bool, 256> space_{};
  mutable std::vector<std::string> folded_;
  mutable std::string firstFolded_;  // the first folded character of each name, side by side
  mutable bool folded_valid_ = false;
  mutable std::locale foldedLocale_{std::locale::classic()};
};

}  // namespace graphics::datatype
