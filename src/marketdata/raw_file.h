#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>

#include "marketdata/bytes.h"

namespace velumar {

// Tells whether a file is still the one that was read: as long as its stamp is the same.
struct FileStamp {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = -1;
  std::int64_t changed_ns = 0;

  bool operator==(const FileStamp&) const = default;

  // A clock that ticks every few milliseconds stamps the changes of files, so a file that changed
  // just now could change again under the same stamp. False while that is so.
  bool IsSettled() const;
};

// Of a file or directory; nullopt where there is none.
std::optional<FileStamp> StampOf(const std::filesystem::path& path);

// An open regular file, closed with the object. Failures throw MetaLibError (kReadFailed,
// kWriteFailed) with the file's name, what went wrong and the folder.
class RawFile {
 public:
  enum class Mode {
    kRead,
    kChange,  // read and write an existing file
    kCreate,  // the same, made if it is missing
    kRenew,   // the same, made or emptied
  };

  RawFile(const std::filesystem::path& path, Mode mode);
  // The same for writing, but refuses a link instead of writing to the file that it leads to.
  static RawFile OpenUnlinked(const std::filesystem::path& path, Mode mode);
  ~RawFile();
  RawFile(RawFile&& other) noexcept;
  RawFile& operator=(RawFile&& other) noexcept;

  // How many bytes there were; fewer than asked for at the end of the file alone.
  std::size_t ReadAt(std::int64_t offset, ByteSpan into) const;
  void WriteAt(std::int64_t offset, ByteView bytes);
  void Truncate(std::int64_t size);
  void Flush();  // returns once everything written is on the disk
  void RenameTo(const std::filesystem::path& target);  // in the place of what is there
  FileStamp Stamp() const;
  std::int64_t Size() const { return Stamp().size; }

  // Gives the file a time of its own, told by a finer clock than the one that stamps changes, so
  // that a change by another program shows even within the same tick.
  void StampNow();

  const std::filesystem::path& Path() const { return path_; }
  int Handle() const { return handle_; }  // for the lock, which is the platform's own too

 private:
  std::filesystem::path path_;
  int handle_ = -1;
};

}  // namespace velumar
