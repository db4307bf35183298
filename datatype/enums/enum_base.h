// The value base of every enumerated property type and the warning an element may carry.
#pragma once

#include <string>
#include <vector>

#include "datatype/export.h"

namespace graphics::datatype {

// The statuses of an enumeration's names, as the family tables write them.
struct EnumStatus {
  static constexpr int offered = 0;  // matched, and listed among the possible values
  static constexpr int hidden = 1;   // matched, never listed
  static constexpr int warned = 2;   // matched with a warning, never listed
};

// An enumerated value: one signed 8-bit ordinal. Concrete types add operator== and predicates named
// after their elements.
class ORB_EXPORT EnumBase {
 public:
  explicit constexpr EnumBase(signed char ordinal = 0) : ordinal_(ordinal) {}
  constexpr int getIntValue() const { return ordinal_; }

 private:
  signed char ordinal_;
};

// What an element accepted with a warning hands out when it is used. The default instance warns of
// nothing; one made with an identifier issues it through the host's warning call.
class ORB_EXPORT EnumValueWarningMessage {
 public:
  EnumValueWarningMessage() = default;
  explicit EnumValueWarningMessage(std::string id, std::vector<std::string> arguments = {});
  EnumValueWarningMessage(const EnumValueWarningMessage&) = default;
  EnumValueWarningMessage& operator=(const EnumValueWarningMessage&) = default;
  virtual ~EnumValueWarningMessage();

  // Issues the warning (if any); a pending user interrupt stays pending across it.
  virtual void throwWarning() const;

 private:
  std::string id_;
  std::vector<std::string> arguments_;
};

}  // namespace graphics::datatype
