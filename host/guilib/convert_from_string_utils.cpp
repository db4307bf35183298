// The matrix text scanner, the conversion of each written number to an element type, and the
// parsers built on them.
#include "guilib/convert_from_string_utils.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>
#include <type_traits>

#include "foundationlib/except.h"
#include "guilib/array_dispatch.h"
#include "guilib/array_exceptions.h"
#include "guilib/auto_ptr.h"

namespace gui_objects::convert_from_string_utils {

const char* ParseException::what() const noexcept { return reason_; }

namespace {

constexpr const char* kWrongShape = "matrix text has the wrong shape";
constexpr const char* kMalformedNumber = "matrix text has a malformed number";

enum class NumberKind { Integer, Decimal, NaN, Infinity };

// One number as written, its sign apart, so that each element type can convert it exactly.
struct NumberToken {
  std::string_view digits;  // "12" or "2.5e3"; empty for NaN and Inf
  NumberKind kind = NumberKind::Integer;
  bool negative = false;
};

struct Shape {
  std::size_t rows = 0;
  std::size_t cols = 0;
};

// What lies between two numbers (or a number and the end), counted by kind.
struct SeparatorRun {
  std::size_t blanks = 0;
  std::size_t commas = 0;
  std::size_t semicolons = 0;
  std::size_t lineBreaks = 0;
};

constexpr bool isBlank(char c) { return c == ' ' || c == '\t'; }
constexpr bool isSpace(char c) { return isBlank(c) || c == '\n' || c == '\r'; }
constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }
constexpr char toLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
constexpr bool mayStartNumber(char c) {
  return isDigit(c) || c == '+' || c == '-' || c == '.' || toLower(c) == 'n' || toLower(c) == 'i';
}

const char* skipSpace(const char* p) {
  while (isSpace(*p)) ++p;
  return p;
}

const char* skipDigits(const char* p) {
  while (isDigit(*p)) ++p;
  return p;
}

// Whether p starts with the lowercase word in any case. The text's terminating NUL ends the match.
bool startsWithWord(const char* p, std::string_view word) {
  for (const char c : word) {
    if (toLower(*p++) != c) return false;
  }
  return true;
}

const char* refusalFor(char c) {
  if (c == '\0') return "matrix text lacks its closing bracket";
  if (c == '[' || c == ']') return "matrix text has unbalanced brackets";
  if (mayStartNumber(c)) return kMalformedNumber;
  return "matrix text has an unexpected character";
}

// Reads one number at p into token and returns its end, or null when p does not start one.
const char* scanNumber(const char* p, NumberToken& token) {
  token.negative = *p == '-';
  if (*p == '+' || *p == '-') ++p;
  if (startsWithWord(p, "nan") || startsWithWord(p, "inf")) {
    token.kind = toLower(*p) == 'n' ? NumberKind::NaN : NumberKind::Infinity;
    token.digits = {};
    return p + 3;
  }
  const char* const start = p;
  p = skipDigits(p);
  bool hasDigits = p != start;
  bool decimal = false;
  if (*p == '.') {
    const char* const fraction = p + 1;
    p = skipDigits(fraction);
    hasDigits = hasDigits || p != fraction;
    decimal = true;
  }
  if (!hasDigits) return nullptr;
  if (*p == 'e' || *p == 'E') {
    const char* exponent = p + 1;
    if (*exponent == '+' || *exponent == '-') ++exponent;
    p = skipDigits(exponent);
    if (p == exponent) return nullptr;
    decimal = true;
  }
  token.kind = decimal ? NumberKind::Decimal : NumberKind::Integer;
  token.digits = std::string_view(start, static_cast<std::size_t>(p - start));
  return p;
}

const char* scanSeparators(const char* p, SeparatorRun& run) {
  run = {};
  for (;; ++p) {
    if (isBlank(*p)) {
      ++run.blanks;
    } else if (*p == ',') {
      ++run.commas;
    } else if (*p == ';') {
      ++run.semicolons;
    } else if (*p == '\n') {
      ++run.lineBreaks;
    } else if (*p == '\r') {
      ++run.lineBreaks;
      if (p[1] == '\n') ++p;
    } else {
      return p;
    }
  }
}

// Closes a row of length numbers; the refusal when its length differs from the rows before it.
const char* endRow(Shape& shape, std::size_t length) {
  if (shape.rows == 0) {
    shape.cols = length;
  } else if (length != shape.cols) {
    return "matrix text has rows of unequal length";
  }
  ++shape.rows;
  return nullptr;
}

// Walks matrix text, handing each number with its row and column to onNumber in reading order, and
// fills shape. Returns why the text is refused, or null; onNumber returns a refusal of its own or
// null, and may see a prefix of a refused text. Raises nothing itself, so the try-parsers stay cheap.
template <class OnNumber>
const char* scanMatrix(const char* text, Shape& shape, OnNumber&& onNumber) {
  if (text == nullptr) return "no matrix text";
  const char* p = skipSpace(text);
  const bool bracketed = *p == '[';
  if (bracketed) p = skipSpace(p + 1);
  const char closing = bracketed ? ']' : '\0';
  shape = {};
  if (*p != closing) {
    std::size_t col = 0;
    NumberToken token;
    SeparatorRun run;
    for (;;) {
      const char* const end = scanNumber(p, token);
      if (end == nullptr) return refusalFor(*p);
      if (const char* refusal = onNumber(token, shape.rows, col++)) return refusal;
      p = scanSeparators(end, run);
      const bool rowEnds = run.semicolons + run.lineBreaks > 0;
      if (*p == closing) {
        if (run.commas > 0 || run.semicolons > 1) return "matrix text ends with a stray separator";
        if (const char* refusal = endRow(shape, col)) return refusal;
        break;
      }
      if (!mayStartNumber(*p)) return refusalFor(*p);
      if (!rowEnds) {
        if (run.commas > 1) return "matrix text has an empty element";
        if (run.blanks + run.commas == 0) return "matrix text has numbers without a separator";
      } else {
        if (run.commas > 0 || run.semicolons > 1 || run.lineBreaks > 1) return "matrix text has an empty row";
        if (const char* refusal = endRow(shape, col)) return refusal;
        col = 0;
      }
    }
  }
  if (bracketed) p = skipSpace(p + 1);
  if (*p != '\0') return "matrix text has text after its end";
  return nullptr;
}

// scanMatrix for callers whose onNumber returns nothing and raises its own refusals; raises
// ParseException for the scanner's.
template <class OnNumber>
Shape scanMatrixOrThrow(const char* text, OnNumber&& onNumber) {
  Shape shape;
  const char* const refusal = scanMatrix(text, shape, [&](const NumberToken& token, std::size_t row, std::size_t col) {
    onNumber(token, row, col);
    return static_cast<const char*>(nullptr);
  });
  if (refusal != nullptr) throw ParseException(refusal);
  return shape;
}

// Whether a decimal that from_chars found out of range is too large rather than too small: the
// power of ten of its leading significant digit is positive. Exponents are far from zero there.
bool exceedsRange(std::string_view digits) {
  std::int64_t integerDigits = 0;
  std::int64_t fractionZeros = 0;
  bool inFraction = false;
  bool significant = false;
  std::size_t i = 0;
  for (; i < digits.size() && digits[i] != 'e' && digits[i] != 'E'; ++i) {
    const char c = digits[i];
    if (c == '.') {
      inFraction = true;
    } else if (!significant && c == '0') {
      if (inFraction) ++fractionZeros;
    } else {
      significant = true;
      if (!inFraction) ++integerDigits;
    }
  }
  std::int64_t power = integerDigits > 0 ? integerDigits - 1 : -(fractionZeros + 1);
  if (i < digits.size()) {
    // The written exponent saturates well past any floating-point range.
    constexpr std::int64_t kCap = 1'000'000'000;
    std::size_t k = i + 1;
    const bool negative = digits[k] == '-';
    if (digits[k] == '+' || digits[k] == '-') ++k;
    std::int64_t exponent = 0;
    for (; k < digits.size(); ++k) exponent = std::min<std::int64_t>(exponent * 10 + (digits[k] - '0'), kCap);
    power += negative ? -exponent : exponent;
  }
  return power > 0;
}

// The token's value in F, or nullopt for digits from_chars cannot read (the scanner admits none).
template <class F>
std::optional<F> floatingOf(const NumberToken& token) noexcept {
  F magnitude = 0;
  switch (token.kind) {
    case NumberKind::NaN: magnitude = std::numeric_limits<F>::quiet_NaN(); break;
    case NumberKind::Infinity: magnitude = std::numeric_limits<F>::infinity(); break;
    case NumberKind::Integer:
    case NumberKind::Decimal: {
      const char* const first = token.digits.data();
      const char* const last = first + token.digits.size();
      const auto [end, error] = std::from_chars(first, last, magnitude);
      if (error == std::errc::result_out_of_range) {
        magnitude = exceedsRange(token.digits) ? std::numeric_limits<F>::infinity() : F(0);
      } else if (error != std::errc() || end != last) {
        return std::nullopt;
      }
      break;
    }
  }
  return token.negative ? -magnitude : magnitude;
}

template <class F>
F toFloating(const NumberToken& token) {
  const std::optional<F> value = floatingOf<F>(token);
  if (!value) throw ParseException(kMalformedNumber);
  return *value;
}

template <class I>
I roundToInteger(double value) {
  constexpr I kLowest = std::numeric_limits<I>::min();
  constexpr I kHighest = std::numeric_limits<I>::max();
  if (std::isnan(value)) return 0;
  const double rounded = std::round(value);
  // Both limits convert to doubles exactly or round up to a power of two, so every value strictly
  // between them fits in I.
  if (rounded <= static_cast<double>(kLowest)) return kLowest;
  if (rounded >= static_cast<double>(kHighest)) return kHighest;
  return static_cast<I>(rounded);
}

template <class I>
I toInteger(const NumberToken& token) {
  constexpr I kLowest = std::numeric_limits<I>::min();
  constexpr I kHighest = std::numeric_limits<I>::max();
  if (token.kind != NumberKind::Integer) return roundToInteger<I>(toFloating<double>(token));
  // Written integers are read exactly, so 64-bit values beyond a double's precision keep every digit.
  std::uint64_t magnitude = 0;
  const char* const first = token.digits.data();
  const char* const last = first + token.digits.size();
  const auto [end, error] = std::from_chars(first, last, magnitude);
  if (error == std::errc::result_out_of_range) return token.negative ? kLowest : kHighest;
  if (error != std::errc() || end != last) throw ParseException(kMalformedNumber);
  if (!token.negative) return magnitude <= static_cast<std::uint64_t>(kHighest) ? static_cast<I>(magnitude) : kHighest;
  if constexpr (std::is_unsigned_v<I>) {
    return 0;
  } else {
    if (magnitude == 0) return 0;
    // -(magnitude - 1) - 1 reaches the most negative value without overflowing on the way.
    const std::uint64_t belowMinusOne = magnitude - 1;
    if (belowMinusOne > static_cast<std::uint64_t>(kHighest)) return kLowest;
    return static_cast<I>(-static_cast<std::int64_t>(belowMinusOne) - 1);
  }
}

template <class T>
T convertTo(const NumberToken& token) {
  if constexpr (std::is_same_v<T, zxLogical>) {
    const double value = toFloating<double>(token);
    if (std::isnan(value)) throw ParseException("NaN cannot be converted to logical");
    return value != 0;
  } else if constexpr (std::is_floating_point_v<T>) {
    return toFloating<T>(token);
  } else {
    return toInteger<T>(token);
  }
}

// Reads exactly Rows rows of Cols numbers into values, row by row; returns the refusal or null.
template <std::size_t Rows, std::size_t Cols>
const char* scanFixed(const char* text, std::array<double, Rows * Cols>& values) noexcept {
  Shape shape;
  const char* const refusal =
      scanMatrix(text, shape, [&values](const NumberToken& token, std::size_t row, std::size_t col) -> const char* {
        if (row >= Rows || col >= Cols) return kWrongShape;
        const std::optional<double> value = floatingOf<double>(token);
        if (!value) return kMalformedNumber;
        values[row * Cols + col] = *value;
        return nullptr;
      });
  if (refusal != nullptr) return refusal;
  return shape.rows == Rows && shape.cols == Cols ? nullptr : kWrongShape;
}

template <std::size_t Rows, std::size_t Cols>
std::array<double, Rows * Cols> parseFixed(const char* text) {
  std::array<double, Rows * Cols> values{};
  if (const char* refusal = scanFixed<Rows, Cols>(text, values)) throw ParseException(refusal);
  return values;
}

template <std::size_t Cols>
std::optional<std::array<double, Cols>> tryParseRow(const char* text) noexcept {
  std::array<double, Cols> values{};
  if (scanFixed<1, Cols>(text, values) != nullptr) return std::nullopt;
  return values;
}

}  // namespace

double parse_double_scalar(const char* text) {
  // The common case, one decimal number with white space around it, is read by from_chars directly;
  // the matrix scanner would read it alike. A sign other than '-', a name (NaN, Inf), a number out of
  // range and anything else take the scanner's path and its refusals.
  if (text != nullptr) {
    const char* const first = skipSpace(text);
    const char* const digits = *first == '-' ? first + 1 : first;
    if (isDigit(*digits) || (*digits == '.' && isDigit(digits[1]))) {
      double value = 0.0;
      const auto [end, error] = std::from_chars(first, first + std::strlen(first), value);
      if (error == std::errc() && *skipSpace(end) == '\0') return value;
    }
  }
  return parseFixed<1, 1>(text)[0];
}

Point2d parse_1x2_double(const char* text) {
  const auto v = parseFixed<1, 2>(text);
  return {v[0], v[1]};
}

Point3d parse_1x3_double(const char* text) {
  const auto v = parseFixed<1, 3>(text);
  return {v[0], v[1], v[2]};
}

std::optional<Point3d> try_parse_1x3_double(const char* text) noexcept {
  const auto v = tryParseRow<3>(text);
  if (!v) return std::nullopt;
  return Point3d{(*v)[0], (*v)[1], (*v)[2]};
}

std::optional<Point4d> try_parse_1x4_double(const char* text) noexcept {
  const auto v = tryParseRow<4>(text);
  if (!v) return std::nullopt;
  return Point4d{(*v)[0], (*v)[1], (*v)[2], (*v)[3]};
}

Point4d parse_1x4_double(const char* text) {
  const auto v = parseFixed<1, 4>(text);
  return {v[0], v[1], v[2], v[3]};
}

BoundingVolume parse_2x3_double(const char* text) {
  const auto v = parseFixed<2, 3>(text);
  return {{v[0], v[1], v[2]}, {v[3], v[4], v[5]}};
}

Matrix4x4d parse_4x4_double(const char* text) {
  const auto v = parseFixed<4, 4>(text);
  Matrix4x4d matrix;
  for (int row = 0; row < 4; ++row) {
    for (int col = 0; col < 4; ++col) matrix(row, col) = v[static_cast<std::size_t>(row * 4 + col)];
  }
  return matrix;
}

void parse_array_dimensions(const char* text, zxSize& rows, zxSize& cols) {
  const Shape shape = scanMatrixOrThrow(text, [](const NumberToken&, std::size_t, std::size_t) {});
  rows = shape.rows;
  cols = shape.cols;
}

zxArray* parse_mxn(const char* text, zxSize m, zxSize n, zxClassID classID) {
  if (text == nullptr) throw ParseException("no matrix text");
  AutoPtr<zxArray, ZxArrayDtor> array;
  const bool supported = dispatchNumericOrLogical(classID, [&](auto type) {
    using T = typename decltype(type)::type;
    array.reset(std::is_same_v<T, zxLogical> ? zxCreateLogicalMatrix(m, n)
                                             : zxCreateNumericMatrix(m, n, classID, zxREAL));
    if (!array) throw fl::except::bad_alloc();
    T* const values = static_cast<T*>(zxGetWritableData(array.get()));
    const Shape shape = scanMatrixOrThrow(text, [&](const NumberToken& token, std::size_t row, std::size_t col) {
      if (row >= m || col >= n) throw ParseException(kWrongShape);
      values[row + col * m] = convertTo<T>(token);
    });
    const bool emptyForEmpty = shape.rows == 0 && (m == 0 || n == 0);
    if (!emptyForEmpty && (shape.rows != m || shape.cols != n)) throw ParseException(kWrongShape);
  });
  if (!supported) throw InvalidArrayClassException();
  return array.release();
}

}  // namespace gui_objects::convert_from_string_utils
