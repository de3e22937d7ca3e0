#include "platform/temp_folder.h"

#include <fstream>
#include <iterator>

#include "support/fresh_folder.h"

namespace velumar {

TempFolder::TempFolder() : path_(FreshFolder()) {}

TempFolder::~TempFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

void WriteFile(const std::filesystem::path& file, std::string_view bytes) {
  std::ofstream(file, std::ios::binary) << bytes;
}

std::string ReadFile(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace velumar
