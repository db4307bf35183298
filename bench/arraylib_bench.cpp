// Benchmarks of the host array: a shared-data copy costs the same whatever the array's size.
#include <benchmark/benchmark.h>

#include "arraylib/zxarray.h"

namespace {

void BM_SharedDataCopy(benchmark::State& state) {
  const auto elements = static_cast<zxSize>(state.range(0));
  zxArray* source = zxCreateDoubleMatrix(elements, 1, zxREAL);
  for (auto _ : state) {
    zxArray* copy = zxCreateSharedDataCopy(source);
    benchmark::DoNotOptimize(copy);
    zxDestroyArray(copy);
  }
  zxDestroyArray(source);
}
BENCHMARK(BM_SharedDataCopy)->Arg(1)->Arg(10'000'000);

void BM_DuplicateArray(benchmark::State& state) {
  const auto elements = static_cast<zxSize>(state.range(0));
  zxArray* source = zxCreateDoubleMatrix(elements, 1, zxREAL);
  for (auto _ : state) {
    zxArray* copy = zxDuplicateArray(source);
    benchmark::DoNotOptimize(copy);
    zxDestroyArray(copy);
  }
  zxDestroyArray(source);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_DuplicateArray)->Arg(1)->Arg(10'000'000)->Unit(benchmark::kMillisecond);

}  // namespace
