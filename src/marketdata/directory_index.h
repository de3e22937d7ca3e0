#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "marketdata/data_file.h"
#include "marketdata/directory_listing.h"
#include "marketdata/index_record.h"
#include "marketdata/raw_file.h"

namespace velumar {

// One security with the places of its records in the index files.
struct IndexedSecurity {
  static constexpr std::int64_t kNowhere = -1;

  IndexRecord told;
  IndexKind listed_in = IndexKind::kMaster;  // the first index that lists it
  std::array<std::int64_t, kIndexKinds.size()> offsets = {kNowhere, kNowhere, kNowhere};

  // What a look at the data file found out; holds as long as the file has this stamp.
  FileStamp gap_stamp;
  int gap = 0;
  FileStamp order_stamp;  // of a data file whose bars stand in order and without doubles

  bool IsIntraday() const { return told.IsIntraday(); }
};

// The securities of one directory as its index files list them.
class DirectoryIndex {
 public:
  DirectoryIndex(std::filesystem::path path, DirectoryListing files);
  DirectoryIndex(const DirectoryIndex&) = delete;
  DirectoryIndex& operator=(const DirectoryIndex&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  const DirectoryListing& Files() const { return files_; }
  // Of an index file; empty where it is missing.
  const std::filesystem::path& IndexPath(IndexKind kind) const;
  void SetFiles(DirectoryListing files);

  // The securities of one index file; called once for each kind, in their order.
  void Add(IndexKind kind, ByteView file);
  // In the reader's order.
  std::vector<IndexedSecurity>& Securities() { return securities_; }

  bool Knows(std::string_view symbol);
  // The first series of exactly this symbol that is not intraday (interval -1) or has these
  // minutes; else the first one whose minutes nothing tells; else null.
  IndexedSecurity* FindSeries(std::string_view symbol, int interval);

  // Minutes of an intraday series: those of the index, else the smallest gap between its bars, else
  // 0; -1 of any other series.
  int IntervalOf(IndexedSecurity& security) const;
  // The columns in the order that the data file has them.
  BarLayout LayoutOf(const IndexedSecurity& security) const;
  // Of the data file; nullopt where it is missing.
  std::optional<std::filesystem::path> DataPath(const IndexedSecurity& security) const;
  // Of the text that names the columns of an old data file; nullopt where there is none.
  std::optional<std::filesystem::path> ColumnsPath(const IndexedSecurity& security) const;
  bool HasFilesOf(IndexKind listed_in, int file_number) const;
  // The data file, or where it would be made.
  std::filesystem::path DataPathToBe(IndexKind listed_in, int file_number) const;

 private:
  std::optional<std::filesystem::path> PathOf(std::string_view upper_name) const;
  void AddRecord(IndexKind kind, std::int64_t offset, IndexRecord told);
  IndexedSecurity* TwinInMaster(int file_number);
  std::span<const std::uint32_t> PlacesOf(std::string_view symbol);

  std::filesystem::path path_;
  DirectoryListing files_;
  std::array<std::filesystem::path, kIndexKinds.size()> index_paths_;
  std::vector<IndexedSecurity> securities_;
  std::array<std::int32_t, kHighestMasterNumber + 1> by_master_number_{};  // place + 1; 0: none
  // The places of each symbol's series, built when first asked for; the keys are texts of
  // securities_, which does not change any more.
  std::unordered_map<std::string_view, std::vector<std::uint32_t>> by_symbol_;
};

}  // namespace velumar
