#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace velumar {

// A folder of its own for one test, gone when the test ends.
class TempFolder {
 public:
  TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder();

  const std::filesystem::path& Path() const { return path_; }
  std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

void WriteFile(const std::filesystem::path& file, std::string_view bytes);
std::string ReadFile(const std::filesystem::path& file);

}  // namespace velumar
