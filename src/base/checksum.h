#pragma once

#include <cstdint>
#include <string_view>

namespace velumar {

inline constexpr std::uint64_t kChecksumOfNothing = 0xcbf29ce484222325;

// A checksum of bytes (FNV-1a, 64 bits), to notice that they have changed; with that of earlier
// bytes, of all of them. Not for bytes that someone forges.
constexpr std::uint64_t Checksum(std::string_view bytes,
                                 std::uint64_t before = kChecksumOfNothing) {
  constexpr std::uint64_t kPrime = 0x100000001b3;
  for (const char byte : bytes) before = (before ^ static_cast<unsigned char>(byte)) * kPrime;
  return before;
}

}  // namespace velumar
