// The literal reader: a recursive-descent parser over the text, with the concatenation of brackets
// and the cells of braces.
#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "cmdlanglib/literal.h"
#include "cmdlanglib/literal_internal.h"
#include "foundationlib/i18n/unicode.h"

namespace cmdlang {

using namespace literal_detail;

namespace {

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
  });
}

// A number token read as a float type; out-of-range text becomes infinity or zero as strtod gives.
template <class F>
F readFloat(std::string_view token) {
  if (!token.empty() && token.front() == '+') token.remove_prefix(1);
  F value{};
  const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), value);
  if (error == std::errc::result_out_of_range) {
    const std::string copy(token);
    if constexpr (std::is_same_v<F, float>) return std::strtof(copy.c_str(), nullptr);
    return std::strtod(copy.c_str(), nullptr);
  }
  return value;
}

// A whole-number token read directly in an integer class, saturating at its limits.
template <class T>
T readInteger(std::string_view token) {
  if (token.front() == '+') token.remove_prefix(1);
  if (std::is_unsigned_v<T> && token.front() == '-') return 0;
  T value{};
  const auto [end, error] = std::from_chars(token.data(), token.data() + token.size(), value);
  if (error == std::errc::result_out_of_range) {
    return token.front() == '-' ? std::numeric_limits<T>::min() : std::numeric_limits<T>::max();
  }
  return value;
}

// The number written by token, read in the given class.
Scalar numberOf(zxClassID classID, std::string_view token, bool whole) {
  Scalar scalar{classID};
  zx::dispatchNumericOrLogical(classID, [&](auto type) {
    using T = typename decltype(type)::type;
    T value{};
    if constexpr (std::is_same_v<T, float>) {
      value = readFloat<float>(token);
    } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, zxLogical>) {
      value = whole ? readInteger<T>(token) : convertElement<T>(readFloat<double>(token));
    } else {
      value = convertElement<T>(readFloat<double>(token));
    }
    std::memcpy(scalar.value, &value, sizeof value);
  });
  return scalar;
}

Scalar scalarOf(zxClassID classID, double value) {
  Scalar scalar{classID};
  convertValues(zxDOUBLE_CLASS, &value, classID, scalar.value, 1, kSamePlace);
  return scalar;
}

Scalar logicalOf(bool value) {
  Scalar scalar{zxLOGICAL_CLASS};
  scalar.value[0] = value ? 1 : 0;
  return scalar;
}

ZxArrayPtr arrayOf(const Scalar& scalar) {
  ZxArrayPtr result(zxCreateNumericMatrix(1, 1, scalar.classID, zxREAL));
  std::memcpy(zxGetWritableData(result.get()), scalar.value, classBytes(scalar.classID));
  return result;
}

struct Row {
  std::size_t column;
  std::vector<Item> items;
};

// What concatenation reads of one element, an array or a scalar alike.
struct Element {
  zxClassID classID;
  bool valueOrText;
  bool complex;
  bool sparse;
  zxSize ndims;
  zxSize m;
  zxSize n;
  const void* re;
  const void* im;

  bool isZeroByZero() const { return ndims == 2 && m == 0 && n == 0; }
};

Element elementOf(const Item& item) {
  const zxArray* v = item.value.get();
  if (v == nullptr) return {item.scalar.classID, true, false, false, 2, 1, 1, item.scalar.value, nullptr};
  const bool valueOrText = isValueArray(v) || zxIsChar(v);
  return {zxGetClassID(v),
          valueOrText,
          zxIsComplex(v),
          zxIsSparse(v),
          zxGetNumberOfDimensions(v),
          zxGetM(v),
          valueOrText ? zxGetN(v) : 0,
          zxGetData(v),
          zxGetImagData(v)};
}

// The class that wins when brackets concatenate elements of classes a and b.
zxClassID combinedClass(const Source& source, zxClassID a, zxClassID b, std::size_t at) {
  if (a == b) return a;
  if (a == zxCHAR_CLASS || b == zxCHAR_CLASS) source.fail("text and numbers cannot be mixed", at);
  if (isIntegerClass(a) && isIntegerClass(b)) source.fail("different integer classes cannot be mixed", at);
  if (isIntegerClass(a)) return a;
  if (isIntegerClass(b)) return b;
  if (a == zxSINGLE_CLASS || b == zxSINGLE_CLASS) return zxSINGLE_CLASS;
  return zxDOUBLE_CLASS;
}

// The array that brackets opened at byte offset open make of their rows.
ZxArrayPtr concatenate(const Source& source, const std::vector<Row>& rows, std::size_t open) {
  std::optional<zxClassID> classID;
  bool complex = false;
  for (const Row& row : rows) {
    for (const Item& item : row.items) {
      const Element v = elementOf(item);
      if (!v.valueOrText) source.fail("brackets hold numbers, logicals and text only", item.column);
      if (v.sparse) source.fail("sparse arrays cannot be concatenated", item.column);
      if (v.ndims > 2) source.fail("N-D arrays cannot be concatenated", item.column);
      classID = classID ? combinedClass(source, *classID, v.classID, item.column) : v.classID;
      complex = complex || v.complex;
    }
  }
  if (!classID) {
    source.chargeSmall(kArrayCost, open);
    return ZxArrayPtr(zxCreateDoubleMatrix(0, 0, zxREAL));
  }

  constexpr zxSize kUnset = std::numeric_limits<zxSize>::max();
  zxSize height = 0;
  zxSize width = kUnset;
  for (const Row& row : rows) {
    zxSize rowHeight = kUnset;
    zxSize rowWidth = 0;
    for (const Item& item : row.items) {
      const Element v = elementOf(item);
      if (v.isZeroByZero()) continue;
      if (rowHeight != kUnset && v.m != rowHeight) source.fail("elements of one row differ in height", item.column);
      rowHeight = v.m;
      rowWidth = saturatingAdd(rowWidth, v.n);
    }
    if (rowHeight == kUnset) continue;
    if (width != kUnset && rowWidth != width) source.fail("ragged rows", row.column);
    width = rowWidth;
    height = saturatingAdd(height, rowHeight);
  }
  if (width == kUnset) width = 0;

  const std::vector<zxSize> dims = {height, width};
  const std::size_t bytesEach = *classID == zxCHAR_CLASS ? sizeof(zxChar) : classBytes(*classID) * (complex ? 2 : 1);
  const auto describe = [&] {
    return "brackets" + source.columnText(open) + ": a " + dimsText(dims) + " " +
           std::string(valueClassName(*classID)) + " array";
  };
  source.charge(saturatingMultiply(elementCount(dims), bytesEach), describe);
  source.charge(kArrayCost, describe);
  if (extentCount(dims) > kMaxElements) source.fail("too many elements", open);
  ZxArrayPtr result(*classID == zxCHAR_CLASS
                        ? zxCreateCharArray(2, dims.data())
                        : zxCreateNumericArray(2, dims.data(), *classID, complex ? zxCOMPLEX : zxREAL));
  zxSize top = 0;
  for (const Row& row : rows) {
    zxSize left = 0;
    zxSize rowHeight = 0;
    for (const Item& item : row.items) {
      const Element v = elementOf(item);
      if (v.isZeroByZero()) continue;
      rowHeight = v.m;
      const auto where = [&](zxSize i) { return top + i % rowHeight + (left + i / rowHeight) * height; };
      convertValues(v.classID, v.re, *classID, zxGetWritableData(result.get()), v.m * v.n, where);
      if (v.complex && complex) {
        convertValues(v.classID, v.im, *classID, zxGetWritableImagData(result.get()), v.m * v.n, where);
      }
      left += v.n;
    }
    top += rowHeight;
  }
  return result;
}

// The cell that braces opened at byte offset open make of their rows.
ZxArrayPtr cellOf(const Source& source, std::vector<Row>& rows, std::size_t open) {
  if (rows.empty()) {
    source.chargeSmall(kArrayCost, open);
    return ZxArrayPtr(zxCreateCellMatrix(0, 0));
  }
  const zxSize m = rows.size();
  const zxSize n = rows.front().items.size();
  for (const Row& row : rows) {
    if (row.items.size() != n) source.fail("ragged rows", row.column);
  }
  source.chargeSmall(saturatingAdd(m * n * sizeof(zxArray*), kArrayCost), open);
  ZxArrayPtr result(zxCreateCellMatrix(m, n));
  for (zxSize r = 0; r < m; ++r) {
    for (zxSize c = 0; c < n; ++c) zxSetCell(result.get(), r + c * m, rows[r].items[c].value.release());
  }
  return result;
}

// A recursive-descent reader over the text.
class Parser {
 public:
  explicit Parser(const Source& source) : source_(source), text_(source.text()) {}

  ZxArrayPtr parseAll() {
    skipBlanks();
    if (atEnd()) fail("expected a literal", pos_);
    ZxArrayPtr result = parseValue(zxDOUBLE_CLASS);
    skipBlanks();
    if (!atEnd()) fail("unexpected text after literal", pos_);
    return result;
  }

 private:
  [[noreturn]] void fail(const std::string& what, std::size_t at) const { source_.fail(what, at); }
  [[noreturn]] void failUnbalanced(std::size_t open) const {
    fail(std::string("unbalanced '") + text_[open] + "'", open);
  }

  bool atEnd() const { return pos_ >= text_.size(); }
  char peek() const { return atEnd() ? '\0' : text_[pos_]; }
  static bool isNameStart(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }
  static bool isNameChar(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }
  static bool isDigit(char c) { return c >= '0' && c <= '9'; }
  static bool isNumberStart(char c) { return isDigit(c) || c == '.' || c == '+' || c == '-'; }

  // Returns whether any blank was skipped.
  bool skipBlanks() {
    const std::size_t start = pos_;
    while (!atEnd() && std::isspace(static_cast<unsigned char>(text_[pos_])) != 0) ++pos_;
    return pos_ != start;
  }

  void checkDepth() const {
    if (depth_ >= kMaxLiteralDepth) fail("literal nested too deeply", pos_);
  }

  // numberClass is the class in which bare numbers are read: that of the innermost cast for single
  // and the integer classes, double everywhere else.
  ZxArrayPtr parseValue(zxClassID numberClass) {
    checkDepth();
    ++depth_;
    ZxArrayPtr result = parseValueAt(numberClass);
    --depth_;
    return result;
  }

  ZxArrayPtr parseValueAt(zxClassID numberClass) {
    const std::size_t start = pos_;
    if (std::optional<Scalar> scalar = parseScalar(numberClass)) {
      source_.chargeSmall(kArrayCost + sizeof scalar->value, start);
      return arrayOf(*scalar);
    }
    const char c = peek();
    if (c == '\'' || c == '"') return parseText();
    if (c == '[') {
      const std::size_t open = pos_++;
      return concatenate(source_, parseRows(']', open, numberClass, true), open);
    }
    if (c == '{') {
      const std::size_t open = pos_++;
      std::vector<Row> rows = parseRows('}', open, zxDOUBLE_CLASS, false);
      return cellOf(source_, rows, open);
    }
    if (isNameStart(c)) return parseCall();
    if (c == '@') return parseFunctionHandle();
    fail("unexpected " + quotedCharacter(pos_), pos_);
  }

  // "@name": a function handle naming the function.
  ZxArrayPtr parseFunctionHandle() {
    const std::size_t at = pos_++;
    if (!isNameStart(peek())) fail("expected a function name after '@'", pos_);
    const std::string name(scanName());
    source_.chargeSmall(kArrayCost + name.size(), at);
    return ZxArrayPtr(zxCreateFunctionHandle(name.c_str()));
  }

  // The character at byte offset at, whole, for a message.
  std::string quotedCharacter(std::size_t at) const {
    if (utf8CharacterLength(text_, at) == 0) return utf8CharacterText(text_, at);
    return "'" + utf8CharacterText(text_, at) + "'";
  }

  // A number, NaN, Inf, true or false; nullopt, having read nothing, for anything else.
  std::optional<Scalar> parseScalar(zxClassID numberClass) {
    if (atEnd()) fail("expected a literal", pos_);
    if (isNumberStart(peek())) return parseNumber(numberClass);
    if (!isNameStart(peek())) return std::nullopt;
    const std::size_t start = pos_;
    const std::string_view name = scanName();
    pos_ = start;
    if (name == "true" || name == "false") {
      pos_ += name.size();
      return logicalOf(name == "true");
    }
    if (equalsIgnoringCase(name, "nan") || equalsIgnoringCase(name, "inf")) return parseNumber(numberClass);
    return std::nullopt;
  }

  Scalar parseNumber(zxClassID numberClass) {
    const std::size_t start = pos_;
    bool negative = false;
    if (peek() == '+' || peek() == '-') negative = text_[pos_++] == '-';
    if (isNameStart(peek())) {
      const std::string_view name = scanName();
      if (equalsIgnoringCase(name, "nan")) return scalarOf(numberClass, std::numeric_limits<double>::quiet_NaN());
      if (equalsIgnoringCase(name, "inf")) {
        const double inf = std::numeric_limits<double>::infinity();
        return scalarOf(numberClass, negative ? -inf : inf);
      }
      fail("expected a number", start);
    }
    bool whole = true;
    std::size_t digits = scanDigits();
    if (peek() == '.') {
      whole = false;
      ++pos_;
      digits += scanDigits();
    }
    if (digits == 0) fail("expected a number", start);
    if (peek() == 'e' || peek() == 'E') {
      const std::size_t mark = pos_++;
      if (peek() == '+' || peek() == '-') ++pos_;
      if (scanDigits() == 0) {
        pos_ = mark;
      } else {
        whole = false;
      }
    }
    return numberOf(numberClass, text_.substr(start, pos_ - start), whole);
  }

  std::size_t scanDigits() {
    const std::size_t start = pos_;
    while (isDigit(peek())) ++pos_;
    return pos_ - start;
  }

  std::string_view scanName() {
    const std::size_t start = pos_;
    while (isNameChar(peek())) ++pos_;
    return text_.substr(start, pos_ - start);
  }

  // Text in single or double quotes, alike; the quote that opened it, doubled, stands for itself.
  ZxArrayPtr parseText() {
    const std::size_t start = pos_++;
    const char quote = text_[start];
    // The closing quote is found first, so that the text's arrays are charged before they are made.
    std::size_t end = pos_;
    std::size_t length = 0;
    for (;; ++end, ++length) {
      if (end >= text_.size()) fail("unterminated text", start);
      if (text_[end] != quote) continue;
      if (end + 1 >= text_.size() || text_[end + 1] != quote) break;
      ++end;
    }
    // The UTF-8 bytes, their UTF-16 units and the array's copy of them.
    source_.charge(saturatingAdd(5 * length, kArrayCost), [&] { return "text" + source_.columnText(start); });
    std::string bytes;
    bytes.reserve(length);
    for (; pos_ < end; ++pos_) {
      bytes += text_[pos_];
      if (text_[pos_] == quote) ++pos_;
    }
    pos_ = end + 1;
    const std::u16string units = fl::i18n::utf8ToUtf16(bytes);
    return ZxArrayPtr(zxCreateStringFromUTF16(units.data(), units.size()));
  }

  // One element of a row or argument list. Inside brackets (scalars true) numbers, NaN, Inf, true and
  // false stay scalars.
  Item parseItem(zxClassID numberClass, bool scalars) {
    const std::size_t column = pos_;
    source_.chargeSmall(kSlotCost, column);
    if (scalars) {
      checkDepth();
      if (std::optional<Scalar> scalar = parseScalar(numberClass)) return Item{nullptr, *scalar, column};
    }
    return Item{parseValue(numberClass), {}, column};
  }

  // Rows of a bracket or brace opened at open, up to and including its closing character.
  std::vector<Row> parseRows(char close, std::size_t open, zxClassID numberClass, bool scalars) {
    std::vector<Row> rows;
    skipBlanks();
    if (peek() == close) {
      ++pos_;
      return rows;
    }
    source_.chargeSmall(kSlotCost, pos_);
    rows.push_back(Row{pos_, {}});
    for (;;) {
      if (atEnd()) failUnbalanced(open);
      rows.back().items.push_back(parseItem(numberClass, scalars));
      const bool blank = skipBlanks();
      if (atEnd()) failUnbalanced(open);
      const char c = peek();
      if (c == close) {
        ++pos_;
        return rows;
      }
      if (c == ',' || c == ';') {
        ++pos_;
        skipBlanks();
        if (c == ';') {
          source_.chargeSmall(kSlotCost, pos_);
          rows.push_back(Row{pos_, {}});
        }
      } else if (c == ']' || c == '}' || c == ')') {
        fail(std::string("'") + c + "' does not close '" + text_[open] + "' from column " +
                 std::to_string(utf8Column(text_, open)),
             pos_);
      } else if (!blank) {
        fail("expected ',' or a blank between elements", pos_);
      }
    }
  }

  ZxArrayPtr parseCall() {
    const std::size_t start = pos_;
    const std::string_view name = scanName();
    const std::optional<zxClassID> cast = valueClassNamed(name);
    const FunctionBuilder build = cast ? nullptr : functionNamed(name);
    if (!cast && build == nullptr) fail("unknown function '" + std::string(name) + "'", start);
    skipBlanks();
    if (peek() != '(') fail("expected '(' after '" + std::string(name) + "'", pos_);
    const std::size_t open = pos_++;
    const bool readsInClass = cast && (*cast == zxSINGLE_CLASS || isIntegerClass(*cast));
    Call call{source_, name, start, parseArguments(open, readsInClass ? *cast : zxDOUBLE_CLASS)};
    return cast ? buildCast(call, *cast) : build(call);
  }

  std::vector<Item> parseArguments(std::size_t open, zxClassID numberClass) {
    std::vector<Item> args;
    skipBlanks();
    if (peek() == ')') {
      ++pos_;
      return args;
    }
    for (;;) {
      if (atEnd()) failUnbalanced(open);
      args.push_back(parseItem(numberClass, false));
      skipBlanks();
      if (atEnd()) failUnbalanced(open);
      if (peek() == ')') {
        ++pos_;
        return args;
      }
      if (peek() != ',') fail("expected ',' or ')'", pos_);
      ++pos_;
      skipBlanks();
    }
  }

  const Source& source_;
  std::string_view text_;
  std::size_t pos_ = 0;
  int depth_ = 0;
};

}  // namespace

ZxArrayPtr readLiteral(std::string_view text) {
  ByteBudget unlimited;
  return readLiteral(text, unlimited);
}

ZxArrayPtr readLiteral(std::string_view text, ByteBudget& budget) {
  const Source source(text, budget);
  ZxArrayPtr result = Parser(source).parseAll();
  zxSetArrayScope(result.get(), zxPERSISTENT);
  return result;
}

}  // namespace cmdlang
