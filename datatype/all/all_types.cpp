// The registration of every property type: one callback per row of all_types.def, queued while the
// library loads and run by the first start; the facts of a type found by its name; and the list of every
// identifier the library declares.
#include "datatype/all/all_types.h"

#include <cstring>

#include "datatype/arrays/shaped_array_ids.h"
#include "datatype/errors.h"
#include "datatype/java_conversion.h"
#include "datatype/library.h"
#include "datatype/registration.h"

namespace graphics::datatype {

// How each type's Java conversion is made: array-valued types and enumerations through their families'
// factories, JavaPeer with its own (a Java object read back is held as itself), every other type through
// the peer class its facts name, with the numbers of the value itself where the type reads them.
template <class DataType>
struct JavaConversionOf {
  static objsys::JavaTypeConversion* create(DataType* type) {
    if constexpr (requires { typename DataType::ValueType; } &&
                  std::is_base_of_v<ArrayBase, typename DataType::ValueType>) {
      return ArrayBase::createJavaConverter(type, DataType::kFacts.javaForm);
    } else if constexpr (requires { &DataType::javaNumbers; }) {
      return new PeerJavaConversion(DataType::getDataTypeName(), DataType::kFacts.javaPeer, DataType::kFacts.javaForm,
                                    &DataType::javaNumbers);
    } else {
      return new PeerJavaConversion(DataType::getDataTypeName(), DataType::kFacts.javaPeer, DataType::kFacts.javaForm);
    }
  }
};
template <class E>
struct JavaConversionOf<EnumValueDataType<E>> {
  static objsys::JavaTypeConversion* create(EnumValueDataType<E>* type) {
    return OrbTypedEnumStringType::createJavaConverter(&type->enumType(), EnumValueDataType<E>::kFacts.javaForm);
  }
};
template <>
struct JavaConversionOf<JavaPeerDataType> {
  static objsys::JavaTypeConversion* create(JavaPeerDataType*) { return new JavaPeerJC(); }
};

#define ORB_TYPE(Name, DataType, ArrayConversion, TextConversion) \
  ORB_QUEUE_REGISTRATION(Name, DataType, ArrayConversion, TextConversion, JavaConversionOf<DataType>)
#include "datatype/all/all_types.def"

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

const graphics::datatype::TypeFacts* orbdatatypes_type_facts(const char* fullName) {
  if (fullName == nullptr) return nullptr;
  for (const graphics::datatype::TypeRow& row : graphics::datatype::kEveryType) {
    if (std::strcmp(row.fullName(), fullName) == 0) return &row.facts;
  }
  return nullptr;
}
