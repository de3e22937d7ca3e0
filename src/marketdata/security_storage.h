#pragma once

#include <cstdint>
#include <filesystem>
#include <set>
#include <vector>

#include "base/whole_file.h"
#include "marketdata/directory_editor.h"
#include "marketdata/directory_index.h"
#include "marketdata/index_file.h"

namespace velumar {

// The fields that a daily series (interval -1) or an intraday one is stored with.
BarLayout WantedLayout(int interval);

// Adds or replaces one security in a directory that is locked. Everything new is first written next
// to the files in use and flushed to the disk; then renames put it in place, the data file before
// the index files. A security whose records change their shape moves to a data file with a new
// number, so no index record ever describes a file of another shape.
class SecurityStorage {
 public:
  // Only plans. Throws MetaLibError; kDirectoryFull if no file number is left.
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
  std::vector<FileReplacement> StageImages();
  void RemoveOldData() const;

  DirectoryIndex& index_;
  const IndexedSecurity* const found_;  // the one to replace, or null
  std::vector<Image> images_;           // of the index files in use or to be created
  IndexRecord record_;                  // of the security, as it will be
  BarLayout layout_;
  IndexKind home_ = IndexKind::kMaster;
  bool moves_ = false;
};

}  // namespace velumar
