// JavaPeer: a reference to the Java object that stands beside a graphics object in the host's Java user
// interface; its data type and conversions.
#pragma once

#include <boost/shared_ptr.hpp>
#include <cstddef>

#include "datatype/conversions.h"
#include "datatype/data_type_base.h"
#include "datatype/export.h"
#include "objsys/java_type_conversion.h"

namespace graphics::datatype {

// Keeps its Java object alive through a global reference of the Java bridge. Every copy makes a global
// reference of its own, so destroying one copy never invalidates another.
class ORB_EXPORT JavaPeer {
 public:
  JavaPeer() = default;
  explicit JavaPeer(jobject object);
  JavaPeer(const JavaPeer& other);
  JavaPeer(JavaPeer&& other) noexcept = default;
  JavaPeer& operator=(const JavaPeer& other);
  JavaPeer& operator=(JavaPeer&& other) noexcept = default;
  virtual ~JavaPeer();

  // IsSameObject of the two objects, which holds for two values that refer to nothing.
  bool operator==(const JavaPeer& other) const;

  // The global reference, shared while the caller holds it; empty when the value refers to nothing.
  boost::shared_ptr<_jobject> get_jobject() const { return reference_; }

 private:
  void setJavaReference(jobject object);
  boost::shared_ptr<_jobject> reference_;
};

// Values compare by Java object identity (IsSameObject); an empty slot equals only another empty slot,
// not a value that refers to nothing. The default is no value.
class ORB_EXPORT JavaPeerDataType : public BasicDataType<JavaPeerDataType, JavaPeer> {
 public:
  static constexpr const char* kName = "JavaPeer";
  static constexpr const char* kClassName = "JavaPeerDataType";
  static constexpr std::size_t kValueSizeInBytes = 12;
  // No text form and no default. Arrays cross through the Java machine, which takes every array with a
  // Java form (a struct is a Map); a value sent to Java crosses as its array form's closest object, and
  // reading that object back makes a peer of that new object, not of the one first held.
  static constexpr TypeFacts kFacts{
      .text = TextForm::none,
      .defaultHoldsValue = false,
      .refusedArray = "complex(1, 1)",
      .javaForm = "the closest Java object of the array form; a Java object is held as itself",
      .javaRoundTripEqual = false,
      .arraysUseJava = true};
  static JavaPeer makeDefaultValue() { return {}; }

  objsys::COSValue getDefaultValue() const override { return objsys::COSValue(); }
};

// From an array: the Java bridge's closest Java object. To an array: the closest array of the object
// (no value reads back as a 0-by-0 double). A Java peer has no text form: text makes no value and a
// value gives no text, deliberately.
struct ORB_EXPORT JavaPeerRules;
class ORB_EXPORT JavaPeerMC final : public ArrayConversion<JavaPeerRules> {};
class ORB_EXPORT JavaPeerSC final : public TextConversion<JavaPeerRules> {};

// To Java: the value's array form through the class system's Java conversion of "any". From Java: a
// value referring to the object itself (null refers to nothing).
class ORB_EXPORT JavaPeerJC final : public objsys::JavaTypeConversion {
 public:
  jobject toJava(objsys::COSValue value) const override;
  objsys::COSValue fromJava(jobject object) const override;
  const char* javaClassName() const override { return JavaPeerDataType::kFacts.javaForm; }
};

}  // namespace graphics::datatype
