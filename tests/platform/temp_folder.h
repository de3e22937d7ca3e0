#pragma once

#include <fstream>
#include <iterator>
#include <string_view>

#include "support/scratch_folder.h"

namespace velumar {

struct TempFolder : ScratchFolder {
  std::filesystem::path operator/(std::string_view name) const { return Path() / name; }
};

inline void WriteFile(const std::filesystem::path& file, std::string_view bytes) {
  std::ofstream(file, std::ios::binary) << bytes;
}

inline std::string ReadFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace velumar
