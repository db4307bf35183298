// The data type contract shared by every property type: names, sizes, copy, destroy, equality,
// comparison and the cached default. A type states only its value class, names, size and default:
//
//   class PositiveDataType : public BasicDataType<PositiveDataType, Positive> {
//    public:
//     static constexpr const char* kName = "Positive";
//     static constexpr const char* kClassName = "PositiveDataType";
//     static constexpr std::size_t kValueSizeInBytes = 8;
//     static Positive makeDefaultValue() { return Positive(1.0); }
//   };
#pragma once

#include <cstddef>

#include "datatype/export.h"
#include "datatype/type_facts.h"
#include "datatype/value_block.h"
#include "objsys/cos_data_type.h"

namespace graphics::datatype {

inline constexpr const char* kPackageName = "korvax.graphics.datatype";

// Derived names the type and supplies its default; Value is the value class held in each block and
// compared with its operator==.
//
// The singleton, its full name and its cached default are defined out of line, in the library only
// (data_type_definitions.h): a program that includes this header reaches the library's objects and
// never makes copies of its own.
template <class Derived, class Value>
class ORB_EXPORT BasicDataType : public objsys::COSDataType {
 public:
  using ValueType = Value;
  // The usual facts; a type that differs states its own kFacts beside its declaration.
  static constexpr TypeFacts kFacts{};

  // The process-wide singleton, created on first use and never deleted (the class system keeps it).
  static Derived* getType();
  // "korvax.graphics.datatype.<name>"
  static const char* getDataTypeName();
  // A new C-heap string holding the class name; the caller frees it with utFree.
  static char* getClassName() { return utStrdup(Derived::kClassName); }

  const char* getDeclarationName() const override { return Derived::kName; }
  const char* getName() const override { return Derived::kName; }
  const char* getCategoryName() const override { return "Fundamental"; }
  int getStorageType() override { return objsys::cosStorageIndirect; }
  std::size_t getSizeInBits() const override { return 8 * Derived::kValueSizeInBytes; }
  std::size_t getValueSizeInBytes(objsys::COSValue) const override { return Derived::kValueSizeInBytes; }

  objsys::COSValue copy(objsys::COSValue value) override;
  void destroy(objsys::COSValue value) const override { freeValueBlock<Value>(value); }

  // Two empty slots are equal, an empty and a full one are not; values compare with Value's own
  // equality, so a value holding NaN is unequal even to itself.
  bool isEqual(objsys::COSValue a, objsys::COSValue b) const override {
    if (a.isEmpty() || b.isEmpty()) return a == b;
    return *a.as<const Value>() == *b.as<const Value>();
  }
  objsys::COSOrderRelation compare(objsys::COSValue a, objsys::COSValue b) override {
    return isEqual(a, b) ? objsys::cosEqual : objsys::cosUnordered;
  }

  // Made on the first call and shared afterwards; a failed allocation is retried on the next call.
  objsys::COSValue getDefaultValue() const override;

 protected:
  BasicDataType() = default;
};

}  // namespace graphics::datatype
