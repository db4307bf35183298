// ColorTable: its data type and its conversions, which extend the one color name table.
#include "datatype/color/color_table.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "arraylib/zxformat.h"
#include "datatype/conversion_definitions.h"
#include "datatype/data_type_definitions.h"
#include "datatype/errors.h"
#include "guilib/convert_from_string_utils.h"

namespace graphics::datatype {
namespace {

using NamedColor = std::pair<std::string, gui_objects::Color3d>;

// The first three doubles of a field's data, read without checking its class or size, deliberately:
// whatever the field holds is taken as doubles. Only bytes the array has are read; missing ones are
// zero, so a short or non-numeric field can never read outside its array. A sparse field's data holds
// its stored elements only (nzmax of them), not one per element of its shape.
gui_objects::Color3d firstThreeDoubles(const zxArray& field) {
  double rgb[3] = {0.0, 0.0, 0.0};
  const void* data = zxGetData(&field);
  const bool plainData = zxIsNumeric(&field) || zxIsLogical(&field) || zxIsChar(&field);
  if (data != nullptr && plainData) {
    const zxSize stored = zxIsSparse(&field) ? zxGetNzmax(&field) : zxGetNumberOfElements(&field);
    const std::size_t bytes = std::min(sizeof rgb, stored * zxGetElementSize(&field));
    std::memcpy(rgb, data, bytes);
  }
  return {rgb[0], rgb[1], rgb[2]};
}

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

// Whether a name is one a struct field could have: a letter, then letters, digits and underscores. Text
// takes no other names, so that no entry can look like numbers ("0 0 1") or blanks to later callers.
bool isFieldName(std::string_view name) {
  const auto letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  const auto digit = [](char c) { return c >= '0' && c <= '9'; };
  return !name.empty() && letter(name.front()) &&
         std::all_of(name.begin(), name.end(), [&](char c) { return letter(c) || digit(c) || c == '_'; });
}

// "name = [r g b]; ..." as named colors; refuses the whole text when any entry is malformed or names a
// color with a name no struct field could have.
std::vector<NamedColor> namedColorsOf(std::string_view text) {
  std::vector<NamedColor> colors;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(';'), text.size());
    const std::string_view entry = trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (entry.empty()) continue;
    const std::size_t equals = entry.find('=');
    const std::string_view name = trimmed(entry.substr(0, equals));
    if (equals == std::string_view::npos || !isFieldName(name)) raise<Korvax::datatypes::RGBAColor::ParseError>();
    const std::string numbers(entry.substr(equals + 1));
    const std::optional<gui_objects::Point3d> rgb =
        gui_objects::convert_from_string_utils::try_parse_1x3_double(numbers.c_str());
    if (!rgb) raise<Korvax::datatypes::RGBAColor::ParseError>();
    colors.emplace_back(std::string(name), gui_objects::Color3d{rgb->x, rgb->y, rgb->z});
  }
  return colors;
}

}  // namespace

struct ColorTableRules {
  using Value = ColorTable;

  static ColorTable fromNoArray() { return ColorTable(); }
  // Arrays of other classes are ignored: the value is the table whatever is given.
  static ColorTable fromArray(const zxArray& array) {
    const ColorTable value;
    if ((!zxIsStruct(&array) && !zxIsObject(&array)) || zxGetNumberOfElements(&array) == 0) return value;
    std::vector<NamedColor> colors;
    for (int f = 0; f < zxGetNumberOfFields(&array); ++f) {
      const zxArray* field = zxGetFieldByNumber(&array, 0, f);
      if (field == nullptr) continue;
      colors.emplace_back(zxGetFieldNameByNumber(&array, f), firstThreeDoubles(*field));
    }
    value.getTable().addNamedColors(colors);
    return value;
  }
  static zxArray* toArray(const ColorTable& value) {
    const ColorNameTable::Entries& entries = value.getTable().entries();
    std::vector<const char*> names;
    names.reserve(entries.size());
    for (const auto& entry : entries) names.push_back(entry.first.c_str());
    gui_objects::ZxArrayPtr table(zxCreateStructMatrix(1, 1, static_cast<int>(names.size()), names.data()));
    if (!table) throw fl::except::bad_alloc();
    // The names are the table's distinct keys in order, so entry f is field f.
    int field = 0;
    for (const auto& [name, rgb] : entries) {
      zxArray* row = zxCreateDoubleMatrix(1, 3, zxREAL);
      if (row == nullptr) throw fl::except::bad_alloc();
      double* values = zxGetWritablePr(row);
      values[0] = rgb.r;
      values[1] = rgb.g;
      values[2] = rgb.b;
      zxSetFieldByNumber(table.get(), 0, field++, row);
    }
    return table.release();
  }
  static zxArray* noValueArray() { return zxCreateDoubleMatrix(0, 0, zxREAL); }

  // Every entry is read before any is added, so a malformed text leaves the table unchanged.
  static ColorTable fromNoText() { return ColorTable(); }
  static ColorTable fromText(const char* text) {
    const ColorTable value;
    value.getTable().addNamedColors(namedColorsOf(text));
    return value;
  }
  // Components are written shortest-exact, so the text reads back as the same table.
  static std::optional<std::string> toText(const ColorTable& value) {
    std::string text;
    for (const auto& [name, rgb] : value.getTable().entries()) {
      if (!text.empty()) text += "; ";
      text += name + " = [";
      zx::appendElementText(text, rgb.r);
      text += ' ';
      zx::appendElementText(text, rgb.g);
      text += ' ';
      zx::appendElementText(text, rgb.b);
      text += ']';
    }
    return text;
  }
};

}  // namespace graphics::datatype

ORB_DEFINE_DATA_TYPE(graphics::datatype::ColorTableDataType)
ORB_DEFINE_CONVERSIONS(graphics::datatype::ColorTableRules)
