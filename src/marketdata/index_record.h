#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "marketdata/bar_layout.h"
#include "marketdata/number_format.h"

namespace velumar {

// The three index files of a directory. MASTER and EMASTER describe the same securities, with file
// numbers 1 to 255; XMASTER adds those from 256. Each file is a header and records of one size.
enum class IndexKind : std::uint8_t { kMaster, kEmaster, kXmaster };

inline constexpr std::array<IndexKind, 3> kIndexKinds = {IndexKind::kMaster, IndexKind::kEmaster,
                                                         IndexKind::kXmaster};
inline constexpr int kHighestMasterNumber = 255;
inline constexpr int kHighestNumber = 65535;
inline constexpr std::size_t kMostMasterRecords = 255;

std::string_view IndexFileName(IndexKind kind);  // in upper case
std::size_t IndexRecordSize(IndexKind kind);     // of a record and of the header
// In upper case: "F12.DAT", "F300.MWD".
std::string DataFileName(IndexKind kind, int file_number);

// The contents of one record.
struct IndexRecord {
  std::string symbol;  // UTF-8
  std::string name;    // UTF-8
  int file_number = 0;
  BarLayout layout;  // empty if the record names no usable fields
  char time_frame = 'D';
  int minutes = 0;              // of an intraday series; 0: not recorded
  std::int32_t first_date = 0;  // yyyymmdd; 0: not recorded
  std::int32_t last_date = 0;

  bool IsIntraday() const { return time_frame == 'I'; }
};

// Date and time of the first and last bar; 0 without bars.
struct SeriesEnds {
  std::int32_t first_date = 0;
  std::int32_t first_time = 0;
  std::int32_t last_date = 0;
  std::int32_t last_time = 0;
};

// The number of records after the header: its count, limited to what the file holds.
std::size_t IndexRecordCount(IndexKind kind, ByteView file);
int FileNumberOf(IndexKind kind, ByteView record);
IndexRecord ReadIndexRecord(IndexKind kind, ByteView record);

// Changes to one record. Bytes with another meaning stay as they are.
void SetIndexEnds(IndexKind kind, ByteSpan record, const SeriesEnds& ends);
// Clears every date and time of bars, including the date of collection.
void ClearIndexDates(IndexKind kind, ByteSpan record);
void SetIndexMinutes(IndexKind kind, ByteSpan record, int minutes);
// Everything but the dates. Symbol and name are cut to what the record holds.
void SetIndexIdentity(IndexKind kind, ByteSpan record, const IndexRecord& security);

std::vector<std::byte> NewIndexRecord(IndexKind kind);
std::vector<std::byte> NewIndexHeader(IndexKind kind);
// Sets the header's count and highest file number.
void SetIndexCount(IndexKind kind, ByteSpan header, std::size_t records, int highest_number);

}  // namespace velumar
