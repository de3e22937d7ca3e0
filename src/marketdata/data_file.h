#pragma once

#include <filesystem>

#include "base/whole_file.h"
#include "marketdata/bar_layout.h"

namespace velumar {

// A data file is a header of one record's size, followed by the bars, oldest first. The header has
// two 16-bit counts: the maximum number of records (0: no limit) and their number, the header
// included.
inline constexpr std::size_t kCountsSize = 4;
inline constexpr std::size_t kRecordsOffset = 2;
inline constexpr int kMostBars = 65534;

// The number of bars that are counted in the header and complete in the file.
int UsableBarCount(const RawFile& file, const BarLayout& layout);
// 0 <= index < UsableBarCount.
Bar ReadBar(const RawFile& file, const BarLayout& layout, int index);

// Reads one data file.
class DataFile {
 public:
  // Throws MetaLibError (kReadFailed). With a layout without columns there are no bars.
  DataFile(const std::filesystem::path& path, const BarLayout& layout);

  int Bars() const { return bars_; }
  Bar BarAt(int index) const { return ReadBar(file_, layout_, index); }  // 0 <= index < Bars()
  BarArrays ReadAll() const;

 private:
  RawFile file_;
  BarLayout layout_;
  int bars_ = 0;
};

// Starts replacing a file in a directory whose lock the caller holds, through "F12.DAT.new". Throws
// MetaLibError.
FileReplacement ReplacementOf(const std::filesystem::path& target);

}  // namespace velumar
