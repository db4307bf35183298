// The global locale's case mapping and white space for every byte, made once per locale and shared by
// every rule that folds case (name matching, color names), so that a call pays one cheap check that
// the locale has not changed instead of consulting the locale's facets byte by byte. Internal.
#pragma once

#include <array>
#include <cstdint>
#include <locale>

namespace graphics::datatype {

class CaseTables {
 public:
  // The tables of the current global locale, made again when the global locale has changed since the
  // last call. One thread at a time, as every library call.
  static const CaseTables& current();

  char upper(char c) const { return upper_[static_cast<unsigned char>(c)]; }
  char lower(char c) const { return lower_[static_cast<unsigned char>(c)]; }
  bool space(char c) const { return space_[static_cast<unsigned char>(c)]; }
  // Changes whenever the tables are made again, so that what is folded with them can be folded anew.
  std::uint64_t generation() const { return generation_; }

 private:
  void make(const std::locale& locale);

  std::array<char, 256> upper_{};
  std::array<char, 256> lower_{};
  std::array<bool, 256> space_{};
  std::locale locale_{std::locale::classic()};
  std::uint64_t generation_ = 0;
  bool made_ = false;
};

}  // namespace graphics::datatype
