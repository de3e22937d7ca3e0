#pragma once

#include <cstdint>
#include <filesystem>
#include <set>
#include <vector>

#include "marketdata/directory_editor.h"
#include "marketdata/directory_index.h"
#include "marketdata/index_image.h"
#include "marketdata/replacement_file.h"

namespace velumar {

// One addition or replacement of a security in a directory that is held. Everything new is first
// written next to the files in use and flushed to the disk; then renames put it in place, the data
// file before the index files. A security whose records change their shape moves to a data file
// with a new number, so no index record ever describes a file of another shape.
class SecurityStorage {
 public:
  // Plans alone. Throws MetaLibError, kDirectoryFull where no file number is left.
  SecurityStorage(DirectoryIndex& index, const NewSecurity& security);

  void Store(std::vector<Bar> bars);

 private:
  struct Image {
    IndexKind kind;
    IndexImage bytes;
  };

  void UseImage(IndexKind kind);
  bool Uses(IndexKind kind) const;
  void DescribeSecurity(const NewSecurity& security);
  void Move(const NewSecurity& security);
  int FreeMasterNumber() const;
  int FreeNumber(IndexKind home, int lowest, int highest) const;
  std::set<int> UsedNumbers(IndexKind home) const;
  bool IsShared(const IndexedSecurity& security) const;
  std::int64_t OldOffset(IndexKind kind) const;
  void ChangeImages(const SeriesEnds& ends);
  std::vector<ReplacementFile> StageImages();
  void RemoveOldData() const;

  DirectoryIndex& index_;
  const IndexedSecurity* const found_;  // the one to replace; null: none
  std::vector<Image> images_;           // of the index files in use, or to be made
  IndexRecord told_;                    // of the security as it will be
  BarLayout layout_;
  IndexKind home_ = IndexKind::kMaster;
  bool moves_ = false;
};

}  // namespace velumar
