// Benchmarks of text to enumerated value, the hot path of every assignment of a named value.
#include <benchmark/benchmark.h>

#include "datatype/enums/enum_types.h"
#include "utillib/ut.h"

namespace {

using namespace graphics::datatype;

// One conversion from text, the one-byte value block's allocation and release included.
template <class E>
void BM_TextToEnum(benchmark::State& state, const char* text) {
  const EnumValueSC<E> conversion;
  const objsys::COSValue input(text);
  for (auto _ : state) {
    const objsys::COSValue value = conversion.from(input);
    benchmark::DoNotOptimize(value);
    utFree(value.pointer());
  }
}
void BM_ActivePosition_outer(benchmark::State& state) { BM_TextToEnum<ActivePosition>(state, "outer"); }
void BM_LineStyle_dashdot(benchmark::State& state) { BM_TextToEnum<LineStyle>(state, "-."); }
void BM_MarkerStyle_hexagram(benchmark::State& state) { BM_TextToEnum<MarkerStyle>(state, "hexagram"); }
void BM_Units_pixels(benchmark::State& state) { BM_TextToEnum<Units>(state, "pixels"); }
BENCHMARK(BM_ActivePosition_outer);
BENCHMARK(BM_LineStyle_dashdot);
BENCHMARK(BM_MarkerStyle_hexagram);
BENCHMARK(BM_Units_pixels);

}  // namespace
