// ARRAY objects: the JSON form of a host array, written from an array and read back into a new one.
//
// Every object has "class" and "dims" (every dimension, at least two). By class:
//   numeric, logical  "re": real parts in storage order, "im" as well when complex, "sparse": true when
//                     sparse (the elements are still listed in full). NaN and infinities are the strings
//                     "NaN", "Inf" and "-Inf"; 64-bit integers are exact; logical elements are 0 or 1.
//   char              "rows": one UTF-8 string per row of the 2-D view (dims[0] rows of zxGetN units).
//   cell              "cells": the elements in storage order, each an ARRAY object or null (absent).
//   struct            "fields": the field names in order; "elements": one object per element mapping
//                     each field to an ARRAY object or null.
//   object            "className"; the elements are not listed.
//   function_handle   "function": the function's name.
#pragma once

#include <nlohmann/json.hpp>

#include "arraylib/zxarray.h"
#include "cmdlanglib/budget.h"
#include "cmdlanglib/literal.h"
#include "guilib/auto_ptr.h"

namespace orbdt {

// The ARRAY object of an array; JSON null for a null array.
nlohmann::json arrayToJson(const zxArray* array);

// The array that an ARRAY object describes; it belongs to the caller even inside a host call frame.
// Throws cmdlang::LiteralError, naming the offending member by its path ("$.cells[1].re[0]: ..."),
// when the object is malformed: an unknown class or member, element counts that do not match the
// dimensions, integers out of range for their class or not whole, logical elements other than 0 and
// 1, text rows of the wrong length, struct elements naming unknown fields, arrays nested more than
// cmdlang::kMaxLiteralDepth deep. Objects and function handles are refused because they cannot be
// recreated from their description. Every array is checked against its members and charged to
// budget (cmdlang::TooLargeError when it does not fit) before it is allocated.
gui_objects::ZxArrayPtr arrayFromJson(const nlohmann::json& object);
gui_objects::ZxArrayPtr arrayFromJson(const nlohmann::json& object, cmdlang::ByteBudget& budget);

}  // namespace orbdt
