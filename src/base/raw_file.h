#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

namespace velumar {

using ByteView = std::span<const std::byte>;
using ByteSpan = std::span<std::byte>;

inline constexpr std::string_view kCantRead = "can't be read";
inline constexpr std::string_view kCantWrite = "can't be written";

// A file that cannot be read or written: "/data/x.csv can't be read: it is a folder, not a file".
// code() is a value of errno.h; ENOTSUP means a pipe or a device.
class FileError : public std::system_error {
 public:
  FileError(const std::filesystem::path& file, std::string_view failure, int error);
  FileError(const std::filesystem::path& file, std::string_view failure, int error,
            std::string reason);

  const char* what() const noexcept override { return text_.c_str(); }
  // Without the file's name: "No space left on device".
  const std::string& Reason() const { return reason_; }

 private:
  std::string reason_;
  std::string text_;
};

// Reports a failure by throwing the kind of error that the callers of a folder expect. `failure` is
// kCantRead or kCantWrite.
using FileFailure = void (*)(const std::filesystem::path& file, std::string_view failure,
                             int error);
// Throws FileError.
[[noreturn]] void ThrowFileError(const std::filesystem::path& file, std::string_view failure,
                                 int error);

// Identifies one version of a file: as long as the stamp is the same, so are the contents, unless
// the stamp had not settled when it was taken.
struct FileStamp {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = -1;
  std::int64_t changed_ns = 0;  // since 1970

  bool operator==(const FileStamp&) const = default;

  // The clock of a file system ticks every few milliseconds. A file that changed a moment ago may
  // change again within the same tick, with the same stamp; false while that is possible.
  bool IsSettled() const;
};

// Of a file or folder; nullopt if there is none.
std::optional<FileStamp> StampOf(const std::filesystem::path& path);

// Which file a path leads to, without the time of its last change: once somebody has read that,
// Linux (since 6.13) sets a new one with the next write, and the flush after it also has to write
// the inode.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = -1;
};
std::optional<FileIdentity> IdentityOf(const std::filesystem::path& path);

// True if the path itself is a link to a file or folder elsewhere: a symbolic link, on Windows also
// a junction. False if the path does not exist.
bool IsLink(const std::filesystem::path& path);
// False if the user has forbidden writing to the file.
bool IsWritable(const std::filesystem::path& file);

// Returns once a rename in the folder is on the disk. Does nothing on systems and file systems that
// cannot flush a folder.
void FlushFolder(const std::filesystem::path& folder);

// An open regular file. Opening never waits for a pipe or a device: they are refused. Every
// operation that fails calls the FileFailure, ThrowFileError by default.
class RawFile {
 public:
  enum class Mode {
    kRead,
    kChange,  // read and write an existing file
    kCreate,  // the same, creating the file if it is missing
    kRenew,   // the same, creating or emptying it
    kNew,     // the same, but fails if the file, or a link of that name, exists
  };

  RawFile(const std::filesystem::path& path, Mode mode, FileFailure fail = ThrowFileError);
  // Fails with ELOOP if the path is a link.
  static RawFile OpenUnlinked(const std::filesystem::path& path, Mode mode, FileFailure fail);
  ~RawFile();
  RawFile(RawFile&& other) noexcept;
  RawFile& operator=(RawFile&& other) noexcept;

  // Returns the number of bytes read, which is less than asked for only at the end of the file.
  std::size_t ReadAt(std::int64_t offset, ByteSpan into) const;
  void WriteAt(std::int64_t offset, ByteView bytes);
  void Truncate(std::int64_t size);
  void Flush();  // returns once everything written is on the disk
  // Replaces what is there. Programs that have the old file open keep its contents.
  void RenameTo(const std::filesystem::path& target);
  FileStamp Stamp() const;
  std::int64_t Size() const { return Stamp().size; }

  // Sets the time of the last change from a finer clock than the file system's, so that a change by
  // another program shows even within the same tick.
  void StampNow();

  const std::filesystem::path& Path() const { return path_; }
  int Handle() const { return handle_; }  // for locks

 private:
  std::filesystem::path path_;
  FileFailure fail_;
  int handle_ = -1;
};

}  // namespace velumar
