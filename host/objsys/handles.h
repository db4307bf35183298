// Numeric handles: each graphics context maps doubles to its live objects, so that a user can name
// an object by a number.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "foundationlib/visibility.h"
#include "objsys/cos_interface.h"

namespace objsys {

// How a new object's handle is chosen.
enum class HandleKind {
  // The lowest positive integer not in use, as figure numbers are (a freed number is given again).
  Integer,
  // A number never given before by this table, always between two integers (n + 0.5), so that it is
  // never mistaken for a figure number and a stale handle never names a newer object.
  Fraction,
};

// One graphics context's handles. The table holds one reference to each object it maps.
class KX_HOST_API HandleTable {
 public:
  // The table of the current graphics context (graphicsutillib's context index), made on first use.
  static HandleTable& current();

  // Maps a new handle to object and returns it.
  double add(COSInterface* object, HandleKind kind);
  // The object of the handle; null for a handle that maps nothing (NaN included).
  COSInterfacePtr find(double handle) const;
  // The object's handle, if the table maps it.
  std::optional<double> handleOf(const COSInterface* object) const;
  // Forgets the handle and releases the table's reference; an unknown handle is ignored.
  void remove(double handle);
  // Every mapped handle, in increasing order.
  std::vector<double> handles() const;

 private:
  std::map<double, COSInterfacePtr> objects_;
  // Integers are given from nextInteger_ on, or the lowest one freed below it, in logarithmic time.
  double nextInteger_ = 1;
  std::set<double> freedIntegers_;
  double nextFraction_ = 0.5;
};

}  // namespace objsys
