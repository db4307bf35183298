// What the geometry conversions share; included only by the library's geometry sources.
//   refuse<Id>()                 raises an identifier, with its own text where it travels with one
//   ArrayRefusals, readOrRefuse  guilib's four array faults turned into a type's identifiers
//   parseOrRefuse                guilib's text parse failure turned into a type's identifier
//   numbersText                  numbers written as matrix text that guilib's parsers read back
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "datatype/errors.h"
#include "guilib/array_exceptions.h"
#include "guilib/convert_from_string_utils.h"

namespace graphics::datatype::geometry {

// The texts of the set-check identifiers, which are raised with a text of the library's own.
template <class Id>
inline constexpr const char* kOwnText = nullptr;
template <>
inline constexpr const char* kOwnText<Korvax::orb::set_chck::Expected3ElementVector> =
    "Value must be a 3 element numeric vector.";
template <>
inline constexpr const char* kOwnText<Korvax::orb::set_chck::Matrix_to_3element_Vector_set_check_fcn::ExpectedFinite> =
    "Input values must be finite numbers.";

template <class Id>
[[noreturn]] void refuse() {
  if constexpr (requires { Id::text_id; }) {
    static_assert(kOwnText<Id> != nullptr, "an identifier raised by text needs its text");
    raiseWithText<Id>(kOwnText<Id>);
  } else {
    raise<Id>();
  }
}

// The identifiers a type raises for an array without data, of a class it does not read, of the wrong
// element count or shape, and holding numbers it refuses. Data is void for a type that refuses no
// numbers.
template <class NullId, class ClassId, class ShapeId, class DataId>
struct ArrayRefusals {
  using Null = NullId;
  using Class = ClassId;
  using Shape = ShapeId;
  using Data = DataId;
};

// Runs read (a guilib array reader) and raises the type's identifier for the fault it reports.
template <class Refusals, class Read>
decltype(auto) readOrRefuse(Read&& read) {
  try {
    return read();
  } catch (const gui_objects::NullArrayException&) {
    refuse<typename Refusals::Null>();
  } catch (const gui_objects::InvalidArrayClassException&) {
    refuse<typename Refusals::Class>();
  } catch (const gui_objects::InvalidArrayShapeException&) {
    refuse<typename Refusals::Shape>();
  } catch (const gui_objects::InvalidArrayDataException&) {
    if constexpr (std::is_void_v<typename Refusals::Data>) {
      throw;
    } else {
      refuse<typename Refusals::Data>();
    }
  }
}

// Runs parse (a guilib text parser) and raises Id for text that it refuses.
template <class Id, class Parse>
decltype(auto) parseOrRefuse(Parse&& parse) {
  try {
    return parse();
  } catch (const gui_objects::convert_from_string_utils::ParseException&) {
    refuse<Id>();
  }
}

// Row-major numbers, cols to a row, in brackets, the rows separated by "; " and the numbers in a row by
// one blank, each the shortest text that reads back the same: "[1 2 3]", "[1 0; 0 1]".
std::string numbersText(std::span<const double> values, std::size_t cols);

}  // namespace graphics::datatype::geometry
