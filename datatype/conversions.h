// The array and text conversions of every type, as two adaptors over the type's rules:
//   ArrayConversion<Rules>  TMC: host array to value block and back (keyed from "any")
//   TextConversion<Rules>   TSC: narrow text to value block and back (keyed from "asciiString")
// A type states its rules as static functions of one class and declares its conversions as
//
//   class ORB_EXPORT MeshAlphaMC final : public ArrayConversion<MeshAlphaRules> {};
//   class ORB_EXPORT MeshAlphaSC final : public TextConversion<MeshAlphaRules> {};
//
// The adaptors do what every type does alike: an empty slot gives an empty slot (or what the rules
// make of nothing), a value is built by the rules and moved into a new zero-filled block, and a
// refusal raised by the rules leaves nothing allocated. The rules class provides:
//
//   using Value = T;                                     the value class held in each block
//   static Value fromArray(const zxArray& array);        refuses by raising the type's identifier
//   static zxArray* toArray(const Value& value);         a new array
//   static zxArray* noValueArray();                      what an empty slot reads back as
//   static Value fromText(const char* text);             or std::optional<Value>: nullopt stores nothing
//   static std::optional<std::string> toText(const Value& value);   nullopt gives no text
// and, only where nothing (a null array or text) still makes a value, or an empty slot has a text:
//   static Value fromNoArray();   static Value fromNoText();   static std::string noValueText();
//
// The members are defined in the library only (conversion_definitions.h), one instantiation per type.
#pragma once

#include "datatype/export.h"
#include "objsys/cos_type_conversion.h"

namespace graphics::datatype {

template <class Rules>
class ORB_EXPORT ArrayConversion : public objsys::COSTypeConversion {
 public:
  // A slot holding a value block → a slot holding a new array.
  objsys::COSValue to(objsys::COSValue value) const override;
  // A slot holding a zxArray* → a slot holding a new value block.
  objsys::COSValue from(objsys::COSValue array) const override;
};

template <class Rules>
class ORB_EXPORT TextConversion : public objsys::COSTypeConversion {
 public:
  // A slot holding a value block → a slot holding a new C-heap string (freed with utFree), or empty.
  objsys::COSValue to(objsys::COSValue value) const override;
  // A slot holding a NUL-terminated narrow string → a slot holding a new value block.
  objsys::COSValue from(objsys::COSValue text) const override;
};

}  // namespace graphics::datatype
