#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "support/fresh_folder.h"

namespace velumar {

// A folder of its own that goes away with the test.
class ScratchFolder {
 public:
  ScratchFolder() : path_(FreshFolder()) {}
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string Sub(const std::string& name) const { return (path_ / name).string(); }
  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// The bytes of the files in a folder, by name.
inline std::map<std::string, std::string> FilesOf(const std::string& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (!entry.is_regular_file()) continue;
    std::ifstream in(entry.path(), std::ios::binary);
    files[entry.path().filename().string()] = {std::istreambuf_iterator<char>(in), {}};
  }
  return files;
}

}  // namespace velumar
