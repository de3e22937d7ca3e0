#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>

namespace velumar {

using ByteView = std::span<const std::byte>;
using ByteSpan = std::span<std::byte>;

static_assert(std::endian::native == std::endian::little,
              "market data files are little-endian, and so is every machine that we build for");

// A number of type T at `offset`, which the caller has checked to lie inside.
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

}  // namespace velumar
