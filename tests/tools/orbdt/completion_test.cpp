// Completion at the cursor against a session of a few names, one line object and the line class:
// what each place in a line completes to.
#include "orbdt/completion.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using orbdt::complete;
using orbdt::Completion;

class FakeSession : public orbdt::CompletionSource {
 public:
  std::vector<std::string> names() const override { return {"l", "lines", "line", "figure", "get", "set", "disp"}; }
  std::vector<std::string> propertiesOf(std::string_view variable) const override {
    if (variable == "l") return {"Parent", "Color", "LineStyle", "LineWidth"};
    return {};
  }
  std::vector<std::string> propertiesOfClass(std::string_view className) const override {
    if (className == "line") return {"Parent", "Color", "LineStyle", "LineWidth"};
    return {};
  }
  std::vector<std::string> valuesOf(std::string_view owner, std::string_view property) const override {
    if ((owner == "l" || owner == "line") && property == "LineStyle") return {"-", "--", ":", "-.", "none"};
    if ((owner == "l" || owner == "line") && property == "Color") return {"red", "r", "green", "blue"};
    return {};
  }
};

// The candidates joined with '|', and where the replaced text starts.
std::string completed(const std::string& line) {
  const Completion completion = complete(line, FakeSession());
  std::string text = std::to_string(completion.start) + ":";
  for (std::size_t i = 0; i < completion.candidates.size(); ++i) text += (i > 0 ? "|" : "") + completion.candidates[i];
  if (completion.closingQuote != '\0') text += std::string(" close ") + completion.closingQuote;
  return text;
}

TEST(Completion, NamesPropertiesAndOfferedValuesWhereTheCursorIs) {
  const struct {
    const char* line;
    const char* completes;
  } cases[] = {
      {"li", "0:lines|line"},
      {"x = fig", "4:figure"},
      {"Li", "0:"},  // names match in their case
      {"l.Co", "2:Color"},
      {"l.line", "2:LineStyle|LineWidth"},  // properties in any case
      {"q.Co", "2:"},                       // no object, no properties
      {"set(l, 'Li", "8:LineStyle|LineWidth close '"},
      {"get(l, \"Par", "8:Parent close \""},
      {"set(l, 'LineStyle', '-", "21:-|--|-. close '"},
      {"l.Color = 'r", "11:red|r close '"},
      {"l.LineStyle = \"no", "15:none close \""},
      {"line(Parent=f, LineStyle=':", "26:: close '"},
      {"line(Parent=f, Col", "15:Color"},
      {"disp('l.Co", "6: close '"},  // inside text no one takes apart
      {"x = 1; l.Li", "9:LineStyle|LineWidth"},
      {"x = [1 2", "8:"},
  };
  for (const auto& c : cases) EXPECT_EQ(completed(c.line), c.completes) << c.line;
}

TEST(Completion, TheCommonPrefixIsWhatEveryCandidateBegins) {
  EXPECT_EQ(orbdt::commonPrefix({"LineStyle", "LineWidth"}), "Line");
  EXPECT_EQ(orbdt::commonPrefix({"none", "None"}), "none");
  EXPECT_EQ(orbdt::commonPrefix({"red"}), "red");
  EXPECT_EQ(orbdt::commonPrefix({}), "");
}

}  // namespace
