// What the geometry conversions share.
#include "datatype/geometry/geometry_support.h"

#include "arraylib/zxformat.h"

namespace graphics::datatype::geometry {

std::string numbersText(std::span<const double> values, std::size_t cols) {
  std::string text;
  zx::appendMatrixText(text, values, values.size() / cols, cols,
                       {.rowSeparator = "; ", .bareScalar = false, .order = zx::MatrixLayout::Order::RowMajor});
  return text;
}

}  // namespace graphics::datatype::geometry
