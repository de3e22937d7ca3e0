#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace velumar {

// A market data directory as one text of bytes, so that a fuzzer can change any of its files: for
// each file the place of its name in a fixed list, its size as two bytes, the lower first, and its
// bytes. Whatever is cut short is taken as far as it goes.
std::string PackFiles(const std::filesystem::path& folder);
void UnpackFiles(std::string_view packed, const std::filesystem::path& folder);

}  // namespace velumar
