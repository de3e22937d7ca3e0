#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace velumar {

// A file that can't be read or written: "/data/x.csv can't be read: it is a folder, not a file".
// The code is one of errno.h.
class FileError : public std::system_error {
 public:
  FileError(const std::filesystem::path& file, std::string_view failure, int error);
  // For what errno.h has no good text: EISDIR, EINVAL (not a regular file), EFBIG (too large).
  FileError(const std::filesystem::path& file, std::string_view failure, int error,
            std::string reason);

  const char* what() const noexcept override { return text_.c_str(); }
  // Without the file's name: "No space left on device".
  const std::string& Reason() const { return reason_; }

 private:
  std::string reason_;
  std::string text_;
};

inline constexpr std::string_view kCantRead = "can't be read";
inline constexpr std::string_view kCantWrite = "can't be written";

// Reads a regular file of at most `limit` bytes; a pipe or a device is refused without a wait.
// Throws FileError.
std::string ReadWholeFile(const std::filesystem::path& file, std::size_t limit);

enum class FileAccess : std::uint8_t {
  kUsual,      // an older file keeps its permissions
  kUserAlone,  // nobody else can read it
};

// Writes a new file in the same folder and renames it over `file` once it is on the disk, so the
// old file stays whole until then and after an error. A link to a file stays a link; a pipe, a
// device or a file that may not be written is never replaced. Throws FileError.
void ReplaceWholeFile(const std::filesystem::path& file, std::string_view bytes, FileAccess access);

// A rename is on the disk once its folder is. Does nothing where a system can't flush folders.
void FlushFolder(const std::filesystem::path& folder);

// For the functions above on all systems.

[[noreturn]] void RefuseFolder(const std::filesystem::path& file, std::string_view failure);
[[noreturn]] void RefuseDevice(const std::filesystem::path& file, std::string_view failure);
[[noreturn]] void RefuseLargeFile(const std::filesystem::path& file, std::uintmax_t size,
                                  std::size_t limit);
// A random name in the folder of `file`.
std::filesystem::path NewNameBeside(const std::filesystem::path& file);

}  // namespace velumar
