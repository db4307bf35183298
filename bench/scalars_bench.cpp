// Benchmarks of the constrained scalars: a 1-by-1 double to a Positive value, block included.
#include <benchmark/benchmark.h>

#include "arraylib/zxarray.h"
#include "datatype/scalars/constrained_scalars.h"

namespace {

using namespace graphics::datatype;

void BM_PositiveFromArray(benchmark::State& state) {
  zxArray* array = zxCreateDoubleScalar(2.0);
  const PositiveMC conversion;
  PositiveDataType& type = *PositiveDataType::getType();
  for (auto _ : state) {
    const objsys::COSValue value = conversion.from(objsys::COSValue(array));
    benchmark::DoNotOptimize(value);
    type.destroy(value);
  }
  zxDestroyArray(array);
}
BENCHMARK(BM_PositiveFromArray);

}  // namespace
