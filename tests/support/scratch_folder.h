#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace velumar {

inline void WriteFile(const std::filesystem::path& file, std::string_view bytes) {
  std::ofstream(file, std::ios::binary) << bytes;
}

inline std::string ReadFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// A new, empty folder, deleted with the object.
class ScratchFolder {
 public:
  explicit ScratchFolder(
      const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
    std::random_device random;
    do {
      path_ = parent / ("velumar-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  // With a copy of the files.
  ScratchFolder(const ScratchFolder& other) : ScratchFolder() {
    std::filesystem::copy(other.path_, path_, std::filesystem::copy_options::recursive);
  }
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& Path() const { return path_; }
  std::string Text() const { return path_.string(); }
  std::filesystem::path operator/(std::string_view name) const { return path_ / name; }
  std::string Sub(const std::string& name) const { return (path_ / name).string(); }

  void Write(std::string_view name, std::string_view bytes) const {
    WriteFile(*this / name, bytes);
  }
  std::string Read(std::string_view name) const { return ReadFile(*this / name); }
  // Of its files and folders, sorted, without lock files.
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      const std::string name = entry.path().filename().string();
      if (!name.ends_with(".lock")) names.push_back(name);
    }
    std::ranges::sort(names);
    return names;
  }

 private:
  std::filesystem::path path_;
};

// The bytes of the files in a folder, by name.
inline std::map<std::string, std::string> FilesOf(const std::string& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.is_regular_file()) files[entry.path().filename().string()] = ReadFile(entry.path());
  }
  return files;
}

}  // namespace velumar
