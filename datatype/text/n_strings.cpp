// NStrings: conversions.
#include "datatype/text/n_strings.h"

#include <optional>
#include <string_view>

#include "arraylib/zxarray.h"
#include "datatype/conversion_definitions.h"
#include "datatype/data_type_definitions.h"
#include "datatype/errors.h"
#include "datatype/text/text_support.h"
#include "foundationlib/i18n/unicode.h"
#include "guilib/auto_ptr.h"

namespace graphics::datatype {
namespace {

namespace ids = Korvax::orb::datatypes::TextStringDataType;
constexpr char kSeparator = '|';

std::vector<std::string> rowsOf(const zxArray& chars) {
  if (zxGetNumberOfDimensions(&chars) != 2) raise<ids::IncorrectShape>();
  std::vector<std::string> strings;
  if (zxIsEmpty(&chars)) return strings;
  for (zxSize row = 0; row < zxGetM(&chars); ++row) {
    std::string text = rowText(&chars, row);
    text.erase(text.find_last_not_of(' ') + 1);
    strings.push_back(std::move(text));
  }
  return strings;
}

std::vector<std::string> elementsOf(const zxArray& cell) {
  if (!zxIsEmpty(&cell) && !zxIsVector2D(&cell)) raise<ids::IncorrectShape>();
  std::vector<std::string> strings;
  for (zxSize i = 0; i < zxGetNumberOfElements(&cell); ++i) {
    const zxArray* element = zxGetCell(&cell, i);
    if (element == nullptr) {
      strings.emplace_back();
      continue;
    }
    if (!isCharRow(element)) raise<ids::InvalidCellArray>();
    strings.push_back(fl::i18n::utf16ToUtf8(unitsOf(element)));
  }
  return strings;
}

}  // namespace

struct NStringsRules {
  using Value = NStrings;

  static NStrings fromArray(const zxArray& array) {
    if (zxIsChar(&array)) return NStrings(rowsOf(array));
    if (zxIsCell(&array)) return NStrings(elementsOf(array));
    raise<ids::ArrayClass>();
  }
  static zxArray* toArray(const NStrings& value) {
    gui_objects::ZxArrayPtr cell(zxCreateCellMatrix(value.size(), 1));
    for (std::size_t i = 0; i < value.size(); ++i)
      zxSetCell(cell.get(), i, zxCreateString(value.getStrings()[i].c_str()));
    return cell.release();
  }
  static zxArray* noValueArray() { return zxCreateCellMatrix(0, 1); }

  static NStrings fromText(const char* text) {
    std::vector<std::string> strings;
    const std::string_view all(text);
    if (all.empty()) return NStrings();
    std::size_t start = 0;
    while (true) {
      const std::size_t end = all.find(kSeparator, start);
      strings.emplace_back(all.substr(start, end - start));
      if (end == std::string_view::npos) break;
      start = end + 1;
    }
    return NStrings(std::move(strings));
  }
  static std::optional<std::string> toText(const NStrings& value) {
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
      if (i > 0) text += kSeparator;
      text += value.getStrings()[i];
    }
    return text;
  }
};

}  // namespace graphics::datatype

ORB_DEFINE_DATA_TYPE(graphics::datatype::NStringsDataType)
ORB_DEFINE_CONVERSIONS(graphics::datatype::NStringsRules)
