// The class system's value slot (COSValue) and interned type names (COSNameID).
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "foundationlib/visibility.h"

namespace objsys {

// A 64-bit slot that holds a pointer to a value block or, for integer-valued enumerations, a plain
// word. An all-zero slot holds no value.
class COSValue {
 public:
  constexpr COSValue() = default;
  explicit COSValue(const void* pointer) : bits_(reinterpret_cast<std::uintptr_t>(pointer)) {}
  static constexpr COSValue fromWord(std::int64_t word) {
    COSValue value;
    value.bits_ = static_cast<std::uint64_t>(word);
    return value;
  }

  void* pointer() const { return reinterpret_cast<void*>(static_cast<std::uintptr_t>(bits_)); }
  template <class T>
  T* as() const {
    return static_cast<T*>(pointer());
  }
  constexpr std::int64_t word() const { return static_cast<std::int64_t>(bits_); }
  constexpr bool isEmpty() const { return bits_ == 0; }
  friend constexpr bool operator==(COSValue, COSValue) = default;

 private:
  std::uint64_t bits_ = 0;
};

// A type name interned for the life of the process; equal names are one object, so comparison and
// hashing are by identity.
class KX_HOST_API COSNameID {
 public:
  COSNameID(const char* name);  // NOLINT(google-explicit-constructor): names are written as literals
  explicit COSNameID(std::string_view name);
  // The name if it was ever interned, without interning it: a lookup of a name nobody registered
  // leaves nothing behind.
  static std::optional<COSNameID> find(std::string_view name);

  const char* c_str() const { return name_->c_str(); }
  std::string_view view() const { return *name_; }
  friend bool operator==(const COSNameID& a, const COSNameID& b) { return a.name_ == b.name_; }

 private:
  explicit COSNameID(const std::string* interned) : name_(interned) {}
  const std::string* name_;
};

}  // namespace objsys

template <>
struct std::hash<objsys::COSNameID> {
  std::size_t operator()(const objsys::COSNameID& id) const noexcept { return std::hash<const char*>()(id.c_str()); }
};
