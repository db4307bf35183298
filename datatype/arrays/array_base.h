// The bases of every array-valued property type:
//   ArrayBase        owns one host array as a private, normalised shared-data copy, compares and prints it;
//   ArrayBase::InvalidArrayException  an identifier and a message for a rejected array;
//   MinMaxArrayBase  an ArrayBase that finds and caches its smallest and largest finite element.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>

#include "arraylib/zxarray.h"
#include "datatype/exception_slot.h"
#include "datatype/export.h"
#include "guilib/auto_ptr.h"

namespace objsys {
class COSDataType;
class JavaTypeConversion;
}  // namespace objsys

namespace graphics::datatype {

// Holds one host array (or none) that it alone destroys. The held array is a normalised copy of
// whatever it was given: shared with the source where the array library can share, rebuilt only for
// empty arrays, zero-row text and sparse arrays, and made persistent so that no call frame reclaims it.
// ArrayBase accepts every array; a derived type states its rule in isValid, and its constructor
// raises the error that isValid recorded.
class ORB_EXPORT ArrayBase {
 public:
  // An identifier and a message for a rejected array, where a plain exception is wanted.
  class ORB_EXPORT InvalidArrayException : public std::exception {
   public:
    InvalidArrayException() = default;
    InvalidArrayException(const char* id, const char* message);
    const char* getID() const { return id_.c_str(); }
    const char* getMessage() const { return message_.c_str(); }
    const char* what() const noexcept override { return message_.c_str(); }

   private:
    std::string id_;
    std::string message_;
  };

  ArrayBase() = default;
  // A null array gives an object that holds nothing. Nothing is validated here.
  explicit ArrayBase(const zxArray* array);
  ArrayBase(const ArrayBase& other);
  // Takes the held array over; other holds nothing afterwards.
  ArrayBase(ArrayBase&& other) noexcept;
  // Copies first and then drops the held array, so self-assignment is safe.
  ArrayBase& operator=(const ArrayBase& other);
  virtual ~ArrayBase();

  // Whether the type accepts array; on refusal the error to raise is stored in failure.
  virtual bool isValid(const zxArray* array, boost::exception_ptr& failure) const;
  // How many elements operator== is prepared to compare; larger values always differ.
  virtual unsigned getMaxNumberOfValuesToCompare() const;

  // Stores a normalised copy of array. Meant for an object that holds nothing: a held array is not
  // destroyed first.
  void setPtr(const zxArray* array);
  zxArray* getPtr() { return array_; }
  const zxArray* getPtr() const { return array_; }
  // A new normalised copy of the held array (null if none) for the caller.
  gui_objects::ZxArrayPtr getSharedDataCopy() const;

  bool isEmpty() const { return isEmpty(array_); }
  // Null counts as empty.
  static bool isEmpty(const zxArray* array);

  // Equal when both hold nothing, or when numeric or logical arrays of the same class and shape hold
  // equal elements (NaN never equals). Arrays of more than getMaxNumberOfValuesToCompare() elements
  // always differ, deliberately: a large value set again is reported as a change without a
  // comparison. Arrays of other classes (text, cells, structs) always count as equal.
  bool operator==(const ArrayBase& other) const;

  // The held array as text through the class system's ("any", "asciiString") conversion: a C-heap
  // string for the caller, or null when nothing is held.
  char* convert_to_string() const;

  // The Java conversion of an array-valued type: its values cross as the closest Java object of their
  // array form, which javaForm names for people. The class system owns the result.
  static objsys::JavaTypeConversion* createJavaConverter(const objsys::COSDataType* type, const char* javaForm);

 protected:
  void swap(ArrayBase& other) noexcept;

  // Values are zero-filled C-heap blocks released with utFree; this pairing is deliberate. Out of
  // memory raises the foundation library's bad_alloc.
  static void* operator new(std::size_t size);
  static void* operator new[](std::size_t size);
  static void operator delete(void* block) noexcept;
  static void operator delete[](void* block) noexcept;
  static void* operator new(std::size_t, void* where) noexcept { return where; }
  static void* operator new[](std::size_t, void* where) noexcept { return where; }
  static void operator delete(void*, void*) noexcept {}
  static void operator delete[](void*, void*) noexcept {}

 private:
  zxArray* array_ = nullptr;
};

// An ArrayBase that finds its smallest and largest finite element on first request and caches them.
// The cache is never invalidated on its own: the array changes only by assignment, which copies the
// source's cache with its array.
class ORB_EXPORT MinMaxArrayBase : public ArrayBase {
 public:
  // What the cache holds.
  enum class ScanState : std::uint32_t {
    notScanned = 0,
    // Scanned stopping at the first non-finite element, and one was met: min and max are NaN.
    stoppedAtNonFinite = 1,
    // Scanned in full and some element was not finite: min and max are over the finite ones.
    someNonFinite = 2,
    // No array, or an empty one: min and max are NaN.
    empty = 3,
    allFinite = 4,
  };

  MinMaxArrayBase() = default;
  explicit MinMaxArrayBase(const zxArray* array) : ArrayBase(array) {}
  MinMaxArrayBase(const MinMaxArrayBase& other) = default;
  MinMaxArrayBase(MinMaxArrayBase&& other) noexcept = default;
  MinMaxArrayBase& operator=(const MinMaxArrayBase& other) = default;

  // The extremes, scanning first unless the cache already answers this kind of query.
  void getMinMax(double& min, double& max, bool stopAtNonFinite) const;
  // Despite its name: whether no element is non-finite (true for no array or an empty one).
  bool hasFinite() const;
  ScanState getScanState() const { return scanState_; }

 protected:
  void swapMinMax(MinMaxArrayBase& other) noexcept;

 private:
  void scan(bool stopAtNonFinite) const;

  mutable double min_ = 0.0;
  mutable double max_ = 0.0;
  mutable ScanState scanState_ = ScanState::notScanned;
};

}  // namespace graphics::datatype
