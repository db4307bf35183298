// What generic code (the sweeps over every type, the fuzzers, orbdt's describe and the type catalogue)
// must know of a property type and cannot ask its data type. Each data type states it as kFacts: the
// base data types hold the usual answers, and only the odd types state theirs, beside their declaration.
#pragma once

#include <cstdint>

#include "datatype/java_peer_classes.h"

namespace graphics::datatype {

// What a type's text conversion gives for a value.
enum class TextForm : std::uint8_t {
  ours,     // a form we chose, which reads back: stored again, a value writes the same text
  fixed,    // a form the type's rule fixes (six significant digits, say); read back it may round, or be refused
  refused,  // every conversion to text, an empty slot's included, raises an identifier
  none,     // no text at all, deliberately
};

struct TypeFacts {
  TextForm text = TextForm::ours;
  // Whether an empty slot has a text too (an absent pixel point reads as the origin).
  bool emptySlotHasText = false;
  // Whether the default holds a value; some defaults are an empty slot (no callback, no Java object).
  bool defaultHoldsValue = true;
  // A host literal of an array the type refuses; null for a type that takes every array.
  const char* refusedArray = "struct('a', 1)";
  // The identifier that any failure inside the type's rules becomes, a failed allocation included; null
  // when failures keep their own identifiers and a failed allocation raises bad_alloc.
  const char* failuresBecome = nullptr;
  // The class the type's values cross to Java as; null: the closest Java object of their array form.
  const JavaPeerClass* javaPeer = nullptr;
  // For people: the Java form of a type without a peer class.
  const char* javaForm = "the closest Java object of the array form";
  // Whether a value that crosses to Java and back comes back equal.
  bool javaRoundTripEqual = true;
  // Whether the array conversions run the Java machine, which allocates on threads of its own.
  bool arraysUseJava = false;
  // Whether the value is kept outside its block, which then reports no size (the color-name table).
  bool valueOutsideBlock = false;
  // Whether storing a value extends a table that lasts for the process (the color names).
  bool growsProcessTable = false;
  // Whether text may name a color of the process's color name table.
  bool takesColorNames = false;
  // Whether a type with named values offers some of them (one may accept names and offer none).
  bool offersNames = true;
};

// The Java class name a type's values cross as, for people.
constexpr const char* javaClassOf(const TypeFacts& facts) {
  return facts.javaPeer != nullptr ? facts.javaPeer->javaName : facts.javaForm;
}

}  // namespace graphics::datatype
