// The Java classes that property values cross to Java as, generated from java_peer_classes.def:
// java_peers::OrbDouble, java_peers::OrbColor, ...
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace graphics::datatype {

// What a peer class's constructor takes.
enum class PeerArguments : std::uint8_t { Numbers, NumbersWithAlpha, Integers, Object };

struct JavaPeerClass {
  const char* javaName;  // "korvax.graphics.types.OrbDouble"
  PeerArguments arguments;
  std::array<const char*, 4> getters;  // unused ones null

  constexpr std::size_t components() const {
    std::size_t n = 0;
    while (n < getters.size() && getters[n] != nullptr) ++n;
    return n;
  }
};

namespace java_peers {
#define ORB_JAVA_PEER_CLASS(Peer, javaName, kind, ...) \
  inline constexpr JavaPeerClass Peer{javaName, PeerArguments::kind, {__VA_ARGS__}};
#include "datatype/java_peer_classes.def"
}  // namespace java_peers

}  // namespace graphics::datatype
