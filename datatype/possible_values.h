// The cursor over the values a type offers by name: each offered name converted through the type's
// own string conversion.
#pragma once

#include <string_view>
#include <vector>

#include "objsys/cos_data_type.h"

namespace graphics::datatype {

// Makes the values up front and destroys them with the data type when the last reference goes; the
// values yielded stay valid while the cursor lives. fullTypeName selects the ("asciiString", type)
// conversion; a name it refuses is left out.
class NamedValuesCursor : public objsys::COSEnumeration {
 public:
  NamedValuesCursor(objsys::COSDataType* type, const char* fullTypeName, const std::vector<std::string_view>& names);
  bool hasMoreElements() const override { return next_ < values_.size(); }
  objsys::COSValue nextElement() override { return hasMoreElements() ? values_[next_++] : objsys::COSValue(); }

 protected:
  ~NamedValuesCursor() override;

 private:
  objsys::COSDataType* type_;
  std::vector<objsys::COSValue> values_;
  std::size_t next_ = 0;
};

}  // namespace graphics::datatype
