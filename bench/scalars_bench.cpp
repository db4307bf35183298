// A Positive value from a 1-by-1 double and from the text "0.5", each beside a plain twin that does
// the same work without the library: read or parse the number, check it, and the 8-byte value block.
//   build/bin/scalars_bench --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
#include <benchmark/benchmark.h>

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

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

void BM_PositiveFromText(benchmark::State& state) {
  const PositiveSC conversion;
  PositiveDataType& type = *PositiveDataType::getType();
  const objsys::COSValue text("0.5");
  for (auto _ : state) {
    const objsys::COSValue value = conversion.from(text);
    benchmark::DoNotOptimize(value);
    type.destroy(value);
  }
}

// The twin's value block: one checked number, zero-filled as the library's blocks are.
double* plainPositive(double number) {
  if (!(number > 0.0) || !std::isfinite(number)) throw std::range_error("not positive");
  auto* block = static_cast<double*>(std::malloc(sizeof(double)));
  std::memset(block, 0, sizeof(double));
  *block = number;
  return block;
}

void BM_TwinFromArray(benchmark::State& state) {
  zxArray* array = zxCreateDoubleScalar(2.0);
  for (auto _ : state) {
    if (zxGetClassID(array) != zxDOUBLE_CLASS || zxGetNumberOfElements(array) != 1) throw std::logic_error("shape");
    double* value = plainPositive(*zxGetPr(array));
    benchmark::DoNotOptimize(value);
    std::free(value);
  }
  zxDestroyArray(array);
}

// The number read as the library reads it: blanks around it allowed, the whole text one number.
void BM_TwinFromText(benchmark::State& state) {
  const char* text = "0.5";
  for (auto _ : state) {
    // The text is unknown to the compiler, as it is to the library: no length or blanks folded away.
    benchmark::DoNotOptimize(text);
    const char* begin = text;
    const char* end = text + std::strlen(text);
    while (begin < end && *begin == ' ') ++begin;
    while (end > begin && end[-1] == ' ') --end;
    double number = 0.0;
    const auto [stop, error] = std::from_chars(begin, end, number);
    if (error != std::errc() || stop != end) throw std::invalid_argument("not a number");
    double* value = plainPositive(number);
    benchmark::DoNotOptimize(value);
    std::free(value);
  }
}

}  // namespace

BENCHMARK(BM_PositiveFromArray)->Name("BM_Positive/double_1x1");
BENCHMARK(BM_TwinFromArray)->Name("BM_Twin/double_1x1");
BENCHMARK(BM_PositiveFromText)->Name("BM_Positive/text_0.5");
BENCHMARK(BM_TwinFromText)->Name("BM_Twin/text_0.5");
