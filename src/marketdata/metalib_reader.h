#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "marketdata/bar.h"

namespace velumar {

class IndexCache;

// One security: the contents of its index records, and the dates and number of its bars.
struct SecurityInfo {
  std::string symbol;  // UTF-8
  std::string name;    // UTF-8
  int interval = -1;   // -1: not intraday; else minutes, 0 if unknown
  int fields = 0;
  int file_number = 0;
  int bars = 0;
  std::int32_t first_date = 0;  // of the first and last bar, yyyymmdd, 0 without bars
  std::int32_t last_date = 0;
  // The same two dates according to the index files, also if the data file is missing.
  std::int32_t indexed_first_date = 0;
  std::int32_t indexed_last_date = 0;
};

// Reads one market data directory. An object is used for one operation. Every method throws
// MetaLibError; texts are UTF-8, paths may contain "\".
class MetaLibReader {
 public:
  // `cache` keeps the index files between objects; main owns it.
  explicit MetaLibReader(IndexCache& cache);
  ~MetaLibReader();
  MetaLibReader(const MetaLibReader&) = delete;
  MetaLibReader& operator=(const MetaLibReader&) = delete;

  void OpenDirectory(std::string_view path);
  void CloseDirectory();

  int SecurityCount() const;
  // Moves to the next security and returns 1, or 0 after the last one. The order is that of MASTER
  // (or EMASTER if there is no MASTER), then of XMASTER.
  int NextSecurity();
  // Makes the next four methods valid for the current security, like SelectSeries.
  void ReadSecurityHeader();
  const std::string& SecuritySymbol() const;
  const std::string& SecurityName() const;
  int SecurityInterval() const;
  SecurityInfo Security() const;
  void CloseSecurity();

  // Selects the first series that has exactly this symbol and is not intraday (daily 1, minutes -1)
  // or is intraday with these minutes (daily 0).
  void SelectSeries(std::string_view symbol, int daily, int minutes);
  void ReadSeries();

  // The series as eight parallel arrays, oldest bar first. If the file is not sorted, the bars are
  // as the writer would leave them: sorted, with only the last of equal timestamps. An intraday
  // file without times keeps its order, since nothing says how to sort it.
  const BarArrays& Bars() const;
  const std::vector<std::int32_t>& GetDates() const;
  const std::vector<std::int32_t>& GetTimes() const;
  const std::vector<float>& GetOpens() const;
  const std::vector<float>& GetHighs() const;
  const std::vector<float>& GetLows() const;
  const std::vector<float>& GetCloses() const;
  const std::vector<float>& GetVolumes() const;
  const std::vector<float>& GetOpenInterests() const;

  // Moves the cursor to the first bar on or after `date_text` (yyyymmdd); `mode` is always 0.
  void SeekDate(std::string_view date_text, int mode);
  void MoveToStart();
  // After the last bar, so that MoveBy(-1) reaches it.
  void MoveToEnd();
  void MoveBy(int bars);
  void ReadBar();
  std::int32_t BarDateAtCursor() const;
  std::int32_t BarTimeAtCursor() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace velumar
