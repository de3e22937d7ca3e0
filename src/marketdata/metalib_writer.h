#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "marketdata/directory_lock.h"
#include "marketdata/series_file.h"

namespace velumar {

class DirectoryIndex;
class IndexCache;
struct IndexedSecurity;

// Changes the series of one market data directory. An object is used for one operation. Every
// method throws MetaLibError; after a failed or interrupted call the series is as it was before or
// after that call. Single bars are not flushed to the disk. There is no way to delete a range of
// bars: a run cuts its history in memory before it writes it, and steps go bar by bar.
class MetaLibWriter {
 public:
  explicit MetaLibWriter(IndexCache& cache) : cache_(cache) {}
  // Closes the directory; errors are ignored.
  ~MetaLibWriter();
  MetaLibWriter(const MetaLibWriter&) = delete;
  MetaLibWriter& operator=(const MetaLibWriter&) = delete;

  // True while another writer, of this or another process, has the directory open.
  bool IsDirectoryInUse(std::string_view path) const;
  // No other writer can open the directory until CloseDirectory or the end of the process.
  void OpenDirectory(std::string_view path);
  void CloseDirectory();

  bool SecurityExists(std::string_view symbol) const;
  void SelectSeries(std::string_view symbol, int daily, int minutes);
  // Updates the first and last dates in the index records.
  void CloseSecurity();

  // Replaces all bars of the series. The last of equal dates (intraday: dates and times) wins. All
  // eight arrays must have the same length.
  void WriteSeries(const std::vector<std::int32_t>& dates, const std::vector<std::int32_t>& times,
                   const std::vector<float>& opens, const std::vector<float>& highs,
                   const std::vector<float>& lows, const std::vector<float>& closes,
                   const std::vector<float>& volumes, const std::vector<float>& open_interests);

  // Replaces the bar of this date (intraday: date and time), or inserts the bar where it belongs.
  void AppendBar(std::int32_t date, std::int32_t time, float open, float high, float low,
                 float close, float volume, float open_interest);
  // No error if there is no such bar.
  void DeleteDailyBar(std::int32_t date);
  void DeleteIntradayBar(std::int32_t date, std::int32_t time);

 private:
  DirectoryIndex& Open() const;
  SeriesFile& Series(std::string_view call);
  void UpdateIndexMinutes();
  void UpdateIndexDates(const SeriesEnds& ends);

  IndexCache& cache_;
  std::shared_ptr<DirectoryIndex> index_;
  std::optional<DirectoryLock> lock_;
  IndexedSecurity* security_ = nullptr;  // the selected one, in *index_
  int interval_ = -1;                    // that it was selected by
  std::optional<SeriesFile> series_;
};

}  // namespace velumar
