// Benchmarks of the matrix text parsers.
#include <benchmark/benchmark.h>

#include <string>

#include "guilib/auto_ptr.h"
#include "guilib/convert_from_string_utils.h"

namespace {

namespace parsers = gui_objects::convert_from_string_utils;

void BM_ParseRow3(benchmark::State& state) {
  const char* const text = "[0.1 0.2 0.3]";
  for (auto _ : state) benchmark::DoNotOptimize(parsers::parse_1x3_double(text));
}
BENCHMARK(BM_ParseRow3);

void BM_ParseMxn(benchmark::State& state) {
  constexpr zxSize kRows = 256;
  std::string text = "[";
  for (zxSize row = 0; row < kRows; ++row) {
    if (row > 0) text += ';';
    const std::string base = std::to_string(row);
    text += "0." + base + " -" + base + ".5e-3 " + base + "1.25";
  }
  text += ']';
  for (auto _ : state) {
    gui_objects::ZxArrayPtr array(parsers::parse_mxn(text.c_str(), kRows, 3, zxDOUBLE_CLASS));
    benchmark::DoNotOptimize(array.get());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kRows * 3));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(BM_ParseMxn);

}  // namespace
