// The host's graphics objects: figures, axes, lines, surfaces and texts whose properties are slots
// of the registered data types, set and read back through the registered conversions.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "arraylib/zxarray.h"
#include "foundationlib/visibility.h"
#include "objsys/cos_data_type.h"
#include "objsys/cos_interface.h"

namespace objsys {

class COSTypeConversion;
class HandleTable;

// A graphics object. Its properties are those its class declares (graphics_classes.def) whose data
// types are registered when the object is made; each starts as a copy of its type's default.
//
// The handle table of the current graphics context holds every live object; the Parent property
// holds a reference to the parent, and the parent lists its children without holding them. Deleting
// an object deletes its children first, releases every value it holds and its handle, so that no
// reference cycle outlives it; references held elsewhere keep the object, deleted, until they go.
//
// Refusals are host errors: "Korvax:objsys:UnknownClass", "Korvax:objsys:UnknownProperty",
// "Korvax:objsys:DeletedObject", "Korvax:objsys:InvalidParent", or the identifier the property's
// data type raises. A refused assignment leaves the previous value in place.
class KX_HOST_API GraphicsObject final : public COSInterface {
 public:
  // A new object of the class, mapped to a new handle in the current graphics context.
  static GraphicsObject* create(std::string_view className);
  // The live graphics object the handle names in the current context, or null.
  static GraphicsObject* fromHandle(double handle);
  // The class names, in declaration order.
  static std::vector<std::string> classNames();
  // The properties a new object of the class has, in declaration order, with their data types (the
  // properties whose types are registered with a conversion from arrays); none for an unknown class.
  static std::vector<std::pair<std::string, COSDataType*>> classProperties(std::string_view className);

  const char* getClassName() const override { return className_.c_str(); }
  bool isDeleted() const override { return deleted_; }
  double handle() const { return handle_; }
  GraphicsObject* parent() const { return parent_; }
  const std::vector<GraphicsObject*>& children() const { return children_; }

  // The property names, in declaration order.
  std::vector<std::string> propertyNames() const;
  // The property's data type (names match in any case).
  COSDataType& propertyType(std::string_view name) const;
  // The value slot as stored; it stays owned by the object.
  COSValue propertyValue(std::string_view name) const;
  // Adds a property to this object alone (as a user adds a dynamic property), of the registered data
  // type typeName (a short name in the graphics package), starting as a copy of its default. Raises
  // "Korvax:objsys:DuplicateProperty" for a name the object has and "Korvax:objsys:NoConversion" for a
  // type that is not registered with a conversion from arrays.
  void addProperty(std::string_view name, std::string_view typeName);
  // Stores the value the property's ("any", type) conversion makes of array.
  void set(std::string_view name, const zxArray* array);
  // A new array of the value, through the same conversion.
  zxArray* get(std::string_view name) const;
  // Deletes the object and its descendants, children first; a deleted object is left as it is.
  void deleteObject();

 private:
  struct Slot {
    std::string name;
    COSDataType* type;
    // The type's ("any", type) conversion, which the repository keeps for the life of the process.
    const COSTypeConversion* arrays;
    COSValue value;
  };

  GraphicsObject(std::string_view className, std::vector<Slot> slots);
  ~GraphicsObject() override;
  // The slot's index; raises UnknownProperty.
  std::size_t indexOf(std::string_view name) const;
  void requireLive() const;
  // The object a stored Parent value refers to; raises InvalidParent for anything but a live graphics
  // object that is not this object or one of its descendants.
  GraphicsObject* parentIn(const Slot& slot, COSValue value) const;
  void relink(GraphicsObject* parent);
  // Marks this object deleted and releases its values and its handle; its subtree is going too.
  void release();

  std::string className_;
  std::vector<Slot> slots_;
  HandleTable* table_ = nullptr;  // the table of the context the object was made in
  double handle_ = 0;
  GraphicsObject* parent_ = nullptr;
  std::vector<GraphicsObject*> children_;
  bool deleted_ = false;
};

}  // namespace objsys
