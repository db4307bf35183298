// Raising identifiers with the library's own texts, and the list of every identifier declared.
#include "datatype/errors.h"

#include "datatype/arrays/shaped_array_ids.h"

namespace graphics::datatype {

void raiseWithText(const char* id, const std::string& text) { zxErrMsgIdAndTxt(id, "%s", text.c_str()); }

std::vector<std::string> declaredIdentifiers() {
  std::vector<std::string> ids;
  // From each identifier's qualified name, without making its exception class.
  const auto add = [&ids]<class Id>() { ids.push_back(fl::except::identifierOf(Id::qualified_name)); };
#define ORB_MSG_ID(ns, key) add.operator()<ns::key>();
#define ORB_MSG_ID_PARTS(ns, component, catalog, key) add.operator()<ns::key>();
#define ORB_MSG_TEXT_ID(ns, key, id) ids.emplace_back(id);
#include "datatype/errors.def"
#define ORB_SHAPED_ARRAY_LEAF_ID_Range(T) add.operator()<Korvax::orb::shaped_arrays::T##Range>();
#define ORB_SHAPED_ARRAY_LEAF_ID_Predicate(T) add.operator()<Korvax::orb::shaped_arrays::T##Predicate>();
#define ORB_SHAPED_ARRAY_LEAF_ID_NoLeaf(T)
#define ORB_SHAPED_ARRAY(T, Checks, Empty, DefaultText, ParseClass, EmptyReadBack, ValueLeaf, Members) \
  add.operator()<Korvax::orb::shaped_arrays::T##Size>();                                               \
  add.operator()<Korvax::orb::shaped_arrays::T##Type>();                                               \
  ORB_SHAPED_ARRAY_LEAF_ID_##ValueLeaf(T) add.operator()<datatypes::T::ParseException>();
#include "datatype/arrays/shaped_arrays.def"
#undef ORB_SHAPED_ARRAY_LEAF_ID_Range
#undef ORB_SHAPED_ARRAY_LEAF_ID_Predicate
#undef ORB_SHAPED_ARRAY_LEAF_ID_NoLeaf
  return ids;
}

}  // namespace graphics::datatype
