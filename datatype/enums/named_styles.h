// The data type of a value that may be one of a set of named drawing styles (alpha and color modes):
// its possible values are the style's offered names.
#pragma once

#include "datatype/data_type_base.h"
#include "datatype/enums/style_enumeration.h"
#include "datatype/export.h"

namespace graphics::datatype {

// A new cursor over the values that fullName's string conversion makes of the offered names.
ORB_EXPORT objsys::COSEnumeration* newOfferedStylesCursor(objsys::COSDataType* type, const char* fullName,
                                                          const StyleEnumeration& styles);

template <class Derived, class Value, class Style>
class ORB_EXPORT NamedStylesDataType : public BasicDataType<Derived, Value> {
 public:
  const char* getPossibleValuesDescription() const override { return ""; }
  bool isPossibleValuesFinite() const override { return true; }
  objsys::COSEnumeration* getPossibleValues() override {
    return newOfferedStylesCursor(this, Derived::getDataTypeName(), Style::enumeration());
  }
};

}  // namespace graphics::datatype
