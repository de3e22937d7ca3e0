#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "marketdata/bar.h"

namespace velumar {

class IndexCache;

// Changes the series of one market data directory. An object serves one operation and is then
// dropped. Every operation throws MetaLibError; after a failed or interrupted call the series reads
// as it was before or after that call. No bar is flushed to the platter one by one.
class MetaLibWriter {
 public:
  explicit MetaLibWriter(IndexCache& cache);
  // Closes what is still open, errors ignored.
  ~MetaLibWriter();
  MetaLibWriter(const MetaLibWriter&) = delete;
  MetaLibWriter& operator=(const MetaLibWriter&) = delete;

  // True while another writer, also of another process, holds the directory.
  bool IsDirectoryInUse(std::string_view path) const;
  // Holds the directory until CloseDirectory or the end of the process.
  void OpenDirectory(std::string_view path);
  void CloseDirectory();

  bool SecurityExists(std::string_view symbol) const;
  void SelectSeries(std::string_view symbol, int daily, int minutes);
  // Brings the first and last dates of the index records up to the data.
  void CloseSecurity();

  // The arrays become the bars of the series. Of equal dates (intraday: dates and times) the later
  // one stays. All eight have the same length.
  void WriteSeries(const std::vector<std::int32_t>& dates, const std::vector<std::int32_t>& times,
                   const std::vector<float>& opens, const std::vector<float>& highs,
                   const std::vector<float>& lows, const std::vector<float>& closes,
                   const std::vector<float>& volumes, const std::vector<float>& open_interests);

  // A stored bar of this date (intraday: date and time) is replaced; an older bar goes to its
  // place.
  void AppendBar(std::int32_t date, std::int32_t time, float open, float high, float low,
                 float close, float volume, float open_interest);
  bool DailyBarExists(std::int32_t date);
  bool IntradayBarExists(std::int32_t date, std::int32_t time);
  // Deleting what isn't stored is no error.
  void DeleteDailyBar(std::int32_t date);
  void DeleteIntradayBar(std::int32_t date, std::int32_t time);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace velumar
