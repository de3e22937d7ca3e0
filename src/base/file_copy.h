#pragma once

#include <filesystem>

namespace velumar {

// Copies a file over the one that may be there. A copy of a file that the user may only read is
// still a file that steps can write. Throws std::filesystem::filesystem_error.
void CopyWritable(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace velumar
