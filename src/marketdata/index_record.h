#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "marketdata/bar_layout.h"
#include "marketdata/bytes.h"

namespace velumar {

// The three index files of a directory. MASTER and EMASTER describe the same securities, with file
// numbers 1 to 255; XMASTER adds those from 256. Each file is a header and records of one size.
enum class IndexKind : std::uint8_t { kMaster, kEmaster, kXmaster };

inline constexpr std::array kIndexKinds = {IndexKind::kMaster, IndexKind::kEmaster,
                                           IndexKind::kXmaster};

std::string_view IndexFileName(IndexKind kind);  // in upper case
std::size_t IndexRecordSize(IndexKind kind);     // of a record and of the header
// "F12.DAT", "F300.MWD": in upper case.
std::string DataFileName(IndexKind kind, int file_number);

// What one record tells.
struct IndexRecord {
  std::string symbol;  // UTF-8
  std::string name;    // UTF-8
  int file_number = 0;
  BarLayout layout;  // empty where the record tells no usable fields
  char time_frame = 'D';
  int minutes = 0;              // of an intraday series, 0 where the record doesn't tell
  std::int32_t first_date = 0;  // yyyymmdd, 0 where the record tells none
  std::int32_t last_date = 0;

  bool IsIntraday() const { return time_frame == 'I'; }
};

// Dates and times of the first and last bar, 0 without bars.
struct SeriesEnds {
  std::int32_t first_date = 0;
  std::int32_t first_time = 0;
  std::int32_t last_date = 0;
  std::int32_t last_time = 0;
};

// How many records stand behind the header: the count told there, or as many as the bytes hold.
std::size_t IndexRecordCount(IndexKind kind, ByteView file);
int FileNumberOf(IndexKind kind, ByteView record);
IndexRecord ReadIndexRecord(IndexKind kind, ByteView record);

// Changes to one record; every byte that they don't mean stays as it is.
void SetIndexEnds(IndexKind kind, ByteSpan record, const SeriesEnds& ends);
// Clears every date and time of bars, including the collection date and first dates stored as
// integers.
void ClearIndexDates(IndexKind kind, ByteSpan record);
void SetIndexMinutes(IndexKind kind, ByteSpan record, int minutes);
// Symbol and name are cut to what the record holds; `told.first_date` and `last_date` play no part.
void SetIndexIdentity(IndexKind kind, ByteSpan record, const IndexRecord& told);

std::vector<std::byte> NewIndexRecord(IndexKind kind);
std::vector<std::byte> NewIndexHeader(IndexKind kind);
// The count and what the header tells of the highest file number.
void SetIndexCount(IndexKind kind, ByteSpan header, std::size_t records, int highest_number);

inline constexpr int kHighestMasterNumber = 255;
inline constexpr int kHighestNumber = 65535;
inline constexpr std::size_t kMostMasterRecords = 255;

}  // namespace velumar
