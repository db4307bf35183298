// The nested style enumerations of composite values (MeshAlphaStyle, RGBAColorStyle, ...): integer
// enumerations whose stored words are the style values themselves.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "datatype/enums/name_matcher.h"
#include "datatype/enums/orb_enumeration_type.h"
#include "datatype/export.h"

namespace graphics::datatype {

struct StyleEntry {
  int value;
  const char* name;
  EnumerationStatus status = EnumStatus::offered;
};

// A style's names matched by the enumeration rule, and the names it offers.
class ORB_EXPORT StyleEnumeration {
 public:
  explicit StyleEnumeration(std::span<const StyleEntry> entries);
  // The style the text names, or nothing.
  std::optional<int> find(std::string_view text) const;
  // The name of the style, or null.
  const char* nameOf(int value) const;
  // The offered names, in order.
  std::vector<std::string_view> offeredNames() const;
  // The offered names as messages list them: 'flat' | 'interp'.
  const std::string& validValues() const { return validValues_; }
  const OrbEnumerationType& enumeration() const { return *enumeration_; }

 private:
  OrbEnumerationType* enumeration_;  // lives as long as the style class, for the process
  // The same names matched by the same rule, without the class system's interface in the way: the
  // hot path of every color and alpha text.
  NameMatcher names_;
  std::vector<int> values_;
  std::string validValues_;
};

}  // namespace graphics::datatype
