#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "base/whole_file.h"
#include "marketdata/data_file.h"
#include "marketdata/index_record.h"

namespace velumar {

// The data file of one series, for writing. Its bars stay sorted and without duplicates by date, or
// by date and time if it is an intraday series that stores times. A change at the end writes only
// the end and the header; a change in the middle writes a new file that replaces the old one.
// Wherever the process dies, a reader finds the series as it was before or after the call. Throws
// MetaLibError.
class SeriesFile {
 public:
  struct Series {
    std::filesystem::path path;  // the file may be missing: a series without bars
    std::string symbol;          // for messages
    BarLayout layout;
    bool is_intraday = false;
    FileStamp sorted = {};  // a stamp of the file with its bars sorted
  };

  explicit SeriesFile(Series series);

  SeriesEnds Ends() const;

  void Put(const Bar& bar);
  void Remove(std::int32_t date, std::int32_t time);

  // Writes a new series next to the file; CommitStaged makes it the current one.
  void Stage(std::vector<Bar> bars);
  void FlushStaged() { staged_->Flush(); }
  void CommitStaged();

  // Of the file with its bars sorted; empty if it is missing or not sorted.
  FileStamp SortedStamp() const;

 private:
  using Key = BarKey;

  Key KeyOf(std::int32_t date, std::int32_t time) const;
  Key KeyOf(const Bar& bar) const { return KeyOf(bar.date, bar.time); }
  Key KeyAt(int index) const { return KeyOf(BarAt(index)); }
  Bar BarAt(int index) const { return ReadBar(*file_, series_.layout, index); }
  std::vector<Key> AllKeys() const;
  int LowerBound(Key key) const;
  bool Holds(int index, Key key) const { return index < bars_ && KeyAt(index) == key; }
  std::string FileName() const;
  std::int64_t EndOf(int bars) const;

  std::vector<std::byte> Encoded(const Bar& bar) const;
  std::vector<std::byte> AllRecords() const;
  std::vector<std::byte> Header(int bars) const;

  void Adopt(RawFile file);
  void RequireColumns() const;
  void Sort();
  void Append(ByteView record);
  void Overwrite(int index, ByteView record);
  void Insert(int index, ByteView record);
  void RemoveAt(int index);
  void CutTo(int bars);
  void MakeRoomAtEnd();
  void WriteCount(int bars);
  void StageRecords(ByteView records);
  void Rewrite(ByteView records);

  Series series_;
  bool has_times_;  // so that a day can have several bars
  std::optional<RawFile> file_;
  std::optional<FileReplacement> staged_;
  int bars_ = 0;
  std::int64_t size_ = 0;  // of the file, with any bytes after the bars
  bool is_sorted_ = true;
};

}  // namespace velumar
