// The public headers of every property type that all_types.def lists.
#pragma once

#include "datatype/arrays/shaped_arrays.h"
#include "datatype/color/color_table.h"
#include "datatype/color/mesh_alpha.h"
#include "datatype/color/styled_colors.h"
#include "datatype/enums/enum_types.h"
#include "datatype/scalars/constrained_scalars.h"
#include "datatype/styles/style_arrays.h"
#include "datatype/text/text_string.h"
