// Benchmarks of setting a Position, each beside a plain twin that does the same work without the
// library: the same read or parse, the same checks, and a value block of the same size.
//   build/bin/geometry_bench --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
// The ratio of each pair (BM_Position/... to BM_Twin/...) is the library's cost over the work itself.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <stdexcept>

#include "arraylib/zxarray.h"
#include "datatype/geometry/geometry_vectors.h"
#include "library_start.h"

namespace {

using namespace graphics::datatype;
using benchsupport::startLibrary;

zxArray* positionRow() {
  zxArray* array = zxCreateDoubleMatrix(1, 4, zxREAL);
  double* values = zxGetWritablePr(array);
  values[0] = 0.1;
  values[1] = 0.1;
  values[2] = 0.8;
  values[3] = 0.8;
  return array;
}

// One Position from a 1-by-4 double, the value block's allocation and release included.
void arrayToPosition(benchmark::State& state) {
  startLibrary();
  zxArray* array = positionRow();
  const PositionMC conversion;
  PositionDataType& type = *PositionDataType::getType();
  for (auto _ : state) {
    const objsys::COSValue value = conversion.from(objsys::COSValue(array));
    benchmark::DoNotOptimize(value);
    type.destroy(value);
  }
  zxDestroyArray(array);
}

void textToPosition(benchmark::State& state, const char* text) {
  startLibrary();
  const PositionSC conversion;
  PositionDataType& type = *PositionDataType::getType();
  const objsys::COSValue input(text);
  for (auto _ : state) {
    const objsys::COSValue value = conversion.from(input);
    benchmark::DoNotOptimize(value);
    type.destroy(value);
  }
}

// The twin's position: its corners, as large as the library's value block.
struct PlainPosition {
  double xMin, yMin, xMax, yMax;
};

PlainPosition* newPlainPosition(const double (&n)[4]) {
  if (0.0 > n[2] || 0.0 > n[3]) throw std::range_error("negative size");
  auto* position = static_cast<PlainPosition*>(std::calloc(1, sizeof(PlainPosition)));
  *position = {n[0], n[1], n[0] + n[2], n[1] + n[3]};
  return position;
}

// The class and count checks of the library's reader, then the doubles read directly.
void plainArray(benchmark::State& state) {
  zxArray* array = positionRow();
  for (auto _ : state) {
    if (!zxIsDouble(array) || zxGetNumberOfElements(array) != 4) throw std::invalid_argument("not 4 doubles");
    const double* data = zxGetPr(array);
    const double numbers[4] = {data[0], data[1], data[2], data[3]};
    PlainPosition* position = newPlainPosition(numbers);
    benchmark::DoNotOptimize(position);
    std::free(position);
  }
  zxDestroyArray(array);
}

// Exactly four numbers separated by blanks, read with strtod.
void plainText(benchmark::State& state, const char* text) {
  for (auto _ : state) {
    // The text is unknown to the compiler, as it is to the library: nothing about it folded away.
    benchmark::DoNotOptimize(text);
    double numbers[4];
    const char* p = text;
    for (double& number : numbers) {
      char* end = nullptr;
      number = std::strtod(p, &end);
      if (end == p) throw std::invalid_argument("not a number");
      p = end;
    }
    while (*p == ' ') ++p;
    if (*p != '\0') throw std::invalid_argument("more than four numbers");
    PlainPosition* position = newPlainPosition(numbers);
    benchmark::DoNotOptimize(position);
    std::free(position);
  }
}

}  // namespace

BENCHMARK(arrayToPosition)->Name("BM_Position/double_1x4");
BENCHMARK(plainArray)->Name("BM_Twin/double_1x4");
BENCHMARK_CAPTURE(textToPosition, text, "0.1 0.1 0.8 0.8")->Name("BM_Position/text");
BENCHMARK_CAPTURE(plainText, text, "0.1 0.1 0.8 0.8")->Name("BM_Twin/text");
