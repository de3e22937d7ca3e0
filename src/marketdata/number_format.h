#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <type_traits>

#include "base/raw_file.h"

namespace velumar {

// Numbers as market data files store them: little-endian integers, IEEE floats, and floats in
// Microsoft Binary Format.

static_assert(std::endian::native == std::endian::little,
              "market data files are little-endian, and so is every machine that we build for");

// The number at `offset`, which must be inside `bytes`.
template <typename T>
requires std::is_arithmetic_v<T> T LoadAt(ByteView bytes, std::size_t offset) {
  T value;
  std::memcpy(&value, bytes.data() + offset, sizeof(T));
  return value;
}

template <typename T>
requires std::is_arithmetic_v<T>
void StoreAt(ByteSpan bytes, std::size_t offset, std::type_identity_t<T> value) {
  std::memcpy(bytes.data() + offset, &value, sizeof(T));
}

// Microsoft Binary Format: byte 3 is the exponent, two higher than that of the same IEEE float,
// followed by the sign and 23 bits of fraction. Every normal IEEE float below 2^127 has an exact
// equivalent.

// Exponents 0 to 2 are below the smallest normal IEEE float and read as 0.
constexpr float FloatFromMbf(std::uint32_t word) {
  const std::uint32_t exponent = word >> 24;
  const std::uint32_t sign = (word << 8) & 0x80000000U;
  const std::uint32_t bits = sign | ((exponent - 2) << 23) | (word & 0x007FFFFFU);
  return exponent > 2 ? std::bit_cast<float>(bits) : 0.0F;
}

// Denormals become 0. Infinities, NaNs and values from 2^127 have no equivalent: nullopt.
constexpr std::optional<std::uint32_t> MbfFromFloat(float value) {
  const auto bits = std::bit_cast<std::uint32_t>(value);
  const std::uint32_t exponent = (bits >> 23) & 0xFFU;
  if (exponent == 0) return 0;
  if (exponent >= 254) return std::nullopt;
  return ((exponent + 2) << 24) | ((bits >> 8) & 0x00800000U) | (bits & 0x007FFFFFU);
}

// A date yyyymmdd is stored as the float (year - 1900) * 10000 + month * 100 + day, a time as the
// float hhmmss. Numbers that cannot be either (negative, huge, NaN) read as 0; fractions are
// dropped.
constexpr std::int32_t TimeFromStored(float stored) {
  return stored > 0 && stored < 1e8F ? static_cast<std::int32_t>(stored) : 0;
}

inline constexpr std::int32_t kStoredDateBase = 19000000;

constexpr std::int32_t DateFromStored(float stored) {
  return stored > 0 && stored < 1e8F ? static_cast<std::int32_t>(stored) + kStoredDateBase : 0;
}

// nullopt for a date or time that would not read back the same; 0, no date, is stored as 0.
constexpr std::optional<float> StoredTime(std::int32_t time) {
  const auto stored = static_cast<float>(time);
  if (TimeFromStored(stored) != time) return std::nullopt;
  return stored;
}

constexpr std::optional<float> StoredDate(std::int32_t date) {
  if (date == 0) return 0.0F;
  if (date <= kStoredDateBase) return std::nullopt;
  const auto stored = static_cast<float>(date - kStoredDateBase);
  if (DateFromStored(stored) != date) return std::nullopt;
  return stored;
}

}  // namespace velumar
