// What the geometry conversions share.
#include "datatype/geometry/geometry_support.h"

#include "arraylib/zxformat.h"

namespace graphics::datatype::geometry {

std::string numbersText(std::span<const double> values, std::size_t cols, std::string_view open,
                        std::string_view rowSeparator, std::string_view close) {
  std::string text(open);
  for (std::size_t index = 0; index < values.size(); ++index) {
    if (index != 0) text += index % cols == 0 ? rowSeparator : std::string_view(" ");
    zx::appendElementText(text, values[index]);
  }
  text += close;
  return text;
}

}  // namespace graphics::datatype::geometry
