#pragma once

#include <filesystem>
#include <span>
#include <string_view>

namespace velumar {

// An empty folder of this process, in the one that VELUMAR_FUZZ_FOLDER names.
std::filesystem::path EmptyScratchFolder();

void WriteWhole(const std::filesystem::path& file, std::string_view bytes);

inline std::string_view AsText(const unsigned char* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace velumar
