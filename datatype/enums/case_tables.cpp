// The global locale's byte tables.
#include "datatype/enums/case_tables.h"

namespace graphics::datatype {

const CaseTables& CaseTables::current() {
  static CaseTables tables;
  // Comparing locales is a pointer comparison while the global locale stays the one the tables hold.
  const std::locale global;
  if (!tables.made_ || !(global == tables.locale_)) tables.make(global);
  return tables;
}

void CaseTables::make(const std::locale& locale) {
  const auto& ctype = std::use_facet<std::ctype<char>>(locale);
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    const auto at = static_cast<std::size_t>(byte);
    upper_[at] = ctype.toupper(c);
    lower_[at] = ctype.tolower(c);
    space_[at] = ctype.is(std::ctype_base::space, c);
  }
  locale_ = locale;
  ++generation_;
  made_ = true;
}

}  // namespace graphics::datatype
