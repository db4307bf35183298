// The literal writer: an array written back as a literal that the reader turns into an equal array.
#include <span>
#include <string>
#include <vector>

#include "arraylib/zxdispatch.h"
#include "arraylib/zxformat.h"
#include "cmdlanglib/literal.h"
#include "cmdlanglib/literal_internal.h"
#include "foundationlib/i18n/unicode.h"

namespace cmdlang {

using namespace literal_detail;

namespace {

void appendDimList(std::string& out, const zxArray* array) {
  const std::vector<zxSize> dims = dimsOf(array);
  for (std::size_t i = 0; i < dims.size(); ++i) {
    if (i > 0) out += ',';
    out += std::to_string(dims[i]);
  }
}

// Writes the N-D wrapper around a 2-D view written by body: "reshape(<body>,d1,d2,d3)".
template <class Body>
void appendShaped(std::string& out, const zxArray* array, Body body) {
  const bool nd = zxGetNumberOfDimensions(array) > 2;
  if (nd) out += "reshape(";
  body();
  if (nd) {
    out += ',';
    appendDimList(out, array);
    out += ')';
  }
}

void appendLiteral(std::string& out, const zxArray* array);

// One part (real or imaginary) of a full numeric or logical array, in a form that reads back in its
// own class.
void appendPart(std::string& out, const zxArray* array, const void* data) {
  const zxClassID classID = zxGetClassID(array);
  const zxSize count = zxGetNumberOfElements(array);
  if (count == 0) {
    if (classID == zxDOUBLE_CLASS && isZeroByZero(array)) {
      out += "[]";
      return;
    }
    out += "zeros(";
    appendDimList(out, array);
    if (classID != zxDOUBLE_CLASS) out += ",'" + std::string(zxGetClassName(array)) + "'";
    out += ')';
    return;
  }
  if (classID == zxLOGICAL_CLASS && count == 1) {
    out += *static_cast<const zxLogical*>(data) ? "true" : "false";
    return;
  }
  appendShaped(out, array, [&] {
    const bool wrap = classID != zxDOUBLE_CLASS;
    if (wrap) out += std::string(zxGetClassName(array)) + '(';
    zx::dispatchNumericOrLogical(classID, [&](auto type) {
      using T = typename decltype(type)::type;
      zx::appendMatrixText(out, std::span(static_cast<const T*>(data), count), zxGetM(array), zxGetN(array));
    });
    if (wrap) out += ')';
  });
}

void appendValues(std::string& out, const zxArray* array) {
  if (zxIsSparse(array)) {
    const ZxArrayPtr full(zxMustBeFull(array));
    out += "sparse(";
    appendValues(out, full.get());
    out += ')';
  } else if (zxIsComplex(array)) {
    out += "complex(";
    appendPart(out, array, zxGetData(array));
    out += ',';
    appendPart(out, array, zxGetImagData(array));
    out += ')';
  } else {
    appendPart(out, array, zxGetData(array));
  }
}

// Writes an empty array as its 0-by-0 literal, or as the call that makes its shape; false when the
// array is not empty.
bool appendIfEmpty(std::string& out, const zxArray* array, const char* zeroByZero, const char* shapedCall) {
  if (!zxIsEmpty(array)) return false;
  if (isZeroByZero(array)) {
    out += zeroByZero;
  } else {
    out += shapedCall;
    appendDimList(out, array);
    out += ')';
  }
  return true;
}

void appendText(std::string& out, const zxArray* array) {
  if (appendIfEmpty(out, array, "''", "reshape('',")) return;
  appendShaped(out, array, [&] {
    const std::span chars(zxGetChars(array), zxGetNumberOfElements(array));
    zx::appendQuotedRows(out, chars, zxGetM(array), zxGetN(array));
  });
}

void appendCell(std::string& out, const zxArray* array) {
  if (appendIfEmpty(out, array, "{}", "cell(")) return;
  appendShaped(out, array, [&] {
    const zxSize rows = zxGetM(array);
    const zxSize cols = zxGetN(array);
    out += '{';
    for (zxSize r = 0; r < rows; ++r) {
      if (r > 0) out += ';';
      for (zxSize c = 0; c < cols; ++c) {
        if (c > 0) out += ',';
        appendLiteral(out, zxGetCell(array, r + c * rows));
      }
    }
    out += '}';
  });
}

void appendStruct(std::string& out, const zxArray* array) {
  out += "struct(";
  for (int f = 0; f < zxGetNumberOfFields(array); ++f) {
    if (f > 0) out += ',';
    const std::u16string name = fl::i18n::utf8ToUtf16(zxGetFieldNameByNumber(array, f));
    zx::appendQuotedRows(out, name, 1, name.size());
    out += ',';
    appendLiteral(out, zxGetFieldByNumber(array, 0, f));
  }
  out += ')';
}

// Absent elements (null) are written as "[]".
void appendLiteral(std::string& out, const zxArray* array) {
  if (array == nullptr) {
    out += "[]";
  } else if (isValueArray(array)) {
    appendValues(out, array);
  } else if (zxIsChar(array)) {
    appendText(out, array);
  } else if (zxIsCell(array)) {
    appendCell(out, array);
  } else if (zxIsStruct(array) && zxIsScalar(array)) {
    appendStruct(out, array);
  } else if (zxIsFunctionHandle(array)) {
    out += '@';
    out += zxGetFunctionName(array);
  } else {
    out += zx::canonicalText(array);
  }
}

}  // namespace

std::string writeLiteral(const zxArray* array) {
  std::string out;
  appendLiteral(out, array);
  return out;
}

}  // namespace cmdlang
