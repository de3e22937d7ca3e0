#include "base/paths.h"

#include <algorithm>

namespace velumar {

std::filesystem::path NativePath(std::string_view text) {
  std::u8string utf8(text.begin(), text.end());
  if constexpr (std::filesystem::path::preferred_separator != '\\') {
    std::replace(utf8.begin(), utf8.end(), u8'\\', u8'/');
  }
  return std::filesystem::path(utf8);
}

std::string PathText(const std::filesystem::path& path) {
  const std::u8string utf8 = path.u8string();
  return {utf8.begin(), utf8.end()};
}

}  // namespace velumar
