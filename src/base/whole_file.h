#pragma once

#include "base/raw_file.h"

namespace velumar {

// Reads a regular file of at most `limit` bytes. Throws FileError; a file that is too large has
// the code EFBIG.
std::string ReadWholeFile(const std::filesystem::path& file, std::size_t limit);

// Replaces a file, or creates it. The new contents are written to another file in the same folder,
// flushed to the disk and renamed over the old file, and the folder is flushed, so that after an
// error, a crash or a power cut there is either the complete old file or the complete new one. The
// file keeps its permissions, and a link to it stays a link. A pipe, a device or a file that may
// not be written is never replaced. Throws FileError.
//
// QSaveFile would need the toolkit here, ignores a flush that fails, and does not flush the folder.
void ReplaceWholeFile(const std::filesystem::path& file, std::string_view bytes);

// The steps of a replacement, for several files that change together, or to leave out the flushes.
class FileReplacement {
 public:
  // Creates the file `draft`, in the folder of `target`. One that a crash left there is removed;
  // it is never written through a link.
  FileReplacement(const std::filesystem::path& target, const std::filesystem::path& draft,
                  FileFailure fail = ThrowFileError);
  // Without Commit the draft is deleted.
  ~FileReplacement();
  FileReplacement(FileReplacement&& other) noexcept;
  FileReplacement& operator=(FileReplacement&&) = delete;

  void Write(ByteView whole) { file_.WriteAt(0, whole); }
  void Flush() { file_.Flush(); }
  // Renames the draft to the target, and returns it, still open. The rename is on the disk after
  // FlushFolder.
  RawFile Commit();

 private:
  std::filesystem::path target_;
  RawFile file_;
  bool pending_ = true;
};

}  // namespace velumar
