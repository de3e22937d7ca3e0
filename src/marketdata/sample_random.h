#pragma once

#include <cstdint>
#include <random>

namespace velumar {

// Random numbers for sample data, the same on every machine: the generator is fixed by the language
// standard, and only exactly rounded arithmetic follows it.
class SampleRandom {
 public:
  explicit SampleRandom(std::uint64_t seed) : engine_(seed) {}

  // Even over [0, 1).
  double Uniform() { return static_cast<double>(engine_() >> 11) * 0x1p-53; }
  double Between(double low, double high) { return low + (high - low) * Uniform(); }

  // Bell-shaped around 0 with a deviation of 1, never beyond 3.5: the sum of four even numbers,
  // each a quarter of one draw.
  double Bell() {
    constexpr double kSquareRootOf3 = 1.7320508075688772;
    constexpr double kMean = 2 * 65535.0;
    int sum = 0;
    for (std::uint64_t bits = engine_(); bits != 0; bits >>= 16) {
      sum += static_cast<int>(bits & 0xFFFF);
    }
    return (sum - kMean) * (kSquareRootOf3 / 65536);
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace velumar
