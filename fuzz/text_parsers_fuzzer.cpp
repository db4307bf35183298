// guilib's matrix text parsers against a reference reader written separately from them: the same
// texts must be accepted with the same shape, and every number must have the value that strtod
// and strtof (floating classes) or std::from_chars (written integers) give it. The first byte of
// the input picks the class and shape asked of parse_mxn; the rest is the text.
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "arraylib/zxdispatch.h"
#include "fuzz_support.h"
#include "guilib/array_exceptions.h"
#include "guilib/auto_ptr.h"
#include "guilib/convert_from_string_utils.h"

namespace {

namespace parsers = gui_objects::convert_from_string_utils;

// The numbers of matrix text as written, row by row, or nullopt when the text is refused.
using Rows = std::vector<std::vector<std::string>>;
using orbfuzz::fail;

bool isBlank(char c) { return c == ' ' || c == '\t'; }
bool isSpace(char c) { return isBlank(c) || c == '\n' || c == '\r'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool equalsIgnoringCase(std::string_view text, std::string_view word) {
  if (text.size() != word.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (std::tolower(static_cast<unsigned char>(text[i])) != word[i]) return false;
  }
  return true;
}

// The length of the number at the start of text, or 0: a sign, then NaN or Inf in any case, or
// digits with an optional point and fraction (at least one digit in all) and an optional exponent.
std::size_t numberLength(std::string_view text) {
  std::size_t i = 0;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
  if (equalsIgnoringCase(text.substr(i, 3), "nan") || equalsIgnoringCase(text.substr(i, 3), "inf")) return i + 3;
  std::size_t digits = 0;
  while (i < text.size() && isDigit(text[i])) ++i, ++digits;
  if (i < text.size() && text[i] == '.') {
    ++i;
    while (i < text.size() && isDigit(text[i])) ++i, ++digits;
  }
  if (digits == 0) return 0;
  if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
    std::size_t j = i + 1;
    if (j < text.size() && (text[j] == '+' || text[j] == '-')) ++j;
    const std::size_t exponentStart = j;
    while (j < text.size() && isDigit(text[j])) ++j;
    if (j == exponentStart) return 0;
    i = j;
  }
  return i;
}

// Reads the text as the parsers' comment describes it, from scratch.
std::optional<Rows> referenceRead(std::string_view text) {
  std::size_t begin = 0;
  while (begin < text.size() && isSpace(text[begin])) ++begin;
  std::size_t end = text.size();
  while (end > begin && isSpace(text[end - 1])) --end;
  std::string_view body = text.substr(begin, end - begin);
  if (!body.empty() && body.front() == '[') {
    if (body.size() < 2 || body.back() != ']') return std::nullopt;
    body = body.substr(1, body.size() - 2);
  }
  if (body.find_first_of("[]") != std::string_view::npos) return std::nullopt;
  std::size_t i = 0;
  while (i < body.size() && isSpace(body[i])) ++i;
  Rows rows;
  if (i == body.size()) return rows;
  std::vector<std::string> row;
  for (;;) {
    const std::size_t length = numberLength(body.substr(i));
    if (length == 0) return std::nullopt;
    row.emplace_back(body.substr(i, length));
    i += length;
    std::size_t blanks = 0, commas = 0, semicolons = 0, lineBreaks = 0;
    for (; i < body.size(); ++i) {
      const char c = body[i];
      if (isBlank(c)) {
        ++blanks;
      } else if (c == ',') {
        ++commas;
      } else if (c == ';') {
        ++semicolons;
      } else if (c == '\n') {
        ++lineBreaks;
      } else if (c == '\r') {
        ++lineBreaks;
        if (i + 1 < body.size() && body[i + 1] == '\n') ++i;
      } else {
        break;
      }
    }
    if (i == body.size()) {
      if (commas > 0 || semicolons > 1) return std::nullopt;
      rows.push_back(std::move(row));
      break;
    }
    if (semicolons + lineBreaks > 0) {
      if (commas > 0 || semicolons > 1 || lineBreaks > 1) return std::nullopt;
      rows.push_back(std::move(row));
      row.clear();
    } else if (commas > 1 || blanks + commas == 0) {
      return std::nullopt;
    }
  }
  for (const auto& r : rows) {
    if (r.size() != rows.front().size()) return std::nullopt;
  }
  return rows;
}

double referenceDouble(const std::string& number) { return std::strtod(number.c_str(), nullptr); }

bool sameFloating(double a, double b) {
  return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

std::size_t rowCount(const Rows& rows) { return rows.size(); }
std::size_t colCount(const Rows& rows) { return rows.empty() ? 0 : rows.front().size(); }

// The element a number becomes in class T, or nullopt where the class refuses it (NaN as logical).
template <class T>
std::optional<T> referenceElement(const std::string& number) {
  if constexpr (std::is_same_v<T, zxLogical>) {
    const double value = referenceDouble(number);
    if (std::isnan(value)) return std::nullopt;
    return value != 0;
  } else if constexpr (std::is_same_v<T, float>) {
    return std::strtof(number.c_str(), nullptr);
  } else if constexpr (std::is_same_v<T, double>) {
    return referenceDouble(number);
  } else {
    constexpr T kLowest = std::numeric_limits<T>::min();
    constexpr T kHighest = std::numeric_limits<T>::max();
    const bool negative = number[0] == '-';
    std::string_view digits(number);
    if (digits[0] == '+' || digits[0] == '-') digits.remove_prefix(1);
    if (digits.find_first_not_of("0123456789") == std::string_view::npos) {
      // A written integer: exact, saturating at the class's limits.
      const std::string signedDigits = (negative ? "-" : "") + std::string(digits);
      if (std::is_unsigned_v<T> && negative) {
        return digits.find_first_not_of('0') == std::string_view::npos ? T(0) : kLowest;
      }
      T value{};
      const auto [end, error] = std::from_chars(signedDigits.data(), signedDigits.data() + signedDigits.size(), value);
      if (error == std::errc::result_out_of_range) return negative ? kLowest : kHighest;
      if (error != std::errc() || end != signedDigits.data() + signedDigits.size()) fail("from_chars refused", number);
      return value;
    }
    const double value = referenceDouble(number);
    if (std::isnan(value)) return T(0);
    const double rounded = std::round(value);
    if (rounded <= static_cast<double>(kLowest)) return kLowest;
    if (rounded >= static_cast<double>(kHighest)) return kHighest;
    return static_cast<T>(rounded);
  }
}

// A fixed-shape parser's numbers against the reference's: accepted exactly when the reference reads
// that shape, with the same values.
template <class Parse>
void checkFixed(const char* name, const std::string& text, const std::optional<Rows>& reference, std::size_t rows,
                std::size_t cols, Parse&& parse) {
  std::optional<std::vector<double>> values;
  try {
    values = parse();
  } catch (const parsers::ParseException&) {
  }
  const bool expected = reference && rowCount(*reference) == rows && colCount(*reference) == cols;
  if (values.has_value() != expected) {
    fail(std::string(name) + (expected ? " refused text the reference reads" : " read text the reference refuses"),
         text);
  }
  if (!values) return;
  for (std::size_t r = 0; r < rows; ++r) {
    for (std::size_t c = 0; c < cols; ++c) {
      const std::string& number = (*reference)[r][c];
      if (!sameFloating((*values)[r * cols + c], referenceDouble(number))) {
        fail(std::string(name) + " read " + number + " differently from strtod", text);
      }
    }
  }
}

std::vector<double> coordinates(const gui_objects::Point2d& p) { return {p.x, p.y}; }
std::vector<double> coordinates(const gui_objects::Point3d& p) { return {p.x, p.y, p.z}; }
std::vector<double> coordinates(const gui_objects::Point4d& p) { return {p.x, p.y, p.z, p.w}; }

constexpr zxClassID kClasses[] = {zxDOUBLE_CLASS, zxSINGLE_CLASS, zxINT8_CLASS,   zxUINT8_CLASS,
                                  zxINT16_CLASS,  zxUINT16_CLASS, zxINT32_CLASS,  zxUINT32_CLASS,
                                  zxINT64_CLASS,  zxUINT64_CLASS, zxLOGICAL_CLASS, zxCHAR_CLASS};

// parse_mxn for one class and shape against the reference.
void checkMxn(const std::string& text, const std::optional<Rows>& reference, zxClassID classID, zxSize m, zxSize n) {
  gui_objects::ZxArrayPtr array;
  bool wrongClass = false;
  try {
    array.reset(parsers::parse_mxn(text.c_str(), m, n, classID));
  } catch (const parsers::ParseException&) {
  } catch (const gui_objects::InvalidArrayClassException&) {
    wrongClass = true;
  }
  const bool valueClass = zx::dispatchNumericOrLogical(classID, [](auto) {});
  if (!valueClass) {
    if (!wrongClass) fail("parse_mxn took a class that is neither numeric nor logical", text);
    return;
  }
  if (wrongClass) fail("parse_mxn refused a numeric or logical class", text);
  bool expected = reference && ((rowCount(*reference) == m && colCount(*reference) == n) ||
                                (rowCount(*reference) == 0 && (m == 0 || n == 0)));
  zx::dispatchNumericOrLogical(classID, [&](auto type) {
    using T = typename decltype(type)::type;
    if (expected) {
      for (const auto& row : *reference) {
        for (const auto& number : row) {
          if (!referenceElement<T>(number)) expected = false;
        }
      }
    }
    if ((array != nullptr) != expected) {
      fail(std::string("parse_mxn as ") + std::to_string(classID) + " " + std::to_string(m) + "x" + std::to_string(n) +
               (expected ? " refused text the reference reads" : " read text the reference refuses"),
           text);
    }
    if (!array) return;
    if (zxGetClassID(array.get()) != classID || zxGetM(array.get()) != m || zxGetN(array.get()) != n) {
      fail("parse_mxn made an array of another class or shape", text + " -> " + orbfuzz::describeArray(array.get()));
    }
    const T* values = static_cast<const T*>(zxGetData(array.get()));
    for (zxSize r = 0; r < rowCount(*reference); ++r) {
      for (zxSize c = 0; c < colCount(*reference); ++c) {
        const std::string& number = (*reference)[r][c];
        const T want = *referenceElement<T>(number);
        const T got = values[r + c * m];
        bool same = std::memcmp(&want, &got, sizeof(T)) == 0;
        if constexpr (std::is_floating_point_v<T>) same = same || (std::isnan(want) && std::isnan(got));
        if (!same) fail("parse_mxn read " + number + " differently from the reference in class " +
                            std::to_string(classID), text);
      }
    }
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  orbfuzz::ByteReader input(data, size);
  const std::uint8_t choice = input.byte();
  // The parsers take NUL-terminated text: a NUL in the input ends it there.
  std::string text(input.rest());
  text = text.c_str();
  const std::optional<Rows> reference = referenceRead(text);
  const char* const p = text.c_str();

  checkFixed("parse_double_scalar", text, reference, 1, 1, [&] {
    return std::vector<double>{parsers::parse_double_scalar(p)};
  });
  checkFixed("parse_1x2_double", text, reference, 1, 2, [&] { return coordinates(parsers::parse_1x2_double(p)); });
  checkFixed("parse_1x3_double", text, reference, 1, 3, [&] { return coordinates(parsers::parse_1x3_double(p)); });
  checkFixed("parse_1x4_double", text, reference, 1, 4, [&] { return coordinates(parsers::parse_1x4_double(p)); });
  checkFixed("try_parse_1x3_double", text, reference, 1, 3, [&] {
    const auto point = parsers::try_parse_1x3_double(p);
    if (!point) throw parsers::ParseException("refused");
    return coordinates(*point);
  });
  checkFixed("try_parse_1x4_double", text, reference, 1, 4, [&] {
    const auto point = parsers::try_parse_1x4_double(p);
    if (!point) throw parsers::ParseException("refused");
    return coordinates(*point);
  });
  checkFixed("parse_2x3_double", text, reference, 2, 3, [&] {
    const gui_objects::BoundingVolume box = parsers::parse_2x3_double(p);
    std::vector<double> values = coordinates(box.getMin());
    const std::vector<double> max = coordinates(box.getMax());
    values.insert(values.end(), max.begin(), max.end());
    return values;
  });
  checkFixed("parse_4x4_double", text, reference, 4, 4, [&] {
    const gui_objects::Matrix4x4d matrix = parsers::parse_4x4_double(p);
    std::vector<double> values;
    for (int r = 0; r < 4; ++r) {
      for (int c = 0; c < 4; ++c) values.push_back(matrix(r, c));
    }
    return values;
  });

  zxSize rows = 77, cols = 88;
  try {
    parsers::parse_array_dimensions(p, rows, cols);
    if (!reference) fail("parse_array_dimensions read text the reference refuses", text);
    ORB_FUZZ_CHECK(rows == rowCount(*reference) && cols == colCount(*reference), text);
  } catch (const parsers::ParseException&) {
    if (reference) fail("parse_array_dimensions refused text the reference reads", text);
    ORB_FUZZ_CHECK(rows == 77 && cols == 88, "the dimensions changed on a refusal: " + text);
  }

  // parse_mxn in the class the first byte picks: at the text's own shape, and at a shape one off.
  const zxClassID classID = kClasses[choice % std::size(kClasses)];
  const zxSize m = reference ? rowCount(*reference) : 1;
  const zxSize n = reference ? colCount(*reference) : 1;
  checkMxn(text, reference, classID, m, n);
  if ((choice & 0x80) != 0) checkMxn(text, reference, classID, (choice & 0x40) != 0 ? m + 1 : m, n == 0 ? 0 : n - 1);
  return 0;
}
