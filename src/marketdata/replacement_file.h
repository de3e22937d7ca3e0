#pragma once

#include <filesystem>

#include "marketdata/raw_file.h"

namespace velumar {

// A new version of a file, written beside it and put in its place at once by Commit, so that a
// reader finds the old version or the new one, never a piece. Without Commit it vanishes.
class ReplacementFile {
 public:
  explicit ReplacementFile(const std::filesystem::path& target);
  ~ReplacementFile();
  ReplacementFile(ReplacementFile&& other) noexcept;
  ReplacementFile& operator=(ReplacementFile&&) = delete;

  void Write(ByteView whole) { file_.WriteAt(0, whole); }
  // Called before Commit, it makes a power cut leave the old version or the new one. Commit doesn't
  // flush by itself, since a working store is filled again by its next run.
  void Flush() { file_.Flush(); }
  RawFile Commit();  // the new version, still open

 private:
  std::filesystem::path target_;
  RawFile file_;
  bool pending_ = true;
};

}  // namespace velumar
