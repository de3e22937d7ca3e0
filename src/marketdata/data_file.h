#pragma once

#include <cstdint>
#include <filesystem>

#include "marketdata/bar_codec.h"
#include "marketdata/raw_file.h"

namespace velumar {

// A data file is a header of one record's size and the bars, oldest first. The header holds two
// 16-bit counts: the most records allowed (0: no limit) and the records there are, where the header
// counts as the first.
inline constexpr int kMostBars = 65534;

// The bars that can be believed: those that the count tells and the file holds whole.
int UsableBarCount(int told_records, std::int64_t file_size, std::size_t record_size);

// Reads one data file.
class DataFile {
 public:
  // Throws MetaLibError (kReadFailed). A layout without columns makes a file without bars.
  DataFile(const std::filesystem::path& path, const BarLayout& layout);

  int Bars() const { return bars_; }
  Bar BarAt(int index) const;  // 0 <= index < Bars()
  BarArrays ReadAll() const;

 private:
  RawFile file_;
  BarLayout layout_;
  int bars_ = 0;
};

// The smallest gap in minutes between two bars of one day; 0 where no day has two bars.
int SmallestGap(const BarArrays& bars);

}  // namespace velumar
