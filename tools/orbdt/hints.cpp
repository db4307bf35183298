// Nearest names by edit distance.
#include "orbdt/hints.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

namespace orbdt {
namespace {

constexpr std::size_t kMaxHints = 3;

std::string folded(std::string_view text) {
  const auto blank = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

// Edit distance with adjacent swaps (optimal string alignment), three rows of the usual table.
std::size_t editDistance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> before(b.size() + 1);
  std::vector<std::size_t> previous(b.size() + 1);
  std::vector<std::size_t> current(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) previous[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    current[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t substitution = previous[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      current[j] = std::min({previous[j] + 1, current[j - 1] + 1, substitution});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        current[j] = std::min(current[j], before[j - 2] + 1);
      }
    }
    std::swap(before, previous);
    std::swap(previous, current);
  }
  return previous[b.size()];
}

}  // namespace

std::vector<std::string> nearestNames(std::string_view typed, const std::vector<std::string>& candidates) {
  const std::string word = folded(typed);
  struct Near {
    std::size_t distance;
    std::size_t order;
  };
  std::vector<Near> near;
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    const std::string name = folded(candidates[i]);
    const std::size_t allowed = std::max<std::size_t>(1, name.size() / 3);
    // The distance is at least the difference in length, so long text is set aside at once.
    const std::size_t gap = word.size() > name.size() ? word.size() - name.size() : name.size() - word.size();
    if (gap > allowed) continue;
    const std::size_t distance = editDistance(word, name);
    if (distance > 0 && distance <= allowed && distance < name.size()) near.push_back({distance, i});
  }
  std::stable_sort(near.begin(), near.end(), [](const Near& a, const Near& b) { return a.distance < b.distance; });
  std::vector<std::string> names;
  for (std::size_t i = 0; i < near.size() && i < kMaxHints; ++i) names.push_back(candidates[near[i].order]);
  return names;
}

std::string didYouMean(const std::vector<std::string>& names) {
  if (names.empty()) return "";
  std::string text = "did you mean ";
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 == names.size() ? " or " : ", ";
    text += "'" + names[i] + "'";
  }
  return text + "?";
}

}  // namespace orbdt
