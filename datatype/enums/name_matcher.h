// Matching a user's text against a list of names: blanks trimmed, case ignored (both by the current
// locale), an exact name before a unique abbreviation.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace graphics::datatype {

// The index of the name the text selects, or nothing. After trimming white space at both ends, the
// first name equal to the text without regard to case wins; failing that, a name that the text
// abbreviates wins when no other name begins with the text. Ties go to the earlier name.
std::optional<std::size_t> matchName(std::span<const std::string_view> names, std::string_view text);

}  // namespace graphics::datatype
