#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "marketdata/bar_codec.h"
#include "marketdata/index_record.h"
#include "marketdata/raw_file.h"
#include "marketdata/replacement_file.h"

namespace velumar {

// The data file of one series under a writer. Its bars stay sorted and without doubles by date, of
// an intraday series that stores times by date and time. Work at the end touches the end and the
// header alone; work in the middle writes a new file that takes the old one's place. The order of
// the steps makes a reader find the series as it was before or after each call, wherever the
// process dies. Throws MetaLibError.
class SeriesFile {
 public:
  struct Series {
    std::filesystem::path path;  // the file may be missing: a series without bars
    std::string symbol;          // for messages
    BarLayout layout;
    bool is_intraday = false;
    FileStamp ordered = {};  // a stamp under which the bars were in order when last looked at
  };

  explicit SeriesFile(Series series);

  int Bars() const { return bars_; }
  SeriesEnds Ends() const;
  bool Contains(std::int32_t date, std::int32_t time) const;

  void Put(const Bar& bar);
  void Remove(std::int32_t date, std::int32_t time);

  // The whole series anew, written beside the file; it counts from CommitStaged on.
  void Stage(std::vector<Bar> bars);
  void FlushStaged() { staged_->Flush(); }
  void CommitStaged();

  // Of the file with its bars in order; an empty stamp where it is missing or in disorder.
  FileStamp OrderedStamp() const;

 private:
  using Key = std::int64_t;

  Key KeyOf(std::int32_t date, std::int32_t time) const;
  Key KeyOf(const Bar& bar) const { return KeyOf(bar.date, bar.time); }
  Key KeyAt(int index) const { return KeyOf(BarAt(index)); }
  Bar BarAt(int index) const;
  std::vector<Key> AllKeys() const;
  int LowerBound(Key key) const;
  bool Holds(int index, Key key) const { return index < bars_ && KeyAt(index) == key; }
  std::string FileName() const;
  std::int64_t EndOf(int bars) const;

  std::vector<std::byte> Encoded(const Bar& bar) const;
  std::vector<std::byte> AllRecords() const;
  std::vector<std::byte> Header(int bars) const;

  void TakeIn(RawFile file);
  void RequireColumns() const;
  void PutInOrder();
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
  bool has_times_;  // that tell the bars of one day apart
  std::optional<RawFile> file_;
  std::optional<ReplacementFile> staged_;
  int bars_ = 0;
  std::int64_t size_ = 0;  // of the file, with what may stand behind the bars
  bool is_ordered_ = true;
};

}  // namespace velumar
