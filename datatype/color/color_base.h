// ColorBase, the color every color property stores (four intensities kept inside [0, 1]), and
// ColorNameTable, the process-wide table of color names that text is looked up in.
#pragma once

#include <cstddef>
#include <exception>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "datatype/export.h"
#include "guilib/auto_ptr.h"
#include "guilib/value_types.h"

namespace graphics::datatype {

// Red, green, blue and alpha, each a number in [0, 1] that is not NaN; opaque black by default. No
// setter stores a component outside that range: it raises "Korvax:orb:ColorBase:BadColorValue" and
// leaves the component as it was.
class ORB_EXPORT ColorBase {
 public:
  ColorBase() = default;
  ColorBase(const ColorBase&) = default;
  ColorBase& operator=(const ColorBase&) = default;

  double getRed() const { return red_; }
  double getGreen() const { return green_; }
  double getBlue() const { return blue_; }
  double getAlpha() const { return alpha_; }
  void setRed(double value) { red_ = checked(value); }
  void setGreen(double value) { green_ = checked(value); }
  void setBlue(double value) { blue_ = checked(value); }
  void setAlpha(double value) { alpha_ = checked(value); }

  gui_objects::Color4d getAsColor4d() const { return {red_, green_, blue_, alpha_}; }
  gui_objects::Color4b getAsColor4b() const { return getAsColor4d().asColor4b(); }
  // A new 4-by-1 uint8 column (deliberately not a row): red, green, blue, alpha as bytes.
  gui_objects::ZxArrayPtr getColorAsArray() const;

  // A color name (any case, abbreviated while unique) sets red, green and blue and keeps alpha;
  // three numbers set red, green and blue and make the color opaque; four numbers set all four.
  // Components are stored one at a time, so a bad later component leaves the earlier ones changed.
  void setColorFromString(std::string_view text);

  // Values handed to the class system come from the host allocator, whichever side frees them.
  static void* operator new(std::size_t size);
  static void operator delete(void* block);

 protected:
  // All four are checked before any is stored.
  ColorBase(double red, double green, double blue, double alpha);
  bool operator==(const ColorBase& other) const = default;

 private:
  static double checked(double component) {
    if (!(component >= 0.0 && component <= 1.0)) refuseComponent();
    return component;
  }
  [[noreturn]] static void refuseComponent();

  double red_ = 0.0;
  double green_ = 0.0;
  double blue_ = 0.0;
  double alpha_ = 1.0;
};

// Raised by the table when a name begins no key.
class ORB_EXPORT MissingNameException : public std::exception {
 public:
  const char* what() const noexcept override;
};

// Raised by the table when a name begins several keys and equals none.
class ORB_EXPORT AmbiguousNameException : public std::exception {
 public:
  const char* what() const noexcept override;
};

// The color names, one table per process: keys in byte order, each naming an RGB triple. A name is
// looked up lowercased; it selects the one key it begins, or among several the key it equals.
class ORB_EXPORT ColorNameTable {
 public:
  using Entries = std::map<std::string, gui_objects::Color3d, std::less<>>;

  // The table, made with its thirteen initial names on the first call; it lives as long as the process.
  static ColorNameTable& getInstance();

  // Whether some key begins with the lowercased name.
  bool isColorName(std::string_view name) const;
  // The triple the name selects; raises MissingNameException or AmbiguousNameException.
  gui_objects::Color3d getColorValue(std::string_view name) const;
  // Sets the entry whose key is name exactly (kept as given, not lowercased). Without overwrite, a
  // name that begins any key is refused with "Korvax:datatypes:colornametable:AddNameColor".
  void addNamedColor(const std::string& name, const gui_objects::Color3d& rgb, bool overwrite);
  // Sets several entries as addNamedColor does with overwrite, all of them or, when memory runs out,
  // none; a name given twice takes its last triple.
  void addNamedColors(const std::vector<std::pair<std::string, gui_objects::Color3d>>& colors);

  const Entries& entries() const { return entries_; }
  // For test harnesses that start every run from the same table: the table set back to entries it
  // had. The library itself never removes an entry.
  void restoreForTests(const Entries& entries) { entries_ = entries; }

 private:
  ColorNameTable();

  Entries entries_;
};

}  // namespace graphics::datatype
