// "Did you mean" hints: the valid names nearest to a name a type refused.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orbdt {

// The candidates nearest to typed, nearest first (ties in the candidates' order), at most three.
// Distance counts insertions, deletions, substitutions and swaps of adjacent characters, ignoring
// ASCII case and the blanks around typed. A candidate counts only when it is close: at most a
// third of its length away (one edit for names of up to five characters) and not wholly replaced.
std::vector<std::string> nearestNames(std::string_view typed, const std::vector<std::string>& candidates);

// "did you mean 'dashed'?", "did you mean 'flat' or 'interp'?", "did you mean 'a', 'b' or 'c'?";
// empty for no names.
std::string didYouMean(const std::vector<std::string>& names);

}  // namespace orbdt
