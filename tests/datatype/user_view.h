// What the type tests share: a property set from a host literal or a text through its registered
// conversions, reduced to what a user sees (the read-back literal and text, or the identifier).
#pragma once

#include <string>

#include "cmdlanglib/literal.h"
#include "datatype/data_type_base.h"
#include "foundationlib/except.h"
#include "objsys/cos_package.h"
#include "objsys/cos_type_conversion.h"
#include "utillib/ut.h"

namespace userview {

inline std::string fullNameOf(const std::string& type) {
  return std::string(graphics::datatype::kPackageName) + "." + type;
}

// The stored value's array read back as a literal, then " | " and its text; or "error: <identifier>".
inline std::string seen(const std::string& type, objsys::COSValue value) {
  const std::string full = fullNameOf(type);
  // The value is destroyed however the read-backs end.
  const struct Destroyer {
    const std::string& full;
    objsys::COSValue value;
    ~Destroyer() { objsys::COSTypeRepository::getType(full.c_str())->destroy(value); }
  } destroyer{full, value};
  const gui_objects::ZxArrayPtr array(
      objsys::COSTypeRepository::getConversion("any", full.c_str())->to(value).as<zxArray>());
  const objsys::COSValue text = objsys::COSTypeRepository::getConversion("asciiString", full.c_str())->to(value);
  std::string result = cmdlang::writeLiteral(array.get()) + " | " + (text.isEmpty() ? "" : text.as<const char>());
  utFree(text.pointer());
  return result;
}

template <class Convert>
std::string outcome(Convert&& convert) {
  try {
    return convert();
  } catch (const fl::except::IMsgIDException& error) {
    return std::string("error: ") + error.get_error_id();
  }
}

// What setting the literal gives.
inline std::string setting(const std::string& type, const char* literal) {
  return outcome([&] {
    const gui_objects::ZxArrayPtr array = cmdlang::readLiteral(literal);
    const std::string full = fullNameOf(type);
    return seen(type,
                objsys::COSTypeRepository::getConversion("any", full.c_str())->from(objsys::COSValue(array.get())));
  });
}

// What parsing the text gives.
inline std::string parsing(const std::string& type, const char* text) {
  return outcome([&] {
    const std::string full = fullNameOf(type);
    return seen(type,
                objsys::COSTypeRepository::getConversion("asciiString", full.c_str())->from(objsys::COSValue(text)));
  });
}

}  // namespace userview
