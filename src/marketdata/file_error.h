#pragma once

#include <filesystem>

namespace velumar {

// Throw MetaLibError with a sentence like "F12.DAT: no permission to write (in /data/set)" from an
// error number of the system.
[[noreturn]] void ThrowReadFailed(const std::filesystem::path& file, int system_error);
[[noreturn]] void ThrowWriteFailed(const std::filesystem::path& file, int system_error);

}  // namespace velumar
