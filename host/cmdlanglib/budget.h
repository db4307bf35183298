// Memory budgets: the bytes a piece of work may allocate, charged before each allocation, and the
// refusal raised when a charge does not fit.
#pragma once

#include <cstddef>
#include <limits>
#include <stdexcept>
#include <string>
#include <string_view>
#include "foundationlib/visibility.h"

KX_HOST_API_BEGIN

namespace cmdlang {

// Work refused because it would need more memory than its budget allows. needed() is what the
// refused step alone needed, SIZE_MAX when counting it overflowed; used() is what earlier steps had
// already charged.
class TooLargeError : public std::runtime_error {
 public:
  TooLargeError(std::string_view what, std::size_t needed, std::size_t limit, std::size_t used);
  std::size_t needed() const noexcept { return needed_; }
  std::size_t limit() const noexcept { return limit_; }
  std::size_t used() const noexcept { return used_; }

 private:
  std::size_t needed_;
  std::size_t limit_;
  std::size_t used_;
};

// Work stopped because the user interrupted it (Ctrl-C): a charge finds the host's interrupt flag set.
class InterruptedError : public std::runtime_error {
 public:
  InterruptedError() : std::runtime_error("Interrupted (Ctrl-C): the work stopped.") {}
};

// The bytes one piece of work (one literal, one request) may allocate, counted as it goes. Charges
// are never given back, so the count bounds the work's peak from above. An unlimited budget counts
// but never refuses.
class ByteBudget {
 public:
  static constexpr std::size_t kUnlimited = std::numeric_limits<std::size_t>::max();

  explicit ByteBudget(std::size_t limit = kUnlimited) : limit_(limit) {}

  // Charges bytes, or throws TooLargeError naming what ("zeros at column 1: a 9x9 double array")
  // and charges nothing. Work charges as it goes, so a charge is also where an interrupt (the host's
  // flag, which the charge clears) stops it with InterruptedError.
  void charge(std::size_t bytes, std::string_view what);
  // Charges bytes when they fit and says whether they did.
  bool tryCharge(std::size_t bytes) noexcept;
  // The refusal of a charge of bytes that did not fit.
  [[noreturn]] void refuse(std::size_t bytes, std::string_view what) const;

  std::size_t limit() const noexcept { return limit_; }
  std::size_t used() const noexcept { return used_; }
  bool unlimited() const noexcept { return limit_ == kUnlimited; }

 private:
  std::size_t limit_;
  std::size_t used_ = 0;
};

// What one host array costs beyond its elements (its header, shared storage record and allocator
// overhead), for charging arrays to a budget.
inline constexpr std::size_t kArrayOverhead = 400;

// Byte arithmetic that stops at SIZE_MAX instead of wrapping around.
std::size_t saturatingAdd(std::size_t a, std::size_t b) noexcept;
std::size_t saturatingMultiply(std::size_t a, std::size_t b) noexcept;

// A byte count for people: "268435456 bytes (256 MiB)", "12 bytes".
std::string byteCountText(std::size_t bytes);

}  // namespace cmdlang

KX_HOST_API_END
