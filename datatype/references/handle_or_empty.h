// HandleOrEmpty: a reference to one class-system object or to none, held as an object array; its
// data type and conversions; and COSInterface, the data type of a bare object reference.
#pragma once

#include <cstddef>

#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/export.h"
#include "objsys/cos_interface.h"

struct zxArray;

namespace objsys {
class AnyDataType;
}

namespace graphics::datatype {

// A reference to another graphics object (a parent, a current object). It always holds one array,
// through the class system's "any" data type so that the object's reference count is kept: a shared
// copy of an assigned object array, the object a numeric handle stands for, or an empty
// "korvax.graphics.GraphicsPlaceholder" array for no object. Anything else (text, a handle that names
// no live object) is refused with "Korvax:datatypes:handleoremptydatatype:InvalidOrbHandle", and the
// value keeps what it held.
class ORB_EXPORT HandleOrEmpty {
 public:
  HandleOrEmpty();
  explicit HandleOrEmpty(const zxArray* array);
  explicit HandleOrEmpty(const objsys::COSInterfacePtr& object);
  HandleOrEmpty(const HandleOrEmpty& other);
  HandleOrEmpty& operator=(const HandleOrEmpty& other);
  virtual ~HandleOrEmpty();

  // Null and empty arrays of any class give no object; an object array is shared; a double array
  // stands for the object its first element is the handle of (the other elements are ignored).
  virtual void setHandle(const zxArray* array);
  // The held array, still owned by the value.
  const zxArray* getHandle() const;
  // A new copy of the held array; the caller owns it.
  zxArray* getSharedObjectCopy() const;
  // The object, or null for no object.
  objsys::COSInterfacePtr getCOSReference() const;
  // Equal when both refer to no object or to the same object (identity).
  bool operator==(const HandleOrEmpty& other) const;

  // The object a property value of any registered type (typeName, its full name) refers to, read
  // through the type's array conversion: null for an empty array or a type without one.
  static objsys::COSInterfacePtr convertValue(const char* typeName, objsys::COSValue value);

  static void* operator new(std::size_t size);
  static void operator delete(void* block);

 private:
  friend class HandleOrEmptyDataType;
  // Absence is not emptiness: a null array is not empty, deliberately.
  static bool isArrayEmpty(const zxArray* array);
  static zxArray* createEmptyObject();
  static objsys::AnyDataType& getMxArrayDataType();
  static zxArray* convertDoubleToHandle(const zxArray* array);

  objsys::COSValue held_;  // a value of the "any" data type
};

class ORB_EXPORT HandleOrEmptyDataType : public BasicDataType<HandleOrEmptyDataType, HandleOrEmpty> {
 public:
  static constexpr const char* kName = "HandleOrEmpty";
  static constexpr const char* kClassName = "HandleOrEmptyDataType";
  static constexpr std::size_t kValueSizeInBytes = 8;
  // A reference has no text: every conversion to text is refused, an empty slot's too.
  static constexpr TypeFacts kFacts{.text = TextForm::refused};
  static HandleOrEmpty makeDefaultValue() { return HandleOrEmpty(); }

  // A failure while comparing is raised as "Korvax:datatypes:handleoremptydatatype:IsEqualException".
  bool isEqual(objsys::COSValue a, objsys::COSValue b) const override;
  bool canContainInterfaces() override { return true; }
  objsys::COSEnumeration* getInterfaces(objsys::COSValue value) override;
  objsys::COSEnumeration* getKXArrays(objsys::COSValue value) override;
};

// Arrays as setHandle takes them; a value reads back as a copy of its array, an empty slot as an
// empty placeholder array. There is no text form: text is refused either way, deliberately.
struct ORB_EXPORT HandleOrEmptyRules;
class ORB_EXPORT HandleOrEmptyMC final : public ArrayConversion<HandleOrEmptyRules> {};
class ORB_EXPORT HandleOrEmptySC final : public TextConversion<HandleOrEmptyRules> {};

// A bare reference to a class-system object (a counted pointer, null for none): the target of the
// numeric-handle conversion. Arrays are read as HandleOrEmpty reads them and read back as a 1-by-1
// object array, or an empty placeholder array for none; text is refused as for HandleOrEmpty.
class ORB_EXPORT COSInterfaceDataType : public BasicDataType<COSInterfaceDataType, objsys::COSInterfacePtr> {
 public:
  static constexpr const char* kName = "COSInterface";
  static constexpr const char* kClassName = "COSInterfaceDataType";
  static constexpr std::size_t kValueSizeInBytes = 4;
  static constexpr TypeFacts kFacts{.text = TextForm::refused};
  static objsys::COSInterfacePtr makeDefaultValue() { return {}; }

  bool canContainInterfaces() override { return true; }
  objsys::COSEnumeration* getInterfaces(objsys::COSValue value) override;
};

struct ORB_EXPORT COSInterfaceRules;
class ORB_EXPORT COSInterfaceMC final : public ArrayConversion<COSInterfaceRules> {};
class ORB_EXPORT COSInterfaceSC final : public TextConversion<COSInterfaceRules> {};

}  // namespace graphics::datatype
