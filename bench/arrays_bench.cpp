// Validation of shaped arrays beside a plain twin that makes the same checks without the library (the
// class and shape, then every element against the type's rule) and the floor under both (every element
// read, nothing checked), and setting and reading back a large colormap without copying its elements.
// The plain twin cannot be vectorised (with the default floating-point flags a compiler keeps ordered
// comparisons scalar); the library's checks are written with vector extensions, so the floor is the
// fair limit.
//   build/bin/arrays_bench --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
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
enum class Input { colorMap256, colorMapLarge, vertexDataLarge, tickLarge };

// The large inputs: ten million rows, columns or elements, far beyond the caches.
constexpr zxSize kLarge = 10'000'000;

zxArray* makeInput(Input input) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  zxArray* array = nullptr;
  switch (input) {
    case Input::colorMap256:
    case Input::colorMapLarge: {
      const zxSize rows = input == Input::colorMap256 ? 256 : kLarge;
      array = zxCreateDoubleMatrix(rows, 3, zxREAL);
      double* values = zxGetWritablePr(array);
      for (zxSize i = 0; i < rows * 3; ++i) values[i] = unit(random);
      break;
    }
    case Input::vertexDataLarge: {
      array = zxCreateNumericMatrix(3, kLarge, zxSINGLE_CLASS, zxREAL);
      auto* values = static_cast<float*>(zxGetWritableData(array));
      for (zxSize i = 0; i < 3 * kLarge; ++i) values[i] = static_cast<float>(unit(random) * 100.0 - 50.0);
      break;
    }
    case Input::tickLarge: {
      array = zxCreateDoubleMatrix(1, kLarge, zxREAL);
      double* values = zxGetWritablePr(array);
      for (zxSize i = 0; i < kLarge; ++i) values[i] = static_cast<double>(i) * 0.5 - 1000.0;
      break;
    }
  }
  return array;
}

const zxArray* inputOf(Input input) {
  // Made on first use, so that a filtered run makes only what it measures.
  static zxArray* inputs[4] = {};
  zxArray*& made = inputs[static_cast<int>(input)];
  if (made == nullptr) made = makeInput(input);
  return made;
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

// The twins: the same class and shape tests, then every element against the same rule, as a plain
// loop that a compiler vectorises.
bool plainShape(const zxArray* array, zxClassID classID, zxSize rows, zxSize columns) {
  return zxGetClassID(array) == classID && !zxIsComplex(array) && !zxIsSparse(array) &&
         zxGetNumberOfDimensions(array) == 2 && (rows == 0 || zxGetM(array) == rows) &&
         (columns == 0 || zxGetN(array) == columns);
}

// Colormap: doubles in [0, 1], NaN skipped.
bool plainColorMap(const zxArray* array) {
  if (!plainShape(array, zxDOUBLE_CLASS, 0, 3)) return false;
  const double* values = zxGetPr(array);
  const zxSize count = zxGetNumberOfElements(array);
  bool bad = false;
  for (zxSize i = 0; i < count; ++i) bad |= (values[i] < 0.0) | (values[i] > 1.0);
  return !bad;
}

// Vertex data: 3 rows of finite singles.
bool plainVertexData(const zxArray* array) {
  if (!plainShape(array, zxSINGLE_CLASS, 3, 0)) return false;
  const auto* values = static_cast<const float*>(zxGetData(array));
  const zxSize count = zxGetNumberOfElements(array);
  bool bad = false;
  for (zxSize i = 0; i < count; ++i) bad |= (values[i] - values[i]) != 0.0f;
  return !bad;
}

// Ticks: a row of strictly increasing doubles, no NaN, no two neighbouring infinities.
bool plainTick(const zxArray* array) {
  if (!plainShape(array, zxDOUBLE_CLASS, 1, 0)) return false;
  const double* values = zxGetPr(array);
  const zxSize count = zxGetNumberOfElements(array);
  bool bad = false;
  for (zxSize i = 1; i < count; ++i) {
    const double sum = values[i - 1] + values[i];
    bad |= !(values[i - 1] < values[i]) | (sum != sum);
  }
  return !bad;
}

// The floor under both: every element read once and folded into an OR of its bits, no check at all.
template <class E, class Bits>
void readOnly(benchmark::State& state, Input input) {
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
void BM_FloorDoubles(benchmark::State& state, Input input) { readOnly<double, std::uint64_t>(state, input); }
void BM_FloorSingles(benchmark::State& state, Input input) { readOnly<float, std::uint32_t>(state, input); }

template <bool (*Check)(const zxArray*)>
void twin(benchmark::State& state, Input input) {
  const zxArray* array = inputOf(input);
  for (auto _ : state) {
    bool valid = Check(array);
    benchmark::DoNotOptimize(valid);
    if (!valid) state.SkipWithError("the input was refused");
  }
  perElement(state, zxGetNumberOfElements(array));
}

void BM_ValidateColorMap(benchmark::State& state, Input input) { validate<ColorMap>(state, input); }
void BM_ValidatePrimitiveVertexData(benchmark::State& state, Input input) {
  validate<PrimitiveVertexData>(state, input);
}
void BM_ValidateTick(benchmark::State& state, Input input) { validate<Tick>(state, input); }
void BM_TwinColorMap(benchmark::State& state, Input input) { twin<plainColorMap>(state, input); }
void BM_TwinPrimitiveVertexData(benchmark::State& state, Input input) { twin<plainVertexData>(state, input); }
void BM_TwinTick(benchmark::State& state, Input input) { twin<plainTick>(state, input); }

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
BENCHMARK_CAPTURE(BM_TwinColorMap, ColorMap_256x3, Input::colorMap256);
BENCHMARK_CAPTURE(BM_FloorDoubles, ColorMap_256x3, Input::colorMap256);
BENCHMARK_CAPTURE(BM_ValidateColorMap, ColorMap_1e7x3, Input::colorMapLarge);
BENCHMARK_CAPTURE(BM_TwinColorMap, ColorMap_1e7x3, Input::colorMapLarge);
BENCHMARK_CAPTURE(BM_FloorDoubles, ColorMap_1e7x3, Input::colorMapLarge);
BENCHMARK_CAPTURE(BM_ValidatePrimitiveVertexData, PrimitiveVertexData_3x1e7, Input::vertexDataLarge);
BENCHMARK_CAPTURE(BM_TwinPrimitiveVertexData, PrimitiveVertexData_3x1e7, Input::vertexDataLarge);
BENCHMARK_CAPTURE(BM_FloorSingles, PrimitiveVertexData_3x1e7, Input::vertexDataLarge);
BENCHMARK_CAPTURE(BM_ValidateTick, Tick_1x1e7, Input::tickLarge);
BENCHMARK_CAPTURE(BM_TwinTick, Tick_1x1e7, Input::tickLarge);
BENCHMARK_CAPTURE(BM_FloorDoubles, Tick_1x1e7, Input::tickLarge);
BENCHMARK_CAPTURE(BM_SetAndReadBack, ColorMap_256x3, Input::colorMap256);
BENCHMARK_CAPTURE(BM_SetAndReadBack, ColorMap_1e7x3, Input::colorMapLarge);

}  // namespace
