// What every shaped array type shares, in namespace shaped: the words of the family table (shapes,
// element classes, value rules, empty forms), the row that describes one type, the one predicate
// engine that checks an array against a predicate's rule, and the conversion steps of the family.
#pragma once

#include <cstddef>
#include <cstdint>

#include "arraylib/zxarray.h"
#include "datatype/exception_slot.h"
#include "datatype/export.h"
#include "guilib/auto_ptr.h"

namespace graphics::datatype {

class ArrayBase;

namespace shaped {

// Values of more than this many elements never compare equal (see ArrayBase::operator==).
inline constexpr unsigned kMaxNumberOfValuesToCompare = 32000;

// --- Shapes. Rows and columns are those of a 2-D array; 3-D arrays have exactly three dimensions. ---
enum class ShapeKind : std::uint8_t { matrix, threeD, vector, rowOrColumn };
inline constexpr int kAnyExtent = -1;
struct ShapeRule {
  ShapeKind kind;
  int first;   // rows, or for rowOrColumn the element count
  int second;  // columns (2-D) or the second dimension (3-D)
  int third;   // the third dimension (3-D)
};
constexpr ShapeRule matrix(int rows, int columns) { return {ShapeKind::matrix, rows, columns, kAnyExtent}; }
constexpr ShapeRule anyMatrix() { return matrix(kAnyExtent, kAnyExtent); }
// rows-by-n
constexpr ShapeRule rows(int count) { return matrix(count, kAnyExtent); }
// m-by-columns
constexpr ShapeRule columns(int count) { return matrix(kAnyExtent, count); }
// m-by-n-by-count
constexpr ShapeRule pages(int count) { return {ShapeKind::threeD, kAnyExtent, kAnyExtent, count}; }
// rows-by-m-by-n
constexpr ShapeRule threeDRows(int count) { return {ShapeKind::threeD, count, kAnyExtent, kAnyExtent}; }
constexpr ShapeRule anyThreeD() { return threeDRows(kAnyExtent); }
// At most one dimension other than 1, as the array library's zxIsVector says.
constexpr ShapeRule vector() { return {ShapeKind::vector, kAnyExtent, kAnyExtent, kAnyExtent}; }
// One row or one column (of the 2-D view), with count elements.
constexpr ShapeRule rowOrColumn(int count = kAnyExtent) {
  return {ShapeKind::rowOrColumn, count, kAnyExtent, kAnyExtent};
}

// --- Element classes, as a set of class identifiers. ---
using ClassSet = std::uint32_t;
constexpr ClassSet classBit(zxClassID classID) { return ClassSet{1} << classID; }
inline constexpr ClassSet kDouble = classBit(zxDOUBLE_CLASS);
inline constexpr ClassSet kSingle = classBit(zxSINGLE_CLASS);
inline constexpr ClassSet kFloating = kDouble | kSingle;
inline constexpr ClassSet kUint8 = classBit(zxUINT8_CLASS);
inline constexpr ClassSet kUint32 = classBit(zxUINT32_CLASS);
inline constexpr ClassSet kNumeric = kFloating | classBit(zxINT8_CLASS) | kUint8 | classBit(zxINT16_CLASS) |
                                     classBit(zxUINT16_CLASS) | classBit(zxINT32_CLASS) | kUint32 |
                                     classBit(zxINT64_CLASS) | classBit(zxUINT64_CLASS);
inline constexpr ClassSet kNumericOrLogical = kNumeric | classBit(zxLOGICAL_CLASS);

// --- Value rules, run on the elements (real parts, storage order) of an array whose shape and class
// passed. Each stops at the first element that breaks it. ---
enum ValueRule : std::uint8_t {
  noValueRule,
  unitIntervalSkippingNaN,  // every element but NaN in [0, 1]; else the type's value identifier
  unitInterval,             // every element in [0, 1] (NaN is not)
  finite,                   // no NaN ("...:NaN") and no infinity ("...:Inf")
  unitNormal,               // every element in [-1, 1] (NaN is not), else the value identifier
  atLeastOneSkippingNaN,    // every element but NaN at least 1 (NaN marks a gap)
  nonZero,                  // no element 0
  equalOrIncreasing,        // no element less than the one before
  normalized,               // no element below 0 and none above 1
  increasingFinitePair,     // two finite values, the second greater
  increasingPair,           // two values, neither NaN, the second greater
  strictlyIncreasing,       // each pair of neighbours: neither NaN, not both infinite, increasing
};
// Whether a rule reports through the type's own value identifier (Range or Predicate).
constexpr bool reportsValueLeaf(ValueRule rule) { return rule != noValueRule && rule != finite; }

// Whether a plain buffer passes a value rule. Instantiated for the ten numeric element types.
template <class E>
bool passesBufferRule(ValueRule rule, const E* values, std::size_t count);

// --- The rest of a row. ---
// The shared refusals tried before a predicate's shape, in this order.
enum Checks : std::uint8_t { noChecks = 0, sparseCheck = 1, complexCheck = 2, sparseAndComplexChecks = 3 };
// Whether isValid accepts null and 0-by-0 arrays before any predicate runs.
enum EmptyShortcut : bool { emptySeen = false, emptyAccepted = true };

// What the array conversion gives for a held 2-D 0-by-0 array: a new empty array of a fixed class and
// shape, or (asHeld) a copy of the held one.
struct EmptyForm {
  bool canonical;
  zxClassID classID;
  zxSize dims[3];
};
constexpr EmptyForm asHeld() { return {false, zxDOUBLE_CLASS, {0, 0, 1}}; }
constexpr EmptyForm emptyOf(zxClassID classID, zxSize rows, zxSize columns, zxSize pages = 1) {
  return {true, classID, {rows, columns, pages}};
}

using FailureFactory = boost::exception_ptr (*)();

// One type of the family as data, made from its table row.
struct ORB_EXPORT Row {
  const char* name;
  Checks checks;
  EmptyShortcut emptyShortcut;
  const char* defaultText;
  zxClassID parseClass;
  EmptyForm emptyForm;
  FailureFactory sizeFailure;
  FailureFactory typeFailure;
  FailureFactory valueFailure;  // null for a type without a value identifier
  FailureFactory textFailure;   // text that does not read as the type's array
};

struct PredicateRule {
  ShapeRule shape;
  ClassSet classes;
  ValueRule rule;
};

// One predicate: the shared refusals of the row, then shape, class and value rule. A shape failure
// is recorded and checking goes on, so that a class failure replaces it; the value rule runs only
// on an array whose shape and class passed. Each failure is stored in failure by plain assignment
// (the last one wins). A null array fails with the Size identifier.
bool checkPredicate(const Row& row, const PredicateRule& rule, const zxArray* array, boost::exception_ptr& failure);
// The same where the failure is not wanted.
bool checkPredicate(const Row& row, const PredicateRule& rule, const zxArray* array);
// Whether the row's empty shortcut accepts array (null or 0-by-0) before any predicate.
bool acceptsAsEmpty(const Row& row, const zxArray* array);
// Raises the error that value.isValid records for array; a null array is not checked.
void requireValid(const ArrayBase& value, const zxArray* array);

// The array conversion's read-back (caller owns the result): 0-by-0 of the row's parse class for no
// value or a value that holds nothing, the canonical empty form for a held 0-by-0, else a shared copy.
zxArray* arrayForValue(const ArrayBase* value, const Row& row);

// The text conversion's parse: produced is false for no text or when nothing could be built; array is
// null for text without numbers. Text the parser refuses raises the row's text failure.
struct ParsedText {
  bool produced;
  gui_objects::ZxArrayPtr array;
};
ParsedText parseText(const char* text, const Row& row);

}  // namespace shaped
}  // namespace graphics::datatype
