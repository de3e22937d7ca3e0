#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace velumar {

// A new folder that nobody else has, among the system's temporary files.
inline std::filesystem::path FreshFolder() {
  std::random_device random;
  std::filesystem::path folder;
  do {
    folder = std::filesystem::temp_directory_path() / ("velumar-" + std::to_string(random()));
  } while (!std::filesystem::create_directory(folder));
  return folder;
}

}  // namespace velumar
