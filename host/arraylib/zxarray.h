// The host's array value (zxArray) and its C-style API: creation, queries, element access,
// shared-data copies with copy on write, and array scope within host call frames.
//
// Dimensions: every array has at least two; trailing singleton dimensions after the second are
// dropped. Storage is column-major. Char data is UTF-16 code units. Read accessors return const
// pointers; the zxGetWritable... accessors first give the array storage of its own (copy on write),
// so a write never shows in another array that shared the data.
//
// Calls that take an array require a non-null one, except where a comment says null is accepted
// (creation from a source, destruction, scope, class queries, zxGetScalar, zxArrayToString).
#pragma once

#include <cstddef>
#include <cstdint>
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

struct zxArray;

using zxSize = std::size_t;
using zxChar = char16_t;
using zxLogical = bool;

// Class identifiers. 3 to 15 are fixed by the conversion contract of the data types.
enum zxClassID : int {
  zxUNKNOWN_CLASS = 0,
  zxCELL_CLASS = 1,
  zxSTRUCT_CLASS = 2,
  zxLOGICAL_CLASS = 3,
  zxCHAR_CLASS = 4,
  zxVOID_CLASS = 5,
  zxDOUBLE_CLASS = 6,
  zxSINGLE_CLASS = 7,
  zxINT8_CLASS = 8,
  zxUINT8_CLASS = 9,
  zxINT16_CLASS = 10,
  zxUINT16_CLASS = 11,
  zxINT32_CLASS = 12,
  zxUINT32_CLASS = 13,
  zxINT64_CLASS = 14,
  zxUINT64_CLASS = 15,
  zxFUNCTION_CLASS = 16,
  zxOBJECT_CLASS = 17,
};

enum zxComplexity : int { zxREAL = 0, zxCOMPLEX = 1 };

// zxPERSISTENT: the array outlives the current call frame and belongs to whoever holds it.
// zxTEMPORARY: the array is destroyed when the current call frame ends.
enum zxArrayScope : int { zxPERSISTENT = 0, zxTEMPORARY = 1 };

// Reference counting of the elements of an object array; the class system supplies it.
struct zxObjectOps {
  void (*retain)(void* object);
  void (*release)(void* object);
};

// --- Creation. Inside a call frame a new array is temporary: the frame destroys it when it ends, so
// an owner that keeps it longer makes it persistent first. Outside any frame its creator owns it. ---
zxArray* zxCreateDoubleMatrix(zxSize m, zxSize n, zxComplexity complexity);
zxArray* zxCreateDoubleScalar(double value);
zxArray* zxCreateNumericMatrix(zxSize m, zxSize n, zxClassID classID, zxComplexity complexity);
// Numeric classes, and logical (always real).
zxArray* zxCreateNumericArray(zxSize ndim, const zxSize* dims, zxClassID classID, zxComplexity complexity);
zxArray* zxCreateLogicalMatrix(zxSize m, zxSize n);
zxArray* zxCreateLogicalArray(zxSize ndim, const zxSize* dims);
zxArray* zxCreateLogicalScalar(bool value);
// A 1-by-n char row from UTF-8 text; the empty text gives a 0-by-0 char array.
zxArray* zxCreateString(const char* utf8);
zxArray* zxCreateStringFromUTF16(const zxChar* units, zxSize count);
// An m-row char matrix from UTF-8 rows, shorter rows padded with blanks.
zxArray* zxCreateCharMatrixFromStrings(zxSize m, const char* const* rows);
zxArray* zxCreateCharArray(zxSize ndim, const zxSize* dims);
// Cell arrays start with every element absent (null).
zxArray* zxCreateCellMatrix(zxSize m, zxSize n);
zxArray* zxCreateCellArray(zxSize ndim, const zxSize* dims);
// Struct arrays start with every field of every element absent (null). A field name given twice
// makes one field.
zxArray* zxCreateStructMatrix(zxSize m, zxSize n, int nfields, const char* const* fieldNames);
zxArray* zxCreateStructArray(zxSize ndim, const zxSize* dims, int nfields, const char* const* fieldNames);
// Sparse double (real or complex) and logical arrays in compressed-column form.
zxArray* zxCreateSparse(zxSize m, zxSize n, zxSize nzmax, zxComplexity complexity);
zxArray* zxCreateSparseLogicalMatrix(zxSize m, zxSize n, zxSize nzmax);
// A 1-by-1 function handle naming a function.
zxArray* zxCreateFunctionHandle(const char* functionName);
// An object array of the named class; elements start null. ops may be null (no reference counting).
zxArray* zxCreateObjectArray(const char* className, zxSize ndim, const zxSize* dims, const zxObjectOps* ops);

// A new array sharing the element storage of source; costs the same whatever the size.
zxArray* zxCreateSharedDataCopy(const zxArray* source);
// A deep copy (also of cells and struct fields).
zxArray* zxDuplicateArray(const zxArray* source);
// A full (non-sparse) copy of a sparse array; a shared-data copy of any other array.
zxArray* zxMustBeFull(const zxArray* source);
// Destroys the array and, when no other array shares them, its elements. Null is harmless.
void zxDestroyArray(zxArray* array);
void zxSetArrayScope(zxArray* array, zxArrayScope scope);

// --- Queries ---
zxClassID zxGetClassID(const zxArray* array);
// "double", "cell", ...; for an object array its class name.
const char* zxGetClassName(const zxArray* array);
bool zxIsClass(const zxArray* array, const char* className);
zxSize zxGetM(const zxArray* array);
// The product of all dimensions after the first.
zxSize zxGetN(const zxArray* array);
zxSize zxGetNumberOfDimensions(const zxArray* array);
const zxSize* zxGetDimensions(const zxArray* array);
zxSize zxGetNumberOfElements(const zxArray* array);
zxSize zxGetElementSize(const zxArray* array);
bool zxIsEmpty(const zxArray* array);
bool zxIsScalar(const zxArray* array);
// At most one dimension differs from 1 (so 1-by-1-by-5 counts, and so does 1-by-0).
bool zxIsVector(const zxArray* array);
// Two dimensions, one of them 1.
bool zxIsVector2D(const zxArray* array);
// double, single and the eight integer classes; not logical or char.
bool zxIsNumericArrayType(zxClassID classID);
bool zxIsNumeric(const zxArray* array);
bool zxIsComplex(const zxArray* array);
bool zxIsSparse(const zxArray* array);
bool zxIsChar(const zxArray* array);
bool zxIsCell(const zxArray* array);
bool zxIsStruct(const zxArray* array);
bool zxIsLogical(const zxArray* array);
bool zxIsDouble(const zxArray* array);
bool zxIsSingle(const zxArray* array);
bool zxIsFunctionHandle(const zxArray* array);
bool zxIsObject(const zxArray* array);

// --- Element access. Numeric, logical and char data; sparse arrays hold nzmax values. ---
const double* zxGetPr(const zxArray* array);
const double* zxGetPi(const zxArray* array);
const void* zxGetData(const zxArray* array);
const void* zxGetImagData(const zxArray* array);
const zxChar* zxGetChars(const zxArray* array);
const zxLogical* zxGetLogicals(const zxArray* array);
double* zxGetWritablePr(zxArray* array);
double* zxGetWritablePi(zxArray* array);
void* zxGetWritableData(zxArray* array);
void* zxGetWritableImagData(zxArray* array);
zxChar* zxGetWritableChars(zxArray* array);
zxLogical* zxGetWritableLogicals(zxArray* array);
// The first real element read as a double by class (a char as its code unit, a logical as 0 or 1);
// 0 for an empty array or one of another class.
double zxGetScalar(const zxArray* array);

// Sparse structure: row indices of the stored values and column starts (n + 1 entries).
const zxSize* zxGetIr(const zxArray* array);
const zxSize* zxGetJc(const zxArray* array);
zxSize* zxGetWritableIr(zxArray* array);
zxSize* zxGetWritableJc(zxArray* array);
zxSize zxGetNzmax(const zxArray* array);

// Cells: the element or null. zxSetCell takes ownership of value and destroys the element it replaces.
const zxArray* zxGetCell(const zxArray* cell, zxSize index);
void zxSetCell(zxArray* cell, zxSize index, zxArray* value);

// Structs: field lookups return -1 or null when absent; setters take ownership as zxSetCell does.
int zxGetNumberOfFields(const zxArray* array);
const char* zxGetFieldNameByNumber(const zxArray* array, int field);
int zxGetFieldNumber(const zxArray* array, const char* name);
const zxArray* zxGetField(const zxArray* array, zxSize index, const char* name);
const zxArray* zxGetFieldByNumber(const zxArray* array, zxSize index, int field);
void zxSetField(zxArray* array, zxSize index, const char* name, zxArray* value);
void zxSetFieldByNumber(zxArray* array, zxSize index, int field, zxArray* value);
// Adds a field (absent in every element) and returns its number; an existing field's number otherwise.
int zxAddField(zxArray* array, const char* name);

// Function handles and objects.
const char* zxGetFunctionName(const zxArray* array);
void* zxGetObjectElement(const zxArray* array, zxSize index);
// The reference-counting operations the object array was made with (null for none).
const zxObjectOps* zxGetObjectOps(const zxArray* array);
// Retains the new object and releases the one it replaces, through the array's zxObjectOps.
void zxSetObjectElement(zxArray* array, zxSize index, void* object);

// --- Text and memory ---
// The characters of a char array in storage order as UTF-8, allocated on the C heap (release with
// zxFree); null for any other class.
char* zxArrayToString(const zxArray* array);
void* zxMalloc(zxSize bytes);
void* zxCalloc(zxSize count, zxSize size);
void zxFree(void* block);

KX_HOST_API_END
