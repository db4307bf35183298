// Benchmarks of color assignment, each beside a plain twin that does the same work without the
// library: the same lookup or parse, the same checks, and a value block of the same size.
//   build/bin/colors_bench --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
// The ratio of each pair (BM_Color/... to BM_Twin/...) is the library's cost over the work itself.
#include <benchmark/benchmark.h>

#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

#include "arraylib/zxarray.h"
#include "datatype/color/styled_colors.h"
#include "datatype/library.h"
#include "objsys/builtin_types.h"

namespace {

using namespace graphics::datatype;

// The library, started once for the process, as a host starts it.
void startLibrary() {
  static const bool started = [] {
    objsys::registerBuiltinTypes();
    KXInitialize_orbdatatypes(nullptr);
    return true;
  }();
  benchmark::DoNotOptimize(started);
}

// One RGBAColor from text, the value block's allocation and release included.
void textToColor(benchmark::State& state, const char* text) {
  startLibrary();
  const RGBAColorSC conversion;
  RGBAColorDataType& type = *RGBAColorDataType::getType();
  const objsys::COSValue input(text);
  for (auto _ : state) {
    try {
      const objsys::COSValue value = conversion.from(input);
      benchmark::DoNotOptimize(value);
      type.destroy(value);
    } catch (const std::exception& refusal) {
      benchmark::DoNotOptimize(&refusal);
    }
  }
}

void arrayToColor(benchmark::State& state, zxArray* (*makeArray)()) {
  startLibrary();
  zxArray* array = makeArray();
  const RGBAColorMC conversion;
  RGBAColorDataType& type = *RGBAColorDataType::getType();
  for (auto _ : state) {
    const objsys::COSValue value = conversion.from(objsys::COSValue(array));
    benchmark::DoNotOptimize(value);
    type.destroy(value);
  }
  zxDestroyArray(array);
}

// The twin's color: four doubles and a style, as large as the library's value block.
struct PlainColor {
  double rgba[4];
  int style;
};

PlainColor* newPlainColor(double r, double g, double b, double a) {
  for (const double c : {r, g, b, a}) {
    if (!(c >= 0.0 && c <= 1.0)) throw std::range_error("bad color");
  }
  auto* color = static_cast<PlainColor*>(std::calloc(1, sizeof(PlainColor)));
  *color = {{r, g, b, a}, 1};
  return color;
}

// A lowercased prefix lookup in an ordered map, as a plain program would write it.
const std::map<std::string, PlainColor, std::less<>>& plainNames() {
  static const std::map<std::string, PlainColor, std::less<>> names = {
      {"b", {{0, 0, 1, 1}, 1}},     {"bl", {{0, 0, 1, 1}, 1}},   {"black", {{0, 0, 0, 1}, 1}},
      {"blue", {{0, 0, 1, 1}, 1}},  {"cyan", {{0, 1, 1, 1}, 1}}, {"g", {{0, 1, 0, 1}, 1}},
      {"green", {{0, 1, 0, 1}, 1}}, {"k", {{0, 0, 0, 1}, 1}},    {"magenta", {{1, 0, 1, 1}, 1}},
      {"red", {{1, 0, 0, 1}, 1}},   {"w", {{1, 1, 1, 1}, 1}},    {"white", {{1, 1, 1, 1}, 1}},
      {"yellow", {{1, 1, 0, 1}, 1}}};
  return names;
}

// Up to four numbers separated by blanks; the count read, or -1 for anything else.
int plainNumbers(const char* text, double (&numbers)[4]) {
  int count = 0;
  const char* p = text;
  for (;;) {
    while (*p == ' ') ++p;
    if (*p == '\0') return count;
    if (count == 4) return -1;
    char* end = nullptr;
    numbers[count++] = std::strtod(p, &end);
    if (end == p) return -1;
    p = end;
  }
}

PlainColor* plainTextToColor(const char* text) {
  char lower[64];
  std::size_t n = 0;
  for (; text[n] != '\0' && n + 1 < sizeof lower; ++n) lower[n] = static_cast<char>(std::tolower(text[n]));
  lower[n] = '\0';
  const std::string_view name(lower, n);
  const auto& names = plainNames();
  const auto found = names.lower_bound(name);
  if (found != names.end() && found->first.starts_with(name)) {
    const double* c = found->second.rgba;
    return newPlainColor(c[0], c[1], c[2], 1.0);
  }
  double numbers[4];
  const int count = plainNumbers(lower, numbers);
  if (count == 3) return newPlainColor(numbers[0], numbers[1], numbers[2], 1.0);
  if (count == 4) return newPlainColor(numbers[0], numbers[1], numbers[2], numbers[3]);
  throw std::invalid_argument("not a color");
}

void plainText(benchmark::State& state, const char* text) {
  for (auto _ : state) {
    // The text is unknown to the compiler, as it is to the library: nothing about it folded away.
    benchmark::DoNotOptimize(text);
    try {
      PlainColor* color = plainTextToColor(text);
      benchmark::DoNotOptimize(color);
      std::free(color);
    } catch (const std::exception& refusal) {
      benchmark::DoNotOptimize(&refusal);
    }
  }
}

template <class T>
void plainArray(benchmark::State& state, zxArray* (*makeArray)(), double scale) {
  zxArray* array = makeArray();
  for (auto _ : state) {
    const T* data = static_cast<const T*>(zxGetData(array));
    PlainColor* color = newPlainColor(data[0] / scale, data[1] / scale, data[2] / scale, 1.0);
    benchmark::DoNotOptimize(color);
    std::free(color);
  }
  zxDestroyArray(array);
}

void plainDoubles(benchmark::State& state, zxArray* (*makeArray)()) { plainArray<double>(state, makeArray, 1.0); }
void plainBytes(benchmark::State& state, zxArray* (*makeArray)()) { plainArray<std::uint8_t>(state, makeArray, 255.0); }

zxArray* doubleRow() {
  zxArray* array = zxCreateDoubleMatrix(1, 3, zxREAL);
  zxGetWritablePr(array)[0] = 1.0;
  return array;
}

zxArray* byteRow() {
  zxArray* array = zxCreateNumericMatrix(1, 3, zxUINT8_CLASS, zxREAL);
  static_cast<std::uint8_t*>(zxGetWritableData(array))[0] = 255;
  return array;
}

}  // namespace

BENCHMARK_CAPTURE(textToColor, name_red, "red")->Name("BM_Color/name_red");
BENCHMARK_CAPTURE(plainText, name_red, "red")->Name("BM_Twin/name_red");
BENCHMARK_CAPTURE(textToColor, short_r, "r")->Name("BM_Color/short_r");
BENCHMARK_CAPTURE(plainText, short_r, "r")->Name("BM_Twin/short_r");
// Blanks around a name make it no color name: both sides refuse it.
BENCHMARK_CAPTURE(textToColor, blanks_RED_refused, "  RED ")->Name("BM_Color/blanks_RED_refused");
BENCHMARK_CAPTURE(plainText, blanks_RED_refused, "  RED ")->Name("BM_Twin/blanks_RED_refused");
BENCHMARK_CAPTURE(textToColor, three_numbers, "1 0 0")->Name("BM_Color/three_numbers");
BENCHMARK_CAPTURE(plainText, three_numbers, "1 0 0")->Name("BM_Twin/three_numbers");
BENCHMARK_CAPTURE(textToColor, four_numbers, "0 0 0 0.5")->Name("BM_Color/four_numbers");
BENCHMARK_CAPTURE(plainText, four_numbers, "0 0 0 0.5")->Name("BM_Twin/four_numbers");
BENCHMARK_CAPTURE(arrayToColor, double_1x3, &doubleRow)->Name("BM_Color/double_1x3");
BENCHMARK_CAPTURE(plainDoubles, double_1x3, &doubleRow)->Name("BM_Twin/double_1x3");
BENCHMARK_CAPTURE(arrayToColor, uint8_1x3, &byteRow)->Name("BM_Color/uint8_1x3");
BENCHMARK_CAPTURE(plainBytes, uint8_1x3, &byteRow)->Name("BM_Twin/uint8_1x3");
