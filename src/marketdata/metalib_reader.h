#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "marketdata/bar.h"

namespace velumar {

class DirectoryIndex;
class IndexCache;
struct IndexedSecurity;

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
  explicit MetaLibReader(IndexCache& cache) : cache_(cache) {}
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
  void CloseSecurity() { SetCurrent(nullptr, -1); }

  // Selects the first series that has exactly this symbol and is not intraday (daily 1, minutes -1)
  // or is intraday with these minutes (daily 0).
  void SelectSeries(std::string_view symbol, int daily, int minutes);
  void ReadSeries();

  // The series as eight parallel arrays, oldest bar first. If the file is not sorted, the bars are
  // as the writer would leave them: sorted, with only the last of equal timestamps. An intraday
  // file without times keeps its order, since nothing says how to sort it.
  const BarArrays& Bars() const;
  const std::vector<std::int32_t>& GetDates() const { return Bars().dates; }
  const std::vector<std::int32_t>& GetTimes() const { return Bars().times; }
  const std::vector<float>& GetOpens() const { return Bars().opens; }
  const std::vector<float>& GetHighs() const { return Bars().highs; }
  const std::vector<float>& GetLows() const { return Bars().lows; }
  const std::vector<float>& GetCloses() const { return Bars().closes; }
  const std::vector<float>& GetVolumes() const { return Bars().volumes; }
  const std::vector<float>& GetOpenInterests() const { return Bars().open_interests; }

  // Moves the cursor to the first bar on or after `date_text` (yyyymmdd); `mode` is always 0.
  void SeekDate(std::string_view date_text, int mode);
  void MoveToStart();
  void MoveBy(int bars);
  void ReadBar();
  std::int32_t BarDateAtCursor() const;

 private:
  DirectoryIndex& Open() const;
  const IndexedSecurity& Current() const;
  void SetCurrent(const IndexedSecurity* security, int interval);
  void MoveTo(std::size_t place);

  IndexCache& cache_;
  std::shared_ptr<DirectoryIndex> index_;
  std::size_t next_ = 0;                      // index of the security after the current one
  const IndexedSecurity* current_ = nullptr;  // in *index_; its header was read, or it was selected
  int interval_ = -1;                         // of the current security
  bool selected_ = false;                     // its bars may be read
  std::optional<BarArrays> bars_;
  std::size_t cursor_ = 0;
  bool bar_read_ = false;  // the one at the cursor
};

// All securities of an open directory, in the reader's order, and of one that is opened for it.
// Throws MetaLibError.
std::vector<SecurityInfo> ReadSecurities(MetaLibReader& reader);
std::vector<SecurityInfo> SecuritiesOf(std::string_view directory, IndexCache& cache);

}  // namespace velumar
