// Memory budgets and their refusals.
#include "cmdlanglib/budget.h"

#include <array>
#include <cstdio>

#include "utillib/ut.h"

namespace cmdlang {
namespace {

std::string refusalText(std::string_view what, std::size_t needed, std::size_t limit, std::size_t used) {
  std::string text(what);
  text += needed == ByteBudget::kUnlimited ? " needs more than " : " needs ";
  text += byteCountText(needed) + "; the limit is " + byteCountText(limit);
  if (used > 0) text += ", of which " + byteCountText(used) + " are already in use";
  return text;
}

}  // namespace

TooLargeError::TooLargeError(std::string_view what, std::size_t needed, std::size_t limit, std::size_t used)
    : std::runtime_error(refusalText(what, needed, limit, used)), needed_(needed), limit_(limit), used_(used) {}

void ByteBudget::charge(std::size_t bytes, std::string_view what) {
  if (utIsInterruptPending()) {
    utSetInterruptHandled(true);
    throw InterruptedError();
  }
  if (!tryCharge(bytes)) refuse(bytes, what);
}

bool ByteBudget::tryCharge(std::size_t bytes) noexcept {
  if (!unlimited() && bytes > limit_ - used_) return false;
  used_ = saturatingAdd(used_, bytes);
  return true;
}

void ByteBudget::refuse(std::size_t bytes, std::string_view what) const {
  throw TooLargeError(what, bytes, limit_, used_);
}

std::size_t saturatingAdd(std::size_t a, std::size_t b) noexcept {
  std::size_t sum = 0;
  return __builtin_add_overflow(a, b, &sum) ? ByteBudget::kUnlimited : sum;
}

std::size_t saturatingMultiply(std::size_t a, std::size_t b) noexcept {
  std::size_t product = 0;
  return __builtin_mul_overflow(a, b, &product) ? ByteBudget::kUnlimited : product;
}

std::string byteCountText(std::size_t bytes) {
  std::string text = std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
  constexpr std::array<const char*, 6> kUnits = {"KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
  if (bytes < 1024) return text;
  double scaled = static_cast<double>(bytes);
  std::size_t unit = 0;
  for (scaled /= 1024; scaled >= 1024 && unit + 1 < kUnits.size(); scaled /= 1024) ++unit;
  std::array<char, 32> human{};
  // One decimal, dropped when it is zero: "1.5 KiB", "256 MiB".
  const double tenths = static_cast<double>(static_cast<long long>(scaled * 10 + 0.5)) / 10;
  const bool whole = tenths == static_cast<double>(static_cast<long long>(tenths));
  std::snprintf(human.data(), human.size(), whole ? "%.0f %s" : "%.1f %s", tenths, kUnits[unit]);
  return text + " (" + human.data() + ")";
}

}  // namespace cmdlang
