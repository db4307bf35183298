// What an orbdt process holds across requests and statements, bounded by --max-session-bytes: the
// session's variables, the property values of the objects it made, and what requests added to tables
// that last for the process (the color names).
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace orbdt {

// The memory a session may hold unless --max-session-bytes says otherwise: with one request's budget
// on top, an orbdt process stays within about a gigabyte whatever it is sent.
inline constexpr std::size_t kDefaultMaxSessionBytes = std::size_t{512} << 20;

// Bytes held under keys, each replaced as a whole. A charge that would pass the limit throws
// cmdlang::TooLargeError and changes nothing.
class Holdings {
 public:
  explicit Holdings(std::size_t limit = kDefaultMaxSessionBytes) : limit_(limit) {}

  // What the key would hold once bytes replace what it holds now; throws when that does not fit.
  void requireRoom(std::string_view key, std::size_t bytes, std::string_view what) const;
  // Holds bytes under key in place of what it held (requireRoom first).
  void hold(std::string_view key, std::size_t bytes, std::string_view what);
  void release(std::string_view key);
  // Releases every key that starts with prefix.
  void releasePrefix(std::string_view prefix);
  // Bytes held for the rest of the process (a table that never shrinks).
  void keep(std::size_t bytes, std::string_view what);

  std::size_t used() const noexcept { return used_; }
  std::size_t limit() const noexcept { return limit_; }
  void setLimit(std::size_t limit) noexcept { limit_ = limit; }

 private:
  std::size_t heldBy(std::string_view key) const;

  std::size_t limit_;
  std::size_t used_ = 0;
  std::map<std::string, std::size_t, std::less<>> held_;
};

// The process's holdings, shared by batch requests and sessions.
Holdings& holdings();

// The key of an object's property ("" for the object itself), so that deleting the object releases
// them all with releasePrefix(objectKey(handle)).
std::string objectKey(double handle, std::string_view property = {});

}  // namespace orbdt
