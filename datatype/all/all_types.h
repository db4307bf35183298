// The master list of every property type (all_types.def) as rows that code can walk, with the public
// headers of every type it lists.
#pragma once

#include <string>
#include <vector>

#include "datatype/arrays/shaped_arrays.h"
#include "datatype/color/color_table.h"
#include "datatype/color/mesh_alpha.h"
#include "datatype/color/styled_colors.h"
#include "datatype/enums/enum_types.h"
#include "datatype/enums/on_off_boolean.h"
#include "datatype/enums/type_name.h"
#include "datatype/geometry/bounding_volume.h"
#include "datatype/geometry/geometry_vectors.h"
#include "datatype/geometry/matrix4x4.h"
#include "datatype/references/callback.h"
#include "datatype/references/handle_or_empty.h"
#include "datatype/references/java_peer.h"
#include "datatype/scalars/constrained_scalars.h"
#include "datatype/scalars/ranged_scalar.h"
#include "datatype/styles/n_line_styles.h"
#include "datatype/styles/style_arrays.h"
#include "datatype/text/case_insensitive_text.h"
#include "datatype/text/n_strings.h"
#include "datatype/text/numeric_or_string.h"
#include "datatype/text/printf_format.h"
#include "datatype/text/text_string.h"
#include "datatype/text/utf16_string.h"

namespace graphics::datatype {

// One row per type of all_types.def, for code that walks every type: its short name, its data type
// singleton, its full name and its facts.
struct TypeRow {
  const char* name;
  objsys::COSDataType* (*dataType)();
  const char* (*fullName)();
  TypeFacts facts;
};

#define ORB_TYPE(Name, DataType, ArrayConversion, TextConversion)                                                   \
  TypeRow{#Name, [] { return static_cast<objsys::COSDataType*>(DataType::getType()); }, &DataType::getDataTypeName, \
          DataType::kFacts},
inline constexpr TypeRow kEveryType[] = {
#include "datatype/all/all_types.def"
};

// Every identifier the library declares, and so every one it can raise: the catalogue of errors.def
// and the identifiers generated from the shaped array rows.
std::vector<std::string> declaredIdentifiers();

}  // namespace graphics::datatype
