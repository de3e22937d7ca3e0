#include "base/links.h"

namespace velumar {

bool IsLink(const std::filesystem::path& path) {
  std::error_code missing;
  return std::filesystem::is_symlink(path, missing);
}

}  // namespace velumar
