// RangedScalar<T, Range>: one number held within a range that the type fixes, with its data type and
// conversions; RangedScalar<double, FiniteRange> (registered as "RangedScalar") takes every finite double.
#pragma once

#include <cmath>
#include <cstddef>

#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/export.h"

namespace graphics::datatype {

// A range is a class with the registered name of its scalar type, a test, a default inside it and the
// refusal of a number outside it:
//   static constexpr const char* kTypeName;  static bool contains(double);
//   static constexpr double kDefault;        [[noreturn]] static void refuse();
// Every finite number; NaN and both infinities are refused with "Korvax:datatypes:InvalidFiniteValue".
struct ORB_EXPORT FiniteRange {
  static constexpr const char* kTypeName = "RangedScalar";
  static constexpr const char* kClassName = "RangedScalarDataType";
  static constexpr double kDefault = 0.0;
  static bool contains(double value) { return std::isfinite(value); }
  [[noreturn]] static void refuse();
};

// A number of type T that Range contains, checked whenever one is made: from a number, or from a
// scalar of another range (which is checked again against this one). A refused number raises the
// range's identifier and makes nothing.
template <class T, class Range>
class ORB_EXPORT RangedScalar {
 public:
  explicit RangedScalar(T value) : value_(check(value)) {}
  template <class OtherRange>
  explicit RangedScalar(const RangedScalar<T, OtherRange>& other) : value_(check(other.getValue())) {}

  T getValue() const { return value_; }
  bool operator==(const RangedScalar&) const = default;

 private:
  static T check(T value) {
    if (!Range::contains(static_cast<double>(value))) Range::refuse();
    return value;
  }
  T value_;
};

// Arrays: a numeric scalar of any class read by value, anything else refused with
// "Korvax:orb:dt_conv:Matrix_to_Real:ExpectedNumeric"; an empty slot reads back as the default. Text:
// one number ("2.5", "-Inf"), anything else refused with the same identifier; a number is written as
// the shortest text that reads back the same. Default: the range's kDefault (0 for FiniteRange).
template <class T, class Range>
class ORB_EXPORT RangedScalarDataType : public BasicDataType<RangedScalarDataType<T, Range>, RangedScalar<T, Range>> {
 public:
  static constexpr const char* kName = Range::kTypeName;
  static constexpr const char* kClassName = Range::kClassName;
  static constexpr std::size_t kValueSizeInBytes = sizeof(T);
  static constexpr TypeFacts kFacts{.javaPeer = &java_peers::OrbDouble};
  static RangedScalar<T, Range> makeDefaultValue() { return RangedScalar<T, Range>(Range::kDefault); }
};

template <class T, class Range>
struct ORB_EXPORT RangedScalarRules;
template <class T, class Range>
class ORB_EXPORT RangedScalarMC final : public ArrayConversion<RangedScalarRules<T, Range>> {};
template <class T, class Range>
class ORB_EXPORT RangedScalarSC final : public TextConversion<RangedScalarRules<T, Range>> {};

// The registered instantiation, under names that fit the master list's rows.
using FiniteRangedScalar = RangedScalar<double, FiniteRange>;
using FiniteRangedScalarDataType = RangedScalarDataType<double, FiniteRange>;
using FiniteRangedScalarRules = RangedScalarRules<double, FiniteRange>;
using FiniteRangedScalarMC = RangedScalarMC<double, FiniteRange>;
using FiniteRangedScalarSC = RangedScalarSC<double, FiniteRange>;

}  // namespace graphics::datatype
