// What the two conversion fuzzers share: the library started once, every type of the master list,
// and the checks run on every value a conversion stores.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "datatype/type_facts.h"
#include "fuzz_support.h"
#include "objsys/cos_data_type.h"
#include "objsys/cos_type_conversion.h"

namespace orbfuzz {

// One registered type with its two conversions, as a host reaches them by full name.
struct FuzzType {
  const char* name;
  const graphics::datatype::TypeFacts* facts;
  objsys::COSDataType* type;
  const objsys::COSTypeConversion* arrays;
  const objsys::COSTypeConversion* texts;
};

// Starts the library the first time it is called (and swallows what it prints); then the type the
// input's first bytes choose, which are taken from it: "@Name\n" names a type of the master list (so
// that a kept input keeps testing its type as types are added); otherwise, and after a line naming
// no type, two bytes pick one, counting round the list.
const FuzzType& typeChosenBy(ByteReader& input);

// Puts back what an input changed in the process-wide tables (color names it added), so that inputs
// neither slow down nor grow the ones that follow. Call it after each input.
void restoreProcessTables();

// The slot a conversion made, or an empty slot when it refused: a refusal must be a host error whose
// identifier is in the message catalog; anything else raised is a fault. input is shown on failure.
objsys::COSValue convertOrRefuse(const FuzzType& type, const char* what, const std::string& input,
                                 const std::function<objsys::COSValue()>& convert);

// The checks on a value a conversion stored, which is destroyed at the end: its copy is equal to it
// and compares equal (unless it holds a NaN or an infinity); it reads back as an array and as text;
// the array it reads back as (unless empty) is accepted when stored again, and settles: the array
// read back from that is read back the same way again; its text, stored again, reads back as the
// same text (or the same numbers), as the type's text form says: a text of ours must read back, one its
// rule fixes may be refused with a cataloged identifier; a type without text gives none, or refuses as
// its facts say.
// storedFromArray: the array check applies to values the array conversion validated; a value stored
// from text may be one the array conversion refuses (the text paths of some types check less).
void checkStoredValue(const FuzzType& type, objsys::COSValue value, const std::string& input, bool storedFromArray);

}  // namespace orbfuzz
