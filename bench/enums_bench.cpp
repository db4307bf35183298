// Text to enumerated value, the hot path of every assignment of a named value, beside a plain twin
// that does the same work without the library: trim, fold case, an exact name before a unique
// abbreviation, and the one-byte value block.
//   build/bin/enums_bench --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

#include "datatype/enums/enum_types.h"
#include "utillib/ut.h"

namespace {

using namespace graphics::datatype;

// One conversion from text, the one-byte value block's allocation and release included; a refusal
// is caught as a host would catch it.
template <class E>
void textToEnum(benchmark::State& state, const char* text) {
  const EnumValueSC<E> conversion;
  const objsys::COSValue input(text);
  for (auto _ : state) {
    try {
      const objsys::COSValue value = conversion.from(input);
      benchmark::DoNotOptimize(value);
      utFree(value.pointer());
    } catch (const std::exception& refusal) {
      benchmark::DoNotOptimize(&refusal);
    }
  }
}

void primLineStyle(benchmark::State& state, const char* text) { textToEnum<PrimLineStyle>(state, text); }

constexpr std::array<std::string_view, 5> kPrimLineStyles = {"solid", "dashed", "dotted", "dashdot", "none"};

// The plain rule: trimmed, case-folded, an exact name first, else the first name the text begins
// when no later name also begins it; the refusal lists the names as the library's message does.
void plainTextToEnum(benchmark::State& state, const char* text) {
  for (auto _ : state) {
    // The text is unknown to the compiler, as it is to the library: nothing about it folded away.
    benchmark::DoNotOptimize(text);
    try {
      std::string_view given(text);
      while (!given.empty() && std::isspace(static_cast<unsigned char>(given.front()))) given.remove_prefix(1);
      while (!given.empty() && std::isspace(static_cast<unsigned char>(given.back()))) given.remove_suffix(1);
      char folded[32];
      const std::size_t n = std::min(given.size(), sizeof folded);
      for (std::size_t i = 0; i < n; ++i)
        folded[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(given[i])));
      const std::string_view key(folded, n);
      int found = -1;
      for (std::size_t i = 0; i < kPrimLineStyles.size() && found < 0; ++i) {
        if (kPrimLineStyles[i] == key) found = static_cast<int>(i);
      }
      for (std::size_t i = 0; i < kPrimLineStyles.size() && found == -1 && !key.empty(); ++i) {
        if (!kPrimLineStyles[i].starts_with(key)) continue;
        bool later = false;
        for (std::size_t j = i + 1; j < kPrimLineStyles.size(); ++j)
          later = later || kPrimLineStyles[j].starts_with(key);
        found = later ? -2 : static_cast<int>(i);  // the first name it begins, unless another follows
      }
      if (found < 0) {  // no name, or an ambiguous abbreviation
        throw std::invalid_argument("'" + std::string(given) +
                                    "' is not a valid value. Use one of these values: 'solid' | 'dashed' | "
                                    "'dotted' | 'dashdot' | 'none'.");
      }
      auto* value = static_cast<signed char*>(std::calloc(1, 1));
      *value = static_cast<signed char>(found);
      benchmark::DoNotOptimize(value);
      std::free(value);
    } catch (const std::exception& refusal) {
      benchmark::DoNotOptimize(&refusal);
    }
  }
}

}  // namespace

BENCHMARK_CAPTURE(primLineStyle, dashe, "dashe")->Name("BM_Enum/dashe");
BENCHMARK_CAPTURE(plainTextToEnum, dashe, "dashe")->Name("BM_Twin/dashe");
BENCHMARK_CAPTURE(primLineStyle, Dotted_blanks, "  Dotted ")->Name("BM_Enum/Dotted_blanks");
BENCHMARK_CAPTURE(plainTextToEnum, Dotted_blanks, "  Dotted ")->Name("BM_Twin/Dotted_blanks");
BENCHMARK_CAPTURE(primLineStyle, refused_xyz, "xyz")->Name("BM_Enum/refused_xyz");
BENCHMARK_CAPTURE(plainTextToEnum, refused_xyz, "xyz")->Name("BM_Twin/refused_xyz");
BENCHMARK_CAPTURE(primLineStyle, ambiguous_dash, "dash")->Name("BM_Enum/ambiguous_dash");
BENCHMARK_CAPTURE(plainTextToEnum, ambiguous_dash, "dash")->Name("BM_Twin/ambiguous_dash");
