#pragma once

#include <filesystem>

namespace velumar {

// Copies a file, replacing an existing one. The copy of a read-only file is writable, since steps
// write it. Throws std::filesystem::filesystem_error.
void CopyWritable(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace velumar
