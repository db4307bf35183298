// Validation of shaped arrays against a plain loop that only reads the same elements, and setting and
// reading back a large colormap without copying its elements.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <bit>
#include <boost/exception_ptr.hpp>
#include <cstdint>
#include <cstring>
#include <random>

#include "arraylib/zxarray.h"
#include "datatype/arrays/shaped_arrays.h"
#include "datatype/library.h"
#include "objsys/builtin_types.h"

namespace {

using namespace graphics::datatype;

void startLibrary() {
  static const bool started = [] {
    objsys::registerBuiltinTypes();
    KXInitialize_orbdatatypes(nullptr);
    return true;
  }();
  benchmark::DoNotOptimize(started);
}

// The inputs: valid values, made once and kept for the whole run.
enum class Input { colorMap256, colorMapMillion, vertexDataMillion, tickMillion };

zxArray* makeInput(Input input) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  zxArray* array = nullptr;
  switch (input) {
    case Input::colorMap256:
    case Input::colorMapMillion: {
      const zxSize rows = input == Input::colorMap256 ? 256 : 1000000;
      array = zxCreateDoubleMatrix(rows, 3, zxREAL);
      double* values = zxGetWritablePr(array);
      for (zxSize i = 0; i < rows * 3; ++i) values[i] = unit(random);
      break;
    }
    case Input::vertexDataMillion: {
      array = zxCreateNumericMatrix(3, 1000000, zxSINGLE_CLASS, zxREAL);
      auto* values = static_cast<float*>(zxGetWritableData(array));
      for (zxSize i = 0; i < 3000000; ++i) values[i] = static_cast<float>(unit(random) * 100.0 - 50.0);
      break;
    }
    case Input::tickMillion: {
      array = zxCreateDoubleMatrix(1, 1000000, zxREAL);
      double* values = zxGetWritablePr(array);
      for (zxSize i = 0; i < 1000000; ++i) values[i] = static_cast<double>(i) * 0.5 - 1000.0;
      break;
    }
  }
  return array;
}

const zxArray* inputOf(Input input) {
  static zxArray* const inputs[] = {makeInput(Input::colorMap256), makeInput(Input::colorMapMillion),
                                    makeInput(Input::vertexDataMillion), makeInput(Input::tickMillion)};
  return inputs[static_cast<int>(input)];
}

void perElement(benchmark::State& state, zxSize elements) {
  state.counters["per_element"] = benchmark::Counter(
      static_cast<double>(elements), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// isValid of the type holding the input: every element is visited once.
template <class T>
void validate(benchmark::State& state, Input input) {
  startLibrary();
  const zxArray* array = inputOf(input);
  const T probe;
  for (auto _ : state) {
    boost::exception_ptr failure;
    bool valid = probe.isValid(array, failure);
    benchmark::DoNotOptimize(valid);
    if (!valid) state.SkipWithError("the input was refused");
  }
  perElement(state, zxGetNumberOfElements(array));
}

// The bandwidth baseline: every element read once and folded into an OR of its bits.
template <class E, class Bits>
void readPlainly(benchmark::State& state, Input input) {
  const zxArray* array = inputOf(input);
  const auto* values = static_cast<const E*>(zxGetData(array));
  const zxSize count = zxGetNumberOfElements(array);
  for (auto _ : state) {
    Bits folded = 0;
    for (zxSize i = 0; i < count; ++i) folded |= std::bit_cast<Bits>(values[i]);
    benchmark::DoNotOptimize(folded);
  }
  perElement(state, count);
}

void BM_ValidateColorMap(benchmark::State& state, Input input) { validate<ColorMap>(state, input); }
void BM_ValidatePrimitiveVertexData(benchmark::State& state, Input input) {
  validate<PrimitiveVertexData>(state, input);
}
void BM_ValidateTick(benchmark::State& state, Input input) { validate<Tick>(state, input); }
void BM_PlainReadDoubles(benchmark::State& state, Input input) { readPlainly<double, std::uint64_t>(state, input); }
void BM_PlainReadSingles(benchmark::State& state, Input input) { readPlainly<float, std::uint32_t>(state, input); }

long maxResidentKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

// Set through the array conversion and read back: both are shared-data copies of the input.
void BM_SetAndReadBack(benchmark::State& state, Input input) {
  startLibrary();
  const zxArray* array = inputOf(input);
  const ColorMapMC conversion;
  ColorMapDataType& type = *ColorMapDataType::getType();
  const long residentBefore = maxResidentKilobytes();
  bool shared = true;
  for (auto _ : state) {
    const objsys::COSValue value = conversion.from(objsys::COSValue(array));
    zxArray* readBack = conversion.to(value).as<zxArray>();
    shared = shared && zxGetData(readBack) == zxGetData(array);
    zxDestroyArray(readBack);
    type.destroy(value);
  }
  if (!shared) state.SkipWithError("the read-back does not share the input's elements");
  state.counters["elements"] = static_cast<double>(zxGetNumberOfElements(array));
  state.counters["shares_input_data"] = shared ? 1 : 0;
  state.counters["peak_rss_growth_kB"] = static_cast<double>(maxResidentKilobytes() - residentBefore);
  perElement(state, zxGetNumberOfElements(array));
}

BENCHMARK_CAPTURE(BM_ValidateColorMap, ColorMap_256x3, Input::colorMap256);
BENCHMARK_CAPTURE(BM_PlainReadDoubles, ColorMap_256x3, Input::colorMap256);
BENCHMARK_CAPTURE(BM_ValidateColorMap, ColorMap_1e6x3, Input::colorMapMillion);
BENCHMARK_CAPTURE(BM_PlainReadDoubles, ColorMap_1e6x3, Input::colorMapMillion);
BENCHMARK_CAPTURE(BM_ValidatePrimitiveVertexData, PrimitiveVertexData_3x1e6, Input::vertexDataMillion);
BENCHMARK_CAPTURE(BM_PlainReadSingles, PrimitiveVertexData_3x1e6, Input::vertexDataMillion);
BENCHMARK_CAPTURE(BM_ValidateTick, Tick_1x1e6, Input::tickMillion);
BENCHMARK_CAPTURE(BM_PlainReadDoubles, Tick_1x1e6, Input::tickMillion);
BENCHMARK_CAPTURE(BM_SetAndReadBack, ColorMap_256x3, Input::colorMap256);
BENCHMARK_CAPTURE(BM_SetAndReadBack, ColorMap_1e6x3, Input::colorMapMillion);

}  // namespace
