#pragma once

#include <filesystem>

namespace velumar {

// This user's own copy of what all users share, made at the first call, whole or not at all. Throws
// std::filesystem::filesystem_error.
std::filesystem::path OwnCopy(const std::filesystem::path& shared,
                              const std::filesystem::path& own);

}  // namespace velumar
