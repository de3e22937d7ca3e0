#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace velumar {

// Directory texts are joined with "\" on every platform, as traders see and type them. Only these
// two functions convert between such texts and paths on the disk.

// From UTF-8; "\" becomes the platform's separator.
std::filesystem::path NativePath(std::string_view text);

// To UTF-8, with the platform's separators.
std::string PathText(const std::filesystem::path& path);

}  // namespace velumar
