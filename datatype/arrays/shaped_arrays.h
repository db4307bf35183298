// The shaped array types (colormaps, alphamaps, patch, surface and primitive data, limits, ticks, text
// position), generated from shaped_arrays.def. For each row T:
//   T              the value, an ArrayBase accepted by T's predicates; its static predicates take an
//                  array and a failure slot, its member predicates test the held array;
//   TDataType      the data type, whose default is T's default text parsed by TSC;
//   TMC, TSC       the array and string conversions;
//   Korvax::orb::shaped_arrays::TSize, TType (and TRange or TPredicate)  T's own identifiers.
// Constructing T from an array it refuses raises the failure of the last predicate tried.
#pragma once

#include <cstddef>

#include "arraylib/zxarray.h"
#include "datatype/arrays/array_base.h"
#include "datatype/arrays/shaped_array_rules.h"
#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/exception_slot.h"
#include "datatype/export.h"

namespace graphics::datatype {

// The conversion rules of a shaped type: arrays are validated by T's constructor and read back as
// shared-data copies (or the type's canonical empty form); bracketed matrix text in, the host's
// canonical text out.
template <class T>
struct ORB_EXPORT ShapedArrayRules;

template <class Derived, class T>
class ORB_EXPORT ShapedArrayDataType : public BasicDataType<Derived, T> {
 public:
  // Deliberately smaller than the value block, which holds the whole value object.
  static constexpr std::size_t kValueSizeInBytes = 4;
  // The text is the class system's text of the held array, which reads back in the type's parse class.
  static constexpr TypeFacts kFacts{.text = TextForm::fixed};
  static T makeDefaultValue() { return T(); }

  // The default text parsed by the type's own string conversion, once; later calls share it. Defined
  // in the library only, so the cache is one per process.
  objsys::COSValue getDefaultValue() const override;
};

#define ORB_SHAPED_ARRAY_HAS_LEAF_Range true
#define ORB_SHAPED_ARRAY_HAS_LEAF_Predicate true
#define ORB_SHAPED_ARRAY_HAS_LEAF_NoLeaf false
#define ORB_PREDICATE(name, Shape, Classes, Rule)                                                         \
  static_assert(kHasValueLeaf || !shaped::reportsValueLeaf(shaped::Rule),                                 \
                #name " reports a Range or Predicate identifier that its type lacks");                    \
  static bool name(const zxArray* array, boost::exception_ptr& failure) {                                 \
    return shaped::checkPredicate(row(), {shaped::Shape, shaped::Classes, shaped::Rule}, array, failure); \
  }                                                                                                       \
  bool name() const { return shaped::checkPredicate(row(), {shaped::Shape, shaped::Classes, shaped::Rule}, getPtr()); }
#define ORB_BUFFER_TEST(name, Rule)                               \
  template <class E>                                              \
  static bool name(const E* values, std::size_t count) {          \
    return shaped::passesBufferRule(shaped::Rule, values, count); \
  }
#define ORB_SHAPED_ARRAY(T, Checks, Empty, DefaultText, ParseClass, EmptyReadBack, ValueLeaf, Members) \
  class ORB_EXPORT T : public ArrayBase {                                                              \
    static constexpr bool kHasValueLeaf = ORB_SHAPED_ARRAY_HAS_LEAF_##ValueLeaf;                       \
                                                                                                       \
   public:                                                                                             \
    T() = default;                                                                                     \
    explicit T(const zxArray* array);                                                                  \
    static const shaped::Row& row();                                                                   \
    bool isValid(const zxArray* array, boost::exception_ptr& failure) const override;                  \
    unsigned getMaxNumberOfValuesToCompare() const override;                                           \
    Members                                                                                            \
  };                                                                                                   \
  class ORB_EXPORT T##DataType final : public ShapedArrayDataType<T##DataType, T> {                    \
   public:                                                                                             \
    static constexpr const char* kName = #T;                                                           \
    static constexpr const char* kClassName = #T "DataType";                                           \
  };                                                                                                   \
  class ORB_EXPORT T##MC final : public ArrayConversion<ShapedArrayRules<T>> {};                       \
  class ORB_EXPORT T##SC final : public TextConversion<ShapedArrayRules<T>> {};
#include "datatype/arrays/shaped_arrays.def"
#undef ORB_SHAPED_ARRAY_HAS_LEAF_Range
#undef ORB_SHAPED_ARRAY_HAS_LEAF_Predicate
#undef ORB_SHAPED_ARRAY_HAS_LEAF_NoLeaf

}  // namespace graphics::datatype
