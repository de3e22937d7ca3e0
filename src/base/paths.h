#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace velumar {

// Directory texts of the system join their pieces with "\" on every platform, since traders see
// and type them so. These two are the only border between such texts and the disk.

// Texts are UTF-8; "\" becomes the separator of the platform.
std::filesystem::path NativePath(std::string_view text);

// The other way: a path of the disk as UTF-8 text, with the platform's own separators.
std::string PathText(const std::filesystem::path& path);

}  // namespace velumar
