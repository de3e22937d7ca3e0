#pragma once

#include <filesystem>

namespace velumar {

// True if the path itself is a link to a file or folder elsewhere: a symbolic link, on Windows also
// a junction. False if nothing is there.
bool IsLink(const std::filesystem::path& path);

}  // namespace velumar
