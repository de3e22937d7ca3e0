#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

namespace velumar {

// A market data directory as one string, so that a fuzzer can change any of its files: for each
// file the index of its name in a fixed list, its size as two bytes, the lower one first, and its
// bytes. An incomplete last file is unpacked as far as it goes.
std::string PackFiles(const std::filesystem::path& folder);
void UnpackFiles(std::string_view packed, const std::filesystem::path& folder);

// What a fuzzer expects of every input; the fuzzer reports an input that ends the process.
inline void Require(bool holds) {
  if (!holds) std::abort();
}

inline std::string_view AsText(const unsigned char* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace velumar
