#pragma once

#include <array>
#include <cstdint>

namespace velumar {

// Random numbers that are the same on every system: SplitMix64 (Steele, Lea & Flood 2014, "Fast
// splittable pseudorandom number generators"). The distributions of the standard library may differ
// from one to the next.
class RandomSource {
 public:
  // Sources of one seed with different streams are independent.
  explicit RandomSource(std::uint64_t seed, std::uint64_t stream = 0)
      : state_(Mix(Mix(seed) + stream)) {}

  std::uint64_t Next() { return Mix(state_ += kStep); }

  // A whole number from 0 to `bound` - 1, each exactly as likely (Lemire 2019, "Fast random integer
  // generation in an interval"). The bound must be above 0.
  std::uint32_t Below(std::uint32_t bound) { return Fair(Next() >> 32, bound); }

  // Two of them at the price of one.
  std::array<std::uint32_t, 2> TwoBelow(std::uint32_t bound) {
    const std::uint64_t bits = Next();
    return {Fair(bits >> 32, bound), Fair(bits & 0xFFFFFFFFU, bound)};
  }

  // From 0 to below 1.
  double Share() { return static_cast<double>(Next() >> 11) * 0x1p-53; }

 private:
  static constexpr std::uint64_t kStep = 0x9E3779B97F4A7C15U;

  static constexpr std::uint64_t Mix(std::uint64_t bits) {
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9U;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBU;
    return bits ^ (bits >> 31);
  }

  std::uint32_t Fair(std::uint64_t bits, std::uint32_t bound) {
    std::uint64_t product = bits * bound;
    if (static_cast<std::uint32_t>(product) < bound) [[unlikely]] {
      const std::uint32_t unfair = (0U - bound) % bound;
      while (static_cast<std::uint32_t>(product) < unfair) product = (Next() >> 32) * bound;
    }
    return static_cast<std::uint32_t>(product >> 32);
  }

  std::uint64_t state_;
};

}  // namespace velumar
