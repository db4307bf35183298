// Raising identifiers with the library's own texts.
#include "datatype/errors.h"

namespace graphics::datatype {

void raiseWithText(const char* id, const std::string& text) { zxErrMsgIdAndTxt(id, "%s", text.c_str()); }

}  // namespace graphics::datatype
