// Benchmarks of the host array: a shared-data copy costs the same whatever the array's size, unlike
// a deep copy.
#include <benchmark/benchmark.h>

#include "arraylib/zxarray.h"

namespace {

// Copies a column of state.range(0) doubles with copy and destroys the copy, once per iteration.
void copyColumn(benchmark::State& state, zxArray* (*copy)(const zxArray*)) {
  const auto elements = static_cast<zxSize>(state.range(0));
  zxArray* source = zxCreateDoubleMatrix(elements, 1, zxREAL);
  for (auto _ : state) {
    zxArray* copied = copy(source);
    benchmark::DoNotOptimize(copied);
    zxDestroyArray(copied);
  }
  zxDestroyArray(source);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_SharedDataCopy(benchmark::State& state) { copyColumn(state, &zxCreateSharedDataCopy); }
void BM_DuplicateArray(benchmark::State& state) { copyColumn(state, &zxDuplicateArray); }
BENCHMARK(BM_SharedDataCopy)->Arg(1)->Arg(10'000'000);
BENCHMARK(BM_DuplicateArray)->Arg(1)->Arg(10'000'000)->Unit(benchmark::kMillisecond);

}  // namespace
