#pragma once

#include <filesystem>
#include <string>

namespace velumar {

// What the working store needs of the system.

// Copies a file, replacing an existing one. The copy of a read-only file is writable, since steps
// write it. Throws std::filesystem::filesystem_error.
void CopyWritable(const std::filesystem::path& from, const std::filesystem::path& to);

// This process, for messages: "velumar-cli (process 1234)".
std::string ThisProgram();

}  // namespace velumar
