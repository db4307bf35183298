// The public headers of every property type that all_types.def lists.
#pragma once

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
// singleton and its full name.
struct TypeRow {
  const char* name;
  objsys::COSDataType* (*dataType)();
  const char* (*fullName)();
};

#define ORB_TYPE(Name, DataType, ArrayConversion, TextConversion) \
  TypeRow{#Name, [] { return static_cast<objsys::COSDataType*>(DataType::getType()); }, &DataType::getDataTypeName},
inline constexpr TypeRow kEveryType[] = {
#include "datatype/all_types.def"
};

}  // namespace graphics::datatype
