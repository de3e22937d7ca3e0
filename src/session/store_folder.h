#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

#include "marketdata/directory_lock.h"

namespace velumar {

// Why a folder can't be the working store. what() is a message for the trader: which folder, what
// is wrong with it, what to do.
class StoreError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The folder of the working store, held for one run. Since a run deletes the files in it, the file
// kMark must mark it as ours. While the object lives, the mark is locked and names this process,
// for the message of a second program; the system releases the lock when the process dies.
class StoreFolder {
 public:
  static constexpr std::string_view kMark = kWorkingStoreMark;

  // Creates the folder if it is missing, marks it and locks it. The folder must be empty, marked,
  // or the store of an earlier version. It must not be a link, the folder `data`, a folder that
  // contains `data` or is more than one level inside it, or in use by another program. Otherwise
  // throws StoreError and changes nothing.
  StoreFolder(std::string_view store, std::string_view data);
  // Throws what the constructor would throw, except for a store in use, since this process may be
  // the one that uses it.
  static void Require(std::string_view store, std::string_view data);

  // Deletes the files and links whose names don't begin with a point, and follows no link.
  // Subfolders stay. Continues if a file can't be deleted; throws StoreError if series files are
  // left, whose bars a chart would show.
  void Clear() const;

  // Copies the index files of `data` without the dates of their series. Throws MetaLibError.
  void CopyIndexes() const;

  // Copies the files of the folder MSSmart in `data`, which are the chart program's own. Files that
  // can't be copied or are larger than 64 MiB are skipped. Nothing else of `data` is copied: a
  // backup of an index file would reveal how far the series go.
  void CopyChartFiles() const;
  // Deletes the files that it has copied, and those that a chart program has put there.
  void ClearChartFiles() const;

 private:
  std::filesystem::path path_;
  std::filesystem::path data_;
  DirectoryLock lock_;
};

// "F12.DAT" or "F300.MWD", in upper case.
bool IsSeriesFile(std::string_view upper_name);

}  // namespace velumar
