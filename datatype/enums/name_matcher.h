// Matching a user's text against a list of names: white space trimmed and case folded by the current
// locale, an exact name before a unique abbreviation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "datatype/enums/case_tables.h"

namespace graphics::datatype {

// Holds the names in order of addition and their case-folded forms. The folded forms follow the
// global locale (CaseTables): they are folded again when it changes, so matching stays exact under any
// locale while a match costs one pass over the text and the names.
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
  void refold(const CaseTables& tables) const;

  std::vector<std::string> names_;
  std::size_t longest_ = 0;
  // The names folded with the tables of generation foldedGeneration_ (0: not folded yet).
  mutable std::vector<std::string> folded_;
  mutable std::string firstFolded_;  // the first folded character of each name, side by side
  mutable std::uint64_t foldedGeneration_ = 0;
};

}  // namespace graphics::datatype
