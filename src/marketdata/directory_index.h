#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "marketdata/data_file.h"
#include "marketdata/index_record.h"

namespace velumar {

// The index and data files of a market data directory. Their names on the disk may be in any case:
// "MASTER", "Master", "f12.dat".
class DirectoryListing {
 public:
  DirectoryListing() = default;

  // Only regular files. Throws MetaLibError (kNoData) if the directory cannot be listed.
  static DirectoryListing Read(const std::filesystem::path& directory);

  // The name on the disk of a file; empty if there is none. If several differ only in case, the
  // first in byte order (upper case) counts.
  std::string_view Find(std::string_view upper_name) const;

  // `upper_name` in the case of the directory's other files, for a new file.
  std::string Styled(std::string_view upper_name) const;

 private:
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
      return std::hash<std::string_view>()(text);
    }
  };

  // The name on the disk by the name in upper case.
  std::unordered_map<std::string, std::string, TextHash, std::equal_to<>> names_;
  std::string sample_;  // the first name in byte order, which sets the case of new ones
};

// One security, and where its records are in the index files.
struct IndexedSecurity {
  static constexpr std::int64_t kNotListed = -1;

  IndexRecord record;
  IndexKind listed_in = IndexKind::kMaster;  // the first index that lists it
  std::array<std::int64_t, kIndexKinds.size()> offsets = {kNotListed, kNotListed, kNotListed};

  // What was found in the data file, valid while the file has that stamp.
  int gap = 0;            // the smallest between two bars of a day
  FileStamp gap_stamp;    // of the file with that gap
  FileStamp order_stamp;  // of the file with its bars sorted and without duplicates
};

// The securities of one directory, as its index files list them.
class DirectoryIndex {
 public:
  DirectoryIndex(std::filesystem::path path, DirectoryListing files)
      : path_(std::move(path)), files_(std::move(files)) {}
  DirectoryIndex(const DirectoryIndex&) = delete;
  DirectoryIndex& operator=(const DirectoryIndex&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  const DirectoryListing& Files() const { return files_; }
  void SetFiles(DirectoryListing files) { files_ = std::move(files); }
  // Of an index file; empty if it is missing.
  std::filesystem::path IndexPath(IndexKind kind) const;

  // Adds the securities of one index file; called once for each kind, in their order.
  void Add(IndexKind kind, ByteView file);
  // In the reader's order.
  std::vector<IndexedSecurity>& Securities() { return securities_; }

  bool Knows(std::string_view symbol);
  // The first series of exactly this symbol that is not intraday (interval -1) or has these
  // minutes; else the first one of unknown minutes; else null.
  IndexedSecurity* FindSeries(std::string_view symbol, int interval);

  // Minutes of an intraday series, from the index or else the smallest gap between bars; 0 if
  // unknown, -1 if the series is not intraday.
  int IntervalOf(IndexedSecurity& security) const;
  // The columns in the order of the data file.
  BarLayout LayoutOf(const IndexedSecurity& security) const;
  // Of the data file; nullopt if it is missing.
  std::optional<std::filesystem::path> DataPath(const IndexedSecurity& security) const;
  // Of the text that names the columns of an old data file; nullopt if there is none.
  std::optional<std::filesystem::path> ColumnsPath(const IndexedSecurity& security) const;
  bool HasFilesOf(IndexKind listed_in, int file_number) const;
  // Of the data file, or where it would be created.
  std::filesystem::path DataPathForWriting(IndexKind listed_in, int file_number) const;

 private:
  std::optional<std::filesystem::path> PathOf(std::string_view upper_name) const;
  void AddRecord(IndexKind kind, std::int64_t offset, IndexRecord record);
  IndexedSecurity* TwinInMaster(int file_number);
  std::span<const std::uint32_t> PlacesOf(std::string_view symbol);

  std::filesystem::path path_;
  DirectoryListing files_;
  std::vector<IndexedSecurity> securities_;
  std::array<std::int32_t, kHighestMasterNumber + 1> by_master_number_{};  // place + 1; 0: none
  // The places of each symbol's series, filled on first use. The keys point into securities_,
  // which no longer changes then.
  std::unordered_map<std::string_view, std::vector<std::uint32_t>> by_symbol_;
};

}  // namespace velumar
