// Callback: the code a graphics object runs on an event, held as the host's MCallback; its data type
// and conversions.
#pragma once

#include <cstddef>

#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/export.h"
#include "guilib/callback.h"

namespace graphics::datatype {

// A slot holds an MCallback (null for no callback), copied by clone and deleted through its virtual
// destructor. No callback equals the callback made of the empty string, deliberately: clearing a
// callback with '' is not a change.
class ORB_EXPORT CallbackDataType : public BasicDataType<CallbackDataType, gui_objects::MCallback> {
 public:
  static constexpr const char* kName = "Callback";
  static constexpr const char* kClassName = "CallbackDataType";
  static constexpr std::size_t kValueSizeInBytes = 40;
  // No text form; the default is no callback; every failure to build one is CreateCallback.
  static constexpr TypeFacts kFacts{.text = TextForm::none,
                                    .defaultHoldsValue = false,
                                    .failuresBecome = "Korvax:datatypes:callback:CreateCallback",
                                    .javaPeer = &java_peers::OrbCallback};
  // Only the base's cached default would use it; this type's default is no callback.
  static gui_objects::MCallback makeDefaultValue() { return {}; }

  objsys::COSValue getDefaultValue() const override { return objsys::COSValue(); }
  objsys::COSValue copy(objsys::COSValue value) override;
  void destroy(objsys::COSValue value) const override;
  bool isEqual(objsys::COSValue a, objsys::COSValue b) const override;
  bool canContainInterfaces() override { return true; }
  objsys::COSEnumeration* getInterfaces(objsys::COSValue value) override;
  objsys::COSEnumeration* getKXArrays(objsys::COSValue value) override;
};

// Arrays and text as MCallback takes them; every failure to make a callback is raised as
// "Korvax:datatypes:callback:CreateCallback". A callback reads back as its array form (no callback
// as an empty char array) and never as text.
struct ORB_EXPORT CallbackRules;
class ORB_EXPORT CallbackMC final : public ArrayConversion<CallbackRules> {};
class ORB_EXPORT CallbackSC final : public TextConversion<CallbackRules> {};
// CallbackJC, to and from the Java peer OrbCallback (accessor "getCallbackObject"), comes with the
// host's Java bridge; all_types.cpp registers Java conversions once there is one.

}  // namespace graphics::datatype
