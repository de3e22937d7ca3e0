#include "large_directory.h"

#include <unistd.h>

#include <atomic>
#include <vector>

#include "base/paths.h"
#include "marketdata/index_file.h"
#include "marketdata/series_file.h"

namespace velumar {

namespace {

constexpr int kDailyFields = 7;

std::filesystem::path NewFolder() {
  static std::atomic<int> made = 0;
  auto path = std::filesystem::temp_directory_path() /
              ("velumar-large-" + std::to_string(getpid()) + "-" + std::to_string(made++));
  std::filesystem::create_directories(path);
  return path;
}

std::vector<Bar> WalkingBars(int count) {
  std::vector<Bar> bars;
  float price = 100;
  for (int i = 0; i < count; ++i) {
    price += static_cast<float>(i * 37 % 11 - 5) / 8;
    bars.push_back({.date = LargeDirectoryDate(i),
                    .open = price,
                    .high = price + 1,
                    .low = price - 1,
                    .close = price + 0.5F,
                    .volume = static_cast<float>(1000 + i),
                    .open_interest = 10});
  }
  return bars;
}

void WriteBars(const std::filesystem::path& path, int count) {
  SeriesFile file(
      {.path = path, .symbol = "S", .layout = BarLayout::FromCount(kDailyFields, false)});
  file.Stage(WalkingBars(count));
  file.CommitStaged();
}

}  // namespace

int LargeDirectoryDate(int bar) {
  return (1900 + bar / 336) * 10000 + (bar / 28 % 12 + 1) * 100 + bar % 28 + 1;
}

LargeDirectory::LargeDirectory(int securities, int long_bars, int short_bars) : path_(NewFolder()) {
  IndexImage master(IndexKind::kMaster, {});
  IndexImage emaster(IndexKind::kEmaster, {});
  IndexImage xmaster(IndexKind::kXmaster, {});
  const auto list = [](IndexKind kind, IndexImage& image, const IndexRecord& record) {
    SetIndexIdentity(kind, image.AddRecord(), record);
  };
  for (int i = 0; i < securities; ++i) {
    IndexRecord record;
    record.symbol = "S" + std::to_string(i);
    record.name = "Security number " + std::to_string(i);
    record.file_number = i + 1;
    record.layout = BarLayout::FromCount(kDailyFields, false);
    const bool is_low = record.file_number <= kHighestMasterNumber;
    if (is_low) {
      list(IndexKind::kMaster, master, record);
      list(IndexKind::kEmaster, emaster, record);
    } else {
      list(IndexKind::kXmaster, xmaster, record);
    }
    const IndexKind kind = is_low ? IndexKind::kMaster : IndexKind::kXmaster;
    WriteBars(path_ / DataFileName(kind, record.file_number), i == 0 ? long_bars : short_bars);
  }
  RawFile(path_ / "MASTER", RawFile::Mode::kRenew).WriteAt(0, master.Finished());
  RawFile(path_ / "EMASTER", RawFile::Mode::kRenew).WriteAt(0, emaster.Finished());
  if (xmaster.Records() == 0) return;
  RawFile(path_ / "XMASTER", RawFile::Mode::kRenew).WriteAt(0, xmaster.Finished());
}

LargeDirectory::~LargeDirectory() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string LargeDirectory::Text() const { return PathText(path_); }

}  // namespace velumar
