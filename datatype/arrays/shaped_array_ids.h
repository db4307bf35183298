// The shaped array types' own identifiers, generated from their family rows: for each type T,
// Korvax:orb:shaped_arrays:TSize and TType, TRange or TPredicate where the row has a value identifier,
// and datatypes:T:ParseException for text that does not read as the type's array.
#pragma once

#include "foundationlib/except.h"

#define ORB_SHAPED_ARRAY_LEAF_ID_Range(T) FL_DECLARE_MSG_ID(Korvax::orb::shaped_arrays, T##Range)
#define ORB_SHAPED_ARRAY_LEAF_ID_Predicate(T) FL_DECLARE_MSG_ID(Korvax::orb::shaped_arrays, T##Predicate)
#define ORB_SHAPED_ARRAY_LEAF_ID_NoLeaf(T)
#define ORB_SHAPED_ARRAY(T, Checks, Empty, DefaultText, ParseClass, EmptyReadBack, ValueLeaf, Members) \
  FL_DECLARE_MSG_ID(Korvax::orb::shaped_arrays, T##Size)                                               \
  FL_DECLARE_MSG_ID(Korvax::orb::shaped_arrays, T##Type)                                               \
  ORB_SHAPED_ARRAY_LEAF_ID_##ValueLeaf(T) FL_DECLARE_MSG_ID(datatypes::T, ParseException)
#include "datatype/arrays/shaped_arrays.def"
#undef ORB_SHAPED_ARRAY_LEAF_ID_Range
#undef ORB_SHAPED_ARRAY_LEAF_ID_Predicate
#undef ORB_SHAPED_ARRAY_LEAF_ID_NoLeaf
