// ColorBase and the color name table.
#include "datatype/color/color_base.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <optional>
#include <span>

#include "datatype/enums/case_tables.h"
#include "datatype/errors.h"
#include "datatype/value_block.h"
#include "guilib/convert_from_string_utils.h"
#include "utillib/ut.h"

namespace graphics::datatype {
namespace {

namespace parse = gui_objects::convert_from_string_utils;

// Text lowercased into a buffer that holds short texts without allocating.
class LowercaseText {
 public:
  // Lowercases with the C runtime's mapping, byte by byte.
  static LowercaseText byCRuntime(std::string_view text) {
    LowercaseText lower(text);
    lower.lowerByCRuntime();
    return lower;
  }
  // Lowercases with the mapping of the process's global locale.
  static LowercaseText byGlobalLocale(std::string_view text) {
    LowercaseText lower(text);
    const CaseTables& tables = CaseTables::current();
    for (char& c : lower.chars()) c = tables.lower(c);
    return lower;
  }

  // The C runtime's tolower, applied through its table for the current C locale: the same mapping,
  // without a call per byte.
  void lowerByCRuntime() {
    const std::int32_t* const table = *__ctype_tolower_loc();
    for (char& c : chars()) c = static_cast<char>(table[static_cast<unsigned char>(c)]);
  }

  std::string_view view() const { return {data_, size_}; }
  // NUL-terminated.
  const char* c_str() const { return data_; }

 private:
  explicit LowercaseText(std::string_view text) : size_(text.size()) {
    if (text.size() >= sizeof(inline_)) {
      heap_ = std::string(text);
      data_ = heap_.data();
    } else {
      text.copy(inline_, text.size());
      inline_[text.size()] = '\0';
    }
  }
  LowercaseText(LowercaseText&& other) noexcept : heap_(std::move(other.heap_)), size_(other.size_) {
    if (other.data_ == other.inline_) {
      std::copy(other.inline_, other.inline_ + sizeof(inline_), inline_);
      data_ = inline_;
    } else {
      data_ = heap_.data();
    }
  }
  std::span<char> chars() { return {data_, size_}; }

  char inline_[64];
  std::string heap_;
  char* data_ = inline_;
  std::size_t size_;
};

using Entries = ColorNameTable::Entries;

enum class Match { Missing, Unique, Ambiguous };

// The lookup rule over a lowercased name. The keys a name begins form a contiguous run in key order,
// starting at the first key not below the name; when the name begins several, the key equal to it
// can only be the first of the run.
Match match(const Entries& entries, std::string_view lowered, gui_objects::Color3d& rgb) {
  const auto first = entries.lower_bound(lowered);
  if (first == entries.end() || !first->first.starts_with(lowered)) return Match::Missing;
  const auto second = std::next(first);
  const bool unique = second == entries.end() || !second->first.starts_with(lowered);
  if (!unique && first->first.size() != lowered.size()) return Match::Ambiguous;
  rgb = first->second;
  return Match::Unique;
}

void printAmbiguous(std::string_view name) {
  utPrintf("graphics::datatype::ColorNameTable::getColorValue ambiguous name: %.*s\n", static_cast<int>(name.size()),
           name.data());
}

}  // namespace

ColorBase::ColorBase(double red, double green, double blue, double alpha)
    : red_(checked(red)), green_(checked(green)), blue_(checked(blue)), alpha_(checked(alpha)) {}

void ColorBase::refuseComponent() { raise<Korvax::orb::ColorBase::BadColorValue>(); }

gui_objects::ZxArrayPtr ColorBase::getColorAsArray() const {
  gui_objects::ZxArrayPtr array(zxCreateNumericMatrix(4, 1, zxUINT8_CLASS, zxREAL));
  if (!array) throw fl::except::bad_alloc();
  const gui_objects::Color4b bytes = getAsColor4b();
  auto* data = static_cast<std::uint8_t*>(zxGetWritableData(array.get()));
  data[0] = bytes.r;
  data[1] = bytes.g;
  data[2] = bytes.b;
  data[3] = bytes.a;
  return array;
}

void ColorBase::setColorFromString(std::string_view text) {
  LowercaseText lower = LowercaseText::byGlobalLocale(text);
  // The table lowercases names again with the C runtime's mapping, which leaves numbers as they are;
  // doing it here lets one lookup serve as both the name test and the lookup.
  lower.lowerByCRuntime();
  gui_objects::Color3d named;
  const Match found = match(ColorNameTable::getInstance().entries(), lower.view(), named);
  if (found != Match::Missing) {
    if (found == Match::Ambiguous) {
      printAmbiguous(lower.view());
      // Every color type reports an ambiguous name with the RGBA color's identifier, deliberately.
      raise<Korvax::datatypes::RGBAColor::AmbiguousName>();
    }
    setRed(named.r);
    setGreen(named.g);
    setBlue(named.b);
    return;
  }
  // Three numbers first; a bad component among them is final and the four-number form is not tried.
  if (const std::optional<gui_objects::Point3d> rgb = parse::try_parse_1x3_double(lower.c_str())) {
    setRed(rgb->x);
    setGreen(rgb->y);
    setBlue(rgb->z);
    setAlpha(1.0);
    return;
  }
  if (const std::optional<gui_objects::Point4d> rgba = parse::try_parse_1x4_double(lower.c_str())) {
    setRed(rgba->x);
    setGreen(rgba->y);
    setBlue(rgba->z);
    setAlpha(rgba->w);
    return;
  }
  raise<Korvax::datatypes::RGBAColor::ParseError>();
}

void* ColorBase::operator new(std::size_t size) { return allocateValueBlock(size); }

void ColorBase::operator delete(void* block) { utFree(block); }

const char* MissingNameException::what() const noexcept { return "no color name begins with this text"; }

const char* AmbiguousNameException::what() const noexcept { return "several color names begin with this text"; }

ColorNameTable::ColorNameTable() {
  // The short keys are deliberate: "b" and "bl" would otherwise begin both blue and black, and are
  // pinned to blue; "k" is black; "g" and "w" are listed though their prefixes are already unique.
  constexpr struct {
    const char* name;
    gui_objects::Color3d rgb;
  } kInitial[] = {{"yellow", {1, 1, 0}}, {"magenta", {1, 0, 1}}, {"cyan", {0, 1, 1}}, {"red", {1, 0, 0}},
                  {"green", {0, 1, 0}},  {"g", {0, 1, 0}},       {"blue", {0, 0, 1}}, {"b", {0, 0, 1}},
                  {"bl", {0, 0, 1}},     {"black", {0, 0, 0}},   {"w", {1, 1, 1}},    {"white", {1, 1, 1}},
                  {"k", {0, 0, 0}}};
  for (const auto& entry : kInitial) entries_.emplace(entry.name, entry.rgb);
}

ColorNameTable& ColorNameTable::getInstance() {
  static ColorNameTable* const table = new ColorNameTable();
  return *table;
}

bool ColorNameTable::isColorName(std::string_view name) const {
  const LowercaseText lower = LowercaseText::byCRuntime(name);
  const auto first = entries_.lower_bound(lower.view());
  return first != entries_.end() && first->first.starts_with(lower.view());
}

gui_objects::Color3d ColorNameTable::getColorValue(std::string_view name) const {
  gui_objects::Color3d rgb;
  switch (match(entries_, LowercaseText::byCRuntime(name).view(), rgb)) {
    case Match::Unique: return rgb;
    case Match::Missing: throw MissingNameException();
    case Match::Ambiguous: break;
  }
  printAmbiguous(name);
  throw AmbiguousNameException();
}

void ColorNameTable::addNamedColor(const std::string& name, const gui_objects::Color3d& rgb, bool overwrite) {
  // The test is the prefix test, so without overwrite a name that begins a key ("bl") is refused too.
  if (!overwrite && isColorName(name)) raise<Korvax::datatypes::colornametable::AddNameColor>(name);
  entries_.insert_or_assign(name, rgb);
}

void ColorNameTable::addNamedColors(const std::vector<std::pair<std::string, gui_objects::Color3d>>& colors) {
  // The new keys are allocated aside first; changing existing triples and splicing the new nodes in
  // allocates nothing, so the table changes only once nothing can fail.
  Entries added;
  for (const auto& [name, rgb] : colors) {
    if (!entries_.contains(name)) added.insert_or_assign(name, rgb);
  }
  for (const auto& [name, rgb] : colors) {
    if (const auto found = entries_.find(name); found != entries_.end()) found->second = rgb;
  }
  entries_.merge(added);
}

}  // namespace graphics::datatype
