// The host's graphics objects.
#include "objsys/graphics_objects.h"

#include <algorithm>
#include <cctype>
#include <memory>

#include "arraylib/zxerror.h"
#include "objsys/cos_type_conversion.h"
#include "objsys/handles.h"
#include "objsys/object_arrays.h"

namespace objsys {
namespace {

constexpr const char* kTypePackage = "korvax.graphics.datatype.";
constexpr const char* kParent = "Parent";

struct ClassRow {
  const char* name;
  HandleKind handles;
};
struct PropertyRow {
  const char* className;
  const char* name;
  const char* type;
};

#define ORB_GRAPHICS_CLASS(Name, Kind) ClassRow{#Name, HandleKind::Kind},
constexpr ClassRow kClasses[] = {
#include "objsys/graphics_classes.def"
};
#define ORB_GRAPHICS_PROPERTY(Class, Property, Type) PropertyRow{Class, #Property, #Type},
constexpr PropertyRow kProperties[] = {
#include "objsys/graphics_classes.def"
};

bool sameName(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](char x, char y) {
    return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
  });
}

// Calls visit(name, type, arrays) for each property of the class, in declaration order, whose data type
// is registered with a conversion from arrays.
template <class Visit>
void forEachRegisteredProperty(std::string_view className, const Visit& visit) {
  for (const PropertyRow& property : kProperties) {
    if (std::string_view(property.className) != "*" && property.className != className) continue;
    const std::string typeName = std::string(kTypePackage) + property.type;
    COSDataType* type = COSTypeRepository::getType(typeName.c_str());
    const COSTypeConversion* arrays = COSTypeRepository::getConversion("any", typeName.c_str());
    if (type != nullptr && arrays != nullptr) visit(property.name, type, arrays);
  }
}

// Takes a value over until it is handed on; destroys it if anything fails first.
class PendingValue {
 public:
  PendingValue(const COSDataType& type, COSValue value) : type_(type), value_(value) {}
  ~PendingValue() { type_.destroy(value_); }
  PendingValue(const PendingValue&) = delete;
  PendingValue& operator=(const PendingValue&) = delete;
  COSValue get() const { return value_; }
  COSValue release() { return std::exchange(value_, COSValue()); }

 private:
  const COSDataType& type_;
  COSValue value_;
};

}  // namespace

std::vector<std::pair<std::string, COSDataType*>> GraphicsObject::classProperties(std::string_view className) {
  std::vector<std::pair<std::string, COSDataType*>> properties;
  forEachRegisteredProperty(className, [&](const char* name, COSDataType* type, const COSTypeConversion*) {
    properties.emplace_back(name, type);
  });
  return properties;
}

GraphicsObject* GraphicsObject::create(std::string_view className) {
  const auto* row = std::ranges::find_if(kClasses, [&](const ClassRow& c) { return c.name == className; });
  if (row == std::end(kClasses)) {
    const std::string name(className);
    zxErrMsgIdAndTxt("Korvax:objsys:UnknownClass", "There is no graphics class named '%s'.", name.c_str());
  }
  std::vector<Slot> slots;
  forEachRegisteredProperty(className, [&](const char* name, COSDataType* type, const COSTypeConversion* arrays) {
    slots.push_back(Slot{name, type, arrays, COSValue()});
  });
  // Defaults are copied once the object owns its slots, so that its destructor frees them.
  auto* object = new GraphicsObject(row->name, std::move(slots));
  const COSInterfacePtr guard(object);
  for (Slot& slot : object->slots_) slot.value = slot.type->copy(slot.type->getDefaultValue());
  object->table_ = &HandleTable::current();
  object->handle_ = object->table_->add(object, row->handles);
  return object;
}

GraphicsObject* GraphicsObject::fromHandle(double handle) {
  const COSInterfacePtr object = HandleTable::current().find(handle);
  return dynamic_cast<GraphicsObject*>(object.get());
}

std::vector<std::string> GraphicsObject::classNames() {
  std::vector<std::string> names;
  for (const ClassRow& row : kClasses) names.emplace_back(row.name);
  return names;
}

GraphicsObject::GraphicsObject(std::string_view className, std::vector<Slot> slots)
    : className_(className), slots_(std::move(slots)) {}

GraphicsObject::~GraphicsObject() {
  for (Slot& slot : slots_) slot.type->destroy(std::exchange(slot.value, COSValue()));
}

std::vector<std::string> GraphicsObject::propertyNames() const {
  std::vector<std::string> names;
  for (const Slot& slot : slots_) names.push_back(slot.name);
  return names;
}

std::size_t GraphicsObject::indexOf(std::string_view name) const {
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    if (sameName(slots_[i].name, name)) return i;
  }
  const std::string property(name);
  zxErrMsgIdAndTxt("Korvax:objsys:UnknownProperty", "There is no %s property on the %s class.", property.c_str(),
                   className_.c_str());
}

COSDataType& GraphicsObject::propertyType(std::string_view name) const { return *slots_[indexOf(name)].type; }

COSValue GraphicsObject::propertyValue(std::string_view name) const { return slots_[indexOf(name)].value; }

void GraphicsObject::requireLive() const {
  if (deleted_) zxErrMsgIdAndTxt("Korvax:objsys:DeletedObject", "The %s object has been deleted.", className_.c_str());
}

void GraphicsObject::addProperty(std::string_view name, std::string_view typeName) {
  requireLive();
  const std::string property(name);
  const bool taken = std::ranges::any_of(slots_, [&](const Slot& slot) { return sameName(slot.name, property); });
  if (taken)
    zxErrMsgIdAndTxt("Korvax:objsys:DuplicateProperty", "The object already has a property %s.", property.c_str());
  const std::string fullName = std::string(kTypePackage) + std::string(typeName);
  const COSTypeConversion* arrays = COSTypeRepository::getConversion("any", fullName.c_str());
  if (arrays == nullptr) {
    zxErrMsgIdAndTxt("Korvax:objsys:NoConversion", "The data type %s has no conversion from arrays.", fullName.c_str());
  }
  COSDataType* type = COSTypeRepository::getType(fullName.c_str());
  if (type == nullptr) {
    zxErrMsgIdAndTxt("Korvax:objsys:NoConversion", "The data type %s is not registered.", fullName.c_str());
  }
  // The slot is added empty and filled after, so that a failed copy leaves nothing to free twice.
  slots_.push_back(Slot{property, type, arrays, COSValue()});
  slots_.back().value = type->copy(type->getDefaultValue());
}

void GraphicsObject::set(std::string_view name, const zxArray* array) {
  requireLive();
  Slot& slot = slots_[indexOf(name)];
  PendingValue value(*slot.type, slot.arrays->from(COSValue(array)));
  const bool isParent = slot.name == kParent;
  GraphicsObject* newParent = isParent ? parentIn(slot, value.get()) : nullptr;
  // The previous value goes only once the new one is accepted.
  const COSValue previous = std::exchange(slot.value, value.release());
  slot.type->destroy(previous);
  if (isParent) relink(newParent);
}

zxArray* GraphicsObject::get(std::string_view name) const {
  requireLive();
  const Slot& slot = slots_[indexOf(name)];
  return slot.arrays->to(slot.value).as<zxArray>();
}

GraphicsObject* GraphicsObject::parentIn(const Slot& slot, COSValue value) const {
  const std::unique_ptr<zxArray, decltype(&zxDestroyArray)> array(slot.arrays->to(value).as<zxArray>(),
                                                                  &zxDestroyArray);
  if (zxIsEmpty(array.get())) return nullptr;
  auto* parent = dynamic_cast<GraphicsObject*>(omGetArrayElement(array.get(), 0).get());
  if (parent == nullptr || parent->deleted_) {
    zxErrMsgIdAndTxt("Korvax:objsys:InvalidParent", "A parent must be a graphics object that has not been deleted.");
  }
  // Only an object with children can have the new parent below it; a leaf is checked at once, so
  // that building a deep tree from its root down takes time linear in its size.
  const GraphicsObject* last = children_.empty() ? parent->parent_ : nullptr;
  for (const GraphicsObject* ancestor = parent; ancestor != last; ancestor = ancestor->parent_) {
    if (ancestor == this) {
      zxErrMsgIdAndTxt("Korvax:objsys:InvalidParent", "A %s object cannot be its own parent or ancestor.",
                       className_.c_str());
    }
  }
  return parent;
}

void GraphicsObject::relink(GraphicsObject* parent) {
  if (parent_ != nullptr) std::erase(parent_->children_, this);
  parent_ = parent;
  if (parent_ != nullptr) parent_->children_.push_back(this);
}

void GraphicsObject::deleteObject() {
  if (deleted_) return;
  // The subtree, each object after its parent, found without recursion so that no depth of tree can
  // exhaust the stack; every object is held until all are deleted, children before their parents.
  std::vector<GraphicsObject*> subtree{this};
  for (std::size_t i = 0; i < subtree.size(); ++i) {
    for (GraphicsObject* child : subtree[i]->children_) subtree.push_back(child);
  }
  const std::vector<COSInterfacePtr> held(subtree.begin(), subtree.end());
  relink(nullptr);
  for (auto object = subtree.rbegin(); object != subtree.rend(); ++object) (*object)->release();
}

void GraphicsObject::release() {
  deleted_ = true;
  // The whole subtree goes, so children are dropped wholesale rather than unlinked one by one.
  parent_ = nullptr;
  children_.clear();
  // Releasing the values drops the references they hold (the parent's among them).
  for (Slot& slot : slots_) slot.type->destroy(std::exchange(slot.value, COSValue()));
  table_->remove(handle_);
}

}  // namespace objsys
